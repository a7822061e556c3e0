#include <gtest/gtest.h>
#include <pylcommon/testing.h>

#include <ctime>

namespace {

using std::chrono::seconds;
using std::chrono::system_clock;

TEST(TimeIs, WhatATestSaysUntilItPasses) {
    cimtest::TimeIs clock(system_clock::time_point(seconds(86'400)));
    EXPECT_EQ(system_clock::now(), system_clock::time_point(seconds(86'400)));
    EXPECT_EQ(std::time(nullptr), 86'400);
    clock.pass(seconds(5));
    EXPECT_EQ(system_clock::now(), system_clock::time_point(seconds(86'405)));
}

TEST(TimeIs, TheSystemsOwnAgainAfterwards) {
    { const cimtest::TimeIs clock(system_clock::time_point(seconds(1))); }
    EXPECT_GT(std::time(nullptr), 1'000'000'000);
    EXPECT_GT(std::chrono::steady_clock::now().time_since_epoch().count(), 0);
}

}  // namespace
