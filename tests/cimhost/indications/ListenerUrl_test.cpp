#include "cimhost/indications/ListenerUrl.h"

#include "cimhost/repository/CimError.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

int codeOf(const std::string& text) {
    return errorCodeOf([&] { parseListenerUrl(text); });
}

TEST(ListenerUrl, HasHostPortAndPath) {
    const ListenerUrl url = parseListenerUrl("http://example.org:5990/take/it?now");
    EXPECT_EQ(url.host, "example.org");
    EXPECT_EQ(url.port, 5990);
    EXPECT_EQ(url.path, "/take/it?now");
    EXPECT_EQ(url.authority(), "example.org:5990");
}

TEST(ListenerUrl, HasDefaults) {
    const ListenerUrl url = parseListenerUrl("HTTP://localhost");
    EXPECT_EQ(url.port, 80);
    EXPECT_EQ(url.path, "/");
    EXPECT_EQ(parseListenerUrl("http://localhost?x").path, "/?x");
}

TEST(ListenerUrl, TakesAnIpv6AddressOutOfItsBrackets) {
    const ListenerUrl url = parseListenerUrl("http://[::1]:80/");
    EXPECT_EQ(url.host, "::1");
    EXPECT_EQ(url.authority(), "[::1]:80");
}

TEST(ListenerUrl, MayBeThatOfTheConsole) {
    EXPECT_TRUE(parseListenerUrl("console:").isConsole);
    EXPECT_TRUE(parseListenerUrl("Console:").isConsole);
    EXPECT_FALSE(parseListenerUrl("http://console/").isConsole);
    EXPECT_EQ(codeOf("console"), 4);
    EXPECT_EQ(codeOf("console:x"), 4);
    EXPECT_EQ(codeOf("console://x/"), 4);
}

TEST(ListenerUrl, RefusesEverythingElse) {
    for (const char* const text :
         {"", "localhost", "http://", "http:///x", "ftp://x/", "http://x:/", "http://x:0/",
          "http://x:65536/", "http://x:-1/", "http://x:5x/", "http://u@x/", "http://x y/",
          "http://x/a b", "http://x/#f", "http://x/\r\nHost: y", "http://[::1/", "http://[]/",
          "http://[::1]x/", "http://x/\xC3\xA9"}) {
        EXPECT_EQ(codeOf(text), 4) << text;
    }
    EXPECT_EQ(codeOf("http://x/" + std::string(2048, 'a')), 4);
    EXPECT_EQ(codeOf("https://localhost/x"), 7);
}

}  // namespace
}  // namespace cimhost
