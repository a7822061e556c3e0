// The sinks that leave the process: standard error by a pipe, the system log by a stand-in for
// syslog(3).

#include "platform/logger/Logger.h"
#include "platform/logger/StandardErrorSink.h"
#include "platform/logger/SystemLogSink.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <syslog.h>
#include <unistd.h>

#include <array>
#include <cstdarg>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

struct SystemLogCall {
    int priority;
    std::string format;
    std::string line;
};
std::vector<SystemLogCall> systemLogCalls;

}  // namespace

/// Stands before the C library's function for this program and all that it loads.
extern "C" __attribute__((visibility("default"))) void syslog(int priority, const char* format,
                                                              ...) {
    std::va_list arguments;
    va_start(arguments, format);
    systemLogCalls.push_back({priority, format, va_arg(arguments, const char*)});
    va_end(arguments);
}

namespace {

class Pipe {
public:
    Pipe() { EXPECT_EQ(::pipe2(_ends.data(), O_CLOEXEC), 0); }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        ::close(_ends[0]);
        closeInput();
    }

    int input() const { return _ends[1]; }
    void closeInput() {
        if (_ends[1] >= 0) ::close(_ends[1]);
        _ends[1] = -1;
    }

    /// Everything written, once the input is closed.
    std::string drain() {
        closeInput();
        std::string all;
        std::array<char, 4096> buffer;
        for (ssize_t count; (count = ::read(_ends[0], buffer.data(), buffer.size())) > 0;) {
            all.append(buffer.data(), static_cast<std::size_t>(count));
        }
        return all;
    }

private:
    std::array<int, 2> _ends{-1, -1};
};

TEST(StandardErrorSink, WritesOneLineForEachMessage) {
    Pipe pipe;
    const Logger log("module", std::make_shared<StandardErrorSink>(pipe.input()));
    log.info("one");
    log.warn("two %d", 2);
    log.error("three");
    EXPECT_EQ(pipe.drain(),
              "module: information: one\nmodule: warning: two 2\nmodule: error: three\n");
}

TEST(StandardErrorSink, LetsNoMessageForgeALine) {
    Pipe pipe;
    const Logger log("module\n", std::make_shared<StandardErrorSink>(pipe.input()));
    log.info("x\nmodule: error: forged%s", "\r\x1b[2K");
    EXPECT_EQ(pipe.drain(), "module\\n: information: x\\nmodule: error: forged\\r\\x1b[2K\n");
}

TEST(StandardErrorSink, DoesNotMixLinesOfSeveralThreads) {
    Pipe pipe;
    const auto sink = std::make_shared<StandardErrorSink>(pipe.input());
    std::vector<std::thread> threads;
    for (const char mark : {'a', 'b', 'c', 'd'}) {
        threads.emplace_back([mark, sink] {
            const Logger log("s", sink);
            for (int line = 0; line < 50; ++line) log.error("%s", std::string(200, mark));
        });
    }
    std::thread closer([&] {
        for (std::thread& thread : threads) thread.join();
        pipe.closeInput();
    });
    closer.join();
    const std::string all = pipe.drain();
    ASSERT_EQ(all.size(), 4 * 50 * (std::string("s: error: \n").size() + 200));
    for (std::size_t at = 0; at < all.size(); at += 211) {
        const std::string text = all.substr(at + 10, 200);
        EXPECT_EQ(text, std::string(200, text[0]));
    }
}

TEST(StandardErrorSink, LosesALineThatTheDescriptorDoesNotTake) {
    StandardErrorSink sink(-1);
    sink.write(LogLevel::error, "s", "lost");
}

TEST(SystemLogSink, HandsLinesToTheDaemonFacility) {
    systemLogCalls.clear();
    const Logger log("module");
    log.info("one");
    log.warn("two");
    log.error("three %s", "%s%n");
    ASSERT_EQ(systemLogCalls.size(), 3U);
    EXPECT_EQ(systemLogCalls[0].priority, LOG_DAEMON | LOG_INFO);
    EXPECT_EQ(systemLogCalls[1].priority, LOG_DAEMON | LOG_WARNING);
    EXPECT_EQ(systemLogCalls[2].priority, LOG_DAEMON | LOG_ERR);
    EXPECT_EQ(systemLogCalls[2].format, "%s");
    EXPECT_EQ(systemLogCalls[2].line, "module: three %s%n");
}

TEST(SystemLogSink, LetsNoMessageForgeALine) {
    systemLogCalls.clear();
    SystemLogSink().write(LogLevel::error, "module", "x\ny");
    ASSERT_EQ(systemLogCalls.size(), 1U);
    EXPECT_EQ(systemLogCalls[0].line, "module: x\\ny");
}

TEST(HostedLogger, WritesToTheSystemLogWhereThereIsOneElseToStandardError) {
    systemLogCalls.clear();
    testing::internal::CaptureStderr();
    hostedLogger("module").error("x");
    const std::string shown = testing::internal::GetCapturedStderr();
    if (::access("/dev/log", F_OK) == 0) {
        EXPECT_EQ(systemLogCalls.size(), 1U);
        EXPECT_EQ(shown, "");
    } else {
        EXPECT_EQ(systemLogCalls.size(), 0U);
        EXPECT_EQ(shown, "module: error: x\n");
    }
}

TEST(LogLevel, HasAName) {
    EXPECT_EQ(logLevelName(LogLevel::error), "error");
    EXPECT_EQ(logLevelName(LogLevel::warning), "warning");
    EXPECT_EQ(logLevelName(LogLevel::information), "information");
}

}  // namespace
