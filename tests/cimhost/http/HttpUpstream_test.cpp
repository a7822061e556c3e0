#include "cimhost/http/HttpUpstream.h"

#include "tests/cimhost/http/ScriptedServer.h"
#include "tests/cimhost/http/TestCertificates.h"
#include "tests/cimhost/http/TestServer.h"
#include "tests/support/Thrown.h"

#include <gmock/gmock.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <atomic>
#include <string>
#include <thread>

namespace cimhost {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::StartsWith;

class KeptAnswer final : public HttpAnswerTaker {
public:
    void head(const HttpAnswerHead& answer) override { status = answer.status; }
    void body(std::string_view piece) override { text += piece; }

    int status = 0;
    std::string text;
};

HttpPatience patienceOf(milliseconds time = std::chrono::seconds(60)) {
    return [time](Clock::time_point silentSince) { return silentSince + time; };
}

std::string ask(HttpUpstream& upstream, std::string_view body = "question",
                bool mayBeRepeated = false, std::string_view proof = {}) {
    KeptAnswer answer;
    HttpUpstream::Request request{"/cimom", {}, body, proof, mayBeRepeated};
    upstream.post(request, answer, patienceOf());
    return answer.text;
}

/// What asking fails with; empty when it does not.
std::string failureOf(HttpUpstream& upstream) {
    return refusalOf<std::exception>([&] { ask(upstream); });
}

bool answer(const std::string&, Stream& client) {
    send(client, answerWith("answer"));
    return true;
}

TEST(HttpUpstream, PostsToTheServerUnderItsOwnName) {
    ScriptedServer server(answer);
    HttpUpstream upstream({"localhost", server.port()});
    EXPECT_EQ(ask(upstream), "answer");
    EXPECT_EQ(server.requests().at(0),
              "POST /cimom HTTP/1.1\r\nHost: localhost:" + std::to_string(server.port()) +
                  "\r\nContent-Length: 8\r\n\r\nquestion");
}

TEST(HttpUpstream, UsesAConnectionAgain) {
    ScriptedServer server(answer);
    HttpUpstream upstream({"127.0.0.1", server.port()});
    for (int i = 0; i < 5; ++i) EXPECT_EQ(ask(upstream), "answer");
    EXPECT_EQ(server.connections(), 1U);
}

TEST(HttpUpstream, UsesNoConnectionForAnotherUser) {
    ScriptedServer server(answer);
    HttpUpstream upstream({"127.0.0.1", server.port()});
    for (const char* user : {"Basic ann", "Basic bob", "", "Basic ann", "Basic bob", ""}) {
        EXPECT_EQ(ask(upstream, "question", false, user), "answer");
    }
    EXPECT_EQ(server.connections(), 3U);
}

TEST(HttpUpstream, HandsAnAnswerOnAsItComes) {
    ScriptedServer server([](const std::string&, Stream& client) {
        send(client,
             "HTTP/1.1 404 Not Found\r\nTransfer-Encoding: chunked\r\nA: b\r\n\r\n"
             "4\r\nhalf\r\n");
        std::this_thread::sleep_for(milliseconds(50));
        send(client, "5\r\nwhole\r\n0\r\nCIMError: late\r\n\r\n");
        return true;
    });
    class Pieces final : public HttpAnswerTaker {
    public:
        void head(const HttpAnswerHead& head) override {
            EXPECT_EQ(head.status, 404);
            EXPECT_EQ(head.fields.size(), 2U);
        }
        void body(std::string_view piece) override { pieces.emplace_back(piece); }
        std::vector<std::string> pieces;
    } taker;
    HttpUpstream upstream({"127.0.0.1", server.port()});
    const HttpAnswerHead head = upstream.post({"/", {}, "", {}}, taker, patienceOf());
    EXPECT_THAT(taker.pieces, testing::ElementsAre("half", "whole"));
    ASSERT_EQ(head.fields.size(), 3U);
    EXPECT_EQ(head.fields[2].value, "late");
}

TEST(HttpUpstream, SendsALongBodyWhole) {
    ScriptedServer server([](const std::string& request, Stream& client) {
        send(client, answerWith(std::to_string(request.size())));
        return true;
    });
    HttpUpstream upstream({"127.0.0.1", server.port()});
    ask(upstream, std::string(3'000'000, 'x'));
    EXPECT_THAT(server.requests().at(0),
                testing::EndsWith("\r\n\r\n" + std::string(3'000'000, 'x')));
}

/// A server that ends the connection at its second request.
struct EndsAtTheSecond {
    std::atomic<int> asked = 0;

    bool operator()(const std::string&, Stream& client) {
        if (++asked == 2) return false;
        send(client, answerWith("answer"));
        return true;
    }
};

TEST(HttpUpstream, RepeatsWhatMayBeRepeatedOverANewConnection) {
    EndsAtTheSecond script;
    ScriptedServer server(std::ref(script));
    HttpUpstream upstream({"127.0.0.1", server.port()});
    EXPECT_EQ(ask(upstream), "answer");
    EXPECT_EQ(ask(upstream, "question", true), "answer");
    EXPECT_EQ(server.requests().size(), 3U);
    EXPECT_EQ(server.connections(), 2U);
}

TEST(HttpUpstream, RepeatsNothingThatMayHaveBeenDone) {
    EndsAtTheSecond script;
    ScriptedServer server(std::ref(script));
    HttpUpstream upstream({"127.0.0.1", server.port()});
    EXPECT_EQ(ask(upstream), "answer");
    EXPECT_EQ(failureOf(upstream), "the connection ended in an answer");
    EXPECT_EQ(server.requests().size(), 2U);
}

TEST(HttpUpstream, RepeatsNothingOnceSomeOfTheAnswerHasCome) {
    std::atomic<int> asked = 0;
    ScriptedServer server([&asked](const std::string&, Stream& client) {
        send(client, ++asked == 1 ? answerWith("answer") : "HTTP/1.1 200 OK\r\n");
        return asked == 1;
    });
    HttpUpstream upstream({"127.0.0.1", server.port()});
    EXPECT_EQ(ask(upstream), "answer");
    EXPECT_THROW(ask(upstream, "question", true), StreamError);
    EXPECT_EQ(server.requests().size(), 2U);
}

TEST(HttpUpstream, RepeatsNothingOverANewConnection) {
    ScriptedServer server([](const std::string&, Stream&) { return false; });
    HttpUpstream upstream({"127.0.0.1", server.port()});
    EXPECT_THROW(ask(upstream, "question", true), StreamError);
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST(HttpUpstream, UsesNoConnectionThatTheServerClosedMeanwhile) {
    ScriptedServer server([](const std::string&, Stream& client) {
        send(client, answerWith("answer"));
        return false;
    });
    HttpUpstream upstream({"127.0.0.1", server.port()});
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(ask(upstream), "answer");
        std::this_thread::sleep_for(milliseconds(50));
    }
    EXPECT_EQ(server.requests().size(), 3U);
}

TEST(HttpUpstream, SaysWhyThereIsNoConnection) {
    std::uint16_t closed = 0;
    {
        const ListenSocket taken("127.0.0.1", 0);
        closed = taken.port();
    }
    HttpUpstream refused({"127.0.0.1", closed});
    EXPECT_EQ(failureOf(refused),
              "cannot connect to 127.0.0.1:" + std::to_string(closed) + ": Connection refused");
    HttpUpstream unknown({"no-such-host.invalid", 5988});
    EXPECT_THAT(failureOf(unknown), HasSubstr("host"));
}

TEST(HttpUpstream, EndsWhatIsNoHttp) {
    const auto failureAfter = [](const std::string& bytes) {
        ScriptedServer server([&bytes](const std::string&, Stream& client) {
            send(client, bytes);
            return false;
        });
        HttpUpstream upstream({"127.0.0.1", server.port()});
        return failureOf(upstream);
    };
    EXPECT_THAT(failureAfter("SSH-2.0-x\r\n\r\n"), StartsWith("the answer is no HTTP: "));
    EXPECT_THAT(
        failureAfter(std::string("\x15\x03\x01\x00\x02\x02\x46", 7)),
        testing::AnyOf(StartsWith("the answer is no HTTP: "), "the connection ended in an answer"));
    std::string interim;
    for (int i = 0; i < 100; ++i) interim += "HTTP/1.1 100 Continue\r\n\r\n";
    EXPECT_EQ(failureAfter(interim), "the server sends nothing but interim answers");
}

TEST(HttpUpstream, AHeadWithoutAnEndIsRefusedSoon) {
    std::atomic<std::size_t> sent = 0;
    ScriptedServer server([&sent](const std::string&, Stream& client) {
        send(client, "HTTP/1.1 200 OK\r\n");
        const std::string line = "X-Filler: " + std::string(4000, 'x') + "\r\n";
        for (int i = 0; i < 100'000; ++i) {
            send(client, line);
            sent += line.size();
        }
        return false;
    });
    HttpUpstream upstream({"127.0.0.1", server.port()});
    EXPECT_THAT(failureOf(upstream), StartsWith("the answer is no HTTP"));
    EXPECT_LT(sent, std::size_t{64} << 20U);
}

TEST(HttpUpstream, WaitsNoLongerThanItsPatience) {
    ScriptedServer server([](const std::string&, Stream& client) {
        send(client, "HTTP/1.1 200 OK\r\nContent-Length: 1000000000000000000\r\n\r\nsome");
        std::array<char, 1> end;
        client.receive(end, Clock::now() + std::chrono::seconds(60));
        return false;
    });
    HttpUpstream upstream({"127.0.0.1", server.port()});
    KeptAnswer taker;
    try {
        upstream.post({"/", {}, "", {}}, taker, patienceOf(milliseconds(200)));
        ADD_FAILURE() << "no failure";
    } catch (const StreamError& error) {
        EXPECT_EQ(error.kind(), StreamError::Kind::timeout);
    }
    EXPECT_EQ(taker.text, "some");
}

struct TlsUpstreamTest : testing::Test {
    /// What asking a server with this certificate under this name fails with.
    std::string failureWith(const std::string& name, const TlsTrust& trust,
                            const std::string& host = "localhost") {
        const TlsContext context(certificates.certificate(name), certificates.key(name));
        ScriptedServer server(answer, &context);
        HttpUpstream upstream({host, server.port(), &trust});
        return failureOf(upstream);
    }

    TestCertificates certificates;
    TlsTrust trust{certificates.authority()};
};

TEST_F(TlsUpstreamTest, TrustsACertificateOfAKnownAuthorityForItsNamesAndAddresses) {
    EXPECT_EQ(failureWith("server", trust, "localhost"), "");
    EXPECT_EQ(failureWith("server", trust, "127.0.0.1"), "");
}

TEST_F(TlsUpstreamTest, KeepsConnections) {
    const TlsContext context(certificates.certificate(), certificates.key());
    ScriptedServer server(answer, &context);
    HttpUpstream upstream({"localhost", server.port(), &trust});
    for (int i = 0; i < 3; ++i) EXPECT_EQ(ask(upstream), "answer");
    EXPECT_EQ(server.connections(), 1U);
}

TEST_F(TlsUpstreamTest, CarriesAnswersOfManyRecords) {
    const TlsContext context(certificates.certificate(), certificates.key());
    LongReply reply;
    TestServer server(std::ref(reply), {}, nullptr, &context);
    HttpUpstream upstream({"localhost", server.port(), &trust});
    EXPECT_TRUE(ask(upstream) == LongReply::text());
    EXPECT_TRUE(ask(upstream, std::string(1'000'000, 'x')) == LongReply::text());
}

TEST_F(TlsUpstreamTest, SaysWhatIsWrongWithACertificate) {
    certificates.make("expired", "DNS:localhost", "-days -1");
    certificates.make("other", "DNS:other.example,IP:192.0.2.1");
    certificates.makeSelfSigned("self");
    EXPECT_EQ(failureWith("expired", trust), "its certificate has expired");
    EXPECT_EQ(failureWith("other", trust), "its certificate is for another name");
    EXPECT_EQ(failureWith("other", trust, "127.0.0.1"), "its certificate is for another name");
    EXPECT_EQ(failureWith("self", trust), "its certificate is signed by itself alone");
    EXPECT_EQ(failureWith("server", TlsTrust()),
              "its certificate is signed by an authority that is not known here");
}

TEST_F(TlsUpstreamTest, TrustsASelfSignedCertificateThatIsNamed) {
    certificates.makeSelfSigned("self");
    EXPECT_EQ(failureWith("self", TlsTrust(certificates.certificate("self"))), "");
}

TEST_F(TlsUpstreamTest, TrustsAnyoneWhereItIsToldTo) {
    certificates.make("expired", "DNS:other.example", "-days -1");
    certificates.makeSelfSigned("self");
    const TlsTrust blind = TlsTrust::blind();
    EXPECT_EQ(failureWith("expired", blind), "");
    EXPECT_EQ(failureWith("self", blind), "");
}

TEST_F(TlsUpstreamTest, SendsNothingToAServerThatItDoesNotTrust) {
    certificates.makeSelfSigned("self");
    const TlsContext context(certificates.certificate("self"), certificates.key("self"));
    ScriptedServer server(answer, &context);
    HttpUpstream upstream({"localhost", server.port(), &trust});
    EXPECT_THROW(ask(upstream), TlsTrustError);
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(TlsUpstreamTest, SaysThatAServerSpeaksNoTls) {
    const ListenSocket listener("127.0.0.1", 0);
    std::thread server([&listener] {
        pollfd comer{listener.handle(), POLLIN, 0};
        poll(&comer, 1, -1);
        const Descriptor client(accept(listener.handle(), nullptr, nullptr));
        constexpr std::string_view words = "HTTP/1.1 400 Bad Request\r\n\r\n";
        ::send(client.get(), words.data(), words.size(), MSG_NOSIGNAL);
        std::array<char, 4096> rest;
        while (recv(client.get(), rest.data(), rest.size(), 0) > 0) {
        }
    });
    HttpUpstream upstream({"127.0.0.1", listener.port(), &trust});
    EXPECT_EQ(failureOf(upstream), "TLS: the peer does not speak TLS");
    server.join();
}

TEST_F(TlsUpstreamTest, NamesAFileOfAuthoritiesThatCannotBeUsed) {
    try {
        TlsTrust("/nonexistent/authority.pem");
        ADD_FAILURE() << "no failure";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(),
                    StartsWith("cannot use the certificates in /nonexistent/authority.pem: "));
    }
}

}  // namespace
}  // namespace cimhost
