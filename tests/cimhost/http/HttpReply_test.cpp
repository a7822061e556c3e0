#include "cimhost/http/HttpReply.h"

#include "tests/cimhost/http/MemoryStream.h"
#include "tests/cimhost/http/RawClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace cimhost {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr std::size_t buffer = HttpReply::bufferBytes;

struct HttpReplyTest : testing::Test {
    MemoryStream stream;
    SpoolStore store{buffer, 4 * buffer};
    HttpReply reply{stream, store, {}};

    static std::string numbered(std::size_t size) {
        std::string text;
        for (std::size_t i = 0; text.size() < size; ++i) text += std::to_string(i) + " ";
        return text.substr(0, size);
    }
};

TEST_F(HttpReplyTest, LeavesInOnePieceWithItsLength) {
    reply.addHeader({"Content-Type", "text/plain"});
    reply.write("one ");
    reply.write("two");
    EXPECT_EQ(stream.sent, "");
    reply.finish();
    EXPECT_EQ(stream.sendCount, 1U);
    EXPECT_THAT(stream.sent, testing::StartsWith("HTTP/1.1 200 OK\r\nDate: "));
    EXPECT_THAT(stream.sent, HasSubstr("\r\nContent-Type: text/plain\r\n"));
    EXPECT_THAT(stream.sent, testing::EndsWith("\r\nContent-Length: 7\r\n\r\none two"));
    EXPECT_EQ(reply.sentBytes(), stream.sent.size());
}

TEST_F(HttpReplyTest, HoldsAFullBufferBack) {
    reply.write(std::string(buffer, 'a'));
    EXPECT_EQ(stream.sendCount, 0U);
    EXPECT_TRUE(reply.restart());
    reply.write("b");
    reply.finish();
    EXPECT_EQ(bodyOf(stream.sent), "b");
}

TEST_F(HttpReplyTest, StreamsWhatIsLongerInChunks) {
    std::string text;
    for (std::size_t i = 0; i < 3 * buffer + 5; ++i) text += static_cast<char>('a' + i % 26);
    reply.announceTrailers("CIMError");
    for (std::size_t at = 0; at < text.size(); at += 1000) {
        reply.write(std::string_view(text).substr(at, 1000));
    }
    EXPECT_FALSE(reply.restart());
    reply.finish();
    EXPECT_EQ(headerOf(stream.sent, "Transfer-Encoding"), "chunked");
    EXPECT_EQ(headerOf(stream.sent, "Trailer"), "CIMError");
    EXPECT_EQ(headerOf(stream.sent, "Content-Length"), "");
    EXPECT_EQ(bodyOf(stream.sent), text);
    EXPECT_THAT(stream.sent, testing::EndsWith("\r\n0\r\n\r\n"));
    EXPECT_EQ(stream.sendCount, 4U);
    EXPECT_TRUE(reply.keepsAlive());
}

TEST_F(HttpReplyTest, TakesOneLongTextAsWellAsManyShortOnes) {
    const std::string text(5 * buffer + 1, 'x');
    reply.write(text);
    reply.finish();
    EXPECT_EQ(bodyOf(stream.sent), text);
}

TEST_F(HttpReplyTest, EndsAChunkedReplyWithItsTrailers) {
    reply.write(std::string(buffer + 1, 'a'));
    reply.setTrailer({"CIMStatusCode", "1"});
    reply.finish();
    EXPECT_THAT(stream.sent, testing::EndsWith("a\r\n0\r\nCIMStatusCode: 1\r\n\r\n"));
}

TEST_F(HttpReplyTest, StreamsToHttp10UpToTheEndOfTheConnection) {
    HttpReply old(stream, store, {.isHttp11 = false, .keepAlive = true});
    const std::string text(2 * buffer + 7, 'o');
    old.write(text);
    old.finish();
    EXPECT_FALSE(old.keepsAlive());
    EXPECT_EQ(headerOf(stream.sent, "Transfer-Encoding"), "");
    EXPECT_EQ(headerOf(stream.sent, "Connection"), "close");
    EXPECT_EQ(bodyOf(stream.sent), text);
}

TEST_F(HttpReplyTest, KeepsAnHttp10ConnectionAliveWhenTheLengthIsKnown) {
    HttpReply old(stream, store, {.isHttp11 = false, .keepAlive = true});
    old.finish();
    EXPECT_EQ(headerOf(stream.sent, "Connection"), "keep-alive");
    EXPECT_TRUE(old.keepsAlive());
}

TEST_F(HttpReplyTest, SaysThatItCloses) {
    reply.closeAfterwards();
    reply.finish();
    EXPECT_EQ(headerOf(stream.sent, "Connection"), "close");
}

TEST_F(HttpReplyTest, RefusesInsteadOfWhatWasWritten) {
    reply.addHeader({"X-Dropped", "1"});
    reply.write("dropped");
    reply.refuse(400, {{"CIMError", "request-not-well-formed"}});
    reply.finish();
    EXPECT_THAT(stream.sent, testing::StartsWith("HTTP/1.1 400 Bad Request\r\n"));
    EXPECT_EQ(headerOf(stream.sent, "CIMError"), "request-not-well-formed");
    EXPECT_EQ(headerOf(stream.sent, "Content-Length"), "0");
    EXPECT_THAT(stream.sent, Not(HasSubstr("ropped")));
    EXPECT_EQ(reply.status(), 400);
}

TEST_F(HttpReplyTest, LetsNoValueBreakOutOfItsLine) {
    reply.addHeader({"CIMError", std::string_view("a\r\nSet-Cookie: b\n\0c", 19)});
    reply.finish();
    EXPECT_EQ(headerOf(stream.sent, "CIMError"), "a  Set-Cookie: b  c");
}

TEST_F(HttpReplyTest, NeverWaitsForTheClientWhileItIsWritten) {
    stream.takesAtOnce = 1000;
    const std::string text = numbered(4 * buffer + 5);
    for (std::size_t at = 0; at < text.size(); at += 1000) {
        reply.write(std::string_view(text).substr(at, 1000));
    }
    EXPECT_EQ(stream.waits, 0U);
    EXPECT_EQ(stream.sent.size(), 1000U);
    EXPECT_EQ(reply.sentBytes(), 1000U);
    reply.setTrailer({"CIMStatusCode", "1"});
    reply.finish();
    EXPECT_GT(stream.waits, 3U) << "each buffer has its own time";
    EXPECT_EQ(bodyOf(stream.sent), text);
    EXPECT_THAT(stream.sent, testing::EndsWith("\r\n0\r\nCIMStatusCode: 1\r\n\r\n"));
    EXPECT_EQ(reply.sentBytes(), stream.sent.size());
    EXPECT_EQ(store.memory.used() + store.disk.used(), 0U);
}

TEST_F(HttpReplyTest, GivesTheClientTimeAnewForEachBufferAndNotForLess) {
    SpoolStore onDisk(0, 4 * buffer);
    HttpReply waiting(stream, onDisk, {});
    stream.takesAtOnce = 0;
    waiting.write(numbered(3 * buffer));
    std::set<Clock::time_point> deadlines;
    stream.onSend = [&] { deadlines.insert(stream.deadline); };
    waiting.finish();
    EXPECT_EQ(bodyOf(stream.sent), numbered(3 * buffer));
    EXPECT_GE(stream.waits, 9U) << "little of it is in memory at a time";
    EXPECT_EQ(deadlines.size(), 4U) << "two chunks, what their lines are longer, and the end";
}

TEST_F(HttpReplyTest, PassesOnWhatWaitsAsSoonAsTheClientTakesIt) {
    stream.takesAtOnce = 0;
    const std::string text = numbered(4 * buffer);
    reply.write(text.substr(0, 2 * buffer));
    EXPECT_EQ(stream.sent, "");
    stream.takesAtOnce = buffer / 2;
    reply.write(text.substr(2 * buffer, buffer));
    EXPECT_EQ(stream.sent.size(), buffer / 2);
    stream.takesAtOnce = std::string::npos;
    reply.write(text.substr(3 * buffer));
    EXPECT_EQ(store.memory.used() + store.disk.used(), 0U) << "the client keeps up again";
    EXPECT_EQ(stream.waits, 0U);
    reply.finish();
    EXPECT_EQ(bodyOf(stream.sent), text);
}

TEST_F(HttpReplyTest, KeepsNothingOfWhatTheClientTakesAtOnce) {
    SpoolStore none(0, 0);
    HttpReply streamed(stream, none, {});
    const std::string text = numbered(9 * buffer);
    streamed.write(text);
    EXPECT_EQ(stream.sendCount, 8U) << "one piece a buffer";
    streamed.finish();
    EXPECT_EQ(bodyOf(stream.sent), text);
}

TEST_F(HttpReplyTest, StartsAnewAsLongAsAllOfItWaits) {
    stream.takesAtOnce = 0;
    reply.addHeader({"X-Dropped", "1"});
    reply.write(numbered(3 * buffer));
    EXPECT_TRUE(reply.restart());
    EXPECT_EQ(store.memory.used() + store.disk.used(), 0U);
    reply.write("error");
    reply.finish();
    EXPECT_EQ(headerOf(stream.sent, "Content-Length"), "5");
    EXPECT_EQ(headerOf(stream.sent, "X-Dropped"), "");
    EXPECT_EQ(bodyOf(stream.sent), "error");
    EXPECT_TRUE(reply.keepsAlive());
}

TEST_F(HttpReplyTest, RefusesInsteadOfWhatAllWaits) {
    stream.takesAtOnce = 0;
    reply.write(numbered(3 * buffer));
    reply.refuse(500);
    reply.finish();
    EXPECT_EQ(statusOf(stream.sent), 500);
    EXPECT_EQ(bodyOf(stream.sent), "");
}

TEST_F(HttpReplyTest, EndsWithTrailersWhenNoMoreCanWait) {
    SpoolStore small(buffer + 100, 0);
    HttpReply cut(stream, small, {});
    stream.takesAtOnce = 1000;
    const std::string text = numbered(9 * buffer);
    EXPECT_THROW(cut.write(text), SpoolError);
    EXPECT_THROW(cut.write(text), SpoolError) << "nothing goes on behind a gap";
    EXPECT_FALSE(cut.restart());
    cut.setTrailer({"CIMStatusCode", "27"});
    cut.finish();
    EXPECT_EQ(bodyOf(stream.sent), text.substr(0, buffer)) << "whole chunks";
    EXPECT_THAT(stream.sent, testing::EndsWith("\r\n0\r\nCIMStatusCode: 27\r\n\r\n"));
}

TEST_F(HttpReplyTest, CompletesAChunkThatTheClientTookInPart) {
    SpoolStore none(0, 0);
    HttpReply cut(stream, none, {});
    stream.takesAtOnce = 1000;
    const std::string text = numbered(9 * buffer);
    EXPECT_THROW(cut.write(text), SpoolError);
    cut.setTrailer({"CIMStatusCode", "27"});
    cut.finish();
    EXPECT_EQ(bodyOf(stream.sent), text.substr(0, buffer));
    EXPECT_THAT(stream.sent, testing::EndsWith("\r\n0\r\nCIMStatusCode: 27\r\n\r\n"));
}

TEST_F(HttpReplyTest, TellsOfAnErrorInFullWhenNothingHasLeft) {
    SpoolStore none(0, 0);
    HttpReply cut(stream, none, {});
    stream.takesAtOnce = 0;
    EXPECT_THROW(cut.write(numbered(9 * buffer)), SpoolError);
    EXPECT_TRUE(cut.restart());
    cut.write("error");
    cut.finish();
    EXPECT_EQ(bodyOf(stream.sent), "error");
}

TEST_F(HttpReplyTest, BreaksAReplyWithAGapThatNobodyStartedAnew) {
    SpoolStore none(0, 0);
    HttpReply cut(stream, none, {});
    stream.takesAtOnce = 0;
    EXPECT_THROW(cut.write(numbered(9 * buffer)), SpoolError);
    EXPECT_THROW(cut.finish(), StreamError);
    EXPECT_EQ(stream.sent, "");
}

TEST_F(HttpReplyTest, SpoolsForHttp10Too) {
    HttpReply old(stream, store, {.isHttp11 = false, .keepAlive = true});
    stream.takesAtOnce = 1000;
    const std::string text = numbered(3 * buffer + 7);
    old.write(text);
    EXPECT_EQ(stream.waits, 0U);
    old.finish();
    EXPECT_EQ(bodyOf(stream.sent), text);
}

TEST_F(HttpReplyTest, HasAnotherStatusWhenItIsTold) {
    reply.setStatus(404);
    reply.write("nothing here");
    reply.finish();
    EXPECT_EQ(statusOf(stream.sent), 404);
    EXPECT_EQ(bodyOf(stream.sent), "nothing here");
    EXPECT_EQ(reply.status(), 404);
}

TEST_F(HttpReplyTest, StreamsWithTheStatusThatItWasTold) {
    reply.setStatus(502);
    reply.write(numbered(2 * buffer));
    reply.finish();
    EXPECT_EQ(statusOf(stream.sent), 502);
    EXPECT_EQ(bodyOf(stream.sent), numbered(2 * buffer));
}

TEST_F(HttpReplyTest, ForgetsTheStatusWhenItIsStartedAnew) {
    reply.setStatus(404);
    EXPECT_TRUE(reply.restart());
    reply.finish();
    EXPECT_EQ(statusOf(stream.sent), 200);
}

TEST_F(HttpReplyTest, HasNeitherBodyNorLengthWhenNothingHasChanged) {
    reply.setStatus(304);
    reply.addHeader({"ETag", "\"1\""});
    reply.finish();
    EXPECT_THAT(stream.sent, testing::StartsWith("HTTP/1.1 304 Not Modified\r\n"));
    EXPECT_THAT(stream.sent, testing::EndsWith("\r\nETag: \"1\"\r\n\r\n"));
}

TEST_F(HttpReplyTest, SendsTheSameHeadWithoutTheBodyForHead) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{7}, buffer, 3 * buffer + 5}) {
        stream.sent.clear();
        HttpReply whole(stream, store, {});
        whole.write(numbered(size));
        whole.finish();
        const std::string head = stream.sent.substr(0, stream.sent.find("\r\n\r\n") + 4);
        stream.sent.clear();
        HttpReply part(stream, store, {.isForHead = true});
        part.write(numbered(size));
        part.finish();
        EXPECT_EQ(stream.sent.substr(stream.sent.find("\r\nDate:") + 37),
                  head.substr(head.find("\r\nDate:") + 37))
            << size;
        EXPECT_TRUE(part.keepsAlive());
    }
}

TEST_F(HttpReplyTest, SendsEachPieceThatIsFlushedAsAWholeChunk) {
    reply.addHeader({"Content-Type", "text/event-stream"});
    reply.flush();
    EXPECT_THAT(stream.sent, testing::EndsWith("\r\nTransfer-Encoding: chunked\r\n\r\n"));
    stream.sent.clear();
    reply.write("one");
    reply.write(" and two");
    EXPECT_EQ(stream.sent, "");
    reply.flush();
    EXPECT_EQ(stream.sent, "b\r\none and two\r\n");
    stream.sent.clear();
    reply.flush();
    EXPECT_EQ(stream.sent, "");
    reply.write("three");
    reply.finish();
    EXPECT_EQ(stream.sent, "5\r\nthree\r\n0\r\n\r\n");
    EXPECT_TRUE(reply.keepsAlive());
}

TEST_F(HttpReplyTest, FlushesToHttp10AsItIs) {
    HttpReply old(stream, store, {.isHttp11 = false, .keepAlive = true});
    old.write("one");
    old.flush();
    EXPECT_EQ(bodyOf(stream.sent), "one");
    EXPECT_EQ(headerOf(stream.sent, "Connection"), "close");
    old.write(" two");
    old.flush();
    old.finish();
    EXPECT_EQ(bodyOf(stream.sent), "one two");
    EXPECT_FALSE(old.keepsAlive());
}

TEST_F(HttpReplyTest, FlushesNothingButTheHeadForHead) {
    HttpReply part(stream, store, {.isForHead = true});
    part.write("one");
    part.flush();
    part.write("two");
    part.finish();
    EXPECT_THAT(stream.sent, testing::EndsWith("\r\nTransfer-Encoding: chunked\r\n\r\n"));
}

TEST_F(HttpReplyTest, FlushesAtTheClientsPaceAndWithinItsTime) {
    HttpPresence presence;
    HttpReply slow(stream, store, {.sendTime = std::chrono::hours(1), .presence = &presence});
    stream.takesAtOnce = 1000;
    slow.write(numbered(3 * buffer));
    bool isTold = false;
    stream.onSend = [&] { isTold = presence.waitingSince != 0 && presence.sendingSince != 0; };
    slow.flush();
    EXPECT_EQ(bodyOf(stream.sent + "0\r\n\r\n"), numbered(3 * buffer));
    EXPECT_TRUE(isTold) << "the server can see whom it waits for";
    EXPECT_GT(stream.deadline, Clock::now() + std::chrono::minutes(30));
    EXPECT_EQ(presence.waitingSince, 0) << "the wait is over";
    EXPECT_EQ(presence.sendingSince, 0);
}

TEST_F(HttpReplyTest, FlushesNothingWhenTheServerIsInAHurry) {
    HttpPresence presence;
    HttpReply late(stream, store, {.presence = &presence});
    late.write("one");
    presence.isHurried = true;
    EXPECT_THROW(late.flush(), StreamError);
    EXPECT_EQ(stream.sent, "");
}

TEST_F(HttpReplyTest, KnowsWhenItShouldEnd) {
    HttpPresence presence;
    HttpReply open(stream, store, {.presence = &presence});
    EXPECT_FALSE(open.isEnding());
    presence.endStatus = 503;
    EXPECT_TRUE(open.isEnding());
    presence.endStatus = 0;
    EXPECT_FALSE(open.isEnding());
    stream.isEnded = true;
    EXPECT_TRUE(open.isEnding());
}

TEST_F(HttpReplyTest, StaysOpenOnlyWhileOthersLeaveRoom) {
    ByteBudget places(ByteBudget::Kind::other, 1);
    HttpReply first(stream, store, {.openReplies = &places});
    {
        HttpReply second(stream, store, {.openReplies = &places});
        EXPECT_TRUE(second.keepOpen());
        EXPECT_TRUE(second.keepOpen()) << "one place is enough for one reply";
        EXPECT_FALSE(first.keepOpen());
    }
    EXPECT_TRUE(first.keepOpen());
}

TEST_F(HttpReplyTest, ThrowsWhenTheClientIsGone) {
    stream.isLost = true;
    EXPECT_THROW(reply.write(std::string(buffer + 1, 'a')), StreamError);
}

TEST_F(HttpReplyTest, HasAPhraseForEachStatusThatIsSent) {
    for (const int status : {200, 204, 304, 400, 401, 403, 404, 405, 408, 411, 413,
                             414, 417, 421, 431, 500, 501, 502, 503, 504, 505}) {
        EXPECT_NE(reasonPhrase(status), "Error") << status;
    }
}

}  // namespace
}  // namespace cimhost
