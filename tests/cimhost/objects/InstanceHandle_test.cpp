#include "cimhost/objects/InstanceHandle.h"

#include "cimhost/repository/CimError.h"
#include "tests/support/BrokerFixture.h"

namespace cimhost {
namespace {

class InstanceHandle : public BrokerTest {
protected:
    InstanceHandle() {
        CMPIObjectPath* const path = newPath();
        path->ft->addKey(path, "Name", charsValue("a"), CMPI_chars);
        instance = eft().newInstance(broker(), path, &status);
    }

    CMPIStatus set(const char* name, CMPIUint32 number) {
        const CMPIValue value = uint32Value(number);
        return instance->ft->setProperty(instance, name, &value, CMPI_uint32);
    }
    CMPIData get(const char* name) { return instance->ft->getProperty(instance, name, &status); }
    CMPICount count() { return instance->ft->getPropertyCount(instance, nullptr); }
    std::string keyOfPath(const char* name) {
        const CMPIObjectPath* const path = instance->ft->getObjectPath(instance, &status);
        return textOf(path->ft->getKey(path, name, &status).value.string);
    }

    CMPIInstance* instance;
};

TEST_F(InstanceHandle, HasTheKeysOfItsPathAsProperties) {
    EXPECT_EQ(count(), 1U);
    EXPECT_EQ(textOf(get("name").value.string), "a");
    EXPECT_EQ(get("Name").state, CMPI_keyValue);
}

TEST_F(InstanceHandle, NeedsAPath) {
    EXPECT_EQ(eft().newInstance(broker(), nullptr, &status), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(InstanceHandle, SetsAndReplacesPropertiesInAnyCase) {
    EXPECT_EQ(set("Size", 1), CMPI_RC_OK);
    EXPECT_EQ(set("SIZE", 2), CMPI_RC_OK);
    EXPECT_EQ(count(), 2U);
    CMPIString* name = nullptr;
    const CMPIData data = instance->ft->getPropertyAt(instance, 1, &name, &status);
    EXPECT_EQ(textOf(name), "Size");
    EXPECT_EQ(data.value.uint32, 2U);
    EXPECT_EQ(data.state, CMPI_goodValue);
}

TEST_F(InstanceHandle, AnswersNoSuchPropertyForWhatIsAbsent) {
    get("Size");
    EXPECT_EQ(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    instance->ft->getPropertyAt(instance, 1, nullptr, &status);
    EXPECT_EQ(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    get(nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(InstanceHandle, KeepsNullWithItsType) {
    EXPECT_EQ(instance->ft->setProperty(instance, "Size", nullptr, CMPI_uint32), CMPI_RC_OK);
    EXPECT_EQ(get("Size").type, CMPI_uint32);
    EXPECT_EQ(get("Size").state, CMPI_nullValue);
    EXPECT_EQ(instance->ft->setProperty(instance, "List", nullptr, CMPI_stringA), CMPI_RC_OK);
    EXPECT_EQ(get("List").type, CMPI_stringA);
    EXPECT_EQ(get("List").state, CMPI_nullValue);
}

TEST_F(InstanceHandle, TakesANullObjectForANullValue) {
    CMPIValue value{};
    EXPECT_EQ(instance->ft->setProperty(instance, "Text", &value, CMPI_string), CMPI_RC_OK);
    EXPECT_EQ(get("Text").state, CMPI_nullValue);
    EXPECT_EQ(instance->ft->setProperty(instance, "List", &value, CMPI_uint8A), CMPI_RC_OK);
    EXPECT_EQ(get("List").state, CMPI_nullValue);
}

TEST_F(InstanceHandle, RefusesValuesThatDoNotFit) {
    CMPIValue value{};
    EXPECT_EQ(instance->ft->setProperty(instance, "X", &value, CMPI_null),
              CMPI_RC_ERR_INVALID_DATA_TYPE);
    EXPECT_EQ(instance->ft->setProperty(instance, "X", &value, CMPI_enumeration),
              CMPI_RC_ERR_INVALID_DATA_TYPE);
    EXPECT_EQ(instance->ft->setProperty(instance, nullptr, &value, CMPI_uint32),
              CMPI_RC_ERR_INVALID_PARAMETER);
    value.array = eft().newArray(broker(), 1, CMPI_uint8, nullptr);
    EXPECT_EQ(instance->ft->setProperty(instance, "X", &value, CMPI_uint16A),
              CMPI_RC_ERR_TYPE_MISMATCH);
    CMPIString foreign = foreignHandle(newString("x"));
    value.string = &foreign;
    EXPECT_EQ(instance->ft->setProperty(instance, "X", &value, CMPI_string),
              CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(count(), 1U);
}

TEST_F(InstanceHandle, SettingAKeyPropertySetsTheKey) {
    instance->ft->setProperty(instance, "NAME", charsValue("b"), CMPI_chars);
    EXPECT_EQ(keyOfPath("Name"), "b");
    EXPECT_EQ(instance->ft->setProperty(instance, "Name", nullptr, CMPI_string), CMPI_RC_OK);
    EXPECT_EQ(keyOfPath("Name"), "b");
}

TEST_F(InstanceHandle, ANewPathSetsTheKeyProperties) {
    CMPIObjectPath* const path = newPath();
    path->ft->addKey(path, "Name", charsValue("c"), CMPI_chars);
    EXPECT_EQ(instance->ft->setObjectPath(instance, path), CMPI_RC_OK);
    EXPECT_EQ(textOf(get("Name").value.string), "c");
    EXPECT_EQ(keyOfPath("Name"), "c");
    EXPECT_EQ(instance->ft->setObjectPath(instance, nullptr), CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(InstanceHandle, APathWithoutKeysGetsThemFromTheKeyProperties) {
    instance = newInstance("Test_Derived");
    instance->ft->setProperty(instance, "name", charsValue("d"), CMPI_chars);
    EXPECT_EQ(keyOfPath("Name"), "d");
    EXPECT_EQ(modelOf(instance).path.keys.size(), 1U);
}

TEST_F(InstanceHandle, APathOfAnUnknownClassStaysWithoutKeys) {
    instance = newInstance("Test_Nowhere");
    instance->ft->setProperty(instance, "Name", charsValue("d"), CMPI_chars);
    EXPECT_TRUE(modelOf(instance).path.keys.empty());
    EXPECT_EQ(count(), 1U);
}

TEST_F(InstanceHandle, GivesItsPathAsACopy) {
    CMPIObjectPath* const path = instance->ft->getObjectPath(instance, &status);
    path->ft->addKey(path, "Name", charsValue("changed"), CMPI_chars);
    EXPECT_EQ(keyOfPath("Name"), "a");
}

TEST_F(InstanceHandle, DropsWhatTheFilterLeavesOut) {
    set("Size", 1);
    set("Weight", 2);
    const char* names[] = {"NAME", "size", nullptr};
    const char* keys[] = {"Weight", nullptr};
    EXPECT_EQ(instance->ft->setPropertyFilter(instance, names, keys), CMPI_RC_OK);
    EXPECT_EQ(count(), 2U);
    EXPECT_EQ(set("Weight", 3), CMPI_RC_OK);
    EXPECT_EQ(set("Size", 4), CMPI_RC_OK);
    EXPECT_EQ(count(), 2U);
    EXPECT_EQ(get("Size").value.uint32, 4U);
}

TEST_F(InstanceHandle, AnEmptyFilterDropsAllAndNoFilterNothing) {
    const char* none[] = {nullptr};
    EXPECT_EQ(instance->ft->setPropertyFilter(instance, none, nullptr), CMPI_RC_OK);
    set("Size", 1);
    EXPECT_EQ(count(), 0U);
    EXPECT_EQ(instance->ft->setPropertyFilter(instance, nullptr, nullptr), CMPI_RC_OK);
    set("Size", 1);
    EXPECT_EQ(count(), 1U);
}

TEST_F(InstanceHandle, AFilteredKeyPropertyStillSetsTheKey) {
    const char* none[] = {nullptr};
    instance->ft->setPropertyFilter(instance, none, nullptr);
    instance->ft->setProperty(instance, "Name", charsValue("b"), CMPI_chars);
    EXPECT_EQ(count(), 0U);
    EXPECT_EQ(keyOfPath("Name"), "b");
}

TEST_F(InstanceHandle, RecordsTheOrigin) {
    const CMPIValue value = uint32Value(1);
    EXPECT_EQ(
        instance->ft->setPropertyWithOrigin(instance, "Size", &value, CMPI_uint32, "Test_Base"),
        CMPI_RC_OK);
    EXPECT_EQ(modelOf(instance).find("Size")->classOrigin, "Test_Base");
    EXPECT_EQ(instance->ft->setPropertyWithOrigin(instance, "Size", &value, CMPI_uint32, nullptr),
              CMPI_RC_OK);
    EXPECT_EQ(modelOf(instance).find("Size")->classOrigin, "Test_Base");
}

TEST_F(InstanceHandle, EmbedsInstancesAsTheyAre) {
    CMPIInstance* const inner = newInstance("Test_Other");
    inner->ft->setProperty(inner, "Text", charsValue("in"), CMPI_chars);
    CMPIValue value{};
    value.inst = inner;
    EXPECT_EQ(instance->ft->setProperty(instance, "Inner", &value, CMPI_instance), CMPI_RC_OK);
    inner->ft->setProperty(inner, "Text", charsValue("changed"), CMPI_chars);
    const CMPIData data = get("Inner");
    ASSERT_EQ(data.type, CMPI_instance);
    CMPIInstance* const read = data.value.inst;
    EXPECT_EQ(textOf(read->ft->getProperty(read, "Text", nullptr).value.string), "in");
    read->ft->setProperty(read, "Text", charsValue("mine"), CMPI_chars);
    const CMPIInstance* const again = get("Inner").value.inst;
    EXPECT_EQ(textOf(again->ft->getProperty(again, "Text", nullptr).value.string), "in");
}

TEST_F(InstanceHandle, ClonesAreIndependentAndKeepTheFilter) {
    const char* names[] = {"Name", nullptr};
    instance->ft->setPropertyFilter(instance, names, nullptr);
    CMPIInstance* const copy = instance->ft->clone(instance, &status);
    ASSERT_NE(copy, nullptr);
    const CMPIValue value = uint32Value(1);
    copy->ft->setProperty(copy, "Size", &value, CMPI_uint32);
    EXPECT_EQ(copy->ft->getPropertyCount(copy, nullptr), 1U);
    copy->ft->setProperty(copy, "Name", charsValue("other"), CMPI_chars);
    EXPECT_EQ(textOf(get("Name").value.string), "a");
    EXPECT_EQ(copy->ft->release(copy), CMPI_RC_OK);
}

TEST_F(InstanceHandle, AnswersInvalidHandleForNullAndForeignHandles) {
    const CMPIInstanceFT& table = *instance->ft;
    CMPIInstance foreign = foreignHandle(instance);
    const CMPIValue value = uint32Value(1);
    for (CMPIInstance* const bad : {static_cast<CMPIInstance*>(nullptr), &foreign}) {
        status = {CMPI_RC_OK, nullptr};
        table.getProperty(bad, "Size", &status);
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
        status = {CMPI_RC_OK, nullptr};
        table.getPropertyAt(bad, 0, nullptr, &status);
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(table.getPropertyCount(bad, &status), 0U);
        EXPECT_EQ(table.setProperty(bad, "Size", &value, CMPI_uint32), CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(table.getObjectPath(bad, &status), nullptr);
        EXPECT_EQ(table.setPropertyFilter(bad, nullptr, nullptr), CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(table.setObjectPath(bad, newPath()), CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(table.clone(bad, &status), nullptr);
        EXPECT_EQ(table.release(bad), CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_THROW(modelOf(bad), CimError);
    }
}

}  // namespace
}  // namespace cimhost
