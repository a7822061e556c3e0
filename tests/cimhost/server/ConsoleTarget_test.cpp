#include "cimhost/server/ConsoleTarget.h"

#include "cimhost/server/Command.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

TEST(ConsoleTarget, HasTheUsualPortOfItsScheme) {
    EXPECT_EQ(parseConsoleTarget("https://cim.example").url(), "https://cim.example:5989");
    EXPECT_EQ(parseConsoleTarget("HTTPS://cim.example/").url(), "https://cim.example:5989");
    EXPECT_EQ(parseConsoleTarget("http://cim.example").url(), "http://cim.example:5988");
    EXPECT_EQ(parseConsoleTarget("https://[fe80::1]").url(), "https://[fe80::1]:5989");
}

TEST(ConsoleTarget, KeepsWhatIsNamed) {
    const ConsoleTarget target = parseConsoleTarget("https://[::1]:15989/wbem");
    EXPECT_TRUE(target.usesTls);
    EXPECT_EQ(target.host, "::1");
    EXPECT_EQ(target.port, 15989);
    EXPECT_EQ(target.path, "/wbem");
    EXPECT_EQ(parseConsoleTarget("http://cim.example:80").port, 80);
    EXPECT_EQ(parseConsoleTarget("https://cim.example:443/").path, "");
}

TEST(ConsoleTarget, RefusesWhatIsNoUrl) {
    for (const char* text : {"", "cim.example", "ftp://cim.example", "https://", "https://a b",
                             "https://user@cim.example", "https://cim.example:0",
                             "console:", "https://cim.example:99999", "https://cim.example#top"}) {
        EXPECT_THROW(parseConsoleTarget(text), UsageError) << text;
    }
}

}  // namespace
}  // namespace cimhost
