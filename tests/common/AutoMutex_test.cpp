#include "common/AutoMutex.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <stdexcept>
#include <thread>
#include <type_traits>
#include <vector>

namespace {

using PYL::AutoMutex;

static_assert(!std::is_copy_constructible_v<AutoMutex>);
static_assert(!std::is_copy_assignable_v<AutoMutex>);
static_assert(!std::is_convertible_v<pthread_mutex_t&, AutoMutex>);

bool isLocked(pthread_mutex_t& mutex) {
    const int result = pthread_mutex_trylock(&mutex);
    if (result == 0) pthread_mutex_unlock(&mutex);
    return result == EBUSY;
}

TEST(AutoMutex, HoldsTheMutexFromConstructionToDestruction) {
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    {
        const AutoMutex lock(mutex);
        EXPECT_TRUE(isLocked(mutex));
    }
    EXPECT_FALSE(isLocked(mutex));
    pthread_mutex_destroy(&mutex);
}

TEST(AutoMutex, UnlocksWhenAnExceptionPasses) {
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    EXPECT_THROW(
        {
            const AutoMutex lock(mutex);
            throw std::runtime_error("passes");
        },
        std::runtime_error);
    EXPECT_FALSE(isLocked(mutex));
    pthread_mutex_destroy(&mutex);
}

TEST(AutoMutex, KeepsOtherThreadsOutOfTheScope) {
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    int count = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            for (int turn = 0; turn < 1000; ++turn) {
                const AutoMutex lock(mutex);
                ++count;
            }
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(count, 8000);
    pthread_mutex_destroy(&mutex);
}

}  // namespace
