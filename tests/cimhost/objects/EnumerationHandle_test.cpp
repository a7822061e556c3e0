#include "cimhost/objects/EnumerationHandle.h"

#include "tests/support/BrokerFixture.h"

namespace cimhost {
namespace {

class EnumerationHandle : public BrokerTest {
protected:
    EnumerationHandle() {
        std::vector<ObjectPath> paths;
        for (const char* const name : {"a", "b", "c"}) paths.push_back({"", "root/test", name, {}});
        enumeration = makeEnumeration(realBroker, std::move(paths));
    }

    std::string next(const CMPIEnumeration* from) {
        const CMPIData data = from->ft->getNext(from, &status);
        EXPECT_EQ(data.type, CMPI_ref);
        return textOf(data.value.ref->ft->getClassName(data.value.ref, nullptr));
    }

    CMPIEnumeration* enumeration;
};

TEST_F(EnumerationHandle, GivesItsElementsInOrderAndThenNoMore) {
    for (const char* const name : {"a", "b", "c"}) {
        EXPECT_NE(enumeration->ft->hasNext(enumeration, &status), 0);
        EXPECT_EQ(next(enumeration), name);
        EXPECT_EQ(status, CMPI_RC_OK);
    }
    EXPECT_EQ(enumeration->ft->hasNext(enumeration, &status), 0);
    for (int i = 0; i < 2; ++i) {
        enumeration->ft->getNext(enumeration, &status);
        EXPECT_EQ(status, CMPI_RC_NO_MORE_ELEMENTS);
    }
}

TEST_F(EnumerationHandle, OfInstancesGivesThemSeparately) {
    Instance instance{{"", "root/test", "Test_Other", {}}, {}};
    instance.set("Text", Value::string("x"));
    const CMPIEnumeration* const all =
        makeEnumeration(realBroker, std::vector<Instance>{instance, instance});
    CMPIInstance* const first = all->ft->getNext(all, &status).value.inst;
    first->ft->setProperty(first, "Text", charsValue("changed"), CMPI_chars);
    const CMPIData second = all->ft->getNext(all, &status);
    EXPECT_EQ(second.type, CMPI_instance);
    EXPECT_EQ(
        textOf(second.value.inst->ft->getProperty(second.value.inst, "Text", nullptr).value.string),
        "x");
}

TEST_F(EnumerationHandle, AsAnArrayHasAllElements) {
    next(enumeration);
    const CMPIArray* const array = enumeration->ft->toArray(enumeration, &status);
    EXPECT_EQ(array->ft->getSize(array, &status), 3U);
    EXPECT_EQ(array->ft->getSimpleType(array, &status), CMPI_ref);
    EXPECT_EQ(next(enumeration), "b");
}

TEST_F(EnumerationHandle, ThatIsEmptyIsAnEmptyArrayToo) {
    const CMPIEnumeration* const none = makeEnumeration(realBroker, std::vector<Instance>{});
    EXPECT_EQ(none->ft->hasNext(none, &status), 0);
    const CMPIArray* const array = none->ft->toArray(none, &status);
    EXPECT_EQ(array->ft->getSize(array, &status), 0U);
    EXPECT_EQ(array->ft->getSimpleType(array, &status), CMPI_instance);
}

TEST_F(EnumerationHandle, CloneGoesOnWhereTheOriginalIs) {
    next(enumeration);
    CMPIEnumeration* const copy = enumeration->ft->clone(enumeration, &status);
    EXPECT_EQ(next(copy), "b");
    EXPECT_EQ(next(enumeration), "b");
    EXPECT_EQ(copy->ft->release(copy), CMPI_RC_OK);
}

TEST_F(EnumerationHandle, AnswersInvalidHandleForNullAndForeignHandles) {
    CMPIEnumeration foreign = foreignHandle(enumeration);
    for (CMPIEnumeration* const bad : {static_cast<CMPIEnumeration*>(nullptr), &foreign}) {
        status = {CMPI_RC_OK, nullptr};
        enumeration->ft->getNext(bad, &status);
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(enumeration->ft->hasNext(bad, &status), 0);
        EXPECT_EQ(enumeration->ft->toArray(bad, &status), nullptr);
        EXPECT_EQ(enumeration->ft->clone(bad, &status), nullptr);
        EXPECT_EQ(enumeration->ft->release(bad), CMPI_RC_ERR_INVALID_HANDLE);
    }
}

TEST_F(EnumerationHandle, OfSomeHostsMarksItsElementsNull) {
    const Broker host(repository, log, fillUpCalls, Manner("openpegasus"));
    const CMPIEnumeration* const all =
        makeEnumeration(host, std::vector<ObjectPath>{{"", "root/test", "a", {}}});
    const CMPIData data = all->ft->getNext(all, &status);
    EXPECT_EQ(status, CMPI_RC_OK);
    EXPECT_EQ(data.state, CMPI_nullValue);
    EXPECT_EQ(textOf(data.value.ref->ft->getClassName(data.value.ref, nullptr)), "a");
    all->ft->getNext(all, &status);
    EXPECT_EQ(status, CMPI_RC_NO_MORE_ELEMENTS);
}

TEST_F(EnumerationHandle, OfSomeHostsEndsQuietly) {
    const Broker host(repository, log, fillUpCalls, Manner("sfcb"));
    const CMPIEnumeration* const all = makeEnumeration(host, std::vector<ObjectPath>{});
    EXPECT_EQ(all->ft->getNext(all, &status).state, CMPI_badValue);
    EXPECT_EQ(status, CMPI_RC_OK);
}

}  // namespace
}  // namespace cimhost
