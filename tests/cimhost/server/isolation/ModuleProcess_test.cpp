#include "cimhost/server/isolation/ModuleProcess.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/server/isolation/AwaitedCall.h"
#include "cimhost/server/isolation/LinkMessage.h"
#include "tests/support/BrokerFixture.h"

#include <gmock/gmock.h>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace cimhost {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::StartsWith;

constexpr seconds longEnough{60};
constexpr const char* asked = "module Fans, provider FanProvider, operation getInstance, path p: ";

/// What the process asks is answered once it may be.
class HeldAnswers final : public HttpHandler {
public:
    void handle(const HttpRequest& request, HttpReply& reply) override {
        const AwaitedCall::UpCall upCall(LinkNotes::of(request).call);
        if (onAsked) onAsked();
        std::unique_lock lock(_mutex);
        ++_waiting;
        _changed.notify_all();
        _changed.wait(lock, [this] { return _isOpen; });
        reply.write("answer");
    }
    void awaitAskers(int count) {
        std::unique_lock lock(_mutex);
        EXPECT_TRUE(_changed.wait_for(lock, longEnough, [&] { return _waiting >= count; }));
    }
    void open() {
        const std::lock_guard lock(_mutex);
        _isOpen = true;
        _changed.notify_all();
    }

    std::function<void()> onAsked;

private:
    std::mutex _mutex;
    std::condition_variable _changed;
    int _waiting = 0;
    bool _isOpen = false;
};

bool eventually(const std::function<bool()>& condition) {
    const auto end = Clock::now() + longEnough;
    while (Clock::now() < end) {
        if (condition()) return true;
        std::this_thread::sleep_for(milliseconds(5));
    }
    return false;
}

struct ModuleProcessTest : testing::Test {
    ModuleProcessTest() { settings.command = {TEST_SCRIPTED_MODULE, "/dev/null"}; }
    ~ModuleProcessTest() override { upCalls.open(); }

    std::string ask(const std::string& body) {
        std::string answer;
        process.ask({"FanProvider", "getInstance", "p"}, [&](ClientTransport& transport) {
            transport.post(LinkNotes().headers(), body,
                           [&answer](std::string_view piece) { answer += piece; });
        });
        return answer;
    }

    /// What asking fails with; empty when it does not.
    std::string failureOf(const std::string& body) {
        try {
            ask(body);
        } catch (const CimError& error) {
            EXPECT_EQ(error.code(), CimCode::failed);
            return error.what();
        }
        return {};
    }

    /// The process that runs now answers.
    void expectAnswer(const std::string& body, const std::string& expected) {
        const std::string answer = ask(body);
        EXPECT_EQ(answer, std::to_string(process.state().id) + " " + expected);
    }

    IsolationSettings settings;
    HeldAnswers upCalls;
    CapturingLog log;
    ModuleProcess process{"Fans", settings, upCalls, log};
};

TEST_F(ModuleProcessTest, StartsWithTheFirstRequest) {
    EXPECT_EQ(process.state().id, 0);
    EXPECT_EQ(process.state().starts, 0U);
    expectAnswer("hello", "hello");
    const pid_t first = process.state().id;
    EXPECT_NE(first, 0);
    EXPECT_EQ(ask("again"), std::to_string(first) + " again");
    EXPECT_EQ(process.state().starts, 1U);
    EXPECT_EQ(process.state().crashes, 0U);
    EXPECT_FALSE(process.state().isPaused);
    EXPECT_EQ(process.state().lastWords, "");
}

TEST_F(ModuleProcessTest, AnswersManyAtOnceFromOneProcess) {
    std::vector<std::future<std::string>> askers;
    for (int i = 0; i < 8; ++i) {
        askers.push_back(std::async(std::launch::async, [this] { return ask("ask"); }));
    }
    upCalls.awaitAskers(8);
    upCalls.open();
    for (auto& each : askers) {
        EXPECT_EQ(each.get(), std::to_string(process.state().id) + " answer");
    }
    EXPECT_EQ(process.state().starts, 1U);
}

TEST_F(ModuleProcessTest, SaysWhatTheProcessDiedOf) {
    EXPECT_EQ(failureOf("die"), std::string(asked) + "its process ended by SIGABRT");
    const ModuleProcess::State state = process.state();
    EXPECT_EQ(state.id, 0);
    EXPECT_EQ(state.crashes, 1U);
    EXPECT_EQ(state.lastWords, "ended by SIGABRT: as the test wants");
    EXPECT_EQ(log.countOf("error Fans: the module's process ended by SIGABRT: as the test wants"),
              1U);
}

TEST_F(ModuleProcessTest, SaysWithWhatTheProcessEnded) {
    EXPECT_EQ(failureOf("leave"), std::string(asked) + "its process ended with 3");
    EXPECT_EQ(process.state().lastWords, "ended with 3");
}

TEST_F(ModuleProcessTest, StartsAnewAtOnceAfterTheFirstDeath) {
    ask("hello");
    const pid_t first = process.state().id;
    failureOf("die");
    EXPECT_FALSE(process.state().isPaused);
    expectAnswer("hello", "hello");
    EXPECT_NE(process.state().id, first);
    EXPECT_EQ(process.state().starts, 2U);
}

TEST_F(ModuleProcessTest, PausesLongerAfterEachFurtherDeath) {
    failureOf("leave");
    failureOf("leave");
    EXPECT_TRUE(process.state().isPaused);
    EXPECT_EQ(failureOf("hello"),
              "module Fans is not started again for another 1 s: its process died 2 times in a row,"
              " at last: ended with 3");
    EXPECT_EQ(process.state().starts, 2U);
    ASSERT_TRUE(eventually([this] { return !process.state().isPaused; }));
    failureOf("leave");
    EXPECT_THAT(failureOf("hello"),
                StartsWith("module Fans is not started again for another 2 s: its process died 3 "
                           "times in a row"));
    EXPECT_EQ(process.state().crashes, 3U);
}

TEST_F(ModuleProcessTest, KillsAProcessThatDoesNotAnswer) {
    settings.providerTime = milliseconds(1'000);
    EXPECT_EQ(failureOf("hang"),
              std::string(asked) + "its process killed: it has not answered for 1 s");
    EXPECT_EQ(process.state().lastWords, "killed: it has not answered for 1 s");
    EXPECT_EQ(process.state().crashes, 1U);
}

TEST_F(ModuleProcessTest, WhatAProcessWaitsForIsNoSilenceOfIts) {
    settings.providerTime = milliseconds(2'000);
    upCalls.onAsked = [this] { std::this_thread::sleep_for(2 * settings.providerTime); };
    upCalls.open();
    expectAnswer("ask", "answer");
    EXPECT_EQ(process.state().crashes, 0U);
}

TEST_F(ModuleProcessTest, AnUpCallOfOneRequestDoesNotExcuseAnother) {
    settings.providerTime = milliseconds(1'000);
    auto waiting = std::async(std::launch::async, [this] { return failureOf("ask"); });
    upCalls.awaitAskers(1);
    const std::string killed =
        std::string(asked) + "its process killed: it has not answered for 1 s";
    EXPECT_EQ(failureOf("hang"), killed);
    EXPECT_EQ(waiting.get(), killed);
}

TEST_F(ModuleProcessTest, ARequestInsideOfItsOwnUpCallHangsNoLongerThanOthers) {
    settings.providerTime = milliseconds(1'000);
    std::promise<std::string> inner;
    upCalls.onAsked = [&] { inner.set_value(failureOf("hang")); };
    upCalls.open();
    const std::string killed =
        std::string(asked) + "its process killed: it has not answered for 1 s";
    EXPECT_EQ(failureOf("ask"), killed);
    EXPECT_EQ(inner.get_future().get(), killed);
}

TEST_F(ModuleProcessTest, RefusesARequestTooManyAndKeepsTheOthers) {
    std::vector<std::future<std::string>> running;
    for (int i = 0; i < ModuleProcess::mostRequests; ++i) {
        running.push_back(std::async(std::launch::async, [this] { return ask("ask"); }));
    }
    upCalls.awaitAskers(ModuleProcess::mostRequests);
    try {
        ask("hello");
        ADD_FAILURE() << "the process was asked";
    } catch (const CimError& error) {
        EXPECT_EQ(error.code(), CimCode::serverLimitsExceeded);
        EXPECT_STREQ(error.what(), "module Fans: so many requests run already: 200");
    }
    upCalls.open();
    const std::string answer = std::to_string(process.state().id) + " answer";
    for (auto& each : running) EXPECT_EQ(each.get(), answer);
    EXPECT_EQ(ask("hello"), std::to_string(process.state().id) + " hello");
    EXPECT_EQ(process.state().crashes, 0U);
}

TEST_F(ModuleProcessTest, AnswersBesideWhatItWritesAllTheTime) {
    ask("chatter");
    for (int i = 0; i < 20; ++i) expectAnswer("hello", "hello");
    failureOf("die");
    EXPECT_EQ(process.state().crashes, 1U);
}

TEST_F(ModuleProcessTest, IsKilledAtTheEndForARequestThatDoesNotEnd) {
    EXPECT_FALSE(process.killIfBusy());
    auto hanging = std::async(std::launch::async, [this] { return failureOf("ask"); });
    upCalls.awaitAskers(1);
    EXPECT_TRUE(process.killIfBusy());
    EXPECT_EQ(hanging.get(),
              std::string(asked) + "its process killed: a request did not end with the server");
    EXPECT_FALSE(process.killIfBusy());
}

TEST_F(ModuleProcessTest, SaysWhyItCannotBeStarted) {
    settings.command = {"/nonexistent/program"};
    EXPECT_EQ(failureOf("hello"),
              "module Fans: its process cannot be started: /nonexistent/program: No such file or "
              "directory");
    EXPECT_EQ(process.state().starts, 0U);
    EXPECT_EQ(process.state().crashes, 0U);
    settings.command = {TEST_SCRIPTED_MODULE, "/dev/null"};
    expectAnswer("hello", "hello");
}

TEST_F(ModuleProcessTest, AProcessThatNeverServesIsACrash) {
    settings.command = {"/bin/sh", "-c", "echo no such option >&2; exit 2"};
    EXPECT_EQ(failureOf("hello"), std::string(asked) + "its process ended with 2");
    EXPECT_EQ(process.state().lastWords, "ended with 2: no such option");
}

TEST_F(ModuleProcessTest, WhatTheWorkThrowsCostsNoProcess) {
    ask("hello");
    const pid_t first = process.state().id;
    const AskedOfModule what{"FanProvider", "getInstance", "p"};
    EXPECT_THROW(process.ask(what, [](ClientTransport&) { throw std::length_error("full"); }),
                 std::length_error);
    EXPECT_THROW(
        process.ask(what,
                    [](ClientTransport&) { throw CimError(CimCode::notFound, "no such fan"); }),
        CimError);
    EXPECT_EQ(ask("hello"), std::to_string(first) + " hello");
}

TEST_F(ModuleProcessTest, AReplacedProcessEndsAfterItsLastRequest) {
    auto late = std::async(std::launch::async, [this] { return ask("ask"); });
    upCalls.awaitAskers(1);
    const pid_t first = process.state().id;
    process.replace();
    EXPECT_EQ(process.state().id, 0);
    expectAnswer("hello", "hello");
    EXPECT_NE(process.state().id, first);
    EXPECT_TRUE(process.releaseReplaced());
    upCalls.open();
    EXPECT_EQ(late.get(), std::to_string(first) + " answer");
    EXPECT_TRUE(eventually([this] { return !process.releaseReplaced(); }));
    EXPECT_EQ(process.state().starts, 2U);
    EXPECT_EQ(process.state().crashes, 0U);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ModuleProcessTest, AReplacedProcessThatDiesIsNoCrashOfTheNewOne) {
    auto late = std::async(std::launch::async, [this] { return ask("ask"); });
    upCalls.awaitAskers(1);
    const pid_t first = process.state().id;
    process.replace();
    ask("hello");
    kill(first, SIGKILL);
    EXPECT_THROW(late.get(), CimError);
    EXPECT_TRUE(process.releaseReplaced()) << "what it asked is answered still";
    upCalls.open();
    EXPECT_TRUE(eventually([this] { return !process.releaseReplaced(); }));
    EXPECT_EQ(process.state().crashes, 0U);
    EXPECT_EQ(log.countOf("warning Fans: the module's process of before ended by SIGKILL"), 1U);
}

TEST_F(ModuleProcessTest, WithoutAProcessThereIsNothingToReplace) {
    process.replace();
    EXPECT_FALSE(process.releaseReplaced());
    EXPECT_EQ(process.state().starts, 0U);
}

TEST_F(ModuleProcessTest, RestoresWhatANewProcessNeedsBeforeItIsAsked) {
    std::vector<std::string> order;
    process.onRestart([&order](ClientTransport& transport, Clock::time_point) {
        transport.post({}, "restore", [](std::string_view) {});
        order.emplace_back("first");
        throw std::runtime_error("no such filter");
    });
    process.onRestart(
        [&order](ClientTransport&, Clock::time_point) { order.emplace_back("second"); });
    ask("hello");
    EXPECT_TRUE(order.empty());
    failureOf("die");
    process.ask({"FanProvider", "getInstance", "p"},
                [&order](ClientTransport&) { order.emplace_back("asked"); });
    EXPECT_EQ(order, (std::vector<std::string>{"first", "second", "asked"}));
    EXPECT_EQ(log.countOf("warning Fans: after its new start: no such filter"), 1U);
}

TEST_F(ModuleProcessTest, TriesAgainToRestoreWhatFailed) {
    settings.restorePause = milliseconds(1);
    std::atomic<int> tries = 0;
    std::atomic<Clock::time_point> restored{};
    process.onRestart([&](ClientTransport&, Clock::time_point started) {
        restored = started;
        if (++tries < 3) throw std::runtime_error("not yet");
    });
    process.keepRunning(true);
    ask("hello");
    failureOf("die");
    EXPECT_TRUE(eventually([&] { return tries == 3; }));
    EXPECT_EQ(restored.load(), process.state().started);
    EXPECT_EQ(log.countOf("warning Fans: after its new start: not yet"), 1U);
    EXPECT_EQ(process.state().starts, 2U);
}

TEST_F(ModuleProcessTest, KillsAProcessThatIsSilentWhileItIsRestored) {
    settings.providerTime = milliseconds(1'000);
    process.onRestart([](ClientTransport& transport, Clock::time_point) {
        transport.post({}, "hang", [](std::string_view) {});
    });
    ask("hello");
    failureOf("die");
    EXPECT_EQ(failureOf("hello"),
              std::string(asked) + "its process killed: it has not answered for 1 s");
}

TEST_F(ModuleProcessTest, RunsAgainByItselfAsLongAsItIsNeeded) {
    process.keepRunning(true);
    ask("hello");
    failureOf("die");
    EXPECT_TRUE(eventually([this] { return process.state().starts == 2; }));
    process.replace();
    EXPECT_EQ(process.state().starts, 3U);
    process.keepRunning(false);
    process.replace();
    EXPECT_EQ(process.state().id, 0);
    EXPECT_EQ(process.state().starts, 3U);
}

TEST_F(ModuleProcessTest, IsTriedAgainWhenItIsNeededAndCannotBeReplaced) {
    process.keepRunning(true);
    ask("hello");
    settings.command = {"/nonexistent/program"};
    process.replace();
    EXPECT_TRUE(eventually([this] {
        return log.countOf(
                   "error Fans: module Fans: its process cannot be started: "
                   "/nonexistent/program: No such file or directory") == 2;
    }));
}

TEST_F(ModuleProcessTest, StartsNoMoreOnceItIsToEnd) {
    ask("hello");
    process.beginEnd();
    try {
        ask("hello");
        ADD_FAILURE() << "the process was asked";
    } catch (const CimError& error) {
        EXPECT_EQ(error.code(), CimCode::serverIsShuttingDown);
    }
    EXPECT_TRUE(process.awaitEnd(Clock::now() + longEnough));
    EXPECT_EQ(process.state().crashes, 0U);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ModuleProcessTest, KillsAProcessThatDoesNotEndInTime) {
    ask("stay");
    process.beginEnd();
    EXPECT_FALSE(process.awaitEnd(Clock::now() + milliseconds(50)));
    EXPECT_EQ(log.countOf("error Fans: its clean-up does not return; it is killed"), 1U);
}

TEST_F(ModuleProcessTest, EachOfManyAskersHearsHowItsProcessEnded) {
    std::atomic<int> answers = 0;
    std::atomic<int> failures = 0;
    std::vector<std::thread> askers;
    for (int asker = 0; asker < 8; ++asker) {
        askers.emplace_back([&, asker] {
            for (int i = 0; i < 20; ++i) {
                const std::string failure = failureOf(asker == 0 && i % 5 == 0 ? "leave" : "hello");
                ++(failure.empty() ? answers : failures);
                if (failure.empty()) continue;
                EXPECT_THAT(failure,
                            testing::AnyOf(std::string(asked) + "its process ended with 3",
                                           StartsWith("module Fans is not started again for")));
            }
        });
    }
    for (std::thread& each : askers) each.join();
    EXPECT_EQ(answers + failures, 160);
    EXPECT_GE(process.state().crashes, 1U);
    ASSERT_TRUE(eventually([this] { return !process.state().isPaused; }));
    expectAnswer("hello", "hello");
}

}  // namespace
}  // namespace cimhost
