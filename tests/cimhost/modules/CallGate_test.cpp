#include "cimhost/modules/CallGate.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace cimhost {
namespace {

using Clock = std::chrono::steady_clock;
constexpr auto forever = Clock::time_point::max();

TEST(CallGate, StartsClosed) {
    CallGate gate;
    EXPECT_FALSE(gate.enter());
}

TEST(CallGate, LetsCallsInWhileOpen) {
    CallGate gate;
    gate.open();
    EXPECT_TRUE(gate.enter());
    EXPECT_TRUE(gate.enter());
    gate.leave();
    gate.leave();
}

TEST(CallGate, DoesNotCloseOnACallInside) {
    CallGate gate;
    gate.open();
    ASSERT_TRUE(gate.enter());
    EXPECT_FALSE(gate.closeIfIdle());
    EXPECT_TRUE(gate.enter());
    gate.leave();
    gate.leave();
    EXPECT_TRUE(gate.closeIfIdle());
    EXPECT_FALSE(gate.enter());
}

TEST(CallGate, CannotBeClosedTwiceAsIdle) {
    CallGate gate;
    EXPECT_FALSE(gate.closeIfIdle());
}

TEST(CallGate, OpensAgain) {
    CallGate gate;
    gate.open();
    gate.close();
    gate.open();
    EXPECT_TRUE(gate.enter());
    gate.leave();
}

TEST(CallGate, GivesUpWaitingWhenTheTimeHasCome) {
    CallGate gate;
    gate.open();
    ASSERT_TRUE(gate.enter());
    gate.close();
    EXPECT_FALSE(gate.waitUntilIdle(Clock::now()));
    gate.leave();
    EXPECT_TRUE(gate.waitUntilIdle(Clock::now()));
}

TEST(CallGate, WaitsForTheLastCall) {
    CallGate gate;
    gate.open();
    ASSERT_TRUE(gate.enter());
    gate.close();
    bool hasLeft = false;
    std::thread caller([&] {
        hasLeft = true;
        gate.leave();
    });
    EXPECT_TRUE(gate.waitUntilIdle(forever));
    EXPECT_TRUE(hasLeft);
    caller.join();
}

TEST(CallGate, MayBeDestroyedOnceIdle) {
    for (int round = 0; round < 200; ++round) {
        auto gate = std::make_unique<CallGate>();
        gate->open();
        ASSERT_TRUE(gate->enter());
        std::thread caller([&gate = *gate] { gate.leave(); });
        gate->close();
        ASSERT_TRUE(gate->waitUntilIdle(forever));
        gate.reset();
        caller.join();
    }
}

TEST(CallGate, CountsCallsOfManyThreads) {
    CallGate gate;
    gate.open();
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            for (int call = 0; call < 1000; ++call) {
                if (gate.enter()) gate.leave();
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_TRUE(gate.closeIfIdle());
}

}  // namespace
}  // namespace cimhost
