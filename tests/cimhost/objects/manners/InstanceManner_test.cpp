#include "tests/support/MannerCall.h"

namespace cimhost {
namespace {

CMPIStatus setText(const CMPIInstance* instance, const char* name, const char* text) {
    return instance->ft->setProperty(instance, name, charsValue(text), CMPI_chars);
}

CMPIStatus setNumber(const CMPIInstance* instance, const char* name, CMPIUint32 number) {
    const CMPIValue value = uint32Value(number);
    return instance->ft->setProperty(instance, name, &value, CMPI_uint32);
}

/// An instance whose path has the key Name.
CMPIInstance* keyed(MannerCall& call) {
    const CMPIObjectPath* const path = call.newPath();
    path->ft->addKey(path, "Name", charsValue("a"), CMPI_chars);
    return call.eft().newInstance(call.broker(), path, nullptr);
}

CMPICount keysOf(const CMPIInstance* instance) {
    const CMPIObjectPath* const path = instance->ft->getObjectPath(instance, nullptr);
    return path->ft->getKeyCount(path, nullptr);
}

TEST(InstanceManner, HoldsAllPropertiesOfTheClass) {
    MannerCall call("sfcb");
    const CMPIInstance* const instance = keyed(call);
    EXPECT_EQ(instance->ft->getPropertyCount(instance, nullptr), 2U);
    const CMPIData size = instance->ft->getProperty(instance, "Size", &call.status);
    EXPECT_EQ(call.status, CMPI_RC_OK);
    EXPECT_EQ(size.type, CMPI_uint32);
    EXPECT_NE(size.state & CMPI_nullValue, 0);
    EXPECT_EQ(textOf(instance->ft->getProperty(instance, "Name", nullptr).value.string), "a");
}

TEST(InstanceManner, FillsInDefaults) {
    MannerCall call("openpegasus");
    Class definition;
    definition.name = "Test_Default";
    auto property = std::make_shared<PropertyDefinition>();
    property->name = "State";
    property->type = CimType::uint16;
    property->defaultValue = Value::unsignedInteger(CimType::uint16, 5);
    definition.properties.push_back(property);
    call.repository.make("root/test").addClass(definition);
    const CMPIInstance* const instance = call.newInstance("Test_Default");
    EXPECT_EQ(instance->ft->getProperty(instance, "State", nullptr).value.uint16, 5);
}

TEST(InstanceManner, KeepsKeyPropertiesApartFromThePath) {
    MannerCall call("openpegasus");
    const CMPIInstance* const instance = keyed(call);
    EXPECT_NE(instance->ft->getProperty(instance, "Name", nullptr).state & CMPI_nullValue, 0);
    EXPECT_EQ(setText(instance, "Name", "b"), CMPI_RC_OK);
    const CMPIObjectPath* const path = instance->ft->getObjectPath(instance, nullptr);
    EXPECT_EQ(textOf(path->ft->getKey(path, "Name", nullptr).value.string), "a");
}

TEST(InstanceManner, HasNoPathForAnUnknownClass) {
    MannerCall call("sfcb");
    const CMPIInstance* const instance = call.newInstance("Test_Nobody");
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(instance->ft->getObjectPath(instance, &call.status), nullptr);
    EXPECT_EQ(call.status, CMPI_RC_ERR_INVALID_CLASS);
}

TEST(InstanceManner, DropsOrRefusesWhatTheClassLacks) {
    MannerCall dropping("openpegasus");
    const CMPIInstance* const dropped = dropping.newInstance();
    EXPECT_EQ(setText(dropped, "Other", "x"), CMPI_RC_OK);
    dropped->ft->getProperty(dropped, "Other", &dropping.status);
    EXPECT_EQ(dropping.status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    MannerCall refusing("strict");
    EXPECT_EQ(setText(refusing.newInstance(), "Other", "x"), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(setText(refusing.newInstance("Test_Nobody"), "Other", "x"), CMPI_RC_OK);
}

TEST(InstanceManner, ChecksTypes) {
    MannerCall call("strict");
    const CMPIInstance* const instance = call.newInstance();
    EXPECT_EQ(setText(instance, "Size", "1"), CMPI_RC_ERR_INVALID_DATA_TYPE);
    EXPECT_EQ(setNumber(instance, "Size", 1), CMPI_RC_OK);
    EXPECT_EQ(instance->ft->setProperty(instance, "Size", nullptr, CMPI_null),
              CMPI_RC_ERR_INVALID_DATA_TYPE);
    EXPECT_EQ(instance->ft->setProperty(instance, "Size", nullptr, CMPI_uint32), CMPI_RC_OK);
}

TEST(InstanceManner, AnswersNotFoundForUnknownProperties) {
    MannerCall call("sfcb");
    const CMPIInstance* const instance = call.newInstance();
    instance->ft->getProperty(instance, "Other", &call.status);
    EXPECT_EQ(call.status, CMPI_RC_ERR_NOT_FOUND);
}

TEST(InstanceManner, ReadsArraysBackOtherwise) {
    MannerCall call("openpegasus");
    const CMPIInstance* const instance = call.newInstance("Test_Nobody");
    CMPIValue array{};
    array.array = call.eft().newArray(call.broker(), 0, CMPI_uint32, nullptr);
    EXPECT_EQ(instance->ft->setProperty(instance, "Empty", &array, CMPI_uint32A), CMPI_RC_OK);
    const CMPIData empty = instance->ft->getProperty(instance, "Empty", nullptr);
    EXPECT_EQ(empty.type, CMPI_uint32A);
    EXPECT_NE(empty.state & CMPI_nullValue, 0);
    array.array = call.eft().newArray(call.broker(), 1, CMPI_uint32, nullptr);
    EXPECT_EQ(instance->ft->setProperty(instance, "Nulls", &array, CMPI_uint32A), CMPI_RC_OK);
    const CMPIArray* const numbers =
        instance->ft->getProperty(instance, "Nulls", nullptr).value.array;
    const CMPIData number = numbers->ft->getElementAt(numbers, 0, nullptr);
    EXPECT_EQ(number.state & CMPI_nullValue, 0);
    EXPECT_EQ(number.value.uint32, 0U);
}

TEST(InstanceManner, IgnoresFilters) {
    MannerCall call("openpegasus");
    const CMPIInstance* const instance = call.newInstance();
    const char* none[] = {nullptr};
    EXPECT_EQ(instance->ft->setPropertyFilter(instance, none, none), CMPI_RC_OK);
    EXPECT_EQ(instance->ft->getPropertyCount(instance, nullptr), 2U);
}

TEST(InstanceManner, FiltersDropKeysThatAreNotNamed) {
    MannerCall call("sfcb");
    const char* none[] = {nullptr};
    const char* name[] = {"name", nullptr};
    const CMPIInstance* instance = keyed(call);
    EXPECT_EQ(instance->ft->setPropertyFilter(instance, none, name), CMPI_RC_OK);
    EXPECT_EQ(instance->ft->getPropertyCount(instance, nullptr), 1U);
    EXPECT_EQ(keysOf(instance), 1U);
    EXPECT_EQ(instance->ft->setPropertyFilter(instance, none, none), CMPI_RC_OK);
    EXPECT_EQ(instance->ft->getPropertyCount(instance, nullptr), 0U);
    EXPECT_EQ(keysOf(instance), 0U);
}

TEST(InstanceManner, RefusesPathsOfOtherClasses) {
    MannerCall call("strict");
    const CMPIInstance* const instance = call.newInstance();
    EXPECT_EQ(instance->ft->setObjectPath(instance, call.newPath("Test_Other")),
              CMPI_RC_ERR_FAILED);
    EXPECT_EQ(instance->ft->setObjectPath(instance, call.newPath("test_base")), CMPI_RC_OK);
}

}  // namespace
}  // namespace cimhost
