#include "cimhost/repository/Instance.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

Value number(CimType type, std::uint64_t value) { return Value::unsignedInteger(type, value); }

ObjectPath fan(std::vector<KeyBinding> keys) { return {"", "", "CIM_Fan", std::move(keys)}; }

void expectSame(const ObjectPath& left, const ObjectPath& right) {
    EXPECT_TRUE(sameModelPath(left, right));
    EXPECT_TRUE(sameModelPath(right, left));
    EXPECT_EQ(modelPathHash(left), modelPathHash(right));
}

void expectDifferent(const ObjectPath& left, const ObjectPath& right) {
    EXPECT_FALSE(sameModelPath(left, right));
    EXPECT_FALSE(sameModelPath(right, left));
}

TEST(ObjectPath, FindsKeysInAnyCase) {
    const ObjectPath path = fan({{"DeviceID", Value::string("1")}});
    ASSERT_NE(path.findKey("DEVICEID"), nullptr);
    EXPECT_EQ(*path.findKey("deviceid"), Value::string("1"));
    EXPECT_EQ(path.findKey("Device"), nullptr);
}

TEST(ObjectPath, SetKeyReplacesWhatHasTheName) {
    ObjectPath path;
    path.setKey("A", Value::string("1"));
    path.setKey("a", Value::string("2"));
    path.setKey("B", Value::string("3"));
    ASSERT_EQ(path.keys.size(), 2U);
    EXPECT_EQ(path.keys[0].name, "A");
    EXPECT_EQ(path.keys[0].value, Value::string("2"));
}

TEST(ObjectPath, ModelPathsIgnoreHostNamespaceOrderAndCase) {
    ObjectPath left = fan({{"A", Value::string("1")}, {"B", Value::string("2")}});
    const ObjectPath right = fan({{"b", Value::string("2")}, {"a", Value::string("1")}});
    left.host = "h";
    left.nameSpace = "root";
    left.className = "cim_fan";
    expectSame(left, right);
}

TEST(ObjectPath, ModelPathsDifferByClassKeysAndValues) {
    const ObjectPath path = fan({{"A", Value::string("1")}});
    expectDifferent(path, fan({{"A", Value::string("2")}}));
    expectDifferent(path, fan({{"B", Value::string("1")}}));
    expectDifferent(path, fan({}));
    expectDifferent(path, fan({{"A", Value::string("1")}, {"B", Value::string("1")}}));
    expectDifferent(path, {"", "", "CIM_Sensor", path.keys});
    expectDifferent(fan({{"A", Value::string("x")}}), fan({{"A", Value::string("X")}}));
}

TEST(ObjectPath, IntegerKeysCompareByNumberWhateverTheirWidth) {
    expectSame(fan({{"A", number(CimType::uint8, 5)}}),
               fan({{"A", Value::signedInteger(CimType::sint64, 5)}}));
    expectDifferent(fan({{"A", Value::signedInteger(CimType::sint64, -1)}}),
                    fan({{"A", number(CimType::uint64, ~std::uint64_t{0})}}));
    expectDifferent(fan({{"A", number(CimType::uint8, 5)}}), fan({{"A", Value::string("5")}}));
    expectDifferent(fan({{"A", number(CimType::char16, 5)}}),
                    fan({{"A", number(CimType::uint8, 5)}}));
}

TEST(ObjectPath, TextKeysCompareAlikeAsStringAndDateTime) {
    const std::string text = "20240101000000.000000+000";
    expectSame(fan({{"A", Value::string(text)}}), fan({{"A", Value(CimType::dateTime, text)}}));
}

TEST(ObjectPath, RealAndBooleanKeysCompareByValue) {
    expectSame(fan({{"A", Value(CimType::real32, 1.5)}}),
               fan({{"A", Value(CimType::real64, 1.5)}}));
    expectSame(fan({{"A", Value(CimType::real32, 0.0)}}),
               fan({{"A", Value(CimType::real64, -0.0)}}));
    expectDifferent(fan({{"A", Value::boolean(true)}}), fan({{"A", Value::boolean(false)}}));
}

TEST(ObjectPath, ReferenceKeysCompareAsModelPaths) {
    ObjectPath inner = fan({{"A", number(CimType::uint8, 1)}});
    const ObjectPath left = fan({{"R", Value::reference(inner)}});
    inner.nameSpace = "elsewhere";
    inner.keys[0].value = number(CimType::uint64, 1);
    expectSame(left, fan({{"R", Value::reference(inner)}}));
    inner.keys[0].value = number(CimType::uint64, 2);
    expectDifferent(left, fan({{"R", Value::reference(inner)}}));
}

TEST(Instance, FindsAndReplacesPropertiesInAnyCase) {
    Instance instance;
    instance.set("Speed", number(CimType::uint64, 1));
    instance.set("SPEED", number(CimType::uint64, 2));
    ASSERT_EQ(instance.properties.size(), 1U);
    ASSERT_NE(instance.find("speed"), nullptr);
    EXPECT_EQ(instance.find("speed")->value, number(CimType::uint64, 2));
    EXPECT_EQ(std::as_const(instance).find("Other"), nullptr);
}

TEST(Instance, CopiesAreIndependent) {
    Instance instance;
    instance.set("Speed", number(CimType::uint64, 1));
    Instance copy = instance;
    copy.set("Speed", number(CimType::uint64, 2));
    EXPECT_EQ(instance.find("Speed")->value, number(CimType::uint64, 1));
}

}  // namespace
}  // namespace cimhost
