#include "testing/cimhost/testing/FaultyBroker.h"

#include "tests/support/BrokerFixture.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace cimtest {
namespace {

using Fault = FaultyBroker::Fault;

class FaultyBrokerTest : public cimhost::BrokerTest {
protected:
    CMPIObjectPath* newPath() {
        return broker()->eft->newObjectPath(broker(), "root/test", "Test_Class", &status);
    }
    const CMPIBroker* broker() const { return faulty.handle(); }

    FaultyBroker faulty{realBroker.handle()};
};

TEST_F(FaultyBrokerTest, LetsEverythingPassWhenNothingIsOrdered) {
    const CMPIObjectPath* const path = newPath();
    EXPECT_EQ(status.rc, CMPI_RC_OK);
    const CMPIString* const name = path->ft->getClassName(path, &status);
    EXPECT_STREQ(name->ft->getCharPtr(name, nullptr), "Test_Class");
    EXPECT_FALSE(faulty.hasFailed());
    EXPECT_EQ(faulty.calls("CMPIObjectPathFT.getClassName"), 1U);
    EXPECT_EQ(faulty.calls("CMPIStringFT.getCharPtr"), 1U);
}

TEST_F(FaultyBrokerTest, FailsTheNthCallOnly) {
    faulty.failCall("CMPIBrokerEncFT.newObjectPath", 2, Fault::status, CMPI_RC_ERR_ACCESS_DENIED);
    EXPECT_NE(newPath(), nullptr);
    EXPECT_FALSE(faulty.hasFailed());
    EXPECT_EQ(newPath(), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_ACCESS_DENIED);
    EXPECT_TRUE(faulty.hasFailed());
    EXPECT_NE(newPath(), nullptr);
}

TEST_F(FaultyBrokerTest, FailsAllCallsFromTheNthOn) {
    faulty.failFrom("CMPIBrokerEncFT.newObjectPath", 2, Fault::status);
    EXPECT_NE(newPath(), nullptr);
    EXPECT_EQ(newPath(), nullptr);
    EXPECT_EQ(newPath(), nullptr);
    faulty.heal();
    EXPECT_NE(newPath(), nullptr);
}

TEST_F(FaultyBrokerTest, FailsCallsOfObjectsThatItGaveOut) {
    const CMPIObjectPath* const path = newPath();
    CMPIValue value{};
    faulty.failCall("CMPIObjectPathFT.addKey", 1, Fault::status, CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(path->ft->addKey(path, "Key", &value, CMPI_uint32).rc, CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(path->ft->getKeyCount(path, nullptr), 0U);
}

TEST_F(FaultyBrokerTest, FailsCallsOfObjectsThatItAdopts) {
    CMPIContext* const context = FaultyBroker::adopt(cimhost::makeContext(realBroker, {}));
    faulty.failCall("CMPIContextFT.getEntry", 1, Fault::status, CMPI_RC_ERR_FAILED);
    context->ft->getEntry(context, CMPIRole, &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(FaultyBroker::adopt(static_cast<CMPIString*>(nullptr)), nullptr);
}

TEST_F(FaultyBrokerTest, InterposesWhatDataAndNamesHold) {
    const CMPIObjectPath* const path = newPath();
    path->ft->addKey(path, "Key", reinterpret_cast<const CMPIValue*>("text"), CMPI_chars);
    CMPIString* name = nullptr;
    const CMPIData data = path->ft->getKeyAt(path, 0, &name, &status);
    faulty.failFrom("CMPIStringFT.getCharPtr", 1, Fault::status);
    EXPECT_EQ(name->ft->getCharPtr(name, nullptr), nullptr);
    EXPECT_EQ(data.value.string->ft->getCharPtr(data.value.string, nullptr), nullptr);
}

TEST_F(FaultyBrokerTest, GivesNullWithSuccess) {
    faulty.failFrom("CMPIBrokerEncFT.newObjectPath", 1, Fault::null);
    status.rc = CMPI_RC_ERR_FAILED;
    EXPECT_EQ(newPath(), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_OK);
}

TEST_F(FaultyBrokerTest, GivesDataThatIsNullOrOfAnotherType) {
    const CMPIObjectPath* const path = newPath();
    path->ft->addKey(path, "Key", reinterpret_cast<const CMPIValue*>("text"), CMPI_chars);
    faulty.failCall("CMPIObjectPathFT.getKey", 1, Fault::null);
    const CMPIData null = path->ft->getKey(path, "Key", &status);
    EXPECT_EQ(null.state, CMPI_nullValue);
    EXPECT_EQ(status.rc, CMPI_RC_OK);
    faulty.failCall("CMPIObjectPathFT.getKey", 1, Fault::wrongType);
    EXPECT_EQ(path->ft->getKey(path, "Key", &status).type, CMPI_uint8);
    faulty.failCall("CMPIObjectPathFT.getKey", 1, Fault::status);
    EXPECT_EQ(path->ft->getKey(path, "Key", &status).state, CMPI_badValue);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_FAILED);
}

TEST_F(FaultyBrokerTest, DoesTheWorkOfAFailingRelease) {
    const CMPIObjectPath* const path = newPath();
    CMPIObjectPath* const copy = path->ft->clone(path, &status);
    faulty.failCall("CMPIObjectPathFT.release", 1, Fault::status);
    // A leak checker tells whether the clone is gone.
    EXPECT_EQ(copy->ft->release(copy).rc, CMPI_RC_ERR_FAILED);
}

TEST_F(FaultyBrokerTest, LeavesTheRealBrokerAlone) {
    faulty.failFrom("CMPIBrokerEncFT.newObjectPath", 1, Fault::status);
    EXPECT_NE(realBroker.handle()->eft->newObjectPath(realBroker.handle(), "n", "C", nullptr),
              nullptr);
}

TEST_F(FaultyBrokerTest, ListsTheSlotsOfAllTables) {
    const std::vector<std::string> slots = FaultyBroker::slots();
    for (const char* const name :
         {"CMPIBrokerFT.getInstance", "CMPIBrokerEncFT.classPathIsA", "CMPIBrokerExtFT.lockMutex2",
          "CMPIBrokerMemFT.freeChars", "CMPIInstanceFT.setPropertyWithOrigin",
          "CMPIErrorFT.setMessageArguments", "CMPIEnumerationFilterFT.match"}) {
        EXPECT_NE(std::find(slots.begin(), slots.end(), name), slots.end()) << name;
    }
    EXPECT_THROW(faulty.failCall("CMPIStringFT.nothing", 1, Fault::status), std::invalid_argument);
}

TEST_F(FaultyBrokerTest, EverySlotCanBeOrderedToFail) {
    for (const std::string& slot : FaultyBroker::slots()) {
        faulty.failFrom(slot, 1, Fault::status);
        EXPECT_EQ(faulty.calls(slot), 0U);
        EXPECT_FALSE(faulty.hasFailed());
    }
}

TEST_F(FaultyBrokerTest, ExistsOnce) {
    EXPECT_THROW(FaultyBroker(realBroker.handle()), std::logic_error);
}

}  // namespace
}  // namespace cimtest
