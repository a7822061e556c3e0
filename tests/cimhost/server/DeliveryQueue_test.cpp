#include "cimhost/cimxml/ExportHandler.h"
#include "cimhost/http/HttpServer.h"
#include "cimhost/operations/HostName.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/server/CimXmlAdapter.h"
#include "cimhost/server/IndicationDelivery.h"

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace cimhost {
namespace {

class KeepingLog final : public BrokerLog {
public:
    void write(Level, std::string_view, std::string_view message) noexcept override {
        const std::lock_guard lock(_mutex);
        _lines.emplace_back(message);
    }
    std::vector<std::string> lines() const {
        const std::lock_guard lock(_mutex);
        return _lines;
    }

private:
    mutable std::mutex _mutex;
    std::vector<std::string> _lines;
};

/// A listener on a free port that takes what `judge` does not throw at.
class LiveListener final : public HttpHandler {
public:
    LiveListener() { _server.start(); }

    ListenerUrl url() const { return {"127.0.0.1", _server.listener().port(), "/"}; }

    void handle(const HttpRequest& request, HttpReply& reply) override {
        {
            const std::lock_guard lock(_mutex);
            _body = request.body;
        }
        CimXmlHttpReply cimReply(reply, CimXmlHttpReply::Kind::exported);
        const ExportHandler handler([this](const Instance& instance) { _take(instance); });
        handler.handle(
            {[&](std::string_view name) { return request.header(name); }, request.body, {}, {}},
            cimReply);
    }

    /// The sequence numbers of those that arrived, once there are so many.
    std::vector<std::int64_t> waitFor(std::size_t count) {
        std::unique_lock lock(_mutex);
        EXPECT_TRUE(_changed.wait_for(lock, std::chrono::seconds(60),
                                      [&] { return _numbers.size() >= count; }));
        return _numbers;
    }

    /// What the last request sent.
    std::string body() const {
        const std::lock_guard lock(_mutex);
        return _body;
    }

    std::function<void(std::size_t)> judge;  ///< called with how many came before

private:
    void _take(const Instance& instance) {
        std::unique_lock lock(_mutex);
        const std::size_t before = _numbers.size();
        _numbers.push_back(*instance.find("SequenceNumber")->value.get<std::int64_t>());
        _changed.notify_all();
        lock.unlock();
        if (judge) judge(before);
    }

    HttpLimits _limits;
    mutable std::mutex _mutex;
    std::condition_variable _changed;
    std::vector<std::int64_t> _numbers;
    std::string _body;
    HttpServer _server{ListenSocket("127.0.0.1", 0), {*this, _limits}};  ///< ends first
};

/// A listener that answers each request with these bytes and hangs up.
class RawListener {
public:
    explicit RawListener(std::string answer) : _answer(std::move(answer)) {}
    ~RawListener() {
        shutdown(_listener.handle(), SHUT_RDWR);
        _thread.join();
    }
    RawListener(const RawListener&) = delete;
    RawListener& operator=(const RawListener&) = delete;

    ListenerUrl url() const { return {"127.0.0.1", _listener.port(), "/"}; }

private:
    void _work() {
        for (;;) {
            const Descriptor client(accept(_listener.handle(), nullptr, nullptr));
            if (client) {
                send(client.get(), _answer.data(), _answer.size(), MSG_NOSIGNAL);
                shutdown(client.get(), SHUT_WR);
                std::array<char, 4096> rest;
                while (recv(client.get(), rest.data(), rest.size(), 0) > 0) {
                }
            } else if (errno == EINVAL) {
                return;
            } else {
                pollfd entry{_listener.handle(), POLLIN, 0};
                poll(&entry, 1, -1);
            }
        }
    }

    std::string _answer;
    ListenSocket _listener{"127.0.0.1", 0};
    std::thread _thread{[this] { _work(); }};
};

struct DeliveryQueueTest : testing::Test {
    DeliveryQueueTest() {
        auto property = std::make_shared<PropertyDefinition>();
        property->name = "SequenceNumber";
        property->type = CimType::sint64;
        definition.name = "TST_Alarm";
        definition.properties.push_back(property);
        indication.path.className = "TST_Alarm";
        settings.manner = {0, std::chrono::seconds(1)};
    }

    void put(IndicationQueue& queue, int count = 1) {
        const PropertySelection everything;
        for (int i = 0; i < count; ++i) queue.put({indication, &definition, everything, "filter"});
    }

    DeliveryCounts waitFor(const DeliveryQueue& queue, std::uint64_t ended) {
        const auto end = Clock::now() + std::chrono::seconds(60);
        for (;;) {
            const DeliveryCounts counts = queue.counts();
            if (counts.sent + counts.dropped >= ended || Clock::now() > end) return counts;
            std::this_thread::yield();
        }
    }

    static constexpr int million = 1'000'000;

    /// A million at once, behind those before, and a look at the queue every now and then.
    void flood(DeliveryQueue& queue, std::uint64_t before = 0) {
        constexpr int step = 1'000;
        for (int count = step; count <= million; count += step) {
            put(queue, step);
            const DeliveryCounts counts = queue.counts();
            ASSERT_LE(counts.waiting, settings.queueItems);
            ASSERT_EQ(counts.raised, before + static_cast<std::uint64_t>(count));
            ASSERT_EQ(counts.raised, counts.sent + counts.dropped + counts.waiting);
        }
    }

    /// One in ten seconds, and a loaded machine may need many.
    void expectAHandfulOfLines() {
        const auto lines = log.lines();
        EXPECT_GE(lines.size(), 1U);
        EXPECT_LE(lines.size(), 10U);
    }

    /// A port that nobody listens at, and that nobody else gets meanwhile.
    ListenerUrl nobody() {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const place = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(bind(deaf.get(), place, size), 0);
        EXPECT_EQ(getsockname(deaf.get(), place, &size), 0);
        return {"127.0.0.1", ntohs(address.sin_port), "/"};
    }

    Class definition;
    Instance indication;
    DeliverySettings settings;
    KeepingLog log;
    Descriptor deaf{socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)};
};

TEST_F(DeliveryQueueTest, SendsAllInOrder) {
    LiveListener listener;
    DeliveryQueue queue("d", listener.url(), settings, log);
    put(queue, 100);
    const auto numbers = listener.waitFor(100);
    for (std::size_t i = 0; i < 100; ++i) EXPECT_EQ(numbers[i], static_cast<std::int64_t>(i));
    const DeliveryCounts counts = waitFor(queue, 100);
    EXPECT_EQ(counts.sent, 100U);
    EXPECT_EQ(counts.waiting, 0U);
}

TEST_F(DeliveryQueueTest, TriesAgainBeforeItGoesOn) {
    settings.manner.attempts = 2;
    LiveListener listener;
    listener.judge = [](std::size_t before) {
        if (before < 2) throw CimError(CimCode::failed, "not yet");
    };
    DeliveryQueue queue("d", listener.url(), settings, log);
    put(queue, 2);
    EXPECT_EQ(listener.waitFor(4), (std::vector<std::int64_t>{0, 0, 0, 1}));
    const DeliveryCounts counts = waitFor(queue, 2);
    EXPECT_EQ(counts.sent, 2U);
    EXPECT_EQ(counts.retried, 2U);
}

TEST_F(DeliveryQueueTest, TriesAgainWhenAnAnswerAsksForMoreMemoryThanThereIs) {
    settings.manner.attempts = 1;
    const RawListener listener("HTTP/1.1 200 OK\r\nContent-Length: 1000000000000000000\r\n\r\nabc");
    DeliveryQueue queue("greedy", listener.url(), settings, log);
    put(queue, 2);
    const DeliveryCounts counts = waitFor(queue, 2);
    EXPECT_EQ(counts.dropped, 2U);
    EXPECT_GE(counts.retried, 1U);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines()[0].find("destination greedy ("), 0U) << log.lines()[0];
}

TEST_F(DeliveryQueueTest, GivesUpAndCounts) {
    DeliveryQueue queue("dead", nobody(), settings, log);
    put(queue, 50);
    const DeliveryCounts counts = waitFor(queue, 50);
    EXPECT_EQ(counts.raised, 50U);
    EXPECT_EQ(counts.dropped, 50U);
    EXPECT_EQ(log.lines().size(), 1U) << "a line in ten seconds";
    EXPECT_NE(log.lines()[0].find("Connection refused"), std::string::npos);
}

TEST_F(DeliveryQueueTest, DropsWhatFindsNoRoomAndLeavesAGapInTheSequence) {
    std::mutex gate;
    std::unique_lock closed(gate);
    settings.queueItems = 2;
    LiveListener listener;
    listener.judge = [&](std::size_t) { const std::lock_guard lock(gate); };
    DeliveryQueue queue("d", listener.url(), settings, log);
    put(queue);
    listener.waitFor(1);
    put(queue, 3);
    EXPECT_EQ(queue.counts().dropped, 2U);
    EXPECT_EQ(queue.counts().waiting, 2U);
    closed.unlock();
    waitFor(queue, 4);
    put(queue);
    EXPECT_EQ(listener.waitFor(3), (std::vector<std::int64_t>{0, 1, 4}));
    waitFor(queue, 5);
}

TEST_F(DeliveryQueueTest, IsBoundedInBytes) {
    settings.queueBytes = 100;
    LiveListener listener;
    DeliveryQueue queue("d", listener.url(), settings, log);
    put(queue);
    EXPECT_EQ(queue.counts().dropped, 1U);
}

TEST_F(DeliveryQueueTest, HoldsNoMoreOfAMillionThanMayWaitForAListenerThatNeverAnswers) {
    settings.queueItems = 50;
    settings.attemptTime = std::chrono::hours(1);
    const ListenSocket silent("127.0.0.1", 0);
    auto queue = std::make_unique<DeliveryQueue>(
        "silent", ListenerUrl{"127.0.0.1", silent.port(), "/"}, settings, log);
    ASSERT_NO_FATAL_FAILURE(flood(*queue));
    const DeliveryCounts counts = queue->counts();
    EXPECT_EQ(counts.sent, 0U);
    EXPECT_EQ(counts.waiting, settings.queueItems);
    expectAHandfulOfLines();
    queue.reset();
    EXPECT_NE(log.lines().back().find("1000000 indications raised, 0 sent, 1000000 dropped"),
              std::string::npos);
}

TEST_F(DeliveryQueueTest, HoldsNoMoreOfAMillionThanMayWaitForADeadListener) {
    settings.queueItems = 50;
    settings.manner = {3, std::chrono::hours(1)};
    DeliveryQueue queue("dead", nobody(), settings, log);
    ASSERT_NO_FATAL_FAILURE(flood(queue));
    const DeliveryCounts counts = queue.counts();
    EXPECT_EQ(counts.sent, 0U);
    EXPECT_EQ(counts.waiting, settings.queueItems);
    expectAHandfulOfLines();
}

TEST_F(DeliveryQueueTest, DropsAMillionForADeadListenerThatIsGivenUpEachTime) {
    settings.queueItems = 50;
    DeliveryQueue queue("dead", nobody(), settings, log);
    ASSERT_NO_FATAL_FAILURE(flood(queue));
    EXPECT_EQ(waitFor(queue, million).dropped, static_cast<std::uint64_t>(million));
    EXPECT_EQ(queue.counts().waiting, 0U);
    expectAHandfulOfLines();
}

TEST_F(DeliveryQueueTest, GoesOnBehindAMillionOfWhichMostFoundNoRoom) {
    std::mutex gate;
    std::unique_lock closed(gate);
    settings.queueItems = 50;
    LiveListener listener;
    listener.judge = [&](std::size_t) { const std::lock_guard lock(gate); };
    DeliveryQueue queue("d", listener.url(), settings, log);
    put(queue);
    listener.waitFor(1);
    EXPECT_NO_FATAL_FAILURE(flood(queue, 1));
    closed.unlock();
    EXPECT_EQ(waitFor(queue, million + 1).sent, 50U);
    put(queue);
    EXPECT_EQ(listener.waitFor(51).back(), million + 1) << "what was lost is a gap";
    waitFor(queue, million + 2);
}

TEST_F(DeliveryQueueTest, HasCountsThatAddUpAtAnyMoment) {
    constexpr int count = 2'000;
    LiveListener listener;
    DeliveryQueue queue("d", listener.url(), settings, log);
    std::thread provider([&] { put(queue, count); });
    DeliveryCounts counts;
    int wrong = 0;
    while (counts.raised < count) {
        counts = queue.counts();
        if (counts.raised != counts.sent + counts.dropped + counts.waiting) ++wrong;
    }
    provider.join();
    EXPECT_EQ(wrong, 0);
    listener.waitFor(count);
}

TEST_F(DeliveryQueueTest, EndsWithoutWaitingForAListenerThatNeverAnswers) {
    settings.attemptTime = std::chrono::hours(1);
    const ListenSocket silent("127.0.0.1", 0);
    auto queue = std::make_unique<DeliveryQueue>(
        "silent", ListenerUrl{"127.0.0.1", silent.port(), "/"}, settings, log);
    put(*queue, 5);
    queue.reset();
    EXPECT_NE(log.lines().back().find("5 indications raised, 0 sent, 5 dropped"),
              std::string::npos);
}

TEST_F(DeliveryQueueTest, SendsWhatWaitsWhenItEnds) {
    LiveListener listener;
    IndicationDelivery delivery(settings, log);
    const auto queue = delivery.open("d", listener.url());
    put(*queue, 20);
    delivery.stop(std::chrono::seconds(60));
    EXPECT_EQ(delivery.counts().at(0).sent, 20U);
    put(*queue);
    EXPECT_EQ(delivery.counts().at(0).dropped, 1U);
}

TEST_F(DeliveryQueueTest, KeepsNothingThatComesWhileItEnds) {
    LiveListener listener;
    // Takes its time to be written, so that the end comes in the middle.
    indication.set("Text", Value::string(std::string(100'000, '<')));
    for (int round = 0; round < 20; ++round) {
        DeliveryQueue queue("d", listener.url(), settings, log);
        std::atomic<bool> isOver{false};
        std::thread provider([&] {
            while (!isOver) put(queue);
        });
        listener.waitFor(static_cast<std::size_t>(round) + 1);
        queue.beginEnd();
        queue.finish(Clock::now());
        isOver = true;
        provider.join();
        const DeliveryCounts counts = queue.counts();
        EXPECT_EQ(counts.waiting, 0U) << "in round " << round;
        EXPECT_EQ(counts.raised, counts.sent + counts.dropped);
    }
}

TEST_F(DeliveryQueueTest, SaysThatReferencesLeadToThisHost) {
    LiveListener listener;
    DeliveryQueue queue("d", listener.url(), settings, log);
    indication.set("Source", Value::reference({"", "root/test", "TST_Fan", {}}));
    put(queue);
    listener.waitFor(1);
    EXPECT_NE(listener.body().find("<HOST>" + hostName() + "</HOST>"), std::string::npos);
}

TEST_F(DeliveryQueueTest, CountsWhatCannotBeWritten) {
    LiveListener listener;
    DeliveryQueue queue("d", listener.url(), settings, log);
    indication.set("Bad", Value::array(CimType::reference, {}));
    EXPECT_THROW(put(queue), CimError);
    EXPECT_EQ(queue.counts().dropped, 1U);
}

TEST_F(DeliveryQueueTest, FindsHostsByName) {
    LiveListener listener;
    ListenerUrl url = listener.url();
    url.host = "localhost";
    DeliveryQueue queue("d", url, settings, log);
    put(queue);
    EXPECT_EQ(waitFor(queue, 1).sent, 1U);
}

}  // namespace
}  // namespace cimhost
