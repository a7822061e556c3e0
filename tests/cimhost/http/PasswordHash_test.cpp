#include "cimhost/http/PasswordHash.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

TEST(PasswordHash, IsASaltedYescrypt) {
    const std::string hash = hashPassword("secret");
    EXPECT_THAT(hash, testing::StartsWith("$y$"));
    EXPECT_NE(hash, hashPassword("secret"));
    EXPECT_TRUE(isUsableHash(hash));
    EXPECT_TRUE(matchesHash("secret", hash));
    EXPECT_FALSE(matchesHash("Secret", hash));
    EXPECT_FALSE(matchesHash("", hash));
}

TEST(PasswordHash, KnowsTheOtherMethodsOfCrypt) {
    const std::string sha512 =
        "$6$rounds=1000$abcdefgh$"
        "zfuYKYTkH1umm8XyJRx1sHcLIPf4iB8DO7Qp2EzQbO4dYlfbb/vyqHPWpUdI22wfMDbZt/XNOqFJHCRZMHxvV/";
    EXPECT_TRUE(isUsableHash(sha512));
    EXPECT_FALSE(matchesHash("not it", sha512));
}

TEST(PasswordHash, RefusesWhatIsNoHashOrAWeakOne) {
    for (const std::string hash :
         {"", "secret", "*", "!", "x", "$", "$9$abc", "ab1234567890a", "$1$ab$cdef"}) {
        EXPECT_FALSE(isUsableHash(hash)) << hash;
    }
    EXPECT_FALSE(matchesHash("secret", ""));
    EXPECT_FALSE(matchesHash("secret", "*0"));
    EXPECT_FALSE(matchesHash("*0", "*0"));
}

TEST(PasswordHash, DoesNotStopAtANul) {
    const std::string hash = hashPassword("secret");
    EXPECT_FALSE(matchesHash(std::string("secret\0more", 11), hash));
    EXPECT_THROW(hashPassword(std::string("se\0cret", 7)), std::runtime_error);
    EXPECT_THROW(hashPassword(std::string(2000, 'x')), std::runtime_error);
}

TEST(PasswordHash, WipesASecret) {
    std::string secret = "a secret that is longer than a short string";
    wipe(secret);
    EXPECT_TRUE(secret.empty());
    EXPECT_EQ(std::string(secret.data(), 10), std::string(10, '\0'));
}

}  // namespace
}  // namespace cimhost
