#include "cimhost/http/HttpAnswer.h"

#include "tests/cimhost/http/MemoryStream.h"

#include <gtest/gtest.h>

#include <array>

namespace cimhost {
namespace {

struct HttpAnswerTest : testing::Test {
    HttpAnswer receive(std::initializer_list<std::string> pieces) {
        stream.incoming.assign(pieces.begin(), pieces.end());
        return reader.receive(Clock::now());
    }

    MemoryStream stream;
    HttpAnswerReader reader{stream};
};

TEST_F(HttpAnswerTest, IsReadWithItsLength) {
    const HttpAnswer answer = receive({"HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nabc"});
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body, "abc");
    EXPECT_TRUE(answer.keepsAlive);
}

TEST_F(HttpAnswerTest, IsReadByteByByteAndInChunks) {
    const std::string text =
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nab\r\n1\r\nc\r\n0\r\n\r\n";
    for (const char character : text) stream.incoming.emplace_back(1, character);
    EXPECT_EQ(reader.receive(Clock::now()).body, "abc");
}

TEST_F(HttpAnswerTest, MayBeEmptyInChunks) {
    EXPECT_EQ(receive({"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n"}).body, "");
}

TEST_F(HttpAnswerTest, MayGoOnToTheEndOfTheConnection) {
    const HttpAnswer answer = receive({"HTTP/1.0 200 OK\r\n\r\n", "abc"});
    EXPECT_EQ(answer.body, "abc");
    EXPECT_FALSE(answer.keepsAlive);
}

TEST_F(HttpAnswerTest, TellsWhetherTheConnectionGoesOn) {
    EXPECT_FALSE(
        receive({"HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: 0\r\n\r\n"}).keepsAlive);
    EXPECT_FALSE(receive({"HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\nmore"}).keepsAlive);
}

TEST_F(HttpAnswerTest, FollowsInterimOnes) {
    EXPECT_EQ(receive({"HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 500 No\r\nContent-Length: 0\r\n\r\n"})
                  .status,
              500);
    std::string many;
    for (int i = 0; i < 100; ++i) many += "HTTP/1.1 100 Continue\r\n\r\n";
    HttpAnswerReader other(stream);
    stream.incoming = {many};
    EXPECT_THROW(other.receive(Clock::now()), HttpAnswerError);
}

TEST_F(HttpAnswerTest, ThatIsGarbageOrTooLongIsRefused) {
    const std::string head = "HTTP/1.1 200 OK\r\n";
    for (const std::string& bad :
         {std::string("garbage\r\n\r\n"), std::string("HTTP/1.1 2000 OK\r\n\r\n"),
          head + "Content-Length: -1\r\n\r\n", head + "Content-Length: 99999999\r\n\r\n",
          head + "Content-Length: 65537\r\n\r\nabc", head + "Content-Length: 3000000000\r\n\r\nabc",
          head + "Content-Length: 1000000000000000000\r\n\r\nabc",
          head + "Transfer-Encoding: chunked\r\n\r\nzz\r\n",
          head + "X: " + std::string(20000, 'a') + "\r\n\r\n", head + "no colon\r\n\r\n",
          head + "\r\n" + std::string(100'000, 'a')}) {
        HttpAnswerReader other(stream);
        stream.incoming = {bad};
        EXPECT_THROW(other.receive(Clock::now()), HttpAnswerError) << bad.substr(0, 60);
        while (!stream.incoming.empty()) {
            std::array<char, 65536> rest;
            stream.receive(rest, Clock::now());
        }
    }
}

TEST_F(HttpAnswerTest, MayBeAsLongAsTheLimit) {
    const std::string body(HttpAnswerReader::bodyBytes, 'a');
    const std::string length = std::to_string(body.size());
    EXPECT_EQ(receive({"HTTP/1.1 200 OK\r\nContent-Length: " + length + "\r\n\r\n" + body}).body,
              body);
}

TEST_F(HttpAnswerTest, ThatEndsTooSoonIsLost) {
    EXPECT_THROW(receive({}), StreamError);
    EXPECT_FALSE(reader.hasBegun());
    EXPECT_THROW(receive({"HTTP/1.1 200"}), StreamError);
    EXPECT_TRUE(reader.hasBegun());
    HttpAnswerReader other(stream);
    stream.incoming = {"HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nabc"};
    EXPECT_THROW(other.receive(Clock::now()), StreamError);
}

}  // namespace
}  // namespace cimhost
