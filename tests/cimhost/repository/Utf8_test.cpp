#include "cimhost/repository/Utf8.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

TEST(Utf8, ReadsBackWhatItWrites) {
    for (const char32_t value : {U'a', U'\x7F', U'\x80', U'\x7FF', U'\x800', U'\xFFFF', U'\x10000',
                                 U'\x10FFFF', U'\xD7FF', U'\xE000'}) {
        std::string text;
        appendUtf8(text, value);
        const auto read = firstCodePoint(text + "tail");
        ASSERT_TRUE(read) << std::hex << static_cast<unsigned>(value);
        EXPECT_EQ(read->value, value);
        EXPECT_EQ(read->length, text.size());
    }
}

TEST(Utf8, RefusesWhatIsNoCharacter) {
    for (const std::string_view bytes : {
             std::string_view("\x80", 1),              // continuation byte alone
             std::string_view("\xC0\x80", 2),          // overlong NUL
             std::string_view("\xC1\xBF", 2),          // overlong
             std::string_view("\xE0\x9F\xBF", 3),      // overlong
             std::string_view("\xF0\x8F\xBF\xBF", 4),  // overlong
             std::string_view("\xED\xA0\x80", 3),      // surrogate
             std::string_view("\xF4\x90\x80\x80", 4),  // beyond U+10FFFF
             std::string_view("\xF5\x80\x80\x80", 4),
             std::string_view("\xFF", 1),
             std::string_view("\xC3", 1),      // cut short
             std::string_view("\xE2\x82", 2),  // cut short
             std::string_view("\xC3\x28", 2),  // second byte is no continuation
             std::string_view("", 0),
         }) {
        EXPECT_FALSE(firstCodePoint(bytes)) << bytes.size();
    }
}

TEST(Utf8, FindsTheFirstBadByte) {
    EXPECT_EQ(findInvalidUtf8("abc\xC3\xA4"), std::string_view::npos);
    EXPECT_EQ(findInvalidUtf8("ab\xFF"), 2U);
    EXPECT_EQ(findInvalidUtf8("\xC3\xA4\xC3"), 2U);
    EXPECT_EQ(findInvalidUtf8(""), std::string_view::npos);
}

}  // namespace
}  // namespace cimhost
