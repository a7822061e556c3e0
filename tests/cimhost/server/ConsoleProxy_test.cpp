#include "cimhost/server/ConsoleProxy.h"

#include "tests/cimhost/http/RawClient.h"
#include "tests/cimhost/http/ScriptedServer.h"
#include "tests/cimhost/http/TestCertificates.h"
#include "tests/cimhost/http/TestServer.h"

#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <string>

namespace cimhost {
namespace {

using std::chrono::milliseconds;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr const char* cimHeaders =
    "CIMOperation: MethodCall\r\nCIMMethod: GetInstance\r\nCIMObject: root%2Ftest\r\n";

bool answerOk(const std::string&, Stream& client) {
    send(client, answerWith("<CIM/>"));
    return true;
}

/// A proxy on a free port before a target that does what the test says.
class Proxied {
public:
    explicit Proxied(ScriptedServer::Script script, const TlsContext* tls = nullptr,
                     const TlsTrust* trust = nullptr, milliseconds silence = milliseconds(60'000))
        : target(std::move(script), tls),
          _upstream({"localhost", target.port(), trust}),
          _proxy(_upstream, {"https://target", "", silence}, feed, &exports),
          _server(ListenSocket("127.0.0.1", 0), {.handler = _proxy, .limits = _limits}) {
        _server.start();
    }

    std::uint16_t port() const { return _server.listener().port(); }

    std::string ask(const std::string& headers = cimHeaders, const std::string& body = "<CIM/>") {
        RawClient client(port());
        client.send(post(body, headers));
        return client.readReply();
    }

    EventFeed feed;
    TestHandler exports;
    ScriptedServer target;

private:
    HttpUpstream _upstream;
    ConsoleProxy _proxy;
    HttpLimits _limits;
    HttpServer _server;
};

TEST(ConsoleProxy, PassesOnWhatCimXmlNeedsAndNothingElse) {
    Proxied proxied(answerOk);
    proxied.ask(std::string(cimHeaders) +
                "Content-Type: application/xml\r\nAuthorization: Basic YTpi\r\n"
                "Accept-Language: fr\r\nOrigin: http://here\r\nCookie: a=b\r\n"
                "TE: trailers\r\nX-Other: c\r\nUpgrade: h2c\r\n");
    EXPECT_EQ(proxied.target.requests().at(0),
              "POST /cimom HTTP/1.1\r\nHost: localhost:" + std::to_string(proxied.target.port()) +
                  "\r\n" + cimHeaders +
                  "Content-Type: application/xml\r\nAuthorization: Basic YTpi\r\n"
                  "Accept-Language: fr\r\nContent-Length: 6\r\n\r\n<CIM/>");
}

TEST(ConsoleProxy, PassesAnAnswerBackWithItsStatusAndWhatItsClientNeeds) {
    Proxied proxied([](const std::string&, Stream& client) {
        send(client,
             "HTTP/1.1 401 Unauthorized\r\nContent-Length: 4\r\nContent-Type: text/plain\r\n"
             "WWW-Authenticate: Basic realm=\"a\"\r\nWWW-Authenticate: Negotiate\r\n"
             "CIMError: no-user\r\nPGErrorDetail: who%3F\r\nSet-Cookie: a=b\r\n"
             "Access-Control-Allow-Origin: *\r\nLocation: http://elsewhere/\r\n\r\nwho?");
        return true;
    });
    const std::string reply = proxied.ask();
    EXPECT_EQ(statusOf(reply), 401);
    EXPECT_EQ(bodyOf(reply), "who?");
    EXPECT_THAT(
        reply,
        AllOf(HasSubstr("WWW-Authenticate: Basic realm=\"a\"\r\n"),
              HasSubstr("WWW-Authenticate: Negotiate\r\n"), HasSubstr("CIMError: no-user\r\n"),
              HasSubstr("PGErrorDetail: who%3F\r\n"), HasSubstr("Content-Length: 4\r\n"),
              HasSubstr("X-Content-Type-Options: nosniff\r\n")));
    EXPECT_THAT(reply, AllOf(Not(HasSubstr("Cookie")), Not(HasSubstr("Access-Control")),
                             Not(HasSubstr("Location"))));
}

TEST(ConsoleProxy, PassesChunksOnAsTheyComeAndTheErrorBehindThem) {
    std::atomic<bool> goesOn = false;
    Proxied proxied([&goesOn](const std::string&, Stream& client) {
        send(client,
             "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nTrailer: CIMStatusCode\r\n\r\n"
             "5\r\nfirst\r\n");
        EXPECT_TRUE(await([&goesOn] { return goesOn.load(); }));
        send(client, "6\r\nsecond\r\n0\r\nCIMStatusCode: 1\r\nSet-Cookie: a=b\r\n\r\n");
        return true;
    });
    RawClient client(proxied.port());
    client.send(post("<CIM/>", cimHeaders));
    std::string reply = client.readUntil("first");
    goesOn = true;
    reply += client.readUntil("\r\n\r\n");
    EXPECT_THAT(reply, AllOf(HasSubstr("Trailer: CIMStatusCode\r\n"),
                             testing::EndsWith("second\r\n0\r\nCIMStatusCode: 1\r\n\r\n")));
}

TEST(ConsoleProxy, PassesOnLongAnswersWithLittleMemory) {
    const std::string block(65536, 'x');
    for (const bool isChunked : {true, false}) {
        Proxied proxied([&](const std::string&, Stream& client) {
            send(client, isChunked ? "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                                   : "HTTP/1.1 200 OK\r\nContent-Length: " +
                                         std::to_string(200 * block.size()) + "\r\n\r\n");
            for (int i = 0; i < 200; ++i) {
                send(client, isChunked ? "10000\r\n" + block + "\r\n" : block);
            }
            if (isChunked) send(client, "0\r\n\r\n");
            return true;
        });
        EXPECT_EQ(bodyOf(proxied.ask()).size(), 200 * block.size());
    }
}

TEST(ConsoleProxy, ATargetThatAnswersNothingOfUseCostsOneRequest) {
    const auto replyAfter = [](const std::string& bytes) {
        Proxied proxied([&bytes](const std::string&, Stream& client) {
            send(client, bytes);
            return false;
        });
        return proxied.ask();
    };
    const std::string noHttp = replyAfter("SSH-2.0-server\r\n\r\n");
    EXPECT_EQ(statusOf(noHttp), 502);
    EXPECT_THAT(bodyOf(noHttp), HasSubstr("No answer from https://target: the answer is no HTTP"));
    EXPECT_EQ(statusOf(replyAfter("")), 502);
    EXPECT_EQ(statusOf(replyAfter("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf")), 502);
    EXPECT_EQ(statusOf(replyAfter("HTTP/1.1 999 Odd\r\nContent-Length: 0\r\n\r\n")), 502);
    EXPECT_EQ(statusOf(replyAfter("HTTP/1.1 200 OK\r\nContent-Length: x\r\n\r\n")), 502);
}

TEST(ConsoleProxy, AnAnswerThatBreaksOffIsNotTakenForAWholeOne) {
    Proxied proxied([](const std::string&, Stream& client) {
        send(client, "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nfirst\r\n");
        return false;
    });
    RawClient client(proxied.port());
    client.send(post("<CIM/>", cimHeaders));
    EXPECT_THAT(client.readAll(), Not(testing::EndsWith("0\r\n\r\n")));
    EXPECT_EQ(statusOf(proxied.ask()), 200);
}

TEST(ConsoleProxy, ATargetThatIsSilentIsGivenUp) {
    Proxied proxied(
        [](const std::string&, Stream& client) {
            send(client, "HTTP/1.1 200 OK\r\nContent-Length: 1000000000000000000\r\n\r\nsome");
            std::array<char, 1> end;
            client.receive(end, Clock::now() + std::chrono::seconds(60));
            return false;
        },
        nullptr, nullptr, milliseconds(200));
    const std::string reply = proxied.ask();
    EXPECT_EQ(statusOf(reply), 504);
    EXPECT_EQ(bodyOf(reply), "No answer from https://target: the peer took too long.\n");
}

TEST(ConsoleProxy, AClientThatIsGoneFreesItsTarget) {
    std::atomic<bool> isFreed = false;
    Proxied proxied([&isFreed](const std::string&, Stream& client) {
        std::array<char, 1> end;
        isFreed = client.receive(end, Clock::now() + std::chrono::seconds(60)) == 0;
        return false;
    });
    {
        RawClient client(proxied.port());
        client.send(post("<CIM/>", cimHeaders));
        ASSERT_TRUE(await([&] { return proxied.target.requests().size() == 1; }));
    }
    EXPECT_TRUE(await([&isFreed] { return isFreed.load(); }));
}

/// A target that ends the connection at its second request.
ScriptedServer::Script endsAtTheSecond() {
    return [asked = std::make_shared<std::atomic<int>>(0)](const std::string&, Stream& client) {
        if (++*asked == 2) return false;
        send(client, answerWith("<CIM/>"));
        return true;
    };
}

TEST(ConsoleProxy, AsksAgainWhatOnlyReads) {
    Proxied proxied(endsAtTheSecond());
    EXPECT_EQ(statusOf(proxied.ask()), 200);
    EXPECT_EQ(statusOf(proxied.ask()), 200);
    EXPECT_EQ(proxied.target.requests().size(), 3U);
}

TEST(ConsoleProxy, AsksNothingTwiceThatMayChangeSomething) {
    for (const char* operation :
         {"CIMMethod: DeleteInstance\r\nCIMObject: root%2Ftest\r\n",
          "CIMMethod: Spin\r\nCIMObject: root%2Ftest%3ATEST_Fan\r\n",
          "CIMMethod: GetInstance\r\nCIMObject: root%2Ftest%3ATEST_Fan\r\n"}) {
        Proxied proxied(endsAtTheSecond());
        EXPECT_EQ(statusOf(proxied.ask()), 200);
        EXPECT_EQ(statusOf(proxied.ask("CIMOperation: MethodCall\r\n" + std::string(operation))),
                  502);
        EXPECT_EQ(proxied.target.requests().size(), 2U);
    }
}

TEST(ConsoleProxy, AsksNothingThatIsNoCimXml) {
    Proxied proxied(answerOk);
    const std::string reply = proxied.ask("Content-Type: text/plain\r\n");
    EXPECT_EQ(statusOf(reply), 400);
    EXPECT_THAT(bodyOf(reply), HasSubstr("cimhost console"));
    EXPECT_TRUE(proxied.target.requests().empty());
}

TEST(ConsoleProxy, TakesIndicationsItself) {
    Proxied proxied(answerOk);
    EXPECT_EQ(bodyOf(proxied.ask("CIMExport: MethodRequest\r\n", "alert")), "alert");
    EXPECT_EQ(proxied.exports.calls, 1);
    EXPECT_TRUE(proxied.target.requests().empty());
}

TEST(ConsoleProxy, TellsWhoLooksOfEachRequest) {
    Proxied proxied([](const std::string&, Stream& client) {
        send(client, answerWith("<CIM><MESSAGE><SIMPLERSP><IMETHODRESPONSE NAME=\"GetInstance\">"
                                "<ERROR CODE=\"6\" DESCRIPTION=\"no\"/>"));
        return true;
    });
    EventFeed::Viewer viewer(proxied.feed);
    proxied.ask(cimHeaders,
                "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" "
                "PROTOCOLVERSION=\"1.0\"><SIMPLEREQ><IMETHODCALL NAME=\"GetInstance\">"
                "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"test\"/>"
                "</LOCALNAMESPACEPATH><IPARAMVALUE NAME=\"InstanceName\"><INSTANCENAME "
                "CLASSNAME=\"TEST_Fan\"/></IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>");
    const auto batch = viewer.take(Clock::now() + std::chrono::seconds(60));
    ASSERT_EQ(batch.events.size(), 1U);
    EXPECT_THAT(*batch.events.front(),
                AllOf(HasSubstr("event: request\n"), HasSubstr("\"number\":1,"),
                      HasSubstr("\"operation\":\"GetInstance\",\"object\":\"root/test\","
                                "\"className\":\"TEST_Fan\",\"providers\":[],\"status\":200,"
                                "\"outcome\":\"6\"")));
}

TEST(ConsoleProxy, SaysWhyATargetIsNotTrusted) {
    TestCertificates certificates;
    certificates.makeSelfSigned("self");
    const TlsContext context(certificates.certificate("self"), certificates.key("self"));
    const TlsTrust trust;
    Proxied proxied(answerOk, &context, &trust);
    const std::string reply = proxied.ask();
    EXPECT_EQ(statusOf(reply), 502);
    EXPECT_EQ(bodyOf(reply),
              "No answer from https://target: its certificate is signed by itself alone (--ca FILE "
              "names whom to trust).\n");
    EXPECT_TRUE(proxied.target.requests().empty());
}

}  // namespace
}  // namespace cimhost
