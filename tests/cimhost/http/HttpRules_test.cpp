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

TEST_F(HttpRulesTest, SaysWhatWouldHelp) {
    EXPECT_THAT(refusal(405), HasSubstr("\r\nAllow: POST\r\n"));
    EXPECT_THAT(refusal(401), HasSubstr("\r\nWWW-Authenticate: Basic realm=\"cimhost\""));
    EXPECT_THAT(refusal(401), HasSubstr("\r\nContent-Length: 0\r\n"));
    EXPECT_THAT(refusal(400), testing::Not(HasSubstr("Allow")));
}

}  // namespace
}  // namespace cimhost
