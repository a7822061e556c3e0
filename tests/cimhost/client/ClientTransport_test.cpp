#include "cimhost/client/ClientTransport.h"

#include "cimhost/http/HttpServer.h"
#include "tests/cimhost/client/PairedServer.h"

#include <gtest/gtest.h>

#include <string>

namespace cimhost {
namespace {

using Kind = StreamError::Kind;

std::string post(ClientTransport& transport, HttpAnswerHead* head = nullptr) {
    std::string body;
    const HttpAnswerHead answer =
        transport.post({}, "<CIM></CIM>", [&body](std::string_view piece) { body += piece; });
    if (head) *head = answer;
    return body;
}

/// What asking a server that answers these bytes throws.
std::string failure(const std::string& answer) {
    RawServer server(answer);
    try {
        ClientTransport transport(server.connect(), {});
        return "no failure: " + post(transport);
    } catch (const StreamError& error) {
        return std::string("stream: ") + error.what();
    } catch (const HttpClientError& error) {
        return error.what();
    }
}

TEST(ClientTransport, ReadsAnAnswerInChunksWithItsTrailers) {
    RawServer server(
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nTrailer: CIMStatusCode\r\n\r\n"
        "4\r\nabcd\r\n3;x=y\r\nefg\r\n0\r\nCIMStatusCode: 7\r\n\r\n");
    ClientTransport transport(server.connect(), {});
    HttpAnswerHead head;
    EXPECT_EQ(post(transport, &head), "abcdefg");
    EXPECT_EQ(head.field("cimstatuscode"), "7");
    EXPECT_EQ(head.field("CIMError"), std::nullopt);
}

TEST(ClientTransport, ReadsAnAnswerThatEndsWithTheConnection) {
    RawServer server("HTTP/1.0 200 OK\r\n\r\nall of it");
    ClientTransport transport(server.connect(), {});
    EXPECT_EQ(post(transport), "all of it");
}

TEST(ClientTransport, PassesOverInterimAnswers) {
    RawServer server("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok");
    ClientTransport transport(server.connect(), {});
    EXPECT_EQ(post(transport), "ok");
}

TEST(ClientTransport, KeepsTheBodyOfARefusalOut) {
    RawServer server("HTTP/1.1 404 Not Found\r\nContent-Length: 4\r\n\r\nhtml");
    ClientTransport transport(server.connect(), {});
    HttpAnswerHead head;
    EXPECT_EQ(post(transport, &head), "");
    EXPECT_EQ(head.status, 404);
}

TEST(ClientTransport, SaysWhenAnAnswerIsCut) {
    EXPECT_EQ(failure(""), "stream: the connection ended in an answer");
    EXPECT_EQ(failure("HTTP/1.1 200 OK\r\nContent-Le"),
              "stream: the connection ended in an answer");
    EXPECT_EQ(failure("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf"),
              "stream: the connection ended in an answer");
    EXPECT_EQ(failure("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n"),
              "stream: the connection ended in an answer");
}

TEST(ClientTransport, RefusesWhatIsNoHttp) {
    EXPECT_EQ(failure("SSH-2.0-server\r\n\r\n").find("the answer is no HTTP"), 0U);
    EXPECT_EQ(failure("HTTP/1.1 200 OK\r\nA: " + std::string(70'000, 'a') + "\r\n\r\n")
                  .find("the answer is no HTTP"),
              0U);
    EXPECT_EQ(failure("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n")
                  .find("the answer is no HTTP"),
              0U);
}

TEST(ClientTransport, WaitsAsLongAsItsPatienceSays) {
    auto [near, far] = socketPair();
    int asked = 0;
    ClientTransport::Settings settings;
    settings.patience = [&asked](Clock::time_point) {
        return Clock::now() + std::chrono::milliseconds(++asked < 4 ? 10 : 0);
    };
    ClientTransport transport([&end = near] { return std::move(end); }, settings);
    try {
        post(transport);
        FAIL();
    } catch (const StreamError& error) {
        EXPECT_EQ(error.kind(), Kind::timeout);
    }
    EXPECT_GE(asked, 4);
}

TEST(ClientTransport, SendsTheHeadersAndTheBody) {
    RawServer server("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
    ClientTransport transport(server.connect(), {"box:5988", {}});
    transport.post({{"CIMMethod", "GetClass"}}, "<CIM></CIM>", [](std::string_view) {});
    EXPECT_EQ(server.request,
              "POST /cimom HTTP/1.1\r\nCIMMethod: GetClass\r\nHost: box:5988\r\n"
              "Content-Type: application/xml; charset=\"utf-8\"\r\n"
              "Content-Length: 11\r\n\r\n"
              "<CIM></CIM>");
}

}  // namespace
}  // namespace cimhost
