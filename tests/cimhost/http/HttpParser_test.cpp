#include "cimhost/http/HttpParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using State = HttpParser::State;

std::string request(const std::string& fields, const std::string& body = {}) {
    return "POST /cimom HTTP/1.1\r\nHost: here\r\n" + fields + "\r\n" + body;
}

struct HttpParserTest : testing::Test {
    HttpLimits limits;
    HttpParser parser{limits};

    /// Feeds as a connection does: what is not used is given again with what comes next.
    State feed(std::string_view bytes, std::size_t step = std::string::npos) {
        parser.clear();
        _kept.clear();
        for (std::size_t at = 0; at < bytes.size(); at += std::min(step, bytes.size() - at)) {
            _kept += bytes.substr(at, step);
            while (_feedOnce()) {
            }
        }
        return parser.state();
    }

    int refusalOf(std::string_view bytes) {
        return feed(bytes) == State::refused ? parser.refusal() : 0;
    }

    const std::string& kept() const { return _kept; }

private:
    bool _feedOnce() {
        const State before = parser.state();
        const std::size_t used = parser.feed(_kept);
        _kept.erase(0, used);
        return parser.state() != before || (used > 0 && !_kept.empty());
    }

    std::string _kept;
};

TEST_F(HttpParserTest, ReadsHeadAndBody) {
    ASSERT_EQ(feed(request("X-One:  a b \r\nContent-Length: 4\r\n", "body")), State::complete);
    EXPECT_EQ(parser.request().method, "POST");
    EXPECT_EQ(parser.request().target, "/cimom");
    EXPECT_EQ(parser.request().header("x-ONE"), "a b");
    EXPECT_EQ(parser.request().header("absent"), std::nullopt);
    EXPECT_EQ(parser.request().body, "body");
    EXPECT_TRUE(parser.request().keepAlive);
}

TEST_F(HttpParserTest, ReadsTheSameByteByByte) {
    for (const std::string& text : {request("Content-Length: 4\r\n", "body"),
                                    request("Transfer-Encoding: chunked\r\n",
                                            "2\r\nbo\r\n2;x=y\r\ndy\r\n0\r\nT: t\r\n\r\n")}) {
        ASSERT_EQ(feed(text, 1), State::complete) << text;
        EXPECT_EQ(parser.request().body, "body");
    }
}

TEST_F(HttpParserTest, LeavesTheNextRequestAlone) {
    ASSERT_EQ(feed(request("Content-Length: 1\r\n", "aPOST")), State::complete);
    EXPECT_EQ(kept(), "POST");
}

TEST_F(HttpParserTest, StopsAtTheEndOfTheHead) {
    const std::string text = request("Content-Length: 1\r\n");
    EXPECT_EQ(parser.feed(text + "a"), text.size());
    EXPECT_EQ(parser.state(), State::headComplete);
}

TEST_F(HttpParserTest, ReadsOneRequestAfterTheOther) {
    ASSERT_EQ(feed("POST / HTTP/1.0\r\nContent-Length: 1\r\n\r\na"), State::complete);
    EXPECT_FALSE(parser.request().isHttp11);
    EXPECT_FALSE(parser.request().keepAlive);
    ASSERT_EQ(feed("GET / HTTP/1.1\r\n\r\n"), State::complete);
    EXPECT_TRUE(parser.request().isHttp11);
    EXPECT_EQ(parser.request().fields.size(), 0U);
    EXPECT_EQ(parser.request().body, "");
    EXPECT_EQ(parser.request().contentLength, std::nullopt);
}

TEST_F(HttpParserTest, KnowsWhetherTheConnectionMayLive) {
    feed(request("Connection: close\r\n"));
    EXPECT_FALSE(parser.request().keepAlive);
    feed("POST / HTTP/1.0\r\nConnection: Keep-Alive\r\n\r\n");
    EXPECT_TRUE(parser.request().keepAlive);
    feed(request("Connection: Keep-Alive, TE\r\n"));
    EXPECT_TRUE(parser.request().keepAlive);
}

TEST_F(HttpParserTest, RefusesLengthsThatAreNone) {
    for (const std::string length :
         {"-1", "+1", "0x10", "1 2", "", "one", "1.0", "18446744073709551616",
          "99999999999999999999999999", "4,4", "4;4"}) {
        EXPECT_EQ(refusalOf(request("Content-Length: " + length + "\r\n")), 400) << length;
    }
}

TEST_F(HttpParserTest, RefusesTwoLengthsEvenThoseThatAgree) {
    EXPECT_EQ(refusalOf(request("Content-Length: 4\r\nContent-Length: 4\r\n", "body")), 400);
    EXPECT_EQ(refusalOf(request("Content-Length: 4\r\ncontent-length: 5\r\n", "body")), 400);
}

TEST_F(HttpParserTest, RefusesALengthBesideATransferCodingInEitherOrder) {
    EXPECT_EQ(refusalOf(request("Content-Length: 4\r\nTransfer-Encoding: chunked\r\n")), 400);
    EXPECT_EQ(refusalOf(request("Transfer-Encoding: chunked\r\nContent-Length: 4\r\n")), 400);
}

TEST_F(HttpParserTest, RefusesTransferCodingsOtherThanChunked) {
    for (const std::string coding : {"gzip", "gzip, chunked", "chunked, identity", "xchunked",
                                     "identity", "chunked, chunked", "\"chunked\"", "chunked;x"}) {
        EXPECT_EQ(refusalOf(request("Transfer-Encoding: " + coding + "\r\n")), 501) << coding;
    }
    EXPECT_EQ(refusalOf(request("Transfer-Encoding: chunked\r\nTransfer-Encoding: chunked\r\n")),
              400);
    EXPECT_EQ(refusalOf("POST / HTTP/1.0\r\nTransfer-Encoding: chunked\r\n\r\n"), 400);
    EXPECT_EQ(feed(request("Transfer-Encoding: CHUNKED\r\n", "0\r\n\r\n")), State::complete);
}

TEST_F(HttpParserTest, RefusesFieldNamesThatAreNoTokens) {
    for (const std::string field :
         {"Content-Length : 4", "Na me: v", ": v", "N", "N(: v", "N\xC3: v"}) {
        EXPECT_EQ(refusalOf(request(field + "\r\n")), 400) << field;
    }
    EXPECT_EQ(refusalOf(request("N: a\rb\r\n")), 400);
}

TEST_F(HttpParserTest, RefusesRequestLinesThatAreNone) {
    for (const std::string line :
         {"POST  HTTP/1.1", "PO ST / HTTP/1.1", "POST\t/ HTTP/1.1", "P@ST / HTTP/1.1"}) {
        EXPECT_EQ(refusalOf(line + "\r\n\r\n"), 400) << line;
    }
}

TEST_F(HttpParserTest, TakesABodyOfTheLimitAndRefusesOneByteMoreBeforeItComes) {
    limits.bodyBytes = 1000;
    EXPECT_EQ(feed(request("Content-Length: 1000\r\n", std::string(1000, 'b'))), State::complete);
    EXPECT_EQ(refusalOf(request("Content-Length: 1001\r\n")), 413);
    EXPECT_EQ(refusalOf(request("Content-Length: 18446744073709551615\r\n")), 413);
}

TEST_F(HttpParserTest, TakesChunksUpToTheLimitOfABodyAndRefusesOneByteMore) {
    limits.bodyBytes = 100;
    const std::string head = request("Transfer-Encoding: chunked\r\n");
    const std::string most =
        "32\r\n" + std::string(50, 'b') + "\r\n32\r\n" + std::string(50, 'b') + "\r\n";
    EXPECT_EQ(feed(head + most + "0\r\n\r\n"), State::complete);
    EXPECT_EQ(parser.request().body, std::string(100, 'b'));
    EXPECT_EQ(refusalOf(head + most + "1\r\n"), 413) << "before the chunk comes";
    EXPECT_EQ(refusalOf(head + "65\r\n"), 413);
}

TEST_F(HttpParserTest, ChargesAChunkOnceHoweverItsLineWasCut) {
    limits.bodyBytes = 100;
    const std::string head = request("Transfer-Encoding: chunked\r\n");
    const std::string openQuote = "33;x=\"a\r\n" + std::string(100, 'b');
    for (const std::size_t step : {std::size_t{1}, std::size_t{7}, std::string::npos}) {
        EXPECT_EQ(feed(head + openQuote + "\"\r\n", step), State::refused) << step;
        EXPECT_EQ(parser.refusal(), 400) << step;
    }
}

TEST_F(HttpParserTest, RefusesChunkSizesThatAreNone) {
    const std::string head = request("Transfer-Encoding: chunked\r\n");
    for (const std::string size :
         {"-1", "+1", "0x1", " 1", "g", "", "1 2", "10000000000000000", "FFFFFFFFFFFFFFFFF"}) {
        EXPECT_EQ(refusalOf(head + size + "\r\naaaa\r\n\r\n"), 400) << size;
    }
    EXPECT_EQ(refusalOf(head + "FFFFFFFFFFFFFFFF\r\n"), 413);
}

TEST_F(HttpParserTest, RefusesChunksThatAreLongerThanTheySay) {
    const std::string head = request("Transfer-Encoding: chunked\r\n");
    EXPECT_EQ(refusalOf(head + "2\r\nabc\r\n0\r\n\r\n"), 400);
    EXPECT_EQ(refusalOf(head + "2\nab\n0\n\n\r\n"), 400);
}

TEST_F(HttpParserTest, LimitsTheLineOfAChunkWhereverItWasCut) {
    const std::string head = request("Transfer-Encoding: chunked\r\n");
    const auto chunk = [](std::size_t lineBytes) {
        return "1;" + std::string(lineBytes - 4, 'x') + "\r\na\r\n0\r\n\r\n";
    };
    for (const std::size_t step : {std::size_t{1}, std::size_t{100}, std::string::npos}) {
        EXPECT_EQ(feed(head + chunk(8192), step), State::complete) << step;
        EXPECT_EQ(feed(head + chunk(8193), step), State::refused) << step;
        EXPECT_EQ(parser.refusal(), 400);
    }
}

TEST_F(HttpParserTest, LimitsTheTrailersAndForgetsThem) {
    const std::string head = request("Transfer-Encoding: chunked\r\n") + "0\r\n";
    EXPECT_EQ(feed(head + "Authorization: Basic eDp5\r\n\r\n"), State::complete);
    EXPECT_EQ(parser.request().header("Authorization"), std::nullopt);
    std::string trailers;
    for (int i = 0; i < 100; ++i) trailers += "T: t\r\n";
    EXPECT_EQ(feed(head + trailers + "\r\n"), State::complete);
    EXPECT_EQ(refusalOf(head + trailers + "T: t\r\n\r\n"), 431);
    EXPECT_EQ(refusalOf(head + "T: " + std::string(9000, 't') + "\r\n\r\n"), 400);
}

TEST_F(HttpParserTest, LimitsWhatChunkingMayCost) {
    limits.framingBytes = 1000;
    const std::string head = request("Transfer-Encoding: chunked\r\n");
    std::string body;
    for (int i = 0; i < 100; ++i) body += "1;ext=1\r\na\r\n";  // 11 bytes each beside the data
    EXPECT_EQ(refusalOf(head + body + "0\r\n\r\n"), 413);
    limits.framingBytes = 1200;
    EXPECT_EQ(feed(head + body + "0\r\n\r\n"), State::complete);
}

TEST_F(HttpParserTest, DoesNotKeepADiscardedBody) {
    const std::string text = request("Content-Length: 4\r\n", "body");
    std::size_t used = parser.feed(text);
    parser.discardBody();
    used += parser.feed(std::string_view(text).substr(used));
    EXPECT_EQ(used, text.size());
    EXPECT_EQ(parser.state(), State::complete);
    EXPECT_EQ(parser.request().body, "");
}

TEST_F(HttpParserTest, KeepsTheNextBodyAfterADiscardedOne) {
    const std::string text = request("Content-Length: 4\r\n", "body");
    const std::size_t used = parser.feed(text);
    parser.discardBody();
    parser.feed(std::string_view(text).substr(used));
    ASSERT_EQ(parser.state(), State::complete);
    ASSERT_EQ(feed(text), State::complete);
    EXPECT_EQ(parser.request().body, "body");
}

TEST_F(HttpParserTest, KnowsWhetherARequestHasBegun) {
    EXPECT_FALSE(parser.hasBegun());
    parser.feed("P");
    EXPECT_TRUE(parser.hasBegun());
    feed(request("Content-Length: 0\r\n"));
    EXPECT_TRUE(parser.hasBegun());
    parser.clear();
    EXPECT_FALSE(parser.hasBegun());
}

TEST_F(HttpParserTest, ForgetsARefusalWhenItIsCleared) {
    ASSERT_EQ(feed("POST\r\n\r\n"), State::refused);
    EXPECT_NE(parser.refusal(), 0);
    parser.clear();
    EXPECT_EQ(parser.refusal(), 0);
}

}  // namespace
}  // namespace cimhost
