#include "cimhost/http/HttpServer.h"

#include "tests/cimhost/http/RawClient.h"
#include "tests/cimhost/http/TestServer.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <list>
#include <thread>
#include <vector>

namespace cimhost {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// Holds requests in the handler until the test opens it.
class Barrier {
public:
    void wait() {
        std::unique_lock lock(_mutex);
        ++_waiting;
        _changed.wait(lock, [this] { return _isOpen; });
    }
    void open() {
        const std::lock_guard lock(_mutex);
        _isOpen = true;
        _changed.notify_all();
    }
    int waiting() {
        const std::lock_guard lock(_mutex);
        return _waiting;
    }

private:
    std::mutex _mutex;
    std::condition_variable _changed;
    int _waiting = 0;
    bool _isOpen = false;
};

HttpLimits with(std::size_t connections, milliseconds evictionTime) {
    HttpLimits limits;
    limits.connections = connections;
    limits.evictionTime = evictionTime;
    return limits;
}

TEST(HttpServer, AnswersOnAFreePort) {
    TestServer server;
    EXPECT_EQ(server.server.listener().name(), "127.0.0.1:" + std::to_string(server.port()));
    RawClient client(server.port());
    client.send(post("hello"));
    const std::string reply = client.readReply();
    EXPECT_EQ(statusOf(reply), 200);
    EXPECT_EQ(bodyOf(reply), "hello");
}

TEST(HttpServer, ServesRepliesOfAnySizeWhole) {
    TestServer server([](const HttpRequest& request, HttpReply& reply) {
        const std::string piece(777, request.body.at(0));
        for (std::size_t left = std::stoul(request.body.substr(1)); left > 0;) {
            const std::size_t count = std::min(left, piece.size());
            reply.write(std::string_view(piece).substr(0, count));
            left -= count;
        }
    });
    RawClient client(server.port());
    for (const std::size_t size : std::initializer_list<std::size_t>{
             1, 1000, 65535, 65536, 65537, 100'000, 131072, 131073, 1'000'000}) {
        client.send(post("x" + std::to_string(size)));
        EXPECT_EQ(bodyOf(client.readReply()), std::string(size, 'x')) << size;
    }
}

TEST(HttpServer, ServesExactlyTheLimitAndAnswers503BeyondIt) {
    TestServer server({}, with(128, seconds(3600)));
    std::list<RawClient> clients;
    for (int i = 0; i < 128; ++i) {
        clients.emplace_back(server.port());
        clients.back().send(post("x"));
    }
    for (RawClient& client : clients) EXPECT_EQ(statusOf(client.readReply()), 200);
    RawClient oneMore(server.port());
    const std::string reply = oneMore.readReply();
    EXPECT_EQ(statusOf(reply), 503);
    EXPECT_EQ(headerOf(reply, "Connection"), "close");
    clients.front().send(post("still"));
    EXPECT_EQ(bodyOf(clients.front().readReply()), "still");
    clients.pop_back();
    ASSERT_TRUE(server.awaitConnections(127));
    RawClient another(server.port());
    another.send(post("now"));
    EXPECT_EQ(bodyOf(another.readReply()), "now");
}

TEST(HttpServer, MakesRoomByEndingTheConnectionThatWaitedLongest) {
    TestServer server({}, with(2, milliseconds(0)));
    RawClient oldest(server.port());
    oldest.send("POST / HT");
    ASSERT_TRUE(server.awaitConnections(1));
    std::this_thread::sleep_for(milliseconds(50));
    RawClient older(server.port());
    ASSERT_TRUE(server.awaitConnections(2));
    RawClient newest(server.port());
    newest.send(post("served"));
    EXPECT_EQ(bodyOf(newest.readReply()), "served");
    EXPECT_EQ(statusOf(oldest.readReply()), 408) << "half a request gets its answer";
    older.send(post("still"));
    EXPECT_EQ(bodyOf(older.readReply()), "still");
}

TEST(HttpServer, MakesRoomByEndingAReplyThatNobodyReads) {
    LongReply longReply;
    TestServer server(
        [&](const HttpRequest& request, HttpReply& reply) {
            if (request.body == "long") return longReply(request, reply);
            reply.write(request.body);
        },
        with(2, milliseconds(500)));
    RawClient reading(server.port());
    reading.send(post("first"));
    EXPECT_EQ(bodyOf(reading.readReply()), "first");
    RawClient stalled(server.port());
    stalled.send(post("long"));
    ASSERT_TRUE(await([&] { return longReply.written == 1; }));
    EXPECT_TRUE(await([&] {
        reading.send(post("again"));
        EXPECT_EQ(bodyOf(reading.readReply()), "again");
        RawClient newest(server.port());
        newest.send(post("served"));
        return bodyOf(newest.readReply()) == "served";
    })) << "once nothing of the long reply has been taken for a while";
    reading.send(post("still"));
    EXPECT_EQ(bodyOf(reading.readReply()), "still");
}

TEST(HttpServer, DoesNotEndAConnectionThatIsWorkedFor) {
    Barrier barrier;
    TestServer server(
        [&](const HttpRequest&, HttpReply& reply) {
            barrier.wait();
            reply.write("done");
        },
        with(1, milliseconds(0)));
    RawClient busy(server.port());
    busy.send(post(""));
    ASSERT_TRUE(await([&] { return barrier.waiting() == 1; }));
    EXPECT_EQ(statusOf(RawClient(server.port()).readReply()), 503);
    barrier.open();
    EXPECT_EQ(bodyOf(busy.readReply()), "done");
}

TEST(HttpServer, ServesOthersWhileHundredsOfClientsTrickle) {
    HttpLimits limits = with(16, milliseconds(10));
    limits.requestTime = milliseconds(300);
    limits.lingerTime = milliseconds(50);
    TestServer server({}, limits);
    const std::size_t before = openDescriptors();
    {
        std::list<RawClient> trickling;
        for (int i = 0; i < 256; ++i) {
            trickling.emplace_back(server.port());
            trickling.back().send("P");
        }
        for (int i = 0; i < 20; ++i) {
            for (RawClient& client : trickling) client.send("x");
            ASSERT_TRUE(await([&] {
                RawClient client(server.port());
                client.send(post("in between"));
                return bodyOf(client.readReply()) == "in between";
            }));
        }
        EXPECT_TRUE(server.awaitConnections(0)) << "all closed by their deadline";
    }
    EXPECT_TRUE(await([&] { return openDescriptors() <= before; }));
}

TEST(HttpServer, KeepsRepliesOpenForTheirClients) {
    OpenReply openReply;
    TestServer server(std::ref(openReply));
    RawClient client(server.port());
    client.send(post(""));
    EXPECT_EQ(headerOf(client.readUntil("\r\n\r\n"), "Transfer-Encoding"), "chunked");
    ++openReply.words;
    EXPECT_EQ(client.readUntil("word \r\n"), "5\r\nword \r\n");
    ++openReply.words;
    EXPECT_EQ(client.readUntil("word \r\n"), "5\r\nword \r\n");
}

TEST(HttpServer, KeepsNoMoreRepliesOpenThanItsLimit) {
    OpenReply openReply;
    TestServer server(std::ref(openReply));
    std::list<RawClient> clients;
    for (std::size_t i = 0; i < server.limits.openReplies; ++i) {
        clients.emplace_back(server.port()).send(post(""));
        EXPECT_EQ(statusOf(clients.back().readUntil("\r\n\r\n")), 200);
    }
    RawClient oneMore(server.port());
    oneMore.send(post(""));
    EXPECT_EQ(statusOf(oneMore.readReply()), 503);
    clients.pop_front();
    EXPECT_TRUE(await([&] {
        RawClient& another = clients.emplace_back(server.port());
        another.send(post(""));
        return statusOf(another.readUntil("\r\n\r\n")) == 200;
    })) << "a client that leaves is missed";
}

TEST(HttpServer, LeavesHalfOfItsConnectionsToOthersThanOpenReplies) {
    OpenReply openReply;
    TestServer server(std::ref(openReply), with(4, milliseconds(0)));
    std::list<RawClient> clients;
    for (int i = 0; i < 2; ++i) clients.emplace_back(server.port()).send(post(""));
    ASSERT_TRUE(await([&] { return openReply.begun == 2; }));
    for (int i = 0; i < 6; ++i) {
        RawClient& other = clients.emplace_back(server.port());
        other.send(post(""));
        EXPECT_EQ(statusOf(other.readReply()), 503) << "served, and told that no more stay open";
    }
    EXPECT_EQ(server.handler.calls, 8);
    EXPECT_EQ(openReply.ended, 0) << "no open reply makes room for others";
}

TEST(HttpServer, MakesRoomByEndingAnOpenReplyThatNobodyReads) {
    TestServer server(
        [](const HttpRequest& request, HttpReply& reply) {
            if (request.body != "open") return;
            while (!reply.isEnding()) {
                reply.write(std::string(100'000, 'x'));
                reply.flush();
            }
        },
        with(1, milliseconds(0)));
    RawClient stalled(server.port());
    stalled.send(post("open"));
    ASSERT_TRUE(await([&] {
        RawClient other(server.port());
        other.send(post(""));
        return statusOf(other.readReply()) == 200;
    }));
}

TEST(HttpServer, GivesUpOnAnOpenReplyThatNobodyReads) {
    HttpLimits limits;
    limits.replyTime = milliseconds(50);
    TestServer server(
        [](const HttpRequest&, HttpReply& reply) {
            for (;;) {
                reply.write(std::string(100'000, 'x'));
                reply.flush();
            }
        },
        limits);
    RawClient client(server.port());
    client.send(post(""));
    ASSERT_TRUE(await([&] { return server.handler.calls == 1; }));
    EXPECT_TRUE(server.awaitConnections(0));
}

// Shorter than what a client has to take a piece of a reply: a stop that waits for one fails.
constexpr seconds soon{20};

TEST(HttpServer, EndsOpenRepliesWhenItStops) {
    OpenReply openReply;
    TestServer server(std::ref(openReply));
    std::list<RawClient> clients;
    for (int i = 0; i < 16; ++i) clients.emplace_back(server.port()).send(post(""));
    ASSERT_TRUE(await([&] { return openReply.begun == 16; }));
    EXPECT_TRUE(server.server.stop(soon));
    EXPECT_EQ(openReply.ended, 16);
    EXPECT_TRUE(clients.front().readAll().ends_with("\r\n\r\n0\r\n\r\n")) << "in order";
}

TEST(HttpServer, BreaksAnOpenReplyThatNobodyReadsWhenItStops) {
    TestServer server([](const HttpRequest&, HttpReply& reply) {
        for (;;) {
            reply.write(std::string(100'000, 'x'));
            reply.flush();
        }
    });
    RawClient client(server.port());
    client.send(post(""));
    ASSERT_TRUE(await([&] { return server.handler.calls == 1; }));
    EXPECT_TRUE(server.server.stop(soon));
}

TEST(HttpServer, ClosesAnIdleConnectionInSilence) {
    HttpLimits limits;
    limits.idleTime = milliseconds(20);
    TestServer server({}, limits);
    RawClient idle(server.port());
    EXPECT_TRUE(idle.isClosedByServer());
    RawClient client(server.port());
    client.send(post("x"));
    EXPECT_EQ(statusOf(client.readReply()), 200);
    EXPECT_TRUE(client.isClosedByServer());
}

TEST(HttpServer, GivesARequestNoMoreTimeForAByteNowAndThen) {
    HttpLimits limits;
    limits.requestTime = milliseconds(100);
    limits.lingerTime = milliseconds(20);
    TestServer server({}, limits);
    RawClient client(server.port());
    std::thread trickle([&] {
        for (int i = 0; i < 1000 && client.send("P"); ++i) {
            std::this_thread::sleep_for(milliseconds(5));
        }
    });
    EXPECT_TRUE(server.awaitConnections(1));
    EXPECT_TRUE(server.awaitConnections(0));
    trickle.join();
}

TEST(HttpServer, KeepsNoHandlerWaitingForAClientThatDoesNotRead) {
    LongReply reply;
    HttpLimits limits;
    limits.spoolMemoryBytes = 1'000'000;
    TestServer server(std::ref(reply), limits);
    RawClient client(server.port());
    client.send(post(""));
    EXPECT_TRUE(await([&] { return reply.written == 1; }));
    EXPECT_EQ(bodyOf(client.readReply()), LongReply::text()) << "at its own pace it has all of it";
    client.send(post(""));
    EXPECT_EQ(bodyOf(client.readReply()), LongReply::text());
}

TEST(HttpServer, GivesUpOnAClientThatDoesNotRead) {
    LongReply reply;
    HttpLimits limits;
    limits.replyTime = milliseconds(50);
    TestServer server(std::ref(reply), limits);
    const std::size_t before = openDescriptors();
    RawClient client(server.port());
    client.send(post(""));
    EXPECT_TRUE(await([&] { return reply.written == 1; }));
    EXPECT_TRUE(server.awaitConnections(0));
    EXPECT_LE(openDescriptors(), before + 1) << "the client's own, and no file";
}

TEST(HttpServer, BreaksAReplyThatFindsNoRoomToWait) {
    std::atomic<bool> isThrown = false;
    HttpLimits limits;
    limits.spoolMemoryBytes = 1'000'000;
    limits.spoolDiskBytes = 1'000'000;
    TestServer server(
        [&](const HttpRequest&, HttpReply& reply) {
            try {
                for (;;) reply.write(std::string(100'000, 'x'));
            } catch (const SpoolError& error) {
                isThrown = error.kind() == SpoolError::Kind::full;
                throw;
            }
        },
        limits);
    RawClient client(server.port());
    client.send(post(""));
    EXPECT_TRUE(await([&] { return isThrown.load(); }));
    EXPECT_EQ(client.readAll().find("\r\n0\r\n\r\n"), std::string::npos)
        << "no end that the client could trust";
}

TEST(HttpServer, EndsTheOperationOfAClientThatVanishes) {
    std::atomic<bool> isThrown = false;
    TestServer server([&](const HttpRequest&, HttpReply& reply) {
        try {
            for (;;) reply.write("on and on ");
        } catch (const StreamError&) {
            isThrown = true;
            throw;
        }
    });
    {
        RawClient client(server.port());
        client.send(post(""));
        client.reset();
    }
    EXPECT_TRUE(await([&] { return isThrown.load(); }));
    EXPECT_TRUE(server.awaitConnections(0));
}

TEST(HttpServer, StopsAtOnceWithIdleAndHalfConnections) {
    TestServer server;
    RawClient idle(server.port());
    RawClient half(server.port());
    half.send("POST / HT");
    ASSERT_TRUE(server.awaitConnections(2));
    EXPECT_TRUE(server.server.stop(seconds(10)));
    EXPECT_TRUE(idle.isClosedByServer());
    const int status = statusOf(half.readAll());
    EXPECT_TRUE(status == 503 || status == 0);
}

TEST(HttpServer, LetsARunningRequestFinishWhenItStops) {
    Barrier barrier;
    TestServer server([&](const HttpRequest&, HttpReply& reply) {
        barrier.wait();
        reply.write(std::string(200'000, 'x'));
    });
    RawClient client(server.port());
    client.send(post(""));
    ASSERT_TRUE(await([&] { return barrier.waiting() == 1; }));
    bool isStopped = false;
    std::thread stop([&] { isStopped = server.server.stop(seconds(10)); });
    barrier.open();
    EXPECT_EQ(bodyOf(client.readReply()), std::string(200'000, 'x'));
    stop.join();
    EXPECT_TRUE(isStopped);
}

TEST(HttpServer, BreaksAReplyThatNobodyReadsWhenItStops) {
    TestServer server([](const HttpRequest&, HttpReply& reply) {
        for (;;) reply.write(std::string(100'000, 'x'));
    });
    RawClient client(server.port());
    client.send(post(""));
    ASSERT_TRUE(await([&] { return server.handler.calls == 1; }));
    EXPECT_TRUE(server.server.stop(milliseconds(20)));
}

TEST(HttpServer, WaitsForNoClientThatDoesNotReadWhenItStops) {
    LongReply reply;
    TestServer server(std::ref(reply));
    RawClient client(server.port());
    client.send(post(""));
    ASSERT_TRUE(await([&] { return reply.written == 1; }));
    EXPECT_TRUE(server.server.stop(soon));
}

TEST(HttpServer, EndsALongReplyThatIsStillMadeWhenItStops) {
    TestServer server([](const HttpRequest&, HttpReply& reply) {
        for (;;) {
            reply.write(std::string(10'000, 'x'));
            std::this_thread::sleep_for(milliseconds(1));
        }
    });
    RawClient client(server.port());
    client.send(post(""));
    ASSERT_TRUE(await([&] { return server.handler.calls == 1; }));
    EXPECT_TRUE(server.server.stop(soon));
}

TEST(HttpServer, StillAnswersARequestThatTakesItsTimeWhenItStops) {
    Barrier barrier;
    TestServer server([&](const HttpRequest&, HttpReply& reply) {
        barrier.wait();
        reply.write("late");
    });
    RawClient client(server.port());
    client.send(post(""));
    ASSERT_TRUE(await([&] { return barrier.waiting() == 1; }));
    bool isStopped = false;
    std::thread stop([&] { isStopped = server.server.stop(seconds(60)); });
    std::this_thread::sleep_for(milliseconds(700));
    barrier.open();
    EXPECT_EQ(bodyOf(client.readReply()), "late");
    stop.join();
    EXPECT_TRUE(isStopped);
}

TEST(HttpServer, SaysWhenAHandlerDoesNotReturn) {
    Barrier barrier;
    TestServer server([&](const HttpRequest&, HttpReply&) { barrier.wait(); });
    RawClient client(server.port());
    client.send(post(""));
    ASSERT_TRUE(await([&] { return barrier.waiting() == 1; }));
    EXPECT_FALSE(server.server.stop(milliseconds(0)));
    barrier.open();
}

/// Returns how many replies came; each must be whole.
int askUntilClosed(RawClient& client) {
    for (int answered = 0;; ++answered) {
        if (!client.send(post("x"))) return answered;
        const std::string reply = client.readReply();
        if (reply.empty()) return answered;
        EXPECT_EQ(bodyOf(reply), std::string(100'000, 'x'));
    }
}

TEST(HttpServer, StopsInOrderUnderLoadAHundredTimes) {
    const std::size_t before = openDescriptors();
    for (int round = 0; round < 100; ++round) {
        TestServer server([](const HttpRequest& request, HttpReply& reply) {
            for (int i = 0; i < 10; ++i) reply.write(std::string(10'000, request.body.at(0)));
        });
        std::list<RawClient> clients;
        std::vector<std::thread> threads;
        std::atomic<int> answered = 0;
        for (int i = 0; i < 4; ++i) {
            RawClient& client = clients.emplace_back(server.port());
            threads.emplace_back([&] { answered += askUntilClosed(client); });
        }
        EXPECT_TRUE(await([&] { return server.handler.calls >= round % 7; }));
        EXPECT_TRUE(server.server.stop(seconds(10)));
        for (std::thread& thread : threads) thread.join();
        EXPECT_LE(answered, server.handler.calls);
    }
    EXPECT_LE(openDescriptors(), before);
}

TEST(HttpServer, KeepsNoThreadOrDescriptorOfConnectionsThatEnded) {
    TestServer server;
    const std::size_t before = openDescriptors();
    for (int i = 0; i < 200; ++i) {
        RawClient client(server.port());
        client.send(post("x"));
        EXPECT_EQ(statusOf(client.readReply()), 200);
    }
    EXPECT_TRUE(server.awaitConnections(0));
    EXPECT_LE(openDescriptors(), before);
}

TEST(HttpServer, ServesManyConnectionsAtOnce) {
    TestServer server;
    std::vector<std::thread> clients;
    for (int i = 0; i < 8; ++i) {
        clients.emplace_back([&, i] {
            RawClient client(server.port());
            for (int j = 0; j < 200; ++j) {
                const std::string body = std::to_string(i * 1000 + j);
                client.send(post(body));
                EXPECT_EQ(bodyOf(client.readReply()), body);
            }
        });
    }
    for (std::thread& client : clients) client.join();
    EXPECT_EQ(server.handler.calls, 1600);
}

}  // namespace
}  // namespace cimhost
