#include "providers/consolidatedstatus/StatusBoard.h"

#include <gtest/gtest.h>

namespace {

using consolidatedstatus::StatusBoard;
using std::chrono::seconds;

struct StatusBoardTest : testing::Test {
    StatusBoard board;
    std::chrono::system_clock::time_point now{seconds(1'000'000)};
    bool isNew = false;

    bool post(const std::string& className, PYL::operationalStatus status) {
        return board.post(className, status, now, isNew);
    }
};

TEST_F(StatusBoardTest, IsEmptyAtFirst) {
    EXPECT_FALSE(board.overall());
    EXPECT_FALSE(board.find("PYL_Fan"));
}

TEST_F(StatusBoardTest, KeepsTheLastStatusOfEachClassAndCounts) {
    EXPECT_TRUE(post("PYL_Fan", PYL::statusError));
    EXPECT_TRUE(isNew);
    now += seconds(5);
    EXPECT_TRUE(post("PYL_Fan", PYL::statusOK));
    EXPECT_FALSE(isNew);
    const auto posted = board.find("PYL_Fan");
    ASSERT_TRUE(posted);
    EXPECT_EQ(posted->status, PYL::statusOK);
    EXPECT_EQ(posted->when, now);
    EXPECT_EQ(posted->posts, 2U);
}

TEST_F(StatusBoardTest, IsAsBadAsItsWorst) {
    post("PYL_Fan", PYL::statusOK);
    post("PYL_Power", PYL::statusStressed);
    now += seconds(1);
    post("PYL_Memory", PYL::statusUnknown);
    const auto overall = board.overall();
    ASSERT_TRUE(overall);
    EXPECT_EQ(overall->status, PYL::statusDegraded);
    EXPECT_EQ(overall->when, now);
    EXPECT_EQ(overall->posts, 3U);
    post("PYL_Power", PYL::statusOK);
    EXPECT_EQ(board.overall()->status, PYL::statusOK);
}

TEST_F(StatusBoardTest, HasNoRoomForMoreClassesThanItsMost) {
    for (std::size_t i = 0; i < StatusBoard::mostClasses; ++i) {
        ASSERT_TRUE(post("PYL_" + std::to_string(i), PYL::statusOK));
    }
    EXPECT_FALSE(post("PYL_More", PYL::statusError));
    EXPECT_FALSE(board.find("PYL_More"));
    EXPECT_EQ(board.overall()->status, PYL::statusOK);
    EXPECT_TRUE(post("PYL_0", PYL::statusError));
}

TEST_F(StatusBoardTest, ForgetsAClass) {
    post("PYL_Fan", PYL::statusError);
    board.forget("PYL_Fan");
    board.forget("PYL_Other");
    EXPECT_FALSE(board.overall());
    post("PYL_Fan", PYL::statusOK);
    EXPECT_TRUE(isNew);
}

}  // namespace
