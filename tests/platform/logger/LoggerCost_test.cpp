// What a dropped line and a copy cost: no allocation.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/logger/CapturingSink.h"
#include "platform/logger/Logger.h"
#include "tests/platform/logger/AllocationCount.h"

namespace {

TEST(LoggerCost, AllocatesNothingForADroppedLine) {
    Logger const log("source", std::make_shared<CapturingSink>(), LogLevel::error);
    std::string const text(1000, 'x');
    int const before = allocationCount();
    log.info("%s %s %d", text, text.c_str(), 42);
    log.warn("%s", text);
    EXPECT_EQ(allocationCount(), before);
    log.error("%s", text);
    EXPECT_GT(allocationCount(), before);
}

TEST(LoggerCost, AllocatesNothingForACopy) {
    Logger const log("a source name that is longer than a small string",
                     std::make_shared<CapturingSink>());
    int const before = allocationCount();
    Logger const copy = log;
    EXPECT_EQ(allocationCount(), before);
    EXPECT_EQ(copy.logSource(), log.logSource());
}

}  // namespace
