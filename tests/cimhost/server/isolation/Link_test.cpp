#include "cimhost/server/isolation/Link.h"

#include "cimhost/client/ClientTransport.h"

#include <gmock/gmock.h>
#include <sys/socket.h>

#include <atomic>
#include <future>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace cimhost {
namespace {

using Kind = StreamError::Kind;

/// Answers with its name and the request's body.
class Echo : public HttpHandler {
public:
    explicit Echo(std::string name) : _name(std::move(name)) {}

    void handle(const HttpRequest& request, HttpReply& reply) override {
        ++calls;
        reply.write(_name + std::string(request.body));
    }

    std::atomic<int> calls = 0;

private:
    std::string _name;
};

/// Holds requests until it is told to answer them.
class Slow : public HttpHandler {
public:
    void handle(const HttpRequest&, HttpReply& reply) override {
        begun.set_value();
        _released.get_future().wait();
        reply.write("late");
        hasAnswered = true;
    }
    void release() { _released.set_value(); }

    std::promise<void> begun;
    std::atomic<bool> hasAnswered = false;

private:
    std::promise<void> _released;
};

/// Serves what the other side asks until that ends.
class ServingLink {
public:
    ServingLink(Descriptor control, HttpHandler& handler)
        : _link(std::move(control), handler), _thread([this] {
              while (_link.serveOne()) {
              }
          }) {}
    ~ServingLink() { join(); }

    Link& operator*() { return _link; }
    Link* operator->() { return &_link; }
    /// Waits for the end of the other side's asking.
    void join() {
        if (_thread.joinable()) _thread.join();
    }

private:
    Link _link;
    std::thread _thread;
};

std::string ask(Link& link, const std::string& body) {
    ClientTransport transport([&link] { return link.connect(); }, {});
    std::string answer;
    transport.post({}, body, [&answer](std::string_view piece) { answer += piece; });
    return answer;
}

std::optional<Kind> failureOfConnect(Link& link) {
    try {
        link.connect();
    } catch (const StreamError& error) {
        return error.kind();
    }
    return std::nullopt;
}

/// Two ends that serve each other, as a server and the process of a module.
struct TwoEnds {
    explicit TwoEnds(std::pair<Descriptor, Descriptor> pair = Link::makePair())
        : near(std::move(pair.first), atNear), far(std::move(pair.second), atFar) {}
    ~TwoEnds() {
        near->endAsking();
        far->endAsking();
    }

    Echo atNear{"near "};
    Echo atFar{"far "};
    ServingLink near;
    ServingLink far;
};

TEST(Link, EachSideAsksTheOther) {
    TwoEnds ends;
    EXPECT_EQ(ask(*ends.near, "one"), "far one");
    EXPECT_EQ(ask(*ends.far, "two"), "near two");
}

TEST(Link, ManyAskAtOnceOverConnectionsOfTheirOwn) {
    TwoEnds ends;
    std::vector<std::thread> askers;
    std::atomic<int> right = 0;
    for (int number = 0; number < 32; ++number) {
        askers.emplace_back([&, number] {
            const std::string body = std::to_string(number);
            Link& side = number % 2 == 0 ? *ends.near : *ends.far;
            if (ask(side, body) == (number % 2 == 0 ? "far " : "near ") + body) ++right;
        });
    }
    for (std::thread& asker : askers) asker.join();
    EXPECT_EQ(right, 32);
    EXPECT_EQ(ends.atFar.calls, 16);
    EXPECT_EQ(ends.atNear.calls, 16);
}

TEST(Link, ALongMessageComesWhole) {
    TwoEnds ends;
    const std::string body(std::size_t{12} << 20U, 'x');
    EXPECT_EQ(ask(*ends.near, body), "far " + body);
}

TEST(Link, ServingEndsWhenTheOtherSideHasEnded) {
    auto [near, far] = Link::makePair();
    Echo echo("");
    ServingLink serving(std::move(near), echo);
    far.reset();
    serving.join();
    EXPECT_TRUE(serving->isIdle());
}

TEST(Link, ASideThatIsGoneCannotBeAsked) {
    auto [near, far] = Link::makePair();
    Echo echo("");
    Link link(std::move(near), echo);
    far.reset();
    EXPECT_EQ(failureOfConnect(link), Kind::lost);
}

TEST(Link, ConnectionsThatWaitForASideThatEndsAreLost) {
    auto [near, far] = Link::makePair();
    Echo echo("");
    Link link(std::move(near), echo);
    ClientTransport transport([&link] { return link.connect(); }, {});
    std::promise<std::optional<Kind>> outcome;
    std::thread asker([&] {
        try {
            transport.post({}, "<CIM/>", [](std::string_view) {});
            outcome.set_value(std::nullopt);
        } catch (const StreamError& error) {
            outcome.set_value(error.kind());
        }
    });
    char byte = 0;
    // The connection has been sent: the other side dies with it unread.
    EXPECT_EQ(recv(far.get(), &byte, 1, MSG_PEEK), 1);
    far.reset();
    EXPECT_EQ(outcome.get_future().get(), Kind::lost);
    asker.join();
}

TEST(Link, AMessageWithoutConnectionIsNothingToServe) {
    auto [near, far] = Link::makePair();
    Echo echo("");
    Link link(std::move(near), echo);
    EXPECT_EQ(::send(far.get(), "x", 1, 0), 1);
    EXPECT_TRUE(link.serveOne());
    EXPECT_TRUE(link.isIdle());
}

TEST(Link, EndsOnlyWhenWhatItAnswersHasEnded) {
    auto [near, far] = Link::makePair();
    Slow slow;
    Echo echo("");
    Link asking(std::move(near), echo);
    std::thread asker;
    {
        ServingLink answering(std::move(far), slow);
        asker = std::thread([&asking] {
            try {
                ask(asking, "");
            } catch (const StreamError&) {
                // The answer may be cut off: the link ends.
            }
        });
        slow.begun.get_future().wait();
        EXPECT_FALSE(answering->isIdle());
        asking.endAsking();
        answering.join();
        slow.release();
    }
    EXPECT_TRUE(slow.hasAnswered);
    asker.join();
}

}  // namespace
}  // namespace cimhost
