#include "cimhost/http/HttpLists.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

bool takesGzip(std::initializer_list<std::string_view> values) {
    HttpRequest request;
    for (const std::string_view value : values) {
        request.fields.push_back({"accept-encoding", value});
    }
    return takesCoding(request, "gzip");
}

bool isTagNamed(std::initializer_list<std::string_view> values) {
    HttpRequest request;
    for (const std::string_view value : values) request.fields.push_back({"if-none-match", value});
    return hasTag(request, "\"a,b\"");
}

TEST(HttpLists, KnowWhoTakesACoding) {
    EXPECT_TRUE(takesGzip({"gzip"}));
    EXPECT_TRUE(takesGzip({"GZip"}));
    EXPECT_TRUE(takesGzip({"gzip, deflate, br, zstd"}));
    EXPECT_TRUE(takesGzip({"br\t, gzip"}));
    EXPECT_TRUE(takesGzip({"br", "gzip"})) << "in another line of the head";
    EXPECT_TRUE(takesGzip({"*"}));
    EXPECT_TRUE(takesGzip({"br;q=1.0, gzip;q=0.5, *;q=0"}));
    EXPECT_TRUE(takesGzip({"gzip ; q=0.001"}));
    EXPECT_TRUE(takesGzip({"gzip;x=0"}));
}

TEST(HttpLists, KnowWhoDoesNot) {
    EXPECT_FALSE(takesGzip({}));
    EXPECT_FALSE(takesGzip({""}));
    EXPECT_FALSE(takesGzip({"br"}));
    EXPECT_FALSE(takesGzip({"identity"}));
    EXPECT_FALSE(takesGzip({"gzipped, xgzip"}));
    EXPECT_FALSE(takesGzip({"gzip;q=0"}));
    EXPECT_FALSE(takesGzip({"gzip; Q=0.000"}));
    EXPECT_FALSE(takesGzip({"gzip;x=1;q=0"}));
    EXPECT_FALSE(takesGzip({"*, gzip;q=0"})) << "what is named counts";
    EXPECT_FALSE(takesGzip({"gzip;q=0, *"}));
    EXPECT_FALSE(takesGzip({"*;q=0"}));
    EXPECT_FALSE(takesGzip({",;,;q=0,"}));
}

TEST(HttpLists, FindATag) {
    EXPECT_TRUE(isTagNamed({R"("a,b")"}));
    EXPECT_TRUE(isTagNamed({R"("x", "a,b")"}));
    EXPECT_TRUE(isTagNamed({R"("x","a,b","y")"}));
    EXPECT_TRUE(isTagNamed({R"("x")", R"("a,b")"})) << "in another line of the head";
    EXPECT_TRUE(isTagNamed({R"(W/"a,b")"})) << "weak or not is the same here";
    EXPECT_TRUE(isTagNamed({R"(, ,	W/"x" , "a,b")"}));
    EXPECT_TRUE(isTagNamed({"*"}));
}

TEST(HttpLists, FindNoTagWhereThereIsNone) {
    EXPECT_FALSE(isTagNamed({}));
    EXPECT_FALSE(isTagNamed({""}));
    EXPECT_FALSE(isTagNamed({"a,b"}));
    EXPECT_FALSE(isTagNamed({R"("A,B")"}));
    EXPECT_FALSE(isTagNamed({R"("a", "b")"}));
    EXPECT_FALSE(isTagNamed({R"("a,b)"}));
    EXPECT_FALSE(isTagNamed({R"(w/"a,b")"}));
    EXPECT_FALSE(isTagNamed({R"(x "a,b")"})) << "nothing is guessed behind what is no tag";
}

}  // namespace
}  // namespace cimhost
