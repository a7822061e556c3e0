#include "cimhost/repository/ValueConversion.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Instance.h"

#include <gtest/gtest.h>

#include <limits>

namespace cimhost {
namespace {

Value unsignedValue(std::uint64_t number) {
    return Value::unsignedInteger(CimType::uint64, number);
}
Value signedValue(std::int64_t number) { return Value::signedInteger(CimType::sint64, number); }

std::string refusal(const Value& value, CimType type) {
    try {
        convertScalar(value, type);
    } catch (const CimError& error) {
        EXPECT_EQ(error.code(), CimCode::typeMismatch);
        return error.what();
    }
    return {};
}

struct RangeRow {
    CimType type;
    std::int64_t lowest;
    std::uint64_t highest;
};

constexpr RangeRow rangeRows[] = {
    {CimType::uint8, 0, 255},          {CimType::uint16, 0, 65535},
    {CimType::uint32, 0, 4294967295U}, {CimType::sint8, -128, 127},
    {CimType::sint16, -32768, 32767},  {CimType::sint32, -2147483648LL, 2147483647},
};

TEST(ValueConversion, IntegersFitUpToTheLimitsOfTheirType) {
    for (const RangeRow& row : rangeRows) {
        EXPECT_EQ(convertScalar(unsignedValue(row.highest), row.type).type(), row.type);
        EXPECT_NE(refusal(unsignedValue(row.highest + 1), row.type), "");
        EXPECT_NO_THROW(convertScalar(signedValue(row.lowest), row.type));
        EXPECT_NE(refusal(signedValue(row.lowest - 1), row.type), "");
    }
}

TEST(ValueConversion, TheWidestIntegersFitToo) {
    const auto most = std::numeric_limits<std::uint64_t>::max();
    const auto least = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(convertScalar(unsignedValue(most), CimType::uint64), unsignedValue(most));
    EXPECT_EQ(convertScalar(signedValue(least), CimType::sint64), signedValue(least));
    EXPECT_EQ(refusal(unsignedValue(most), CimType::sint64),
              "18446744073709551615 is out of range for sint64 (-9223372036854775808 to "
              "9223372036854775807)");
    EXPECT_EQ(refusal(signedValue(-1), CimType::uint64),
              "-1 is out of range for uint64 (0 to 18446744073709551615)");
}

TEST(ValueConversion, AnIntegerTakesTheSignednessOfItsType) {
    EXPECT_EQ(convertScalar(unsignedValue(5), CimType::sint8),
              Value::signedInteger(CimType::sint8, 5));
    EXPECT_EQ(convertScalar(signedValue(5), CimType::uint8),
              Value::unsignedInteger(CimType::uint8, 5));
}

TEST(ValueConversion, NullBecomesNullOfTheType) {
    EXPECT_EQ(convertScalar(Value(), CimType::dateTime), Value::null(CimType::dateTime));
    EXPECT_EQ(convertValue(Value(), CimType::uint8, true), Value::nullArray(CimType::uint8));
}

TEST(ValueConversion, WholeNumbersBecomeRealsButNotTheOtherWayRound) {
    EXPECT_EQ(convertScalar(signedValue(-3), CimType::real32), Value(CimType::real32, -3.0));
    EXPECT_EQ(convertScalar(unsignedValue(3), CimType::real64), Value(CimType::real64, 3.0));
    EXPECT_EQ(refusal(Value(CimType::real64, 3.0), CimType::uint8),
              "a real number is not of type uint8");
}

TEST(ValueConversion, AReal32HasThePrecisionAndRangeOfOne) {
    EXPECT_EQ(convertScalar(Value(CimType::real64, 0.1), CimType::real32),
              Value(CimType::real32, static_cast<double>(0.1F)));
    EXPECT_EQ(refusal(Value(CimType::real64, 1e39), CimType::real32),
              "the number is out of range for real32");
    constexpr double most = std::numeric_limits<float>::max();
    EXPECT_EQ(convertScalar(Value(CimType::real64, -3.4028235e38), CimType::real32),
              Value(CimType::real32, -most));
    EXPECT_EQ(refusal(Value(CimType::real64, 3.4028236e38), CimType::real32),
              "the number is out of range for real32");
}

TEST(ValueConversion, KindsThatDoNotMixAreRefused) {
    EXPECT_EQ(refusal(Value::string("5"), CimType::uint8),
              "a value of type string is not of type uint8");
    EXPECT_EQ(refusal(unsignedValue(5), CimType::string), "an integer is not of type string");
    EXPECT_EQ(refusal(Value::boolean(true), CimType::uint8),
              "a value of type boolean is not of type uint8");
    EXPECT_EQ(refusal(unsignedValue(1), CimType::boolean), "an integer is not of type boolean");
    EXPECT_EQ(refusal(unsignedValue(65), CimType::char16), "an integer is not of type char16");
    EXPECT_EQ(refusal(Value::string("x"), CimType::instance),
              "a value of type string is not an embedded instance");
    EXPECT_EQ(refusal(Value::array(CimType::uint8, {}), CimType::uint8),
              "an array is not of type uint8");
}

TEST(ValueConversion, StringsBecomeReferencesWhenTheyArePaths) {
    const Value value =
        convertScalar(Value::string("root:CIM_Fan.DeviceID=\"1\""), CimType::reference);
    const auto* const path = value.get<std::shared_ptr<const ObjectPath>>();
    ASSERT_NE(path, nullptr);
    EXPECT_EQ((*path)->className, "CIM_Fan");
    EXPECT_NE(refusal(Value::string("not a path"), CimType::reference), "");
    EXPECT_NE(refusal(unsignedValue(1), CimType::reference), "");
}

TEST(ValueConversion, ArraysConvertElementByElement) {
    const Value value = convertValue(Value::array(CimType::uint64, {unsignedValue(1), Value()}),
                                     CimType::uint8, true);
    EXPECT_EQ(value, Value::array(CimType::uint8, {Value::unsignedInteger(CimType::uint8, 1),
                                                   Value::null(CimType::uint8)}));
    EXPECT_THROW(
        convertValue(Value::array(CimType::uint64, {unsignedValue(256)}), CimType::uint8, true),
        CimError);
    EXPECT_THROW(convertValue(unsignedValue(1), CimType::uint8, true), CimError);
}

TEST(ValueConversion, ABoundedArrayHoldsNoMoreThanItsSize) {
    const Value two = Value::array(CimType::uint8, {Value(), Value()});
    EXPECT_NO_THROW(convertValue(two, CimType::uint8, true, 2));
    try {
        convertValue(two, CimType::uint8, true, 1);
        FAIL();
    } catch (const CimError& error) {
        EXPECT_STREQ(error.what(), "2 elements are too many for uint8[1]");
    }
}

TEST(ValueConversion, StringsBecomeDateTimesOnlyWhenTheyAreOnes) {
    EXPECT_EQ(convertScalar(Value::string("00000001132312.125000:000"), CimType::dateTime),
              Value(CimType::dateTime, std::string("00000001132312.125000:000")));
    EXPECT_EQ(refusal(Value::string("yesterday"), CimType::dateTime),
              "'yesterday' is not a datetime");
    EXPECT_EQ(refusal(Value::string("20230229000000.000000+000"), CimType::dateTime),
              "'20230229000000.000000+000' is not a datetime");
    EXPECT_EQ(refusal(unsignedValue(5), CimType::dateTime), "an integer is not of type datetime");
}

TEST(ValueConversion, CountsWhatACopyTakes) {
    EXPECT_EQ(valueBytes(Value()), sizeof(Value));
    EXPECT_EQ(valueBytes(Value::string(std::string(100, 'x'))), sizeof(Value) + 100);
    EXPECT_EQ(valueBytes(Value::array(CimType::string, {Value(), Value()})), 3 * sizeof(Value));
    ObjectPath path;
    path.setKey("K", Value::string("abc"));
    EXPECT_EQ(valueBytes(Value::reference(path)),
              2 * sizeof(Value) + sizeof(ObjectPath) + sizeof(KeyBinding) + 3);
}

TEST(ValueConversion, WritesTypesAsMofDoes) {
    EXPECT_EQ(typeText(CimType::uint8, false), "uint8");
    EXPECT_EQ(typeText(CimType::string, true), "string[]");
    EXPECT_EQ(typeText(CimType::dateTime, true, 4), "datetime[4]");
}

}  // namespace
}  // namespace cimhost
