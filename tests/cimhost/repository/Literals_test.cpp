#include "cimhost/repository/Literals.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Instance.h"

#include <gtest/gtest.h>

#include <limits>

namespace cimhost {
namespace {

constexpr auto bad = std::errc::invalid_argument;
constexpr auto beyond = std::errc::result_out_of_range;

std::optional<Value> integerOf(std::string_view text, IntegerForms forms) {
    Value value;
    return readInteger(text, forms, value) == std::errc() ? std::optional(value) : std::nullopt;
}

std::errc failureOf(std::string_view text, IntegerForms forms) {
    Value value;
    return readInteger(text, forms, value);
}

std::optional<Value> realOf(std::string_view text, CimType type = CimType::real64) {
    Value value;
    return readReal(text, type, value) == std::errc() ? std::optional(value) : std::nullopt;
}

std::string textOf(std::string_view literal, Escapes escapes) {
    std::string text;
    const std::size_t end = readQuoted(literal, escapes, text);
    if (end == std::string_view::npos) return "not closed";
    EXPECT_EQ(end, literal.size());
    return text;
}

Value whole(std::uint64_t number) { return Value::unsignedInteger(CimType::uint64, number); }

Value negative(std::int64_t number) { return Value::signedInteger(CimType::sint64, number); }

TEST(Literals, ReadDecimalIntegersToTheEndsOf64Bits) {
    for (const auto forms : {IntegerForms::decimal, IntegerForms::hexadecimal, IntegerForms::all}) {
        EXPECT_EQ(integerOf("0", forms), whole(0));
        EXPECT_EQ(integerOf("-0", forms), whole(0));
        EXPECT_EQ(integerOf("+7", forms), whole(7));
        EXPECT_EQ(integerOf("18446744073709551615", forms), whole(UINT64_MAX));
        EXPECT_EQ(integerOf("-9223372036854775808", forms), negative(INT64_MIN));
        EXPECT_EQ(failureOf("18446744073709551616", forms), beyond);
        EXPECT_EQ(failureOf("-9223372036854775809", forms), beyond);
        for (const char* const text : {"", "+", "-", "+-1", "--1", "1 ", " 1", "1.0", "x", "1x",
                                       "0x", "99999999999999999999x"}) {
            EXPECT_EQ(failureOf(text, forms), bad) << text;
        }
    }
}

TEST(Literals, ReadOtherBasesWhereTheLanguageHasThem) {
    EXPECT_EQ(failureOf("0x1F", IntegerForms::decimal), bad);
    EXPECT_EQ(integerOf("0x1F", IntegerForms::hexadecimal), whole(31));
    EXPECT_EQ(integerOf("-0X1b", IntegerForms::all), negative(-27));
    EXPECT_EQ(integerOf("017", IntegerForms::hexadecimal), whole(17));
    EXPECT_EQ(integerOf("017", IntegerForms::all), whole(15));
    EXPECT_EQ(failureOf("08", IntegerForms::all), bad);
    EXPECT_EQ(failureOf("101b", IntegerForms::hexadecimal), bad);
    EXPECT_EQ(integerOf("101b", IntegerForms::all), whole(5));
}

TEST(Literals, ReadRealsRoundedOnceToTheirType) {
    EXPECT_EQ(realOf("-1.5e3"), Value(CimType::real64, -1500.0));
    EXPECT_EQ(realOf("+.5"), Value(CimType::real64, 0.5));
    EXPECT_EQ(realOf("0.1", CimType::real32), Value(CimType::real32, double{0.1F}));
    // Half way between two floats, but for what only a double can tell.
    EXPECT_EQ(realOf("1.00000005960464477540", CimType::real32),
              Value(CimType::real32, 1.00000011920928955078));
    EXPECT_FALSE(realOf("1e39", CimType::real32));
    for (const char* const text : {"", "+", ".", "e5", "1,5", "0x1p3", "inf", "-inf", "infinity",
                                   "nan", "nan(1)", "1.0.0", "+-1", "1e400", "1.5e"}) {
        EXPECT_FALSE(realOf(text)) << text;
    }
}

TEST(Literals, ReadNumbersAsIntegersWhileTheyFit) {
    EXPECT_EQ(readNumber("18446744073709551615"), whole(UINT64_MAX));
    EXPECT_EQ(readNumber("18446744073709551616"), Value(CimType::real64, 18446744073709551616.0));
    EXPECT_EQ(readNumber("1.0"), Value(CimType::real64, 1.0));
    EXPECT_FALSE(readNumber("0x10"));
    EXPECT_FALSE(readNumber("1e999"));
}

TEST(Literals, AreCutOffBehindAllThatLooksLikeANumber) {
    for (const char* const text : {"1", "-1", "+.5", ".5"}) EXPECT_TRUE(beginsNumber(text)) << text;
    for (const char* const text : {"", "-", ".", "a", "+-1", "..5"}) {
        EXPECT_FALSE(beginsNumber(text)) << text;
    }
    EXPECT_EQ(numberLength("12ab+", false), 4U);
    EXPECT_EQ(numberLength("1e+5;", false), 2U);
    EXPECT_EQ(numberLength("1e+5;", true), 4U);
    EXPECT_EQ(numberLength("1.0e-5;", false), 6U);
}

TEST(Literals, ReadWhatEachLanguageEscapes) {
    EXPECT_EQ(textOf(R"("a\"b\\\n")", Escapes::backslash), "a\"b\\n");
    EXPECT_EQ(textOf(R"("a""b\"\\\n\x")", Escapes::quotes), "a\"b\"\\\\n\\x");
    EXPECT_EQ(textOf(R"('a''b\"')", Escapes::quotes), "a'b\"");
    EXPECT_EQ(textOf(R"("a\n\"\'\\\x20AC")", Escapes::mof), "a\n\"'\\\xE2\x82\xAC");
    for (const auto escapes : {Escapes::backslash, Escapes::quotes, Escapes::mof}) {
        EXPECT_EQ(textOf("\"\"", escapes), "");
        EXPECT_EQ(textOf("\"'\"", escapes), "'");
        for (const char* const text : {"\"", "\"a", "\"a\\", "\"a'"}) {
            EXPECT_EQ(textOf(text, escapes), "not closed") << text;
        }
    }
}

TEST(Literals, EndAtTheQuoteAndNotAtTheTextsEnd) {
    std::string text;
    EXPECT_EQ(readQuoted("\"a\" \"b\"", Escapes::backslash, text), 3U);
    EXPECT_EQ(text, "a");
}

TEST(Literals, InQuotesAreReadAsTheTextTheyWere) {
    std::string everyByte;
    for (char byte = 1; byte < 0x7F; ++byte) everyByte += byte;
    everyByte += "\xC3\xA9\xF0\x9F\x98\x80 \\x41 \\n";
    for (const auto escapes : {Escapes::backslash, Escapes::quotes, Escapes::mof}) {
        for (const char quote : {'"', '\''}) {
            EXPECT_EQ(textOf(quoted(everyByte, quote, escapes), escapes), everyByte);
        }
    }
    EXPECT_EQ(quoted("\n\x01"
                     "1'\"",
                     '"', Escapes::mof),
              R"("\n\x00011'\"")");
    EXPECT_EQ(quoted("\n'\"", '"', Escapes::backslash), "\"\n'\\\"\"");
}

TEST(Literals, OfMofAreNotWrittenForTextThatMofCannotHold) {
    EXPECT_THROW(quoted(std::string_view("a\0b", 3), '"', Escapes::mof), CimError);
    EXPECT_THROW(quoted("a\xFF", '"', Escapes::mof), CimError);
    EXPECT_EQ(quoted(std::string_view("\0\xFF", 2), '"', Escapes::backslash).size(), 4U);
}

TEST(Literals, OfCharactersAreReadAsTheUnitTheyWere) {
    for (const std::uint64_t unit : {0x0U, 0x1U, 0x27U, 0x41U, 0x5CU, 0xE9U, 0xD800U, 0xFFFFU}) {
        const std::string literal = characterLiteral(unit, Escapes::mof);
        std::size_t place = 1;
        EXPECT_EQ(readMofUnit(literal, place), unit) << literal;
        EXPECT_EQ(place + 1, literal.size()) << literal;
    }
    EXPECT_EQ(characterLiteral(0xD800, Escapes::backslash), R"('\xd800')");
    EXPECT_EQ(characterText(0xE9), "\xC3\xA9");
    EXPECT_EQ(characterText(0xDFFF), std::nullopt);
    EXPECT_EQ(readCharacter("\xC3\xA9"), Value::unsignedInteger(CimType::char16, 0xE9));
    EXPECT_EQ(readCharacter("ab"), std::nullopt);
    EXPECT_EQ(readCharacter("\xF0\x9F\x98\x80"), std::nullopt);
}

TEST(Literals, OfRealsAreTheShortestThatAreReadAsTheNumber) {
    NumberScratch scratch;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(realText(1, CimType::real64, scratch), "1.0");
    EXPECT_EQ(realText(-1e300, CimType::real64, scratch), "-1.0e+300");
    EXPECT_EQ(realText(double{0.1F}, CimType::real32, scratch), "0.1");
    EXPECT_EQ(realText(infinity, CimType::real64, scratch), "inf");
    EXPECT_EQ(realText(-infinity, CimType::real32, scratch), "-inf");
    for (const double number : {0.0, 0.1, 1.0 / 3, 5e-324, std::numeric_limits<double>::max()}) {
        EXPECT_EQ(realOf(realText(number, CimType::real64, scratch)),
                  Value(CimType::real64, number));
    }
}

}  // namespace
}  // namespace cimhost
