#include "cimhost/objects/ObjectPathHandle.h"

#include "cimhost/repository/CimError.h"
#include "tests/support/BrokerFixture.h"

namespace cimhost {
namespace {

class ObjectPathHandle : public BrokerTest {
protected:
    CMPIStatus addKey(const CMPIObjectPath* path, const char* name, const char* text) {
        return path->ft->addKey(path, name, charsValue(text), CMPI_chars);
    }
};

TEST_F(ObjectPathHandle, BeginsWithNamespaceAndClassOnly) {
    const CMPIObjectPath* const path = newPath();
    EXPECT_EQ(textOf(path->ft->getNameSpace(path, &status)), "root/test");
    EXPECT_EQ(textOf(path->ft->getClassName(path, &status)), "Test_Base");
    EXPECT_EQ(textOf(path->ft->getHostname(path, &status)), "");
    EXPECT_EQ(path->ft->getKeyCount(path, &status), 0U);
    EXPECT_EQ(status, CMPI_RC_OK);
}

TEST_F(ObjectPathHandle, MayBeEmptyOrHaveANullNamespaceButNoNullClass) {
    EXPECT_NE(eft().newObjectPath(broker(), "", "", &status), nullptr);
    const CMPIObjectPath* const path = eft().newObjectPath(broker(), nullptr, "Test_Base", &status);
    ASSERT_NE(path, nullptr);
    EXPECT_EQ(status, CMPI_RC_OK);
    EXPECT_EQ(textOf(path->ft->getNameSpace(path, &status)), "");
    EXPECT_EQ(eft().newObjectPath(broker(), "root/test", nullptr, &status), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(ObjectPathHandle, TextsChangeAndStringsTakenBeforeDoNot) {
    const CMPIObjectPath* const path = newPath();
    const CMPIString* const before = path->ft->getNameSpace(path, nullptr);
    EXPECT_EQ(path->ft->setNameSpace(path, "root/other"), CMPI_RC_OK);
    EXPECT_EQ(path->ft->setHostname(path, "host"), CMPI_RC_OK);
    EXPECT_EQ(path->ft->setClassName(path, "Test_Other"), CMPI_RC_OK);
    EXPECT_EQ(textOf(before), "root/test");
    EXPECT_EQ(textOf(path->ft->getNameSpace(path, nullptr)), "root/other");
    EXPECT_EQ(textOf(path->ft->getHostname(path, nullptr)), "host");
    EXPECT_EQ(textOf(path->ft->getClassName(path, nullptr)), "Test_Other");
    EXPECT_EQ(path->ft->setNameSpace(path, nullptr), CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(path->ft->setHostname(path, nullptr), CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(path->ft->setClassName(path, nullptr), CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(ObjectPathHandle, FindsKeysInAnyCaseAndReplacesThem) {
    const CMPIObjectPath* const path = newPath();
    EXPECT_EQ(addKey(path, "Name", "a"), CMPI_RC_OK);
    const CMPIValue seven = uint32Value(7);
    EXPECT_EQ(path->ft->addKey(path, "Number", &seven, CMPI_uint32), CMPI_RC_OK);
    EXPECT_EQ(addKey(path, "NAME", "b"), CMPI_RC_OK);
    EXPECT_EQ(path->ft->getKeyCount(path, nullptr), 2U);

    const CMPIData name = path->ft->getKey(path, "name", &status);
    EXPECT_EQ(status, CMPI_RC_OK);
    EXPECT_EQ(name.type, CMPI_string);
    EXPECT_EQ(name.state, CMPI_keyValue);
    EXPECT_EQ(textOf(name.value.string), "b");

    CMPIString* keyName = nullptr;
    const CMPIData number = path->ft->getKeyAt(path, 1, &keyName, &status);
    EXPECT_EQ(textOf(keyName), "Number");
    EXPECT_EQ(number.type, CMPI_uint32);
    EXPECT_EQ(number.value.uint32, 7U);
    EXPECT_EQ(path->ft->getKeyAt(path, 0, nullptr, &status).state, CMPI_keyValue);
}

TEST_F(ObjectPathHandle, AnswersNoSuchPropertyForAbsentKeys) {
    const CMPIObjectPath* const path = newPath();
    path->ft->getKey(path, "Name", &status);
    EXPECT_EQ(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    path->ft->getKeyAt(path, 0, nullptr, &status);
    EXPECT_EQ(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    path->ft->getKey(path, nullptr, &status);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(ObjectPathHandle, RefusesKeysThatAreNullOrNoKeys) {
    const CMPIObjectPath* const path = newPath();
    CMPIValue value{};
    EXPECT_EQ(path->ft->addKey(path, "Name", nullptr, CMPI_string), CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(path->ft->addKey(path, "Name", &value, CMPI_string), CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(path->ft->addKey(path, nullptr, &value, CMPI_uint32), CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(path->ft->addKey(path, "Name", &value, CMPI_null), CMPI_RC_ERR_INVALID_DATA_TYPE);
    EXPECT_EQ(path->ft->addKey(path, "Name", &value, CMPI_args), CMPI_RC_ERR_INVALID_DATA_TYPE);
    value.array = eft().newArray(broker(), 1, CMPI_uint8, nullptr);
    EXPECT_EQ(path->ft->addKey(path, "Name", &value, CMPI_uint8A), CMPI_RC_ERR_INVALID_DATA_TYPE);
    EXPECT_EQ(path->ft->getKeyCount(path, nullptr), 0U);
}

TEST_F(ObjectPathHandle, KeepsAReferenceAsItWasWhenItWasAdded) {
    const CMPIObjectPath* const target = newPath("Test_Other");
    const CMPIObjectPath* const path = newPath();
    CMPIValue value{};
    value.ref = const_cast<CMPIObjectPath*>(target);
    EXPECT_EQ(path->ft->addKey(path, "Target", &value, CMPI_ref), CMPI_RC_OK);
    target->ft->setClassName(target, "Changed");
    const CMPIData data = path->ft->getKey(path, "Target", &status);
    EXPECT_EQ(data.type, CMPI_ref);
    EXPECT_EQ(textOf(data.value.ref->ft->getClassName(data.value.ref, nullptr)), "Test_Other");
}

TEST_F(ObjectPathHandle, MayHoldAReferenceToItself) {
    const CMPIObjectPath* const path = newPath();
    CMPIValue value{};
    value.ref = const_cast<CMPIObjectPath*>(path);
    EXPECT_EQ(path->ft->addKey(path, "Self", &value, CMPI_ref), CMPI_RC_OK);
    const CMPIData data = path->ft->getKey(path, "Self", &status);
    EXPECT_EQ(data.value.ref->ft->getKeyCount(data.value.ref, nullptr), 0U);
}

TEST_F(ObjectPathHandle, TakesPartsOfAnotherPath) {
    const CMPIObjectPath* const source = newPath("Test_Other");
    source->ft->setHostname(source, "host");
    source->ft->setNameSpace(source, "root/far");
    const CMPIObjectPath* const path = newPath();
    EXPECT_EQ(path->ft->setNameSpaceFromObjectPath(path, source), CMPI_RC_OK);
    EXPECT_EQ(textOf(eft().toString(broker(), path, nullptr)), "root/far:Test_Other");
    EXPECT_EQ(path->ft->setHostAndNameSpaceFromObjectPath(path, source), CMPI_RC_OK);
    EXPECT_EQ(textOf(eft().toString(broker(), path, nullptr)), "//host/root/far:Test_Other");
    EXPECT_EQ(path->ft->setNameSpaceFromObjectPath(path, path), CMPI_RC_OK);
    EXPECT_EQ(path->ft->setNameSpaceFromObjectPath(path, nullptr), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(textOf(eft().toString(broker(), path, nullptr)), "//host/root/far:Test_Other");
}

TEST_F(ObjectPathHandle, ReadsAsText) {
    const CMPIObjectPath* const path = newPath();
    addKey(path, "Name", "say \"a\\b\"");
    const CMPIValue seven = uint32Value(7);
    path->ft->addKey(path, "Number", &seven, CMPI_uint32);
    EXPECT_EQ(textOf(path->ft->toString(path, &status)),
              "root/test:Test_Base.Name=\"say \\\"a\\\\b\\\"\",Number=7");
}

TEST_F(ObjectPathHandle, ClonesAreIndependent) {
    const CMPIObjectPath* const path = newPath();
    addKey(path, "Name", "a");
    CMPIObjectPath* const copy = path->ft->clone(path, &status);
    ASSERT_NE(copy, nullptr);
    addKey(copy, "Name", "b");
    EXPECT_EQ(textOf(path->ft->getKey(path, "Name", nullptr).value.string), "a");
    EXPECT_EQ(textOf(copy->ft->getKey(copy, "Name", nullptr).value.string), "b");
    EXPECT_EQ(copy->ft->release(copy), CMPI_RC_OK);
}

TEST_F(ObjectPathHandle, AnswersInvalidHandleForNullAndForeignHandles) {
    const CMPIObjectPathFT& table = *newPath()->ft;
    CMPIObjectPath foreign = foreignHandle(newPath());
    const CMPIValue seven = uint32Value(7);
    for (CMPIObjectPath* const bad : {static_cast<CMPIObjectPath*>(nullptr), &foreign}) {
        for (const auto getter :
             {table.getNameSpace, table.getHostname, table.getClassName, table.toString}) {
            status = {CMPI_RC_OK, nullptr};
            EXPECT_EQ(getter(bad, &status), nullptr);
            EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
        }
        for (const auto setter : {table.setNameSpace, table.setHostname, table.setClassName}) {
            EXPECT_EQ(setter(bad, "x"), CMPI_RC_ERR_INVALID_HANDLE);
        }
        EXPECT_EQ(table.release(bad), CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(table.clone(bad, &status), nullptr);
        EXPECT_EQ(table.addKey(bad, "Name", &seven, CMPI_uint32), CMPI_RC_ERR_INVALID_HANDLE);
        status = {CMPI_RC_OK, nullptr};
        table.getKey(bad, "Name", &status);
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(table.getKeyCount(bad, &status), 0U);
        EXPECT_EQ(table.setNameSpaceFromObjectPath(bad, newPath()), CMPI_RC_ERR_INVALID_HANDLE);
    }
}

TEST_F(ObjectPathHandle, GivesItsModel) {
    const CMPIObjectPath* const path = newPath();
    EXPECT_EQ(modelOf(path).className, "Test_Base");
    EXPECT_THROW(modelOf(static_cast<const CMPIObjectPath*>(nullptr)), CimError);
}

}  // namespace
}  // namespace cimhost
