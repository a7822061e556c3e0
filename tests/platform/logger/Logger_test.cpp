#include "platform/logger/Logger.h"

#include "platform/logger/CapturingSink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LoggerTest : public testing::Test {
protected:
    using Line = CapturingSink::Line;

    std::shared_ptr<CapturingSink> _sink = std::make_shared<CapturingSink>();
    Logger _log{"source", _sink};
};

TEST_F(LoggerTest, HandsLevelSourceAndTextToTheSink) {
    _log.info("one %d", 1);
    _log.warn("two");
    _log.error("three %s", "x");
    EXPECT_THAT(_sink->lines(), ElementsAre(Line{LogLevel::information, "source", "one 1"},
                                            Line{LogLevel::warning, "source", "two"},
                                            Line{LogLevel::error, "source", "three x"}));
    EXPECT_THAT(_sink->messages(LogLevel::warning), ElementsAre("two"));
    _sink->clear();
    EXPECT_THAT(_sink->messages(), IsEmpty());
}

TEST_F(LoggerTest, WritesEverythingUnlessToldOtherwise) {
    EXPECT_EQ(_log.level(), LogLevel::information);
    EXPECT_EQ(Logger("plain").level(), LogLevel::information);
}

TEST_F(LoggerTest, DropsLinesBelowItsLevel) {
    struct Expectation {
        LogLevel level;
        bool info, warn, error;
    };
    for (const auto& [level, info, warn, error] :
         {Expectation{LogLevel::error, false, false, true},
          Expectation{LogLevel::warning, false, true, true},
          Expectation{LogLevel::information, true, true, true}}) {
        _sink->clear();
        _log.setLevel(level);
        EXPECT_EQ(_log.infoEnabled(), info);
        EXPECT_EQ(_log.warnEnabled(), warn);
        EXPECT_EQ(_log.errorEnabled(), error);
        _log.info("x");
        _log.warn("x");
        _log.error("x");
        EXPECT_EQ(_sink->lines().size(),
                  std::size_t{info} + std::size_t{warn} + std::size_t{error});
    }
}

TEST_F(LoggerTest, TakesItsFirstLevelFromTheConstructor) {
    const Logger quiet("quiet", _sink, LogLevel::error);
    quiet.warn("x");
    EXPECT_THAT(_sink->messages(), IsEmpty());
}

TEST_F(LoggerTest, SharesTheLevelWithItsCopiesInBothDirections) {
    Logger copy = _log;
    copy.setLevel(LogLevel::error);
    EXPECT_EQ(_log.level(), LogLevel::error);
    _log.setLevel(LogLevel::warning);
    EXPECT_EQ(copy.level(), LogLevel::warning);
}

TEST_F(LoggerTest, KeepsTheLevelOfUnrelatedLoggersApart) {
    Logger other("other", _sink);
    other.setLevel(LogLevel::error);
    EXPECT_EQ(_log.level(), LogLevel::information);
}

TEST_F(LoggerTest, AppendsToTheSourceOfOneCopyOnly) {
    Logger copy = _log;
    copy.appendLogSource(":");
    copy.appendLogSource("perfmon");
    EXPECT_EQ(copy.logSource(), "source:perfmon");
    EXPECT_EQ(_log.logSource(), "source");
    copy.info("x");
    _log.info("y");
    EXPECT_THAT(_sink->lines(), ElementsAre(Line{LogLevel::information, "source:perfmon", "x"},
                                            Line{LogLevel::information, "source", "y"}));
}

TEST_F(LoggerTest, TakesSinkLevelAndSourceOfALoggerAssignedToIt) {
    const auto sink = std::make_shared<CapturingSink>();
    Logger other("other", sink, LogLevel::warning);
    _log = other;
    _log.warn("x");
    _log.info("y");
    EXPECT_THAT(sink->lines(), ElementsAre(Line{LogLevel::warning, "other", "x"}));
    EXPECT_THAT(_sink->lines(), IsEmpty());
}

TEST_F(LoggerTest, StillLogsAfterItWasMovedFrom) {
    const Logger taken = std::move(_log);
    _log.info("x");
    taken.info("y");
    EXPECT_THAT(_sink->messages(), ElementsAre("x", "y"));
}

TEST_F(LoggerTest, KeepsItsSinkAliveInEveryCopy) {
    auto copy = std::make_unique<Logger>(Logger("source", std::make_shared<CapturingSink>()));
    const Logger last = *copy;
    copy.reset();
    last.info("x");
}

TEST_F(LoggerTest, LeavesErrnoAlone) {
    class MeddlingSink : public LogSink {
    public:
        void write(LogLevel, std::string_view, std::string_view) noexcept override { errno = EIO; }
    };
    const Logger log("source", std::make_shared<MeddlingSink>());
    errno = ENOENT;
    log.error("x");
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(LoggerTest, WritesWholeLinesFromSeveralThreads) {
    constexpr int threadCount = 4;
    constexpr int lineCount = 200;
    std::vector<std::thread> threads;
    for (int number = 0; number < threadCount; ++number) {
        threads.emplace_back([number, log = _log]() mutable {
            log.appendLogSource(std::to_string(number));
            for (int line = 0; line < lineCount; ++line) {
                log.info("line %d", line);
                log.setLevel(LogLevel::information);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    std::vector<int> next(threadCount, 0);
    for (const Line& line : _sink->lines()) {
        auto& expected = next.at(static_cast<std::size_t>(line.source.back() - '0'));
        EXPECT_EQ(line.message, "line " + std::to_string(expected++));
    }
    EXPECT_THAT(next, testing::Each(lineCount));
}

}  // namespace
