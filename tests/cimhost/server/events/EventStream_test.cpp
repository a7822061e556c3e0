#include "cimhost/server/events/EventStream.h"

#include "tests/cimhost/http/MemoryStream.h"
#include "tests/cimhost/http/RawClient.h"
#include "tests/cimhost/http/TestServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

constexpr std::string_view get = "GET /events HTTP/1.1\r\nHost: localhost\r\n\r\n";

struct EventStreamTest : testing::Test {
    EventFeed feed;
    EventStream events{feed, {}};
    HttpLimits limits;
    HttpServer server{ListenSocket("127.0.0.1", 0),
                      {.handler = events, .limits = limits, .pages = &events}};

    EventStreamTest() { server.start(); }
    std::uint16_t port() const { return server.listener().port(); }
};

TEST_F(EventStreamTest, SaysHelloFirst) {
    RawClient client(port());
    client.send(get);
    const std::string reply = client.readUntil("}\n\n");
    EXPECT_EQ(statusOf(reply), 200);
    EXPECT_EQ(headerOf(reply, "Content-Type"), "text/event-stream");
    EXPECT_EQ(headerOf(reply, "Cache-Control"), "no-store");
    EXPECT_THAT(reply, EndsWith("\r\nevent: hello\ndata: {\"program\":\"cimhost\",\"version\":\""
                                "1.0.0\",\"target\":null,\"destination\":\"console:\","
                                "\"logs\":true}\n\n"));
}

TEST_F(EventStreamTest, SaysWhoseEventsTheyAre) {
    EventStream others(feed, {"https://\"host\":5989", "http://here:1/", false});
    feed.end();
    MemoryStream stream;
    SpoolStore store{0, 0};
    HttpReply reply(stream, store, {});
    others.handle({}, reply);
    EXPECT_THAT(stream.sent,
                HasSubstr(R"("target":"https://\"host\":5989","destination":"http://here:1/",)"
                          R"("logs":false})"));
}

TEST_F(EventStreamTest, SendsWhatIsPublished) {
    RawClient client(port());
    client.send(get);
    client.readUntil("}\n\n");
    feed.publish("log", "{1}");
    EXPECT_THAT(client.readUntil("{1}\n\n"), HasSubstr("event: log\ndata: {1}\n\n"));
    feed.publish("log", "{2}");
    feed.publish("request", "{3}");
    EXPECT_THAT(client.readUntil("{3}\n\n"),
                HasSubstr("event: log\ndata: {2}\n\nevent: request\ndata: {3}\n\n"));
}

TEST_F(EventStreamTest, TellsHowManyFoundNoRoom) {
    MemoryStream stream;
    SpoolStore store{0, 0};
    HttpReply reply(stream, store, {});
    int sends = 0;
    stream.onSend = [&] {
        if (++sends > 1) return;
        for (std::size_t i = 0; i < EventFeed::queueEvents + 2; ++i) feed.publish("log", "{}");
        feed.publish("log", "\"" + std::string(100'000, 'x') + "\"");
        feed.end();
    };
    events.handle({}, reply);
    EXPECT_THAT(bodyOf(stream.sent + "0\r\n\r\n"),
                HasSubstr("}\n\nevent: dropped\ndata: {\"count\":3}\n\nevent: log\ndata: {}\n\n"));
    EXPECT_THAT(stream.sent, HasSubstr("xxx\"\n\n")) << "longer than a buffer";
}

TEST_F(EventStreamTest, EndsWithTheFeed) {
    RawClient client(port());
    client.send(get);
    client.readUntil("}\n\n");
    feed.publish("log", "{last}");
    feed.end();
    EXPECT_THAT(client.readUntil("0\r\n\r\n"), HasSubstr("{last}"));
}

TEST_F(EventStreamTest, EndsWithTheServer) {
    RawClient client(port());
    client.send(get);
    client.readUntil("}\n\n");
    EXPECT_TRUE(server.stop(std::chrono::seconds(10)));
    EXPECT_THAT(client.readAll(), EndsWith("0\r\n\r\n"));
}

TEST_F(EventStreamTest, IsWatchedNoMoreOnceTheClientIsGone) {
    std::optional<RawClient> client(port());
    client->send(get);
    client->readUntil("}\n\n");
    EXPECT_TRUE(feed.isWatched());
    client.reset();
    EXPECT_TRUE(await([&] { return !feed.isWatched(); }));
}

}  // namespace
}  // namespace cimhost
