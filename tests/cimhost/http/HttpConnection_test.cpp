#include "cimhost/http/HttpConnection.h"

#include "tests/cimhost/http/MemoryStream.h"
#include "tests/cimhost/http/RawClient.h"
#include "tests/cimhost/http/TestServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Lets in whoever says "Basic good"; has no time for "Basic busy".
struct OnePassword final : Authenticator {
    std::string asked;

    std::optional<std::string_view> authenticate(std::string_view authorization,
                                                 const std::string& peer) override {
        asked = peer;
        if (authorization == "Basic busy") return std::nullopt;
        return authorization == "Basic good" ? "fred" : std::string_view{};
    }
};

struct HttpConnectionTest : testing::Test {
    MemoryStream stream;
    HttpLimits limits;
    HttpBudgets budgets{limits};
    HttpPresence presence;
    HttpAddresses addresses{"1.2.3.4:5", "127.0.0.1:5988"};
    OnePassword passwords;
    Authenticator* authenticator = nullptr;
    TestHandler handler;
    HttpHandler* pages = nullptr;

    /// Serves what came in and returns the statuses of the replies.
    std::vector<int> serve(std::vector<std::string> pieces) {
        stream.incoming.assign(pieces.begin(), pieces.end());
        const HttpServices services{handler, limits, authenticator, nullptr, pages};
        HttpConnection(stream, services, budgets, addresses, presence).serve();
        std::vector<int> statuses;
        for (std::size_t at = stream.sent.find("HTTP/1.1 "); at != std::string::npos;
             at = stream.sent.find("HTTP/1.1 ", at + 1)) {
            statuses.push_back(statusOf(std::string_view(stream.sent).substr(at)));
        }
        return statuses;
    }
};

TEST_F(HttpConnectionTest, ServesOneRequestAfterTheOther) {
    EXPECT_THAT(serve({post("one"), post("two")}), ElementsAre(200, 200));
    EXPECT_THAT(stream.sent, HasSubstr("\r\n\r\none"));
    EXPECT_THAT(stream.sent, testing::EndsWith("\r\n\r\ntwo"));
}

TEST_F(HttpConnectionTest, TellsABrowserWhatIsServedHere) {
    handler.words = "No pages here.\n";
    EXPECT_THAT(serve({"GET / HTTP/1.1\r\nHost: a\r\n\r\n" + post("one")}), ElementsAre(405, 200));
    EXPECT_EQ(headerOf(stream.sent, "Allow"), "POST");
    EXPECT_EQ(headerOf(stream.sent, "Content-Type"), "text/plain; charset=utf-8");
    EXPECT_THAT(stream.sent,
                HasSubstr("\r\nContent-Length: 15\r\n\r\nNo pages here.\nHTTP/1.1 200"));
}

TEST_F(HttpConnectionTest, TellsNothingToWhomAsksForTheHeadAlone) {
    handler.words = "No pages here.\n";
    EXPECT_THAT(serve({"HEAD / HTTP/1.1\r\nHost: a\r\n\r\n"}), ElementsAre(405));
    EXPECT_THAT(stream.sent, testing::EndsWith("\r\nContent-Length: 15\r\n\r\n"));
}

TEST_F(HttpConnectionTest, HandsGetAndHeadToThePages) {
    TestHandler shown([](const HttpRequest& request, HttpReply& reply) {
        reply.write(std::string(request.method) + " " + std::string(request.path()));
    });
    pages = &shown;
    EXPECT_THAT(serve({"GET /a?b HTTP/1.1\r\nHost: a\r\n\r\n" +
                       ("HEAD /c HTTP/1.1\r\nHost: a\r\n\r\n" + post("one"))}),
                ElementsAre(200, 200, 200));
    EXPECT_THAT(stream.sent, HasSubstr("\r\nContent-Length: 6\r\n\r\nGET /aHTTP/1.1 200"));
    EXPECT_THAT(stream.sent, HasSubstr("\r\nContent-Length: 7\r\n\r\nHTTP/1.1 200"));
    EXPECT_THAT(stream.sent, testing::EndsWith("\r\n\r\none"));
    EXPECT_EQ(shown.calls, 2);
    EXPECT_EQ(handler.calls, 1);
}

TEST_F(HttpConnectionTest, ReadsNoLongBodyOfAPageOfAnotherSite) {
    const std::string origin = "Origin: http://evil.example\r\n";
    EXPECT_THAT(serve({post(std::string(65536, 'b'), origin), post("one")}), ElementsAre(403, 200));
    stream.sent.clear();
    EXPECT_THAT(serve({post(std::string(65537, 'b'), origin), post("one")}), ElementsAre(403));
    EXPECT_THAT(stream.sent, HasSubstr("another site"));
    EXPECT_EQ(handler.calls, 1);
}

TEST_F(HttpConnectionTest, RefusesAPageOfAnotherSiteBeforeItAsksForAPassword) {
    authenticator = &passwords;
    EXPECT_THAT(serve({post("one", "Origin: null\r\nAuthorization: Basic good\r\n")}),
                ElementsAre(403));
    EXPECT_EQ(passwords.asked, "");
    EXPECT_EQ(handler.calls, 0);
}

TEST_F(HttpConnectionTest, GrantsNothingToWhoAsksBeforehandWhatItMaySend) {
    const std::string preflight =
        "OPTIONS /cimom HTTP/1.1\r\nHost: here\r\nOrigin: http://evil.example\r\n"
        "Access-Control-Request-Method: POST\r\nAccess-Control-Request-Headers: cimmethod\r\n\r\n";
    TestHandler shown;
    for (HttpHandler* const each :
         {static_cast<HttpHandler*>(nullptr), static_cast<HttpHandler*>(&shown)}) {
        pages = each;
        stream.sent.clear();
        EXPECT_THAT(serve({preflight}), ElementsAre(405));
        EXPECT_THAT(stream.sent, testing::Not(HasSubstr("Access-Control")));
    }
    EXPECT_EQ(handler.calls + shown.calls, 0);
}

TEST_F(HttpConnectionTest, NamesTheMethodsOfAServerWithPages) {
    TestHandler shown;
    pages = &shown;
    EXPECT_THAT(serve({"PUT / HTTP/1.1\r\nHost: a\r\nContent-Length: 1\r\n\r\nx"}),
                ElementsAre(405));
    EXPECT_EQ(headerOf(stream.sent, "Allow"), "GET, HEAD, POST");
    EXPECT_EQ(shown.calls + handler.calls, 0);
}

TEST_F(HttpConnectionTest, RefusesAPageToWhoeverSendsABodyForIt) {
    TestHandler shown;
    pages = &shown;
    for (const std::string body : {"Content-Length: 3\r\n\r\nabc",
                                   "Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n0\r\n\r\n"}) {
        stream.sent.clear();
        EXPECT_THAT(serve({"GET / HTTP/1.1\r\nHost: a\r\n" + body + post("one")}),
                    ElementsAre(400));
    }
    EXPECT_EQ(shown.calls + handler.calls, 0);
}

TEST_F(HttpConnectionTest, ShowsNoPageToSomebodyWithoutPassword) {
    TestHandler shown;
    pages = &shown;
    authenticator = &passwords;
    EXPECT_THAT(serve({"GET / HTTP/1.1\r\nHost: a\r\n\r\n"}), ElementsAre(401));
    EXPECT_EQ(shown.calls, 0);
}

TEST_F(HttpConnectionTest, ServesRequestsThatCameAtOnce) {
    EXPECT_THAT(serve({post("one") + post("") + post("three")}), ElementsAre(200, 200, 200));
    EXPECT_EQ(stream.sendCount, 3U);
}

TEST_F(HttpConnectionTest, ServesRequestsThatCameInPieces) {
    std::vector<std::string> pieces;
    for (const char byte : post("one") + post("two")) pieces.emplace_back(1, byte);
    EXPECT_THAT(serve(pieces), ElementsAre(200, 200));
}

TEST_F(HttpConnectionTest, EndsWhenTheClientAsksForIt) {
    EXPECT_THAT(serve({post("one", "Connection: close\r\n") + post("two")}), ElementsAre(200));
    EXPECT_EQ(headerOf(stream.sent, "Connection"), "close");
    EXPECT_TRUE(stream.hasEnded);
}

TEST_F(HttpConnectionTest, SaysNothingWhenNothingWasAsked) {
    EXPECT_THAT(serve({}), ElementsAre());
    EXPECT_EQ(stream.sent, "");
    stream.isSilent = true;
    EXPECT_THAT(serve({}), ElementsAre());
}

TEST_F(HttpConnectionTest, AnswersARequestThatTakesTooLong) {
    stream.isSilent = true;
    EXPECT_THAT(serve({"POST / HT"}), ElementsAre(408));
    EXPECT_EQ(headerOf(stream.sent, "Connection"), "close");
    stream.sent.clear();
    EXPECT_THAT(serve({post("body").substr(0, post("body").size() - 1)}), ElementsAre(408));
    EXPECT_EQ(handler.calls, 0);
}

TEST_F(HttpConnectionTest, AnswersAClientThatEndsInTheMiddleOfARequest) {
    EXPECT_THAT(serve({"POST / HT"}), ElementsAre(400));
}

TEST_F(HttpConnectionTest, TellsACutOffClientWhatTheServerSays) {
    presence.endStatus = 503;
    EXPECT_THAT(serve({"POST / HT"}), ElementsAre(503));
}

TEST_F(HttpConnectionTest, FinishesAWholeRequestAndThenEndsWhenTheServerStops) {
    presence.endStatus = 503;
    EXPECT_THAT(serve({post("one") + post("two")}), ElementsAre(200));
    EXPECT_EQ(headerOf(stream.sent, "Connection"), "close");
}

TEST_F(HttpConnectionTest, AsksForTheBodyOfAClientThatWaits) {
    EXPECT_THAT(
        serve({"POST / HTTP/1.1\r\nHost: a\r\nExpect: 100-continue\r\nContent-Length: 2\r\n\r\n",
               "ab"}),
        ElementsAre(100, 200));
}

TEST_F(HttpConnectionTest, DoesNotAskForABodyThatIsThereAlready) {
    EXPECT_THAT(serve({post("ab", "Expect: 100-continue\r\n")}), ElementsAre(200));
}

TEST_F(HttpConnectionTest, RefusesOtherExpectations) {
    EXPECT_THAT(serve({post("ab", "Expect: wonders\r\n")}), ElementsAre(417));
}

TEST_F(HttpConnectionTest, RefusesABodyBeforeItCame) {
    EXPECT_THAT(serve({"POST / HTTP/1.1\r\nHost: a\r\nExpect: 100-continue\r\nContent-Length: "
                       "10485761\r\n\r\n"}),
                ElementsAre(413));
}

TEST_F(HttpConnectionTest, TakesABodyOfTheLimitAndNoMore) {
    EXPECT_THAT(serve({post(std::string(10485760, 'b'))}), ElementsAre(200));
    stream.sent.clear();
    EXPECT_THAT(serve({post(std::string(10485761, 'b'))}), ElementsAre(413));
    EXPECT_EQ(handler.calls, 1);
}

TEST_F(HttpConnectionTest, RefusesABodyForWhichThereIsNoRoomAmongTheOthers) {
    limits.bodyBytes = 200'000;
    limits.bodyMemoryBytes = 1;  // one body fits in any case
    HttpBudgets small{limits};
    ByteBudget::Share others(small.bodies);
    const HttpServices services{handler, limits, nullptr, nullptr};
    const auto statusFor = [&](const std::string& request) {
        stream.sent.clear();
        stream.incoming = {request, post("next")};
        HttpConnection(stream, services, small, addresses, presence).serve();
        return statusOf(stream.sent);
    };
    const std::string large = post(std::string(200'000, 'b'));
    const std::string chunked =
        "POST / HTTP/1.1\r\nHost: a\r\nTransfer-Encoding: chunked\r\n\r\n186A0\r\n" +
        std::string(100'000, 'c') + "\r\n0\r\n\r\n";
    EXPECT_EQ(statusFor(large), 200);
    EXPECT_EQ(statusFor(chunked), 200);
    EXPECT_EQ(small.bodies.used(), 0U) << "given back";
    ASSERT_TRUE(others.grow(200'000 - 1000));
    for (const std::string& request : {large, chunked}) {
        EXPECT_EQ(statusFor(request), 503);
        EXPECT_EQ(headerOf(stream.sent, "Retry-After"), "1");
        EXPECT_EQ(headerOf(stream.sent, "Connection"), "close");
        EXPECT_EQ(small.bodies.used(), 199'000U);
    }
    EXPECT_EQ(statusFor(post(std::string(65'536, 'b'))), 200) << "small ones always pass";
    others.clear();
    EXPECT_EQ(statusFor(large), 200);
}

TEST_F(HttpConnectionTest, HoldsABodyNoLongerThanItsHandlerRuns) {
    HttpBudgets ours{limits};
    std::uint64_t during = 0;
    TestHandler looking([&](const HttpRequest& request, HttpReply& reply) {
        during = ours.bodies.used();
        EXPECT_EQ(request.body.size(), 200'000U);
        reply.write("seen");
    });
    stream.incoming = {post(std::string(200'000, 'b'))};
    stream.onSend = [&] { EXPECT_EQ(ours.bodies.used(), 0U) << "while the reply leaves"; };
    HttpConnection(stream, {looking, limits, nullptr, nullptr}, ours, addresses, presence).serve();
    EXPECT_EQ(bodyOf(stream.sent), "seen");
    EXPECT_EQ(during, 200'000U - 65'536U);
}

TEST_F(HttpConnectionTest, GoesOnAfterARefusalThatLeavesNoDoubt) {
    EXPECT_THAT(serve({"GET / HTTP/1.1\r\nHost: a\r\n\r\n" + post("one")}), ElementsAre(405, 200));
    EXPECT_THAT(serve({"PUT / HTTP/1.1\r\nHost: a\r\nContent-Length: 3\r\n\r\nabc" + post("one")}),
                ElementsAre(405, 200, 405, 200));
    EXPECT_EQ(handler.calls, 2);
}

TEST_F(HttpConnectionTest, EndsAfterARefusalThatLeavesDoubt) {
    EXPECT_THAT(serve({"POST / HTTP/1.1\r\nHost: a\r\n\r\n" + post("one")}), ElementsAre(411));
    stream.sent.clear();
    EXPECT_THAT(serve({"nonsense\r\n" + post("one")}), ElementsAre(400));
    stream.sent.clear();
    EXPECT_THAT(serve({"PUT / HTTP/1.1\r\nHost: a\r\nContent-Length: 70000\r\n\r\nabc"}),
                ElementsAre(405));
    EXPECT_EQ(handler.calls, 0);
}

TEST_F(HttpConnectionTest, LetsNobodyInWithoutPassword) {
    authenticator = &passwords;
    EXPECT_THAT(serve({post("one") + post("two", "Authorization: Basic bad\r\n") +
                       post("three", "Authorization: Basic good\r\n")}),
                ElementsAre(401, 401, 200));
    EXPECT_EQ(headerOf(stream.sent, "Content-Length"), "0");
    EXPECT_THAT(stream.sent, testing::EndsWith("\r\n\r\nthree"));
    EXPECT_NE(headerOf(stream.sent, "WWW-Authenticate"), "");
    EXPECT_EQ(handler.calls, 1);
}

TEST_F(HttpConnectionTest, AsksForPatienceWhenNoPasswordCanBeJudged) {
    authenticator = &passwords;
    EXPECT_THAT(serve({post("one", "Authorization: Basic busy\r\n") +
                       post("two", "Authorization: Basic good\r\n")}),
                ElementsAre(503, 200));
    EXPECT_EQ(headerOf(stream.sent, "Retry-After"), "1");
    EXPECT_EQ(passwords.asked, "1.2.3.4:5");
    EXPECT_EQ(handler.calls, 1);
}

TEST_F(HttpConnectionTest, ReadsNoLongBodyOfSomebodyWithoutPassword) {
    authenticator = &passwords;
    EXPECT_THAT(serve({post(std::string(65536, 'b')), post("")}), ElementsAre(401, 401));
    stream.sent.clear();
    EXPECT_THAT(serve({post(std::string(65537, 'b')), post("")}), ElementsAre(401));
    EXPECT_EQ(headerOf(stream.sent, "Connection"), "close");
}

TEST_F(HttpConnectionTest, TellsTheHandlerWhoAsks) {
    authenticator = &passwords;
    std::string user;
    std::string local;
    TestHandler asked([&](const HttpRequest& request, HttpReply&) {
        user = request.principal;
        local = request.localAddress;
    });
    stream.incoming = {post("", "Authorization: Basic good\r\n")};
    HttpConnection(stream, {asked, limits, authenticator, nullptr}, budgets, addresses, presence)
        .serve();
    EXPECT_EQ(user, "fred");
    EXPECT_EQ(local, "127.0.0.1:5988");
}

TEST_F(HttpConnectionTest, AnswersForAHandlerThatThrows) {
    TestHandler throwing([](const HttpRequest& request, HttpReply& reply) {
        reply.write("half");
        if (request.body == "int") throw 1;
        throw std::runtime_error("broken");
    });
    for (const std::string body : {"int", "exception"}) {
        stream.sent.clear();
        stream.incoming = {post(body), post(body)};
        HttpConnection(stream, {throwing, limits, nullptr, nullptr}, budgets, addresses, presence)
            .serve();
        EXPECT_EQ(statusOf(stream.sent), 500);
        EXPECT_EQ(headerOf(stream.sent, "Content-Length"), "0");
        EXPECT_EQ(stream.sendCount, throwing.calls);
    }
}

TEST_F(HttpConnectionTest, BreaksAReplyThatFailsOnItsWay) {
    TestHandler throwing([](const HttpRequest&, HttpReply& reply) {
        reply.write(std::string(100'000, 'x'));
        throw std::runtime_error("broken");
    });
    stream.incoming = {post(""), post("")};
    HttpConnection(stream, {throwing, limits, nullptr, nullptr}, budgets, addresses, presence)
        .serve();
    EXPECT_EQ(statusOf(stream.sent), 200);
    EXPECT_THAT(stream.sent, testing::Not(HasSubstr("\r\n0\r\n\r\n")))
        << "no end that the client could trust";
    EXPECT_EQ(throwing.calls, 1);
}

TEST_F(HttpConnectionTest, EndsTheOperationWhenTheClientIsGone) {
    bool isThrown = false;
    TestHandler writing([&](const HttpRequest&, HttpReply& reply) {
        try {
            for (;;) reply.write("more and more ");
        } catch (const StreamError&) {
            isThrown = true;
            throw;
        }
    });
    stream.isLost = true;
    stream.incoming = {post("")};
    HttpConnection(stream, {writing, limits, nullptr, nullptr}, budgets, addresses, presence)
        .serve();
    EXPECT_TRUE(isThrown);
}

TEST_F(HttpConnectionTest, RefusesWithoutReading) {
    const HttpServices services{handler, limits, nullptr, nullptr};
    stream.incoming = {post("one")};
    HttpConnection(stream, services, budgets, addresses, presence).refuse(503);
    EXPECT_EQ(statusOf(stream.sent), 503);
    EXPECT_EQ(headerOf(stream.sent, "Connection"), "close");
    EXPECT_EQ(handler.calls, 0);
}

}  // namespace
}  // namespace cimhost
