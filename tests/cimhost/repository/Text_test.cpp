#include "cimhost/repository/Text.h"

#include <gtest/gtest.h>

#include <sstream>
#include <utility>

namespace cimhost {
namespace {

// Beginnings of this are short and long texts; no two bytes that stand near each other are alike.
const std::string alphabet = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";

TEST(Text, KeepsWhatItIsGivenWhateverTheLength) {
    for (std::size_t size = 0; size <= alphabet.size(); ++size) {
        const std::string content = alphabet.substr(0, size);
        const Text text(content);
        EXPECT_EQ(text.view(), content);
        EXPECT_EQ(text.str(), content);
        EXPECT_EQ(text.size(), size);
        EXPECT_EQ(text.empty(), size == 0);
    }
    EXPECT_EQ(Text().view(), "");
}

TEST(Text, KeepsBytesOfAnyKind) {
    for (const std::size_t size : {1U, 15U, 16U, 40U}) {
        for (const char byte : {'\0', '\xFF', '\x0F'}) {
            const std::string content(size, byte);
            EXPECT_EQ(Text(content).view(), content);
        }
    }
}

TEST(Text, CopiesAreTextsOfTheirOwn) {
    for (const std::size_t size : {0U, 3U, 15U, 16U, 40U}) {
        Text original(alphabet.substr(0, size));
        const Text copy = original;
        original = Text("other");
        EXPECT_EQ(copy.view(), alphabet.substr(0, size));
        original = copy;
        EXPECT_EQ(original, copy);
    }
}

TEST(Text, IsEmptyOnceMovedFrom) {
    for (const std::size_t size : {3U, 40U}) {
        Text from(alphabet.substr(0, size));
        Text to("what was there before, which is long");
        to = std::move(from);
        EXPECT_EQ(to.view(), alphabet.substr(0, size));
        EXPECT_TRUE(from.empty());
        const Text made = std::move(to);
        EXPECT_EQ(made.view(), alphabet.substr(0, size));
        EXPECT_TRUE(to.empty());
    }
}

TEST(Text, MayBeAssignedToItself) {
    Text text(alphabet);
    const Text& same = text;
    text = same;
    EXPECT_EQ(text.view(), alphabet);
    Text& alias = text;
    text = std::move(alias);
    EXPECT_EQ(text.view(), alphabet);
}

TEST(Text, ComparesAndPrintsAsItsContent) {
    EXPECT_EQ(Text("a"), "a");
    EXPECT_FALSE(Text("a") == Text("b"));
    EXPECT_FALSE(Text("a") == Text(std::string("a\0", 2)));
    EXPECT_EQ("name " + Text("a"), "name a");
    std::ostringstream out;
    out << Text(alphabet);
    EXPECT_EQ(out.str(), alphabet);
}

}  // namespace
}  // namespace cimhost
