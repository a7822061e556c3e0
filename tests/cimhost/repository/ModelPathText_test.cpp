#include "cimhost/repository/ModelPathText.h"

#include "cimhost/repository/CimError.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

std::string refusal(std::string_view text) {
    try {
        parseModelPath(text);
    } catch (const CimError& error) {
        EXPECT_EQ(error.code(), CimCode::typeMismatch);
        return error.what();
    }
    return {};
}

TEST(ModelPathText, ReadsEveryPartOfAPath) {
    const ObjectPath path =
        parseModelPath("//host:5988/root/cimv2:CIM_Fan.DeviceID=\"1\",Name=\"a\"");
    EXPECT_EQ(path.host, "host:5988");
    EXPECT_EQ(path.nameSpace, "root/cimv2");
    EXPECT_EQ(path.className, "CIM_Fan");
    ASSERT_EQ(path.keys.size(), 2U);
    EXPECT_EQ(path.keys[0].name, "DeviceID");
    EXPECT_EQ(path.keys[1].value, Value::string("a"));
}

TEST(ModelPathText, NeedsNoMoreThanAClass) {
    const ObjectPath path = parseModelPath("CIM_Fan");
    EXPECT_EQ(path.className, "CIM_Fan");
    EXPECT_TRUE(path.nameSpace.empty());
    EXPECT_TRUE(path.keys.empty());
    EXPECT_EQ(parseModelPath("CIM_Fan=@").className, "CIM_Fan");
}

TEST(ModelPathText, ReadsEveryFormOfValue) {
    const ObjectPath path = parseModelPath(
        "C.A=18446744073709551615,B=-5,C=1.5,D=TRUE,E=false,F='x',G=\"\",H=+7,I='\xC3\xA4'");
    EXPECT_EQ(*path.findKey("A"), Value::unsignedInteger(CimType::uint64, ~std::uint64_t{0}));
    EXPECT_EQ(*path.findKey("B"), Value::signedInteger(CimType::sint64, -5));
    EXPECT_EQ(*path.findKey("C"), Value(CimType::real64, 1.5));
    EXPECT_EQ(*path.findKey("D"), Value::boolean(true));
    EXPECT_EQ(*path.findKey("E"), Value::boolean(false));
    EXPECT_EQ(*path.findKey("F"), Value::unsignedInteger(CimType::char16, 'x'));
    EXPECT_EQ(*path.findKey("G"), Value::string(""));
    EXPECT_EQ(*path.findKey("H"), Value::unsignedInteger(CimType::uint64, 7));
    EXPECT_EQ(*path.findKey("I"), Value::unsignedInteger(CimType::char16, 0xE4));
}

TEST(ModelPathText, QuotedValuesMayHoldTheSignsOfAPath) {
    const ObjectPath path = parseModelPath(R"(C.A="a,b=c:d.\"e\"\\",B="x:y")");
    EXPECT_EQ(*path.findKey("A"), Value::string(R"(a,b=c:d."e"\)"));
    EXPECT_EQ(*path.findKey("B"), Value::string("x:y"));
    EXPECT_EQ(path.nameSpace, "");
}

TEST(ModelPathText, SaysWhereATextCeasesToBeAPath) {
    EXPECT_EQ(refusal(""), "not an object path: expected a class name at character 1");
    EXPECT_EQ(refusal("C."), "not an object path: expected a key name at character 3");
    EXPECT_EQ(refusal("C.K"), "not an object path: expected '=' at character 4");
    EXPECT_EQ(refusal("C.K="), "not an object path: expected a value at character 5");
    EXPECT_EQ(refusal("C.K=abc"), "not an object path: expected a value at character 5");
    EXPECT_EQ(refusal("C.K=1x"), "not an object path: expected a value at character 5");
    EXPECT_EQ(refusal("C.K=\"a"), "not an object path: expected a closing quote at character 7");
    EXPECT_EQ(refusal("C.K=\"a\\"), "not an object path: expected a closing quote at character 8");
    EXPECT_EQ(refusal("C.K=1,"), "not an object path: expected a key name at character 7");
    EXPECT_EQ(refusal("C.K=\"a\"x"),
              "not an object path: expected the end of the path at character 8");
    EXPECT_EQ(refusal("C x"), "not an object path: expected the end of the path at character 2");
    EXPECT_EQ(refusal("//host"), "not an object path: expected a host and '/' at character 3");
    EXPECT_EQ(refusal("C.K='ab'"),
              "not an object path: expected one character in apostrophes at character 9");
    EXPECT_EQ(refusal("C.K=1,k=2"),
              "not an object path: expected another key than 'k' again at character 9");
}

TEST(ModelPathText, TakesNoMoreKeysThanAnyClassHas) {
    std::string text = "C.K=0";
    for (int i = 1; i < 256; ++i) text += ",K" + std::to_string(i) + "=0";
    EXPECT_EQ(parseModelPath(text).keys.size(), 256U);
    EXPECT_NE(refusal(text + ",L=0"), "");
}

TEST(ModelPathText, NumbersAreWrittenInDigitsWithOneSign) {
    for (const char* word : {"inf", "-inf", "nan", "infinity", "+-5", "++5", "+"}) {
        EXPECT_NE(refusal(std::string("C.K=") + word), "") << word;
    }
}

TEST(ModelPathText, NumbersTooLargeAreNotCutShort) {
    EXPECT_EQ(parseModelPath("C.K=18446744073709551616").keys[0].value.type(), CimType::real64);
    EXPECT_NE(refusal("C.K=1e999"), "");
}

}  // namespace
}  // namespace cimhost
