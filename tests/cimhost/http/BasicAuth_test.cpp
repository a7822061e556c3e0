#include "cimhost/http/BasicAuth.h"

#include "cimhost/http/PasswordHash.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace cimhost {
namespace {

struct BasicAuthTest : testing::Test {
    static PasswordFile users() {
        PasswordFile file;
        file.set("fred", hashPassword("secret"));
        file.set("anna", hashPassword("a:b"));
        return file;
    }

    BasicAuth authentication{users()};
};

std::optional<std::string> parse(std::string_view authorization) {
    const auto credentials = parseBasic(authorization);
    if (!credentials) return std::nullopt;
    return credentials->user + "|" + credentials->password;
}

TEST(ParseBasic, ReadsUserAndPassword) {
    EXPECT_EQ(parse("Basic ZnJlZDpzZWNyZXQ="), "fred|secret");
    EXPECT_EQ(parse("bASIC   ZnJlZDpzZWNyZXQ="), "fred|secret");
    EXPECT_EQ(parse("Basic YTpi"), "a|b");
    EXPECT_EQ(parse("Basic YTo6Og=="), "a|::") << "colons after the first belong to the password";
    EXPECT_EQ(parse("Basic YTo="), "a|");
    EXPECT_EQ(parse("Basic ZsO8cjpwdw=="), "f\xC3\xBCr|pw");
}

TEST(ParseBasic, RefusesWhatIsNone) {
    for (const std::string_view text : {"",
                                        "Basic",
                                        "Basic ",
                                        "Basic    ",
                                        "Digest ZnJlZDpzZWNyZXQ=",
                                        "ZnJlZDpzZWNyZXQ=",
                                        "Basic ZnJlZDpzZWNyZXQ",
                                        "Basic ZnJlZDpzZWNyZXQ==",
                                        "Basic ZnJl=DpzZWNyZXQ",
                                        "Basic ====",
                                        "Basic dTpwc===",
                                        "Basic ZnJlZDpzZWNyZXQ=x",
                                        "Basic ZnJl ZDpz",
                                        "Basic Zn-_",
                                        "Basic YQ==",
                                        "Basic OmI=",
                                        "Basic YTpiAA==",
                                        "Basic YQo6Yg==",
                                        "Basic\tYTpi",
                                        "Basic YTpi\xC3\xA4\xC3\xA4"}) {
        EXPECT_EQ(parse(text), std::nullopt) << text;
    }
}

TEST_F(BasicAuthTest, LetsInWhoKnowsThePassword) {
    EXPECT_EQ(authentication.authenticate("Basic ZnJlZDpzZWNyZXQ=", "127.0.0.1:5"), "fred");
    EXPECT_EQ(authentication.authenticate("Basic ZnJlZDpzZWNyZXQ=", "127.0.0.1:5"), "fred")
        << "remembered";
    EXPECT_EQ(authentication.authenticate("Basic YW5uYTphOmI=", "127.0.0.1:5"), "anna");
}

TEST_F(BasicAuthTest, KeepsOthersOut) {
    EXPECT_EQ(authentication.authenticate("Basic ZnJlZDpzZWNyZXQ=", "127.0.0.1:5"), "fred");
    EXPECT_EQ(authentication.authenticate("Basic ZnJlZDpTZWNyZXQ=", "127.0.0.1:5"), "")
        << "fred:Secret";
    EXPECT_EQ(authentication.authenticate("Basic ZnJlZDo=", "127.0.0.1:5"), "") << "no password";
    EXPECT_EQ(authentication.authenticate("Basic RnJlZDpzZWNyZXQ=", "127.0.0.1:5"), "")
        << "Fred:secret";
    EXPECT_EQ(authentication.authenticate("Basic YW5uYTpzZWNyZXQ=", "127.0.0.1:5"), "")
        << "anna:secret";
    EXPECT_EQ(authentication.authenticate("", "127.0.0.1:5"), "");
}

TEST_F(BasicAuthTest, LetsNoStrangerInWithSomebodysPassword) {
    EXPECT_EQ(authentication.authenticate("Basic eDphOmI=", "127.0.0.1:5"), "")
        << "x with anna's password";
    EXPECT_EQ(BasicAuth(PasswordFile()).authenticate("Basic eDphOmI=", "127.0.0.1:5"), "");
}

TEST_F(BasicAuthTest, JudgesNothingNewOnceItEnds) {
    EXPECT_EQ(authentication.authenticate("Basic ZnJlZDpzZWNyZXQ=", "127.0.0.1:5"), "fred");
    authentication.end();
    EXPECT_EQ(authentication.authenticate("Basic YW5uYTphOmI=", "127.0.0.1:5"), std::nullopt);
    EXPECT_EQ(authentication.authenticate("Basic ZnJlZDpzZWNyZXQ=", "127.0.0.1:5"), "fred");
    EXPECT_EQ(authentication.authenticate("nonsense", "127.0.0.1:5"), "");
}

TEST_F(BasicAuthTest, AnswersManyThreads) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([this] {
            for (int j = 0; j < 50; ++j) {
                EXPECT_EQ(authentication.authenticate("Basic ZnJlZDpzZWNyZXQ=", "127.0.0.1:5"),
                          "fred");
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace cimhost
