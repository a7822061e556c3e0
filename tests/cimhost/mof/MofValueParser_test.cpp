#include "cimhost/mof/MofValueParser.h"

#include "tests/cimhost/mof/MofText.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

using test::MofText;

Value uint8Value(std::uint64_t number) { return Value::unsignedInteger(CimType::uint8, number); }

class MofValueParser : public testing::Test {
protected:
    /// The refusal of a property declared so, behind "class C { ", that is from column 11 on.
    std::string refusal(const std::string& declaration) {
        return _mof.errorOf("class C { " + declaration + "; };");
    }
    MofText _mof;
};

TEST_F(MofValueParser, ReadsEveryTypeOfDefault) {
    EXPECT_EQ(_mof.defaultOf("uint8 P = 0xFF"), uint8Value(255));
    EXPECT_EQ(_mof.defaultOf("sint8 P = -128"), Value::signedInteger(CimType::sint8, -128));
    EXPECT_EQ(_mof.defaultOf("uint64 P = 18446744073709551615"),
              Value::unsignedInteger(CimType::uint64, ~std::uint64_t{0}));
    EXPECT_EQ(_mof.defaultOf("boolean P = TRUE"), Value::boolean(true));
    EXPECT_EQ(_mof.defaultOf("boolean P = False"), Value::boolean(false));
    EXPECT_EQ(_mof.defaultOf("real32 P = 1.5"), Value(CimType::real32, 1.5));
    EXPECT_EQ(_mof.defaultOf("real64 P = -2"), Value(CimType::real64, -2.0));
    EXPECT_EQ(_mof.defaultOf("char16 P = '\\x41'"), Value::unsignedInteger(CimType::char16, 0x41));
    EXPECT_EQ(_mof.defaultOf("datetime P = \"20240101000000.000000+000\""),
              Value(CimType::dateTime, std::string("20240101000000.000000+000")));
    EXPECT_EQ(_mof.defaultOf("string P = NULL"), Value::null(CimType::string));
    EXPECT_EQ(_mof.defaultOf("string P"), Value::null(CimType::string));
}

TEST_F(MofValueParser, JoinsStringsThatFollowEachOther) {
    EXPECT_EQ(_mof.defaultOf("string P = \"a\" /* and */ \"b\"\n\"c\""), Value::string("abc"));
    EXPECT_EQ(_mof.defaultOf("string P = \"\" \"\""), Value::string(""));
}

TEST_F(MofValueParser, ReadsArrays) {
    EXPECT_EQ(
        _mof.defaultOf("uint8 P[] = {1, null, 3}"),
        Value::array(CimType::uint8, {uint8Value(1), Value::null(CimType::uint8), uint8Value(3)}));
    EXPECT_EQ(_mof.defaultOf("uint8 P[2] = {}"), Value::array(CimType::uint8, {}));
    EXPECT_EQ(_mof.defaultOf("string P[] = {\"a\" \"b\", \"c\"}"),
              Value::array(CimType::string, {Value::string("ab"), Value::string("c")}));
    EXPECT_EQ(_mof.defaultOf("uint8 P[] = null"), Value::nullArray(CimType::uint8));
    EXPECT_EQ(_mof.defaultOf("uint8 P[]"), Value::nullArray(CimType::uint8));
}

TEST_F(MofValueParser, KeepsTheSizeOfAnArray) {
    _mof.read("class C { uint8 A[5]; uint8 B[]; uint8 D; };");
    EXPECT_EQ(_mof.property("C", "A").arraySize, 5U);
    EXPECT_TRUE(_mof.property("C", "B").isArray);
    EXPECT_FALSE(_mof.property("C", "B").arraySize);
    EXPECT_FALSE(_mof.property("C", "D").isArray);
}

TEST_F(MofValueParser, ChecksTheRangeOfTheDeclaredType) {
    EXPECT_EQ(refusal("uint8 P = 256"), "t.mof:1:21: 256 is out of range for uint8 (0 to 255)");
    EXPECT_EQ(refusal("uint8 P[] = {1, -1}"),
              "t.mof:1:27: -1 is out of range for uint8 (0 to 255)");
    EXPECT_EQ(refusal("sint8 P = 128"), "t.mof:1:21: 128 is out of range for sint8 (-128 to 127)");
    EXPECT_EQ(refusal("uint8 P = 1.5"), "t.mof:1:21: a real number is not of type uint8");
    EXPECT_EQ(refusal("string P = 1"), "t.mof:1:22: an integer is not of type string");
    EXPECT_EQ(refusal("datetime P = \"now\""), "t.mof:1:24: 'now' is not a datetime");
    EXPECT_EQ(refusal("datetime P = \"20240231000000.000000+000\""),
              "t.mof:1:24: '20240231000000.000000+000' is not a datetime");
    EXPECT_EQ(refusal("boolean P = 1"), "t.mof:1:23: an integer is not of type boolean");
    EXPECT_EQ(refusal("char16 P = \"a\""),
              "t.mof:1:22: a value of type string is not of type char16");
}

TEST_F(MofValueParser, ChecksTheShapeOfAValue) {
    EXPECT_EQ(refusal("uint8 P = {1}"), "t.mof:1:21: expected a single value of type uint8");
    EXPECT_EQ(refusal("uint8 P[] = 1"), "t.mof:1:23: expected '{' before the elements of an array");
    EXPECT_EQ(refusal("uint8 P[1] = {1, 2}"), "t.mof:1:24: 2 elements are too many for uint8[1]");
    EXPECT_EQ(refusal("uint8 P[] = {{1}}"), "t.mof:1:24: expected a value, found '{'");
    EXPECT_EQ(refusal("uint8 P[] = {1, }"), "t.mof:1:27: expected a value, found '}'");
    EXPECT_EQ(refusal("uint8 P[] = {1 2}"),
              "t.mof:1:26: expected '}' or ',' after the element, found '2'");
}

TEST_F(MofValueParser, RefusesWhatIsNoValue) {
    EXPECT_EQ(refusal("uint8 P = five"), "t.mof:1:21: expected a value, found 'five'");
    EXPECT_EQ(refusal("uint8 P = "), "t.mof:1:21: expected a value, found ';'");
    EXPECT_EQ(refusal("uint8 P = - 5"), "t.mof:1:21: expected a value, found '-'");
    EXPECT_EQ(refusal("uint8 P = 08"), "t.mof:1:21: '08' is not a number");
    EXPECT_EQ(refusal("string P = $a"), "t.mof:1:22: the alias '$a' can stand only in an instance");
}

TEST_F(MofValueParser, RefusesSizesThatNoArrayHas) {
    EXPECT_EQ(refusal("uint8 P[0]"), "t.mof:1:19: '0' is no array size");
    EXPECT_EQ(refusal("uint8 P[-1]"), "t.mof:1:19: '-1' is no array size");
    EXPECT_EQ(refusal("uint8 P[1.5]"), "t.mof:1:19: '1.5' is no array size");
    EXPECT_EQ(refusal("uint8 P[4294967296]"), "t.mof:1:19: '4294967296' is no array size");
    EXPECT_EQ(refusal("uint8 P[n]"), "t.mof:1:19: expected an array size or ']', found 'n'");
    EXPECT_EQ(refusal("uint8 P[5"), "t.mof:1:20: expected ']' after the array size, found ';'");
}

TEST_F(MofValueParser, StopsAtArraysLongerThanAnySchemaHas) {
    std::string text = "uint8 P[] = {1";
    for (int i = 0; i < (1 << 18); ++i) text += ",1";
    EXPECT_EQ(refusal(text + "}"), "t.mof:1:524312: an array of more than 262144 elements");
}

}  // namespace
}  // namespace cimhost
