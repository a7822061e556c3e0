#include "cimhost/query/WqlPattern.h"

#include <gtest/gtest.h>

#include <string>

namespace cimhost {
namespace {

TEST(WqlPattern, MatchesTheWholeText) {
    EXPECT_TRUE(isLike("fan", "fan"));
    EXPECT_FALSE(isLike("fan 1", "fan"));
    EXPECT_FALSE(isLike("a fan", "fan"));
    EXPECT_FALSE(isLike("Fan", "fan"));
    EXPECT_TRUE(isLike("", ""));
    EXPECT_FALSE(isLike("", "_"));
}

TEST(WqlPattern, TakesAnyTextForAPercentSign) {
    EXPECT_TRUE(isLike("fan 1 failed", "fan%failed"));
    EXPECT_TRUE(isLike("failed failed", "%failed"));
    EXPECT_TRUE(isLike("", "%%"));
    EXPECT_TRUE(isLike("abcabd", "%ab%d%"));
    EXPECT_FALSE(isLike("abcabc", "%ab%d%"));
}

TEST(WqlPattern, TakesOneCharacterForAnUnderscore) {
    EXPECT_TRUE(isLike("fan1", "fan_"));
    EXPECT_TRUE(isLike("fan\xC3\xA9", "fan_"));
    EXPECT_FALSE(isLike("fan12", "fan_"));
}

TEST(WqlPattern, TakesOneOfASet) {
    EXPECT_TRUE(isLike("fan3", "fan[0-5x]"));
    EXPECT_TRUE(isLike("fanx", "fan[0-5x]"));
    EXPECT_FALSE(isLike("fan6", "fan[0-5x]"));
    EXPECT_TRUE(isLike("fan6", "fan[^0-5]"));
    EXPECT_FALSE(isLike("fan3", "fan[^0-5]"));
    EXPECT_TRUE(isLike("50%", "50[%]"));
    EXPECT_FALSE(isLike("501", "50[%]"));
    EXPECT_TRUE(isLike("a[b", "a[b"));
    EXPECT_TRUE(isLike("]", "[]]"));
    EXPECT_TRUE(isLike("-", "[a-]")) << "a hyphen at the end is one";
    EXPECT_TRUE(isLike("a", "[a-]"));
    EXPECT_FALSE(isLike("b", "[a-]"));
}

TEST(WqlPattern, TakesABracketBehindTheOpeningOneIntoASet) {
    EXPECT_TRUE(isLike("x", "[]x]"));
    EXPECT_FALSE(isLike("y", "[]x]"));
    EXPECT_TRUE(isLike("y", "[^]x]"));
    EXPECT_FALSE(isLike("]", "[^]x]"));
    EXPECT_FALSE(isLike("x", "[^]x]"));
}

TEST(WqlPattern, TakesWholeCharactersForAPercentSign) {
    EXPECT_TRUE(isLike("\xC3\xA9\xC3\xA9z", "%z"));
    EXPECT_TRUE(
        isLike("\xC3\xA9"
               "ba",
               "%[^\xC3\xA9]a"));
    // Half of the character would be neither it nor the letter behind it.
    EXPECT_FALSE(
        isLike("\xC3\xA9"
               "a",
               "%[^\xC3\xA9]a"));
}

TEST(WqlPattern, IsNotSlowedDownByManyPercentSigns) {
    std::string pattern;
    for (int i = 0; i < 200; ++i) pattern += "%a";
    EXPECT_FALSE(isLike(std::string(20000, 'a'), pattern + "b"));
}

}  // namespace
}  // namespace cimhost
