#include "providers/fan/FanEvents.h"

#include <gtest/gtest.h>

namespace {

using fan::Fan;
using fan::fanDegraded;
using fan::FanEvent;
using fan::FanEventNumber;
using fan::FanEvents;
using fan::fanFailed;
using fan::fanInserted;
using fan::fanRemoved;
using fan::fanRepaired;
using Numbers = std::vector<FanEventNumber>;

Fan turning(const std::string& id = "a") {
    Fan fan;
    fan.id = id;
    fan.speed = 1000;
    return fan;
}
Fan failed(const std::string& id = "a") {
    auto fan = turning(id);
    fan.fault = true;
    return fan;
}
Fan slow(const std::string& id = "a") {
    auto fan = turning(id);
    fan.alarm = true;
    return fan;
}
Fan silent(const std::string& id = "a") {
    auto fan = turning(id);
    fan.speed.reset();
    return fan;
}

struct FanEventsTest : testing::Test {
    FanEvents events;
    Numbers since(const std::vector<Fan>& fans) {
        Numbers numbers;
        for (const auto& event : events.since(fans)) numbers.push_back(event.number);
        return numbers;
    }
};

TEST_F(FanEventsTest, AreNoneWhileEverythingTurns) {
    EXPECT_EQ(since({turning("a"), turning("b")}), Numbers{});
    EXPECT_EQ(since({turning("a"), turning("b")}), Numbers{});
}

TEST_F(FanEventsTest, TellFromTheBeginningOfWhatIsBroken) {
    EXPECT_EQ(since({failed("a"), turning("b"), slow("c")}), (Numbers{fanFailed, fanDegraded}));
}

TEST_F(FanEventsTest, TellOfFansThatComeAndGo) {
    since({turning("a")});
    EXPECT_EQ(since({turning("a"), turning("b")}), Numbers{fanInserted});
    const auto gone = events.since({turning("b")});
    ASSERT_EQ(gone.size(), 1U);
    EXPECT_EQ(gone[0], (FanEvent{fanRemoved, turning("a")}));
    EXPECT_EQ(since({turning("a"), turning("b")}), Numbers{fanInserted});
    EXPECT_EQ(since({}), (Numbers{fanRemoved, fanRemoved}));
}

TEST_F(FanEventsTest, TellOfAChangeOnce) {
    since({turning()});
    EXPECT_EQ(since({failed()}), Numbers{fanFailed});
    EXPECT_EQ(since({failed()}), Numbers{});
    EXPECT_EQ(since({slow()}), Numbers{fanDegraded});
    EXPECT_EQ(since({turning()}), Numbers{fanRepaired});
    EXPECT_EQ(since({turning()}), Numbers{});
}

TEST_F(FanEventsTest, KeepQuietAboutFansThatStopOrCannotBeRead) {
    since({turning()});
    auto stopped = turning();
    stopped.speed = 0;
    EXPECT_EQ(since({stopped}), Numbers{});
    EXPECT_EQ(since({silent()}), Numbers{});
    EXPECT_EQ(since({turning()}), Numbers{});
}

TEST_F(FanEventsTest, RememberTroubleWhileAFanCannotBeRead) {
    since({failed()});
    EXPECT_EQ(since({silent()}), Numbers{});
    EXPECT_EQ(since({failed()}), Numbers{});
    EXPECT_EQ(since({silent()}), Numbers{});
    EXPECT_EQ(since({turning()}), Numbers{fanRepaired});
}

TEST_F(FanEventsTest, TellOfAFanThatComesBroken) {
    since({});
    EXPECT_EQ(since({failed()}), (Numbers{fanInserted, fanFailed}));
    EXPECT_EQ(since({}), Numbers{fanRemoved});
    EXPECT_EQ(since({turning()}), Numbers{fanInserted});
}

}  // namespace
