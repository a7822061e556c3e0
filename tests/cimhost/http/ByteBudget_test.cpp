#include "cimhost/http/ByteBudget.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace cimhost {
namespace {

TEST(ByteBudget, IsOneForAllShares) {
    ByteBudget budget(ByteBudget::Kind::other, 100);
    ByteBudget::Share one(budget);
    ByteBudget::Share two(budget);
    EXPECT_TRUE(one.grow(60));
    EXPECT_FALSE(two.grow(41));
    EXPECT_EQ(two.size(), 0U);
    EXPECT_TRUE(two.grow(40));
    EXPECT_EQ(budget.used(), 100U);
    one.shrink(10);
    EXPECT_TRUE(two.grow(10));
    EXPECT_FALSE(two.grow(1));
}

TEST(ByteBudget, HasAllBackOnceTheSharesEnd) {
    ByteBudget budget(ByteBudget::Kind::heap, 100'000'000);
    {
        ByteBudget::Share one(budget);
        ByteBudget::Share two(budget);
        EXPECT_TRUE(one.grow(50'000'000));
        EXPECT_TRUE(two.grow(50'000'000));
        one.clear();
        EXPECT_EQ(one.size(), 0U);
        EXPECT_EQ(budget.used(), 50'000'000U);
    }
    EXPECT_EQ(budget.used(), 0U);
}

TEST(ByteBudget, DoesNotTakeMoreThanThereIsForANumberThatWrapsRound) {
    ByteBudget budget(ByteBudget::Kind::other, 100);
    ByteBudget::Share share(budget);
    EXPECT_TRUE(share.grow(1));
    EXPECT_FALSE(share.grow(UINT64_MAX));
}

TEST(ByteBudget, CountsRightForSeveralThreads) {
    ByteBudget budget(ByteBudget::Kind::heap, 1000);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 1000; ++round) {
                ByteBudget::Share share(budget);
                EXPECT_LE(share.grow(400) ? budget.used() : 0, 800U);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(budget.used(), 0U);
}

}  // namespace
}  // namespace cimhost
