#include "tests/cimhost/http/RawClient.h"
#include "tests/cimhost/http/TestServer.h"

#include <gtest/gtest.h>

#include <ostream>

/// What no client of good will sends: each kind is answered with its status or closed, and the next
/// client never notices.
namespace cimhost {
namespace {

enum class Ending { none, halfClosed, reset };

struct HostileRequest {
    const char* name;
    std::string bytes;
    int status;  ///< 0: closed without an answer
    Ending ending = Ending::none;
};

void PrintTo(const HostileRequest& request, std::ostream* out) { *out << request.name; }

std::string fields(const std::string& lines, const std::string& body = {}) {
    return "POST /cimom HTTP/1.1\r\nHost: a\r\n" + lines + "\r\n" + body;
}

std::string repeat(const std::string& text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) result += text;
    return result;
}

std::string everyByte() {
    std::string bytes;
    for (int byte = 255; byte >= 0; --byte) bytes += static_cast<char>(byte);
    return bytes;
}

const std::string chunked = "Transfer-Encoding: chunked\r\n";

std::vector<HostileRequest> hostileRequests() {
    return {
        {"HalfARequestLine", "POST /ci", 408},
        {"HalfAHead", "POST / HTTP/1.1\r\nHost: a\r\nConte", 408},
        {"HalfABody", fields("Content-Length: 100\r\n", "half"), 408},
        {"HalfAChunk", fields(chunked, "64\r\nhalf"), 408},
        {"NoLastChunk", fields(chunked, "1\r\na\r\n"), 408},
        {"HalfAHeadAndNoMore", "POST / HTTP/1.1\r\nHost: a\r\n", 400, Ending::halfClosed},
        {"HalfABodyAndNoMore", fields("Content-Length: 100\r\n", "half"), 400, Ending::halfClosed},
        {"NothingAndNoMore", "", 0, Ending::halfClosed},
        {"HalfARequestAndGone", "POST / HTTP/1.1\r\n", 0, Ending::reset},
        {"AWholeRequestAndGone", post("body"), 0, Ending::reset},
        {"EmptyLinesWithoutEnd", repeat("\r\n", 40'000), 431},
        {"RequestLineTooLong", "POST /" + std::string(9'000, 'a'), 414},
        {"HeaderLineTooLong", fields("N: " + std::string(9'000, 'a')), 431},
        {"HeadTooLong", fields(repeat("N: " + std::string(8'000, 'a') + "\r\n", 9)), 431},
        {"TooManyFields", fields(repeat("N: v\r\n", 101)), 431},
        {"NegativeLength", fields("Content-Length: -1\r\n"), 400},
        {"LengthThatOverflows", fields("Content-Length: 36893488147419103232\r\n"), 400},
        {"LengthOfWords", fields("Content-Length: many\r\n"), 400},
        {"LengthTooLarge", fields("Content-Length: 99999999999\r\n"), 413},
        {"NoLength", fields(""), 411},
        {"TwoLengths", fields("Content-Length: 1\r\nContent-Length: 2\r\n", "ab"), 400},
        {"LengthAndChunks", fields("Content-Length: 5\r\n" + chunked, "0\r\n\r\n"), 400},
        {"ChunksAndLength", fields(chunked + "Content-Length: 5\r\n", "0\r\n\r\n"), 400},
        {"SmuggledSpaceBeforeTheColon", fields("Transfer-Encoding : chunked\r\n", "0\r\n\r\n"),
         400},
        {"SmuggledCoding", fields("Transfer-Encoding: xchunked\r\n", "0\r\n\r\n"), 501},
        {"SmuggledTab", fields("Transfer-Encoding:\tchunked\r\nTransfer-Encoding: x\r\n"), 400},
        {"SmuggledLineFeed", "POST / HTTP/1.1\r\nHost: a\nContent-Length: 5\r\n\r\n", 400},
        {"FoldedLine", fields("N: v\r\n folded\r\nContent-Length: 0\r\n"), 400},
        {"HugeChunk", fields(chunked, "FFFFFFFFFFFFFFFF\r\n"), 413},
        {"ChunkSizeThatOverflows", fields(chunked, "10000000000000001\r\na\r\n"), 400},
        {"NegativeChunk", fields(chunked, "-1\r\na\r\n"), 400},
        {"ChunkExtensionWithoutEnd", fields(chunked, "1;" + std::string(20'000, 'e')), 400},
        {"ChunkExtensionsByTheMegabyte",
         fields(chunked, repeat("1;" + std::string(8'000, 'e') + "\r\na\r\n", 150)), 413},
        {"TrailersByTheHundred", fields(chunked, "0\r\n" + repeat("T: t\r\n", 101) + "\r\n"), 431},
        {"TrailersWithoutEnd", fields(chunked, "0\r\n" + repeat("T: t\r\n", 5'000)), 400},
        {"NulInTheRequestLine", std::string("POST /\0 HTTP/1.1\r\nHost: a\r\n\r\n", 30), 400},
        {"NulInAField", std::string("POST / HTTP/1.1\r\nHost: a\0b\r\n\r\n", 31), 400},
        {"EveryByte", everyByte(), 400},
        {"TlsGreeting", std::string("\x16\x03\x01\x02\x00\x01\x00\x01\xFC\x03\x03", 11), 400},
        {"Http2Preface", "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n", 505},
        {"Http09", "GET /\r\n", 400},
        {"AnotherProtocol", "EHLO example.org\r\n", 400},
        {"NoHost", "POST / HTTP/1.1\r\nContent-Length: 0\r\n\r\n", 400},
        {"TwoHosts", fields("Host: b\r\nContent-Length: 0\r\n"), 400},
        {"UnknownMethod", "BREW / HTTP/1.1\r\nHost: a\r\n\r\n", 405},
        {"ExtensionFramework", "M-POST / HTTP/1.1\r\nHost: a\r\nContent-Length: 0\r\n\r\n", 501},
        {"UnknownExpectation", fields("Expect: 200-ok\r\nContent-Length: 1\r\n"), 417},
    };
}

struct HostileRequests : testing::TestWithParam<HostileRequest> {};

TEST_P(HostileRequests, AreAnsweredAndTheNextClientIsServed) {
    const HostileRequest& hostile = GetParam();
    HttpLimits limits;
    if (hostile.status == 408) limits.requestTime = std::chrono::milliseconds(50);
    TestServer server({}, limits);
    const std::size_t before = openDescriptors();
    {
        RawClient client(server.port());
        client.send(hostile.bytes);
        if (hostile.ending == Ending::reset) {
            client.reset();
        } else {
            if (hostile.ending == Ending::halfClosed) client.endSending();
            if (hostile.status != 0) {
                EXPECT_EQ(statusOf(client.readReply()), hostile.status);
            }
            client.endSending();
            EXPECT_TRUE(client.isClosedByServer());
        }
    }
    {
        RawClient next(server.port());
        next.send(post("next"));
        EXPECT_EQ(bodyOf(next.readReply()), "next");
    }
    EXPECT_TRUE(server.awaitConnections(0));
    EXPECT_LE(openDescriptors(), before);
}

INSTANTIATE_TEST_SUITE_P(Kinds, HostileRequests, testing::ValuesIn(hostileRequests()),
                         [](const auto& kind) { return kind.param.name; });

}  // namespace
}  // namespace cimhost
