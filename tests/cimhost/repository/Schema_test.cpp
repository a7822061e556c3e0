#include "cimhost/repository/Schema.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

Class fanClass() {
    Class fan;
    PropertyDefinition speed;
    speed.name = "Speed";
    PropertyDefinition id;
    id.name = "DeviceID";
    id.isKey = true;
    MethodDefinition reset;
    reset.name = "Reset";
    fan.properties = {std::make_shared<PropertyDefinition>(speed),
                      std::make_shared<PropertyDefinition>(id)};
    fan.methods = {std::make_shared<MethodDefinition>(reset)};
    return fan;
}

TEST(Schema, MembersAreFoundInAnyCase) {
    const Class fan = fanClass();
    ASSERT_NE(fan.findProperty("SPEED"), nullptr);
    EXPECT_EQ(fan.findProperty("SPEED")->name, "Speed");
    EXPECT_NE(fan.findMethod("reset"), nullptr);
    EXPECT_EQ(fan.findProperty("Reset"), nullptr);
    EXPECT_EQ(fan.findMethod("Speed"), nullptr);
}

TEST(Schema, AClassHasKeysWhenAPropertyIsOne) {
    EXPECT_TRUE(fanClass().hasKeys());
    EXPECT_FALSE(Class().hasKeys());
}

TEST(Schema, AQualifierHoldsOnlyWhenItsValueIsTrue) {
    const Qualifiers qualifiers{{"Key", Value::boolean(true), {}, false},
                                {"Write", Value::boolean(false), {}, false},
                                {"Override", Value::string("true"), {}, false}};
    EXPECT_TRUE(hasQualifier(qualifiers, "KEY"));
    EXPECT_FALSE(hasQualifier(qualifiers, "Write"));
    EXPECT_FALSE(hasQualifier(qualifiers, "Override"));
    EXPECT_FALSE(hasQualifier(qualifiers, "Read"));
    EXPECT_NE(findQualifier(qualifiers, "write"), nullptr);
    EXPECT_EQ(findQualifier(qualifiers, "Read"), nullptr);
}

}  // namespace
}  // namespace cimhost
