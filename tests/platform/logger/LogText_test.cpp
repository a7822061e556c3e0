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
