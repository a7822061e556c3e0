#include "cimhost/cimxml/ValueText.h"

#include "cimhost/repository/Instance.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

namespace cimhost {
namespace {

/// The value's text, or "-" when the text given is refused.
std::string roundTrip(CimType type, std::string_view text) {
    const std::optional<Value> value = readScalar(type, text);
    if (!value) return "-";
    EXPECT_EQ(value->type(), type);
    ScalarScratch scratch;
    return std::string(scalarText(*value, scratch));
}

TEST(ValueText, ReadsBooleansInAnyCase) {
    for (const char* text : {"true", "TRUE", "True", " tRuE\n"}) {
        EXPECT_EQ(roundTrip(CimType::boolean, text), "true") << text;
    }
    for (const char* text : {"false", "FALSE", "False"}) {
        EXPECT_EQ(roundTrip(CimType::boolean, text), "false") << text;
    }
    for (const char* text : {"", "1", "0", "yes", "truee", "tru", "true false"}) {
        EXPECT_EQ(roundTrip(CimType::boolean, text), "-") << text;
    }
}

TEST(ValueText, ReadsIntegersToTheEndOfTheirRange) {
    struct Row {
        CimType type;
        const char* least;
        const char* most;
        const char* under;
        const char* over;
    };
    for (const Row& row : std::initializer_list<Row>{
             {CimType::uint8, "0", "255", "-1", "256"},
             {CimType::uint16, "0", "65535", "-1", "65536"},
             {CimType::uint32, "0", "4294967295", "-1", "4294967296"},
             {CimType::uint64, "0", "18446744073709551615", "-1", "18446744073709551616"},
             {CimType::sint8, "-128", "127", "-129", "128"},
             {CimType::sint16, "-32768", "32767", "-32769", "32768"},
             {CimType::sint32, "-2147483648", "2147483647", "-2147483649", "2147483648"},
             {CimType::sint64, "-9223372036854775808", "9223372036854775807",
              "-9223372036854775809", "9223372036854775808"}}) {
        EXPECT_EQ(roundTrip(row.type, row.least), row.least);
        EXPECT_EQ(roundTrip(row.type, row.most), row.most);
        EXPECT_EQ(roundTrip(row.type, row.under), "-") << row.under;
        EXPECT_EQ(roundTrip(row.type, row.over), "-") << row.over;
        EXPECT_EQ(roundTrip(row.type, "99999999999999999999999999"), "-");
    }
}

TEST(ValueText, ReadsHexadecimalAndSignedIntegers) {
    EXPECT_EQ(roundTrip(CimType::uint16, "0xFf"), "255");
    EXPECT_EQ(roundTrip(CimType::uint16, "0X0010"), "16");
    EXPECT_EQ(roundTrip(CimType::sint16, "-0x10"), "-16");
    EXPECT_EQ(roundTrip(CimType::uint16, "+7"), "7");
    EXPECT_EQ(roundTrip(CimType::uint16, "-0"), "0");
    EXPECT_EQ(roundTrip(CimType::uint16, "007"), "7");
    EXPECT_EQ(roundTrip(CimType::uint16, " 7\t"), "7");
    EXPECT_EQ(roundTrip(CimType::uint64, "0xFFFFFFFFFFFFFFFF"), "18446744073709551615");
}

TEST(ValueText, RefusesWhatIsNoInteger) {
    for (const char* text : {"", " ", "-", "+", "0x", "x1", "1.0", "1e3", "1 2", "--1", "+-1",
                             "0x-1", "0xG", "12a", "\xC2\xB2"}) {
        EXPECT_EQ(roundTrip(CimType::uint32, text), "-") << text;
        EXPECT_EQ(roundTrip(CimType::sint32, text), "-") << text;
    }
}

TEST(ValueText, WritesRealsWithADecimalPoint) {
    EXPECT_EQ(roundTrip(CimType::real64, "1"), "1.0");
    EXPECT_EQ(roundTrip(CimType::real64, "-2.50"), "-2.5");
    EXPECT_EQ(roundTrip(CimType::real64, "1e300"), "1.0e+300");
    EXPECT_EQ(roundTrip(CimType::real64, "1.5E-3"), "0.0015");
    EXPECT_EQ(roundTrip(CimType::real64, "+.5"), "0.5");
    EXPECT_EQ(roundTrip(CimType::real64, "0.1"), "0.1");
    EXPECT_EQ(roundTrip(CimType::real32, "0.1"), "0.1");
    EXPECT_EQ(roundTrip(CimType::real64, "1.7976931348623157e308"), "1.7976931348623157e+308");
}

TEST(ValueText, ReadsAndWritesRealsThatAreNoNumbers) {
    EXPECT_EQ(roundTrip(CimType::real64, "NaN"), "NaN");
    EXPECT_EQ(roundTrip(CimType::real32, "inf"), "INF");
    EXPECT_EQ(roundTrip(CimType::real32, "+INF"), "INF");
    EXPECT_EQ(roundTrip(CimType::real64, "-INF"), "-INF");
}

TEST(ValueText, RefusesRealsOutOfRangeOrForm) {
    EXPECT_EQ(roundTrip(CimType::real32, "1e39"), "-");
    EXPECT_EQ(roundTrip(CimType::real64, "1e400"), "-");
    for (const char* text :
         {"", ".", "e5", "1,5", "0x1p3", "infinity", "nan(1)", "1.0.0", "+-1", "++1"}) {
        EXPECT_EQ(roundTrip(CimType::real64, text), "-") << text;
    }
}

TEST(ValueText, ReadsOneCharacterOfTheBasicPlane) {
    EXPECT_EQ(roundTrip(CimType::char16, "a"), "a");
    EXPECT_EQ(roundTrip(CimType::char16, " "), " ");
    EXPECT_EQ(roundTrip(CimType::char16, "\xC3\xA9"), "\xC3\xA9");
    EXPECT_EQ(roundTrip(CimType::char16, "\xE2\x82\xAC"), "\xE2\x82\xAC");
    for (const char* text : {"", "ab", "\xF0\x9F\x98\x80", "\xC3"}) {
        EXPECT_EQ(roundTrip(CimType::char16, text), "-") << text;
    }
}

TEST(ValueText, WritesHalfASurrogatePairAsTheReplacementCharacter) {
    ScalarScratch scratch;
    for (const std::uint64_t code : {0xD800U, 0xDFFFU, 0x10000U}) {
        EXPECT_EQ(scalarText(Value::unsignedInteger(CimType::char16, code), scratch),
                  "\xEF\xBF\xBD");
    }
}

TEST(ValueText, KeepsStringsAsTheyAre) {
    for (const char* text : {"", " ", " a\n", "\xC3\xA9<&"}) {
        EXPECT_EQ(roundTrip(CimType::string, text), text);
    }
}

TEST(ValueText, ReadsTimestampsAndIntervals) {
    for (const char* text : {"20240229123456.123456+060", "19991231235959.000000-720",
                             "00000010123456.000000:000", "20240229123456.******+000"}) {
        EXPECT_EQ(roundTrip(CimType::dateTime, text), text);
    }
    for (const char* text :
         {"", "20240229", "20241329123456.123456+060", "20240229243456.123456+060",
          "20230229123456.123456+060", "20240231000000.000000+000", "20240229123456.123456+06",
          "20240229123456,123456+060", "20240229123456.123456 060", "00000010123456.000000:060",
          "0000001012345x.000000:000"}) {
        EXPECT_EQ(roundTrip(CimType::dateTime, text), "-") << text;
    }
}

TEST(ValueText, HasNoTextForObjectsAndNull) {
    ScalarScratch scratch;
    EXPECT_EQ(scalarText(Value::null(CimType::uint8), scratch), "");
    EXPECT_EQ(scalarText(Value::reference(ObjectPath{}), scratch), "");
    for (const CimType type : {CimType::none, CimType::reference, CimType::instance}) {
        EXPECT_FALSE(readScalar(type, "1"));
    }
}

}  // namespace
}  // namespace cimhost
