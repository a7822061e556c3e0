// What a dropped line and a copy cost: no allocation.

#include "platform/logger/CapturingSink.h"
#include "platform/logger/Logger.h"
#include "testing/cimhost/testing/Allocations.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

TEST(LoggerCost, AllocatesNothingForADroppedLine) {
    const Logger log("source", std::make_shared<CapturingSink>(), LogLevel::error);
    const std::string text(1000, 'x');
    const int before = cimtest::allocationCount();
    log.info("%s %s %d", text, text.c_str(), 42);
    log.warn("%s", text);
    EXPECT_EQ(cimtest::allocationCount(), before);
    log.error("%s", text);
    EXPECT_GT(cimtest::allocationCount(), before);
}

TEST(LoggerCost, AllocatesNothingForACopy) {
    const Logger log("a source name that is longer than a small string",
                     std::make_shared<CapturingSink>());
    const int before = cimtest::allocationCount();
    const Logger copy = log;
    EXPECT_EQ(cimtest::allocationCount(), before);
    EXPECT_EQ(copy.logSource(), log.logSource());
}

}  // namespace
