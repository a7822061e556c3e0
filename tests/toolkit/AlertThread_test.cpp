#include "toolkit/AlertThread.h"

#include "cmpicpp/CmpiStatus.h"
#include "testing/cimhost/testing/FaultyBroker.h"
#include "tests/common/Failures.h"
#include "tests/support/Journal.h"
#include "tests/support/TestBroker.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <stdexcept>
#include <vector>

namespace {

using PYL::AlertThread;
using std::chrono::hours;
using std::chrono::milliseconds;

struct AlertThreadTest : testing::Test {
    TestBroker host;
    JournalLog log;
    std::mutex mutex;
    std::condition_variable changed;
    int looks = 0;
    std::function<void()> onLook = [] {};

    AlertThread::Look look() {
        return [this](const CmpiCpp::CmpiContext& context) {
            {
                const std::lock_guard lock(mutex);
                ++looks;
                EXPECT_NE(context.toCMPI(), nullptr);
            }
            changed.notify_all();
            onLook();
        };
    }
    /// Waits for so many looks; a test that fails here waits for its watchdog.
    void waitFor(int count) {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return looks >= count; });
    }
};

TEST_F(AlertThreadTest, LooksAtOnceWhenItIsStarted) {
    AlertThread thread(host.broker(), log.logger, hours(1), look());
    EXPECT_EQ(looks, 0);
    thread.start(host.context());
    waitFor(1);
}

TEST_F(AlertThreadTest, LooksAgainAndAgainAndMayCallTheObjectManager) {
    std::atomic<int> paths{0};
    onLook = [&] {
        if (!host.path("PYL_Thing", "a").empty()) ++paths;
    };
    AlertThread thread(host.broker(), log.logger, milliseconds(1), look());
    thread.start(host.context());
    waitFor(5);
    thread.stop();
    EXPECT_GE(paths, 5);
}

TEST_F(AlertThreadTest, LooksNoMoreOnceItIsStopped) {
    AlertThread thread(host.broker(), log.logger, milliseconds(1), look());
    thread.start(host.context());
    waitFor(2);
    thread.stop();
    const int after = looks;
    thread.stop();
    EXPECT_EQ(looks, after);
}

TEST_F(AlertThreadTest, StartsAgain) {
    AlertThread thread(host.broker(), log.logger, hours(1), look());
    thread.start(host.context());
    waitFor(1);
    thread.stop();
    thread.start(host.context());
    waitFor(2);
}

TEST_F(AlertThreadTest, RunsOnceHoweverOftenItIsStarted) {
    AlertThread thread(host.broker(), log.logger, hours(1), look());
    for (int i = 0; i < 3; ++i) thread.start(host.context());
    waitFor(1);
    thread.stop();
    EXPECT_EQ(looks, 1);
}

TEST_F(AlertThreadTest, StopsAtOnceInTheMiddleOfALongPeriod) {
    cimtest::FaultyBroker faulty(host.real());
    host.use(faulty.handle());
    AlertThread thread(host.broker(), log.logger, hours(1), look());
    thread.start(host.context());
    waitFor(1);
    EXPECT_EQ(faulty.calls("CMPIBrokerFT.detachThread"), 0U) << "it waits, attached";
    thread.stop();
    EXPECT_EQ(faulty.calls("CMPIBrokerFT.detachThread"), 1U);
    EXPECT_EQ(looks, 1) << "and an hour has not gone by";
    EXPECT_EQ(log.journal->take(), Lines{});
}

TEST_F(AlertThreadTest, GoesOnAfterALookThatFails) {
    onLook = [this] {
        if (looks == 1) throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_FAILED, "blind");
        if (looks == 2) throw std::runtime_error("deaf");
    };
    AlertThread thread(host.broker(), log.logger, milliseconds(1), look());
    thread.start(host.context());
    waitFor(3);
    thread.stop();
    EXPECT_EQ(log.journal->take(), (Lines{"error: a look failed: CMPI_RC_ERR_FAILED (1): blind",
                                          "error: a look failed: deaf"}));
}

TEST_F(AlertThreadTest, GoesOnWhateverALookThrows) {
    const auto& failures = allFailures();
    onLook = [&] {
        const auto number = static_cast<std::size_t>(looks);
        if (number <= failures.size()) failures[number - 1].raise();
    };
    AlertThread thread(host.broker(), log.logger, milliseconds(1), look());
    thread.start(host.context());
    waitFor(static_cast<int>(failures.size()) + 1);
    thread.stop();
    const auto lines = log.journal->take();
    EXPECT_EQ(lines.size(), failures.size());
    for (const auto& line : lines) EXPECT_TRUE(line.starts_with("error: a look failed: ")) << line;
}

TEST_F(AlertThreadTest, KeepsNothingThatALookHasMadeUntilTheNext) {
    cimtest::FaultyBroker faulty(host.real());
    host.use(faulty.handle());
    AlertThread thread(host.broker(), log.logger, milliseconds(1), look());
    thread.start(host.context());
    waitFor(5);
    thread.stop();
    // Objects of the broker end when the thread is detached.
    EXPECT_EQ(faulty.calls("CMPIBrokerFT.prepareAttachThread"), static_cast<unsigned>(looks));
    EXPECT_EQ(faulty.calls("CMPIBrokerFT.attachThread"), static_cast<unsigned>(looks));
    EXPECT_EQ(faulty.calls("CMPIBrokerFT.detachThread"), static_cast<unsigned>(looks));
    EXPECT_EQ(log.journal->take(), Lines{});
}

/// Counts the threads that have ended with it.
struct ThreadEnding {
    ~ThreadEnding() {
        if (ended) ++*ended;
    }
    std::atomic<int>* ended = nullptr;
};
thread_local ThreadEnding ending;

// Some object managers free what a thread has made of them when it ends, and no sooner.
TEST_F(AlertThreadTest, EndsTheThreadOfALookBeforeTheNext) {
    std::atomic<int> ended{0};
    onLook = [&] {
        ending.ended = &ended;
        EXPECT_EQ(ended, looks - 1);
    };
    AlertThread thread(host.broker(), log.logger, milliseconds(1), look());
    thread.start(host.context());
    waitFor(5);
    thread.stop();
    EXPECT_EQ(ended, looks);
}

TEST_F(AlertThreadTest, LeavesOutALookForWhichTheObjectManagerPreparesNothing) {
    cimtest::FaultyBroker faulty(host.real());
    host.use(faulty.handle());
    faulty.failCall("CMPIBrokerFT.prepareAttachThread", 2, cimtest::FaultyBroker::Fault::status);
    AlertThread thread(host.broker(), log.logger, milliseconds(1), look());
    thread.start(host.context());
    waitFor(3);
    thread.stop();
    const auto lines = log.journal->take();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_TRUE(lines[0].starts_with("error: a look is left out: ")) << lines[0];
    EXPECT_EQ(faulty.calls("CMPIBrokerFT.attachThread"), static_cast<unsigned>(looks));
}

TEST_F(AlertThreadTest, SaysWhatTheObjectManagerRefuses) {
    cimtest::FaultyBroker faulty(host.real());
    host.use(faulty.handle());
    AlertThread thread(host.broker(), log.logger, hours(1), look());
    faulty.failCall("CMPIBrokerFT.prepareAttachThread", 1, cimtest::FaultyBroker::Fault::status);
    EXPECT_EQ(outcomeOf([&] { thread.start(host.context()); }).substr(0, 7), "status ");
    faulty.failCall("CMPIBrokerFT.attachThread", 1, cimtest::FaultyBroker::Fault::status);
    thread.start(host.context());
    thread.stop();
    const auto lines = log.journal->take();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_TRUE(lines[0].starts_with("error: nothing is watched: ")) << lines[0];
    EXPECT_EQ(looks, 0);
}

TEST_F(AlertThreadTest, StartsAgainAfterAWatchThatTheObjectManagerHasEnded) {
    cimtest::FaultyBroker faulty(host.real());
    host.use(faulty.handle());
    faulty.failCall("CMPIBrokerFT.attachThread", 1, cimtest::FaultyBroker::Fault::status);
    AlertThread thread(host.broker(), log.logger, hours(1), look());
    const auto hasLooked = [&] {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, milliseconds(5), [&] { return looks > 0; });
    };
    for (int attempt = 0; attempt < 1'000 && !hasLooked(); ++attempt) thread.start(host.context());
    EXPECT_TRUE(hasLooked());
}

}  // namespace
