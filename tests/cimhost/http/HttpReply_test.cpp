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

TEST_F(HttpReplyTest, ThrowsWhenTheClientIsGone) {
    stream.isLost = true;
    EXPECT_THROW(reply.write(std::string(buffer + 1, 'a')), StreamError);
}

TEST_F(HttpReplyTest, HasAPhraseForEachStatusThatIsSent) {
    for (const int status :
         {200, 400, 401, 405, 408, 411, 413, 414, 417, 431, 500, 501, 503, 505}) {
        EXPECT_NE(reasonPhrase(status), "Error") << status;
    }
}

}  // namespace
}  // namespace cimhost
