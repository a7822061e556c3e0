#include "cimhost/repository/Value.h"

#include "cimhost/repository/Instance.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

constexpr CimType allTypes[] = {
    CimType::boolean, CimType::char16, CimType::uint8,  CimType::uint16,   CimType::uint32,
    CimType::uint64,  CimType::sint8,  CimType::sint16, CimType::sint32,   CimType::sint64,
    CimType::real32,  CimType::real64, CimType::string, CimType::dateTime, CimType::reference,
};

TEST(Value, TypesAreFoundByTheirNamesInAnyCase) {
    for (const CimType type : allTypes) EXPECT_EQ(typeFromName(typeName(type)), type);
    EXPECT_EQ(typeFromName("DateTime"), CimType::dateTime);
    EXPECT_EQ(typeFromName("UINT8"), CimType::uint8);
}

TEST(Value, NoTypeHasAnUnknownName) {
    EXPECT_EQ(typeFromName("int"), CimType::none);
    EXPECT_EQ(typeFromName(""), CimType::none);
    EXPECT_EQ(typeFromName("none"), CimType::none);
}

TEST(Value, AnEmbeddedInstanceIsWrittenAsString) {
    EXPECT_EQ(typeName(CimType::instance), "string");
}

TEST(Value, EveryTypeIsOfAtMostOneFamilyOfNumbers) {
    int integers = 0;
    for (const CimType type : allTypes) {
        EXPECT_LE(isUnsigned(type) + isSigned(type) + isReal(type), 1);
        integers += isInteger(type);
    }
    EXPECT_EQ(integers, 8);
    EXPECT_FALSE(isInteger(CimType::char16));
    EXPECT_TRUE(isReal(CimType::real32));
}

TEST(Value, DefaultIsNullWithoutAType) {
    EXPECT_TRUE(Value().isNull());
    EXPECT_EQ(Value().type(), CimType::none);
    EXPECT_FALSE(Value().isArray());
}

TEST(Value, ANullArrayIsAnArrayAndNull) {
    const Value value = Value::nullArray(CimType::uint8);
    EXPECT_TRUE(value.isArray());
    EXPECT_TRUE(value.isNull());
    EXPECT_EQ(value.type(), CimType::uint8);
    EXPECT_FALSE(value == Value::null(CimType::uint8));
    EXPECT_FALSE(value == Value::array(CimType::uint8, {}));
}

TEST(Value, AnArrayByTheConstructorIsAnArray) {
    EXPECT_TRUE(Value(CimType::string, Value::Array{}).isArray());
}

TEST(Value, IsReadOnlyByTheAlternativeItHolds) {
    const Value value = Value::unsignedInteger(CimType::uint16, 7);
    ASSERT_NE(value.get<std::uint64_t>(), nullptr);
    EXPECT_EQ(*value.get<std::uint64_t>(), 7U);
    EXPECT_EQ(value.get<std::int64_t>(), nullptr);
    EXPECT_EQ(value.get<Text>(), nullptr);
}

TEST(Value, EqualityWantsTypeShapeAndContent) {
    EXPECT_EQ(Value::string("a"), Value::string("a"));
    EXPECT_FALSE(Value::string("a") == Value::string("A"));
    EXPECT_FALSE(Value::string("a") == Value(CimType::dateTime, std::string("a")));
    EXPECT_FALSE(Value::unsignedInteger(CimType::uint8, 1) ==
                 Value::unsignedInteger(CimType::uint16, 1));
    EXPECT_FALSE(Value::string("") == Value::null(CimType::string));
    const Value array =
        Value::array(CimType::string, {Value::string("a"), Value::null(CimType::string)});
    EXPECT_EQ(array, Value(array));
    EXPECT_FALSE(array == Value::array(CimType::string, {Value::string("a")}));
}

TEST(Value, ReferencesAreEqualAsPathsAre) {
    const ObjectPath path{"host", "root/cimv2", "CIM_Fan", {{"DeviceID", Value::string("1")}}};
    ObjectPath other{"", "ROOT/CIMV2", "cim_fan", {{"deviceid", Value::string("1")}}};
    EXPECT_EQ(Value::reference(path), Value::reference(other));
    other.nameSpace.clear();
    EXPECT_EQ(Value::reference(path), Value::reference(other));
    other.nameSpace = "interop";
    EXPECT_FALSE(Value::reference(path) == Value::reference(other));
}

TEST(Value, EmbeddedInstancesAreEqualByClassAndProperties) {
    Instance fan;
    fan.path.className = "CIM_Fan";
    fan.set("Speed", Value::unsignedInteger(CimType::uint64, 5));
    Instance same;
    same.path.className = "cim_fan";
    same.set("SPEED", Value::unsignedInteger(CimType::uint64, 5));
    EXPECT_EQ(Value::instance(fan), Value::instance(same));
    same.set("Speed", Value::unsignedInteger(CimType::uint64, 6));
    EXPECT_FALSE(Value::instance(fan) == Value::instance(same));
    fan.path.className = "CIM_Sensor";
    EXPECT_FALSE(Value::instance(fan) == Value::instance(Instance{}));
}

}  // namespace
}  // namespace cimhost
