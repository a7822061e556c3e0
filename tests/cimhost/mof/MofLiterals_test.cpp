#include "cimhost/mof/MofLiterals.h"

#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

const std::string fileName = "t.mof";

Value numberOfText(std::string_view text) { return numberOf(MofLexer(text, fileName).next()); }
Value characterOfText(std::string_view text) {
    return characterOf(MofLexer(text, fileName).next());
}

std::string stringOf(std::string_view text) {
    std::string result;
    appendString(MofLexer(text, fileName).next(), result);
    return result;
}

template <typename Read>
std::string refusal(Read read, std::string_view text) {
    return refusalOf<MofError>([&] { read(text); });
}

Value whole(std::uint64_t number) { return Value::unsignedInteger(CimType::uint64, number); }
Value negative(std::int64_t number) { return Value::signedInteger(CimType::sint64, number); }
Value real(double number) { return Value(CimType::real64, number); }

TEST(MofLiterals, ReadIntegersInEveryBase) {
    EXPECT_EQ(numberOfText("0"), whole(0));
    EXPECT_EQ(numberOfText("1234"), whole(1234));
    EXPECT_EQ(numberOfText("+12"), whole(12));
    EXPECT_EQ(numberOfText("-12"), negative(-12));
    EXPECT_EQ(numberOfText("-0"), whole(0));
    EXPECT_EQ(numberOfText("0x1F"), whole(31));
    EXPECT_EQ(numberOfText("0XaB"), whole(171));
    EXPECT_EQ(numberOfText("-0x10"), negative(-16));
    EXPECT_EQ(numberOfText("0x1b"), whole(27));
    EXPECT_EQ(numberOfText("017"), whole(15));
    EXPECT_EQ(numberOfText("-017"), negative(-15));
    EXPECT_EQ(numberOfText("00"), whole(0));
    EXPECT_EQ(numberOfText("101b"), whole(5));
    EXPECT_EQ(numberOfText("0101B"), whole(5));
    EXPECT_EQ(numberOfText("-1b"), negative(-1));
}

TEST(MofLiterals, ReadTheWidestIntegers) {
    EXPECT_EQ(numberOfText("18446744073709551615"), whole(~std::uint64_t{0}));
    EXPECT_EQ(numberOfText("0xFFFFFFFFFFFFFFFF"), whole(~std::uint64_t{0}));
    EXPECT_EQ(numberOfText("-9223372036854775808"), negative(INT64_MIN));
    EXPECT_EQ(numberOfText(std::string(64, '1') + "b"), whole(~std::uint64_t{0}));
}

TEST(MofLiterals, ReadReals) {
    EXPECT_EQ(numberOfText("1.5"), real(1.5));
    EXPECT_EQ(numberOfText("-1.5"), real(-1.5));
    EXPECT_EQ(numberOfText("+.5"), real(0.5));
    EXPECT_EQ(numberOfText("1.5e3"), real(1500));
    EXPECT_EQ(numberOfText("1.5E-3"), real(0.0015));
    EXPECT_EQ(numberOfText("1.5e+3"), real(1500));
    EXPECT_EQ(numberOfText("007.25"), real(7.25));
}

TEST(MofLiterals, RefuseWhatIsNoNumber) {
    for (const char* const text : {"08", "019", "0x", "0xG", "102b", "b1b", "1a", "1e5", "1.",
                                   "1.e5", "1.5e", "1.5e+", "1.2.3", "1.5x", "0b2", "12_"}) {
        const auto first = MofLexer(text, fileName).next();
        if (first.kind != MofToken::Kind::number) continue;
        EXPECT_EQ(refusal(numberOfText, text),
                  "t.mof:1:1: '" + std::string(text) + "' is not a number");
    }
}

TEST(MofLiterals, RefuseNumbersBeyond64Bits) {
    for (const char* const text : {"18446744073709551616", "-9223372036854775809",
                                   "0x10000000000000000", "1.0e999", "02000000000000000000000"}) {
        EXPECT_EQ(refusal(numberOfText, text),
                  "t.mof:1:1: '" + std::string(text) + "' does not fit into 64 bits");
    }
}

TEST(MofLiterals, ReadStringEscapes) {
    EXPECT_EQ(stringOf(R"("")"), "");
    EXPECT_EQ(stringOf(R"("a\b\t\n\f\r\"\'\\z")"), "a\b\t\n\f\r\"'\\z");
    EXPECT_EQ(stringOf(R"("\x41\X42\x0043")"), "ABC");
    EXPECT_EQ(stringOf(R"("\xE4")"), "\xC3\xA4");
    EXPECT_EQ(stringOf(R"("\x20AC!")"), "\xE2\x82\xAC!");
    EXPECT_EQ(stringOf(R"("\x00411")"), "A1");
    EXPECT_EQ(stringOf(R"("\x41g")"), "Ag");
    EXPECT_EQ(stringOf("\"\xC3\xA4\t'\""), "\xC3\xA4\t'");
}

TEST(MofLiterals, JoinSurrogatesIntoOneCharacter) {
    EXPECT_EQ(stringOf(R"("\xD83D\xDE00")"), "\xF0\x9F\x98\x80");
}

TEST(MofLiterals, AppendToWhatIsThere) {
    std::string text = "a";
    appendString(MofLexer("\"b\"", fileName).next(), text);
    EXPECT_EQ(text, "ab");
}

TEST(MofLiterals, NameTheByteThatIsWrongInAString) {
    EXPECT_EQ(refusal(stringOf, R"("ab\q")"), "t.mof:1:4: an unknown escape");
    EXPECT_EQ(refusal(stringOf, R"("\x")"), "t.mof:1:2: expected a hexadecimal digit after '\\x'");
    EXPECT_EQ(refusal(stringOf, R"("a\xg")"),
              "t.mof:1:3: expected a hexadecimal digit after '\\x'");
    EXPECT_EQ(refusal(stringOf, R"("\x0")"),
              "t.mof:1:2: a string must not hold the character U+0000");
    EXPECT_EQ(refusal(stringOf, R"("a\xD83D")"),
              "t.mof:1:3: a high surrogate without a low one after it");
    EXPECT_EQ(refusal(stringOf, R"("\xD83Dx")"),
              "t.mof:1:2: a high surrogate without a low one after it");
    EXPECT_EQ(refusal(stringOf, R"("\xD83D\n")"),
              "t.mof:1:2: a high surrogate without a low one after it");
    EXPECT_EQ(refusal(stringOf, R"("\xDE00")"),
              "t.mof:1:2: a low surrogate without a high one before it");
    EXPECT_EQ(refusal(stringOf, "\"ab\x01\""), "t.mof:1:4: a control character must be escaped");
    EXPECT_EQ(refusal(stringOf, "\"\\n\xFF\""), "t.mof:1:4: the text is not UTF-8");
}

TEST(MofLiterals, ReadCharacters) {
    const auto character = [](std::uint64_t unit) {
        return Value::unsignedInteger(CimType::char16, unit);
    };
    EXPECT_EQ(characterOfText("'a'"), character('a'));
    EXPECT_EQ(characterOfText("'\"'"), character('"'));
    EXPECT_EQ(characterOfText(R"('\x41')"), character(0x41));
    EXPECT_EQ(characterOfText(R"('\xD83D')"), character(0xD83D));
    EXPECT_EQ(characterOfText(R"('\x0')"), character(0));
    EXPECT_EQ(characterOfText(R"('\n')"), character('\n'));
    EXPECT_EQ(characterOfText(R"('\'')"), character('\''));
    EXPECT_EQ(characterOfText("'\xE2\x82\xAC'"), character(0x20AC));
}

TEST(MofLiterals, RefuseWhatIsNotOneCharacter) {
    EXPECT_EQ(refusal(characterOfText, "''"),
              "t.mof:1:1: expected a character between the apostrophes");
    EXPECT_EQ(refusal(characterOfText, "'ab'"),
              "t.mof:1:1: more than one character between the apostrophes");
    EXPECT_EQ(refusal(characterOfText, R"('\x41B1C')"),
              "t.mof:1:1: more than one character between the apostrophes");
    EXPECT_EQ(refusal(characterOfText, "'\xF0\x9F\x98\x80'"),
              "t.mof:1:1: the character does not fit into char16");
    EXPECT_EQ(refusal(characterOfText, "'\xFF'"), "t.mof:1:2: the text is not UTF-8");
    EXPECT_EQ(refusal(characterOfText, "'\x01'"), "t.mof:1:2: a control character must be escaped");
}

}  // namespace
}  // namespace cimhost
