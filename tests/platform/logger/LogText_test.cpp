#include "platform/logger/LogText.h"

#include <gtest/gtest.h>

namespace {

TEST(LogText, LeavesPrintableTextAndUtf8Alone) {
    EXPECT_EQ(escapeLogText("path/to: \"x\" ~"), "path/to: \"x\" ~");
    EXPECT_EQ(escapeLogText("L\xc3\xbc"
                            "fter"),
              "L\xc3\xbc"
              "fter");
    EXPECT_EQ(escapeLogText(""), "");
}

TEST(LogText, EscapesWhatCouldEndALine) {
    EXPECT_EQ(escapeLogText("a\nb\rc\td"), "a\\nb\\rc\\td");
    EXPECT_EQ(escapeLogText(std::string_view("\0\x01\x1b\x1f\x7f", 5)),
              "\\x00\\x01\\x1b\\x1f\\x7f");
}

TEST(LogText, ShowsWhatWouldDeceiveItsReader) {
    EXPECT_EQ(escapeLogText("\xC2\x9B 31m"), "\\u009b 31m");
    EXPECT_EQ(escapeLogText("\x9B 31m \xFF\xE9"), "\\x9b 31m \xFF\xE9");
    EXPECT_EQ(escapeLogText("\xE2\x80\xAE\xE2\x81\xA6\xD8\x9C\xE2\x80\x8F\xE2\x80\xA8"),
              "\\u202e\\u2066\\u061c\\u200f\\u2028");
    EXPECT_EQ(escapeLogText("\xE2\x80"), "\xE2\\x80") << "cut off";
    const std::string others = "\xC3\x9B \xE2\x82\xAC \xF0\x9F\x98\x80 \xC2\xA0";
    EXPECT_EQ(escapeLogText(others), others) << "bytes of other characters stay";
}

TEST(LogText, DoublesBackslashesSoThatNoEscapeIsForged) {
    EXPECT_EQ(escapeLogText("a\\nb"), "a\\\\nb");
}

TEST(LogText, LeavesNoControlByte) {
    for (int byte = 0; byte < 256; ++byte) {
        for (const char left : escapeLogText(std::string(1, static_cast<char>(byte)))) {
            const auto value = static_cast<unsigned char>(left);
            EXPECT_TRUE(value >= 0x20 && value != 0x7f) << byte;
        }
    }
}

}  // namespace
