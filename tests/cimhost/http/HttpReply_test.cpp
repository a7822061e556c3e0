#include "cimhost/http/HttpReply.h"

#include "tests/cimhost/http/MemoryStream.h"
#include "tests/cimhost/http/RawClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr std::size_t buffer = HttpReply::bufferBytes;

struct HttpReplyTest : testing::Test {
    MemoryStream stream;
    HttpReply reply{stream, {}};
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
    EXPECT_FALSE(reply.isCommitted());
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
    EXPECT_TRUE(reply.isCommitted());
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
    HttpReply old(stream, {.isHttp11 = false, .keepAlive = true});
    const std::string text(2 * buffer + 7, 'o');
    old.write(text);
    old.finish();
    EXPECT_FALSE(old.keepsAlive());
    EXPECT_EQ(headerOf(stream.sent, "Transfer-Encoding"), "");
    EXPECT_EQ(headerOf(stream.sent, "Connection"), "close");
    EXPECT_EQ(bodyOf(stream.sent), text);
}

TEST_F(HttpReplyTest, KeepsAnHttp10ConnectionAliveWhenTheLengthIsKnown) {
    HttpReply old(stream, {.isHttp11 = false, .keepAlive = true});
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
