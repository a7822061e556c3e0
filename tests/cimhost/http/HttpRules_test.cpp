#include "cimhost/http/HttpRules.h"

#include "tests/cimhost/http/MemoryStream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using testing::HasSubstr;

struct HttpRulesTest : testing::Test {
    HttpRequest request;

    HttpRulesTest() {
        request.method = "POST";
        request.fields = {{"Host", "here"}};
        request.contentLength = 4;
    }

    std::string refusal(int status) {
        MemoryStream stream;
        SpoolStore store(0, 0);
        HttpReply reply(stream, store, {});
        refuse(reply, status);
        reply.finish();
        return stream.sent;
    }
};

TEST_F(HttpRulesTest, SaysWhenToTryAgain) {
    EXPECT_THAT(refusal(503), HasSubstr("\r\nRetry-After: 1\r\n"));
}

TEST_F(HttpRulesTest, TakesAPostWithHostAndLength) { EXPECT_EQ(refusalOf(request), 0); }

TEST_F(HttpRulesTest, RefusesOtherMethods) {
    for (const std::string_view method :
         {"GET", "HEAD", "PUT", "OPTIONS", "CONNECT", "post", "X"}) {
        request.method = method;
        EXPECT_EQ(refusalOf(request), 405) << method;
    }
    request.method = "M-POST";
    EXPECT_EQ(refusalOf(request), 501);
}

TEST_F(HttpRulesTest, TakesGetAndHeadWhereThereArePages) {
    request.contentLength.reset();
    for (const std::string_view method : {"GET", "HEAD"}) {
        request.method = method;
        EXPECT_EQ(refusalOf(request, {.servesPages = true}), 0) << method;
        EXPECT_EQ(refusalOf(request), 405) << method;
    }
    request.method = "OPTIONS";
    EXPECT_EQ(refusalOf(request, {.servesPages = true}), 405);
}

TEST_F(HttpRulesTest, WantsNoBodyForAPage) {
    request.method = "GET";
    EXPECT_EQ(refusalOf(request, {.servesPages = true}), 400);
    request.contentLength = 0;
    EXPECT_EQ(refusalOf(request, {.servesPages = true}), 0);
    request.isChunked = true;
    EXPECT_EQ(refusalOf(request, {.servesPages = true}), 400);
}

TEST_F(HttpRulesTest, WantsExactlyOneHostOfHttp11) {
    request.fields = {};
    EXPECT_EQ(refusalOf(request), 400);
    request.fields = {{"Host", "a"}, {"host", "a"}};
    EXPECT_EQ(refusalOf(request), 400);
    request.isHttp11 = false;
    EXPECT_EQ(refusalOf(request), 400);
    request.fields = {};
    EXPECT_EQ(refusalOf(request), 0);
}

TEST_F(HttpRulesTest, WantsNoMoreThanOneAuthorization) {
    request.fields = {{"Host", "here"}, {"Authorization", "a"}, {"authorization", "a"}};
    EXPECT_EQ(refusalOf(request), 400);
}

TEST_F(HttpRulesTest, WantsALength) {
    request.contentLength.reset();
    EXPECT_EQ(refusalOf(request), 411);
    request.isChunked = true;
    EXPECT_EQ(refusalOf(request), 0);
}

TEST_F(HttpRulesTest, KnowsOneExpectation) {
    request.fields.push_back({"Expect", "100-Continue"});
    EXPECT_EQ(refusalOf(request), 0);
    EXPECT_TRUE(wantsContinue(request));
    request.fields.push_back({"Expect", "a miracle"});
    EXPECT_EQ(refusalOf(request), 417);
}

TEST_F(HttpRulesTest, IgnoresExpectationsOfHttp10) {
    request.isHttp11 = false;
    request.fields.push_back({"Expect", "100-continue"});
    EXPECT_EQ(refusalOf(request), 0);
    EXPECT_FALSE(wantsContinue(request));
}

TEST_F(HttpRulesTest, NeedsNoContinueForAnEmptyBody) {
    request.fields.push_back({"Expect", "100-continue"});
    request.contentLength = 0;
    EXPECT_FALSE(wantsContinue(request));
}

TEST_F(HttpRulesTest, TakesNothingFromAPageOfAnotherSite) {
    request.fields = {{"Host", "localhost:5988"}, {"Origin", {}}};
    const std::pair<std::string_view, int> rows[] = {
        {"http://localhost:5988", 0},
        {"HTTP://LocalHost:5988", 0},
        {"https://localhost:5988", 403},
        {"http://localhost", 403},
        {"http://localhost:3000", 403},
        {"http://localhost:5988.evil.example", 403},
        {"http://127.0.0.1:5988", 403},
        {"http://evil.example", 403},
        {"null", 403},
        {"", 403},
        {"http://", 403},
    };
    for (const auto& [origin, status] : rows) {
        request.fields[1].value = origin;
        EXPECT_EQ(refusalOf(request), status) << origin;
    }
    request.fields = {{"Host", "localhost:5989"}, {"Origin", "https://localhost:5989"}};
    EXPECT_EQ(refusalOf(request, {.usesTls = true}), 0);
    EXPECT_EQ(refusalOf(request), 403) << "its own page has the other scheme";
}

TEST_F(HttpRulesTest, LooksAtEachOriginAndEachSite) {
    request.fields = {{"Host", "here"}, {"Origin", "http://here"}, {"origin", "http://evil"}};
    EXPECT_EQ(refusalOf(request), 403);
    request.fields = {{"Host", "here"}, {"Origin", "http://here"}, {"Sec-Fetch-Site", {}}};
    const std::pair<std::string_view, int> rows[] = {
        {"same-origin", 0}, {"none", 0}, {"same-site", 403}, {"cross-site", 403},
        {"nonsense", 403},  {"", 403},   {"Same-Origin", 0}};
    for (const auto& [site, status] : rows) {
        request.fields[2].value = site;
        EXPECT_EQ(refusalOf(request), status) << site;
    }
}

TEST_F(HttpRulesTest, KnowsNoOwnPageOfAServerWithoutAName) {
    request.isHttp11 = false;
    request.fields = {{"Origin", "http://"}};
    EXPECT_EQ(refusalOf(request), 403);
}

TEST_F(HttpRulesTest, LetsAnotherSiteLinkToThePageAndLoadNothing) {
    request.method = "GET";
    request.contentLength.reset();
    request.fields.push_back({"Sec-Fetch-Site", "cross-site"});
    const std::pair<std::string_view, int> rows[] = {
        {"/", 0},         {"/?a", 0},           {"http://here/", 0},
        {"/events", 403}, {"/console.js", 403}, {"http://here/events", 403},
        {"//events", 403}};
    for (const auto& [target, status] : rows) {
        request.target = target;
        EXPECT_EQ(refusalOf(request, {.servesPages = true}), status) << target;
    }
}

TEST_F(HttpRulesTest, IsAskedByItsOwnNamesAlone) {
    HostNameSources sources;
    sources.machine = "";
    sources.others = {"here"};
    const HostNames names(sources);
    const HttpRules rules{.servesPages = true, .names = &names};
    EXPECT_EQ(refusalOf(request, rules), 0);
    request.fields[0].value = "evil.example:5988";
    EXPECT_EQ(refusalOf(request), 0) << "without names there are no others";
    for (const std::string_view method : {"POST", "GET", "OPTIONS", "M-POST"}) {
        request.method = method;
        EXPECT_EQ(refusalOf(request, rules), 421) << method;
    }
}

TEST_F(HttpRulesTest, JudgesTheNameInTheTargetToo) {
    HostNameSources sources;
    sources.machine = "";
    const HostNames names(sources);
    const HttpRules rules{.names = &names};
    request.fields[0].value = "localhost";
    for (const std::string_view target :
         {"/", "http://localhost/", "http://[::1]:5988", "/?://x"}) {
        request.target = target;
        EXPECT_EQ(refusalOf(request, rules), 0) << target;
    }
    for (const std::string_view target :
         {"http://evil.example/", "http://evil.example", "http://localhost@evil.example/",
          "x://evil.example?a", "http:///", "://"}) {
        request.target = target;
        EXPECT_EQ(refusalOf(request, rules), 421) << target;
    }
    request.target = "http://localhost/";
    request.fields[0].value = "evil.example";
    EXPECT_EQ(refusalOf(request, rules), 421);
}

TEST_F(HttpRulesTest, WantsNoNameOfHttp10) {
    const HostNames names;
    request.isHttp11 = false;
    request.fields = {};
    EXPECT_EQ(refusalOf(request, {.names = &names}), 0);
    request.target = "http://evil.example/";
    EXPECT_EQ(refusalOf(request, {.names = &names}), 421);
}

TEST_F(HttpRulesTest, SaysWhomItDoesNotServe) {
    EXPECT_THAT(refusal(403), HasSubstr("made by a page of another site"));
    EXPECT_THAT(refusal(421), HasSubstr("HTTP/1.1 421 Misdirected Request\r\n"));
    EXPECT_THAT(refusal(421), HasSubstr("--host-name NAME"));
}

TEST_F(HttpRulesTest, SaysWhatWouldHelp) {
    EXPECT_THAT(refusal(405), HasSubstr("\r\nAllow: POST\r\n"));
    EXPECT_THAT(refusal(401), HasSubstr("\r\nWWW-Authenticate: Basic realm=\"cimhost\""));
    EXPECT_THAT(refusal(401), HasSubstr("\r\nContent-Length: 0\r\n"));
    EXPECT_THAT(refusal(400), testing::Not(HasSubstr("Allow")));
}

}  // namespace
}  // namespace cimhost
