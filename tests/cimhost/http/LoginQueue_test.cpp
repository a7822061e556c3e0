#include "cimhost/http/LoginQueue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <future>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace cimhost {
namespace {

using Outcome = LoginQueue::Outcome;

/// Proofs that wait until the test lets them go, and who ran them in which order.
class Gate {
public:
    Gate() = default;
    ~Gate() {
        open();
        std::unique_lock lock(_mutex);
        _changed.wait(lock, [this] { return _running == 0; });
    }
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;

    LoginQueue::Proof proof(std::string who, bool isProven = true) {
        return [this, who = std::move(who), isProven] {
            std::unique_lock lock(_mutex);
            _started.push_back(who);
            mostAtOnce = std::max(mostAtOnce, ++_running);
            _changed.notify_all();
            _changed.wait(lock, [this] { return _isOpen; });
            --_running;
            _changed.notify_all();
            return isProven;
        };
    }

    void waitForStarted(std::size_t count) {
        std::unique_lock lock(_mutex);
        ASSERT_TRUE(_changed.wait_for(lock, std::chrono::seconds(60),
                                      [&] { return _started.size() >= count; }));
    }

    void open() {
        const std::lock_guard lock(_mutex);
        _isOpen = true;
        _changed.notify_all();
    }

    std::vector<std::string> started() {
        const std::lock_guard lock(_mutex);
        return _started;
    }

    int mostAtOnce = 0;

private:
    std::mutex _mutex;
    std::condition_variable _changed;
    std::vector<std::string> _started;
    int _running = 0;
    bool _isOpen = false;
};

struct LoginQueueTest : testing::Test {
    /// A caller on a thread of its own. Each name is a key of its own.
    std::future<Outcome> ask(LoginQueue& queue, const std::string& peer, const std::string& name,
                             bool isProven = true) {
        LoginQueue::Key key{};
        std::copy_n(name.begin(), std::min(name.size(), key.size()), key.begin());
        return std::async(std::launch::async, [=, &queue, this] {
            return queue.judge(key, peer, gate.proof(name, isProven));
        });
    }

    /// How many have an answer, once there are so many.
    static void waitForAnswers(const std::vector<std::future<Outcome>>& asked, long count) {
        const auto isReady = [](const auto& each) {
            return each.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
        };
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (std::count_if(asked.begin(), asked.end(), isReady) < count) {
            ASSERT_LT(std::chrono::steady_clock::now(), end);
            std::this_thread::yield();
        }
        EXPECT_EQ(std::count_if(asked.begin(), asked.end(), isReady), count);
    }

    static void guessWrong(LoginQueue& queue, const std::string& peer) {
        EXPECT_EQ(queue.judge({1}, peer, [] { return false; }), Outcome::wrong);
    }

    Gate gate;
};

TEST_F(LoginQueueTest, TellsWhatTheProofSays) {
    LoginQueue queue({});
    EXPECT_EQ(queue.judge({1}, "10.0.0.1:1", [] { return true; }), Outcome::proven);
    EXPECT_EQ(queue.judge({1}, "10.0.0.1:1", [] { return false; }), Outcome::wrong);
    EXPECT_EQ(queue.judge({1}, "10.0.0.1:1", []() -> bool { throw std::runtime_error("no"); }),
              Outcome::wrong);
}

TEST_F(LoginQueueTest, HasAFewProofsAtWorkAtOnce) {
    LoginQueue queue({.atOnce = 2});
    std::vector<std::future<Outcome>> asked;
    for (int i = 0; i < 8; ++i) {
        asked.push_back(ask(queue, "10.0.0.1:" + std::to_string(i), std::to_string(i)));
    }
    gate.waitForStarted(2);
    gate.open();
    for (auto& each : asked) EXPECT_EQ(each.get(), Outcome::proven);
    EXPECT_EQ(gate.started().size(), 8U);
    EXPECT_LE(gate.mostAtOnce, 2);
}

TEST_F(LoginQueueTest, LetsManyWhoAskTheSameTakeOnePlace) {
    LoginQueue queue({.waiting = 1, .ofOneAddress = 1});
    auto first = ask(queue, "10.0.0.1:1", "first");
    gate.waitForStarted(1);
    std::vector<std::future<Outcome>> asked;
    for (int i = 0; i < 20; ++i) asked.push_back(ask(queue, "10.0.0.2:1", "same"));
    std::this_thread::sleep_for(std::chrono::milliseconds(50));  // who comes later proves it again
    gate.open();
    EXPECT_EQ(first.get(), Outcome::proven);
    for (auto& each : asked) EXPECT_EQ(each.get(), Outcome::proven);
}

TEST_F(LoginQueueTest, RefusesAnAddressWithWrongGuessesFirst) {
    LoginQueue queue({.waiting = 2});
    guessWrong(queue, "10.0.0.66:1");
    auto first = ask(queue, "10.0.0.1:1", "first");
    gate.waitForStarted(1);
    std::vector<std::future<Outcome>> guesses;
    for (int i = 0; i < 5; ++i) {
        guesses.push_back(ask(queue, "10.0.0.66:" + std::to_string(i), std::to_string(i)));
    }
    ASSERT_NO_FATAL_FAILURE(waitForAnswers(guesses, 3));
    auto login = ask(queue, "10.0.0.2:1", "login");
    ASSERT_NO_FATAL_FAILURE(waitForAnswers(guesses, 4));
    gate.open();
    EXPECT_EQ(login.get(), Outcome::proven);
    EXPECT_EQ(first.get(), Outcome::proven);
    long refused = 0;
    for (auto& each : guesses) refused += each.get() == Outcome::refused ? 1 : 0;
    EXPECT_EQ(refused, 4);
    EXPECT_EQ(gate.started()[1], "login") << "before the guess that has waited longer";
}

TEST_F(LoginQueueTest, TellsConnectionsOfOneAddressApart) {
    LoginQueue queue({.waiting = 1});
    guessWrong(queue, "10.0.0.1:66");
    auto first = ask(queue, "10.0.0.1:1", "first");
    gate.waitForStarted(1);
    std::vector<std::future<Outcome>> guesses;
    guesses.push_back(ask(queue, "10.0.0.1:66", "one"));
    guesses.push_back(ask(queue, "10.0.0.1:66", "two"));
    ASSERT_NO_FATAL_FAILURE(waitForAnswers(guesses, 1));
    auto login = ask(queue, "10.0.0.1:2", "login");
    ASSERT_NO_FATAL_FAILURE(waitForAnswers(guesses, 2));
    gate.open();
    EXPECT_EQ(login.get(), Outcome::proven);
}

TEST_F(LoginQueueTest, LeavesRoomForOtherAddresses) {
    LoginQueue queue({.ofOneAddress = 2});
    auto first = ask(queue, "[::1]:1", "first");
    gate.waitForStarted(1);
    std::vector<std::future<Outcome>> same;
    for (int i = 0; i < 6; ++i) {
        same.push_back(ask(queue, "[::1]:" + std::to_string(i), std::to_string(i)));
    }
    ASSERT_NO_FATAL_FAILURE(waitForAnswers(same, 4));
    auto other = ask(queue, "[2001:db8::1]:1", "other");
    gate.open();
    EXPECT_EQ(other.get(), Outcome::proven);
}

TEST_F(LoginQueueTest, TakesTheAddressesThatOneHostMayHaveForOne) {
    LoginQueue queue({.ofOneAddress = 1});
    auto first = ask(queue, "10.0.0.1:1", "first");
    gate.waitForStarted(1);
    std::vector<std::future<Outcome>> pairs;
    for (const std::string peer :
         {"[2001:db8::1]:1", "[2001:db8::ff:0:0:2]:1", "10.0.0.9:1", "[::ffff:10.0.0.9]:1"}) {
        pairs.push_back(ask(queue, peer, peer));
    }
    ASSERT_NO_FATAL_FAILURE(waitForAnswers(pairs, 2));
    std::vector<std::future<Outcome>> others;
    for (const std::string peer :
         {"[2001:db8:0:1::1]:1", "[::ffff:10.0.0.8]:1", "[fe80::1]:1", "[fe80::2]:1"}) {
        others.push_back(ask(queue, peer, peer));
    }
    gate.open();
    for (auto& each : others) EXPECT_EQ(each.get(), Outcome::proven);
    EXPECT_EQ(first.get(), Outcome::proven);
}

TEST_F(LoginQueueTest, EndsWithoutWaitingForAProof) {
    LoginQueue queue({});
    auto atWork = ask(queue, "10.0.0.1:1", "first");
    gate.waitForStarted(1);
    auto waiting = ask(queue, "10.0.0.2:1", "second");
    queue.end();
    EXPECT_EQ(atWork.get(), Outcome::refused);
    EXPECT_EQ(waiting.get(), Outcome::refused);
    EXPECT_EQ(queue.judge({3}, "10.0.0.3:1", [] { return true; }), Outcome::refused);
    EXPECT_EQ(gate.started(), std::vector<std::string>{"first"});
    gate.open();
}

}  // namespace
}  // namespace cimhost
