#include "cimhost/http/HttpRequest.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

struct HttpRequestTest : testing::Test {
    HttpRequest request;

    std::string_view serverNameWith(std::string_view host) {
        request.localAddress = "127.0.0.1:5988";
        request.fields = {{"host", host}};
        return request.serverName();
    }
};

TEST_F(HttpRequestTest, FindsTheFirstFieldOfANameInAnyCase) {
    request.fields = {{"A", "1"}, {"CIMMethod", "2"}, {"cimmethod", "3"}};
    EXPECT_EQ(request.header("cimMETHOD"), "2");
    EXPECT_EQ(request.header("CIMMetho"), std::nullopt);
}

TEST_F(HttpRequestTest, NamesTheServerAsTheClientDoes) {
    EXPECT_EQ(serverNameWith("host.example-1_a:5988"), "host.example-1_a:5988");
    EXPECT_EQ(serverNameWith("[::1]:5988"), "[::1]:5988");
}

TEST_F(HttpRequestTest, NamesTheLocalAddressWhenTheHostIsNone) {
    for (const std::string_view host : {"", "a<b", "a\"b", "a/b", "user@a", "a b", "\xC3\xA4"}) {
        EXPECT_EQ(serverNameWith(host), "127.0.0.1:5988") << host;
    }
    EXPECT_EQ(serverNameWith(std::string(262, 'a')), "127.0.0.1:5988");
    request.fields.clear();
    EXPECT_EQ(request.serverName(), "127.0.0.1:5988");
}

TEST_F(HttpRequestTest, HasAPathWhateverElseItsTargetHolds) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"/", "/"},
        {"/a/b", "/a/b"},
        {"/a?b=c", "/a"},
        {"/a?b=http://c/d", "/a"},
        {"/a://b", "/a://b"},
        {"/a#b", "/a"},
        {"http://host:5988/a?b", "/a"},
        {"http://host", "/"},
        {"http://host?a", "/"},
        {"*", "*"},
        {"", ""},
    };
    for (const auto& [target, path] : rows) {
        request.target = target;
        EXPECT_EQ(request.path(), path) << target;
    }
}

TEST_F(HttpRequestTest, HasAnAuthorityWhenItsTargetIsAbsolute) {
    const std::pair<std::string_view, std::optional<std::string_view>> rows[] = {
        {"/", std::nullopt},
        {"/a?b=http://c/d", std::nullopt},
        {"/a://b", std::nullopt},
        {"host:5988", std::nullopt},
        {"http://host:5988/a?b", "host:5988"},
        {"http://user@host?a", "user@host"},
        {"http://host", "host"},
        {"http:///", ""},
        {"://host/", "host"},
    };
    for (const auto& [target, authority] : rows) {
        request.target = target;
        EXPECT_EQ(request.authority(), authority) << target;
    }
}

TEST_F(HttpRequestTest, HasABodyWhenChunkedOrOfALength) {
    EXPECT_FALSE(request.hasBody());
    request.contentLength = 0;
    EXPECT_FALSE(request.hasBody());
    request.contentLength = 1;
    EXPECT_TRUE(request.hasBody());
    request.contentLength.reset();
    request.isChunked = true;
    EXPECT_TRUE(request.hasBody());
}

}  // namespace
}  // namespace cimhost
