#include "cimhost/objects/PropertyListHandle.h"

#include "tests/support/BrokerFixture.h"

namespace cimhost {
namespace {

class PropertyListHandle : public BrokerTest {
protected:
    bool contains(const CMPIPropertyList* list, const char* name) {
        return list->ft->isPropertyInList(list, name, &status) != 0;
    }
};

TEST_F(PropertyListHandle, FindsNamesInAnyCase) {
    const char* names[] = {"Name", "Size", nullptr};
    const CMPIPropertyList* const list = eft().newPropertyList(broker(), names, &status);
    EXPECT_TRUE(contains(list, "NAME"));
    EXPECT_FALSE(contains(list, "Weight"));
    EXPECT_EQ(status, CMPI_RC_OK);
    EXPECT_FALSE(contains(list, nullptr));
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(PropertyListHandle, GivesItsNamesWithANullAtTheEnd) {
    std::string first = "Name";
    const char* names[] = {first.c_str(), "Size", nullptr};
    const CMPIPropertyList* const list = eft().newPropertyList(broker(), names, &status);
    first = "XXXX";
    const char** const kept = list->ft->getProperties(list, &status);
    EXPECT_STREQ(kept[0], "Name");
    EXPECT_STREQ(kept[1], "Size");
    EXPECT_EQ(kept[2], nullptr);
}

TEST_F(PropertyListHandle, OfNoListHasEveryProperty) {
    const CMPIPropertyList* const list = eft().newPropertyList(broker(), nullptr, &status);
    EXPECT_TRUE(contains(list, "Anything"));
    EXPECT_EQ(list->ft->getProperties(list, &status), nullptr);
    EXPECT_EQ(status, CMPI_RC_OK);
}

TEST_F(PropertyListHandle, OfAnEmptyListHasNone) {
    const char* names[] = {nullptr};
    const CMPIPropertyList* const list = eft().newPropertyList(broker(), names, &status);
    EXPECT_FALSE(contains(list, "Anything"));
    EXPECT_EQ(list->ft->getProperties(list, &status)[0], nullptr);
}

TEST_F(PropertyListHandle, ClonesHaveNamesOfTheirOwn) {
    CMPIPropertyList* copy = nullptr;
    {
        const CallScope call;
        const char* names[] = {"Name", nullptr};
        const CMPIPropertyList* const list = eft().newPropertyList(broker(), names, &status);
        copy = list->ft->clone(list, &status);
    }
    EXPECT_STREQ(copy->ft->getProperties(copy, &status)[0], "Name");
    EXPECT_EQ(copy->ft->release(copy), CMPI_RC_OK);
}

TEST_F(PropertyListHandle, AnswersInvalidHandleForNullAndForeignHandles) {
    const CMPIPropertyList* const list = eft().newPropertyList(broker(), nullptr, &status);
    CMPIPropertyList foreign = foreignHandle(list);
    for (CMPIPropertyList* const bad : {static_cast<CMPIPropertyList*>(nullptr), &foreign}) {
        status = {CMPI_RC_OK, nullptr};
        EXPECT_EQ(list->ft->isPropertyInList(bad, "Name", &status), 0);
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(list->ft->getProperties(bad, &status), nullptr);
        EXPECT_EQ(list->ft->clone(bad, &status), nullptr);
        EXPECT_EQ(list->ft->release(bad), CMPI_RC_ERR_INVALID_HANDLE);
    }
}

}  // namespace
}  // namespace cimhost
