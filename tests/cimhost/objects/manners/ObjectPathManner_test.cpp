#include "cimhost/objects/manners/Habits.h"
#include "tests/support/MannerCall.h"

namespace cimhost {
namespace {

CMPIStatus addText(const CMPIObjectPath* path, const char* name, const char* text) {
    return path->ft->addKey(path, name, charsValue(text), CMPI_chars);
}

CMPIStatus addNumber(const CMPIObjectPath* path, const char* name, CMPIUint64 number) {
    CMPIValue value{};
    value.uint64 = number;
    return path->ft->addKey(path, name, &value, CMPI_uint64);
}

std::string nameAt(const CMPIObjectPath* path, CMPICount index, CMPIStatus& status) {
    CMPIString* name = nullptr;
    path->ft->getKeyAt(path, index, &name, &status);
    return textOf(name);
}

TEST(ObjectPathManner, CountsTheKeysOfTheClassBeforeTheOthers) {
    MannerCall call("openpegasus");
    const CMPIObjectPath* const path = call.newPath();
    addText(path, "First", "1");
    addText(path, "Second", "2");
    ASSERT_EQ(path->ft->getKeyCount(path, &call.status), 3U);
    EXPECT_EQ(nameAt(path, 0, call.status), "Name");
    EXPECT_EQ(call.status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(nameAt(path, 1, call.status), "Second");
    EXPECT_EQ(call.status, CMPI_RC_OK);
    EXPECT_EQ(nameAt(path, 2, call.status), "First");
    addText(path, "NAME", "x");
    EXPECT_EQ(path->ft->getKeyCount(path, &call.status), 3U);
    EXPECT_EQ(nameAt(path, 0, call.status), "Name");
    EXPECT_EQ(call.status, CMPI_RC_OK);
}

TEST(ObjectPathManner, CountsWhatWasAddedWhereTheClassIsUnknown) {
    MannerCall call("openpegasus");
    EXPECT_EQ(call.newPath("Test_Nobody")->ft->getKeyCount(call.newPath("Test_Nobody"), nullptr),
              0U);
}

TEST(ObjectPathManner, AnswersNotFoundForKeysThatAreNotSet) {
    MannerCall call("sfcb");
    const CMPIObjectPath* const path = call.newPath();
    EXPECT_NE(path->ft->getKey(path, "Name", &call.status).state & CMPI_notFound, 0);
    EXPECT_EQ(call.status, CMPI_RC_ERR_NOT_FOUND);
}

TEST(ObjectPathManner, ReadsIntegerKeysBackAsSint64) {
    MannerCall call("openpegasus");
    const CMPIObjectPath* const path = call.newPath();
    addNumber(path, "Number", ~CMPIUint64{0});
    const CMPIData data = path->ft->getKey(path, "Number", &call.status);
    EXPECT_EQ(data.type, CMPI_sint64);
    EXPECT_EQ(data.value.sint64, -1);
}

TEST(ObjectPathManner, RefusesKeysOfAnotherTypeThanTheClass) {
    MannerCall call("strict");
    EXPECT_EQ(addNumber(call.newPath(), "Name", 1), CMPI_RC_ERR_INVALID_DATA_TYPE);
    EXPECT_EQ(addNumber(call.newPath(), "Other", 1), CMPI_RC_OK);
    EXPECT_EQ(addText(call.newPath(), "Name", "1"), CMPI_RC_OK);
}

TEST(ObjectPathManner, TreatsNullKeysDifferently) {
    MannerCall refusing("openpegasus");
    const CMPIObjectPath* const none = refusing.newPath();
    EXPECT_EQ(none->ft->addKey(none, "K", nullptr, CMPI_string), CMPI_RC_ERR_FAILED);
    MannerCall keeping("sfcb");
    const CMPIObjectPath* const kept = keeping.newPath();
    EXPECT_EQ(kept->ft->addKey(kept, "K", nullptr, CMPI_string), CMPI_RC_OK);
    EXPECT_NE(kept->ft->getKey(kept, "K", nullptr).state & CMPI_nullValue, 0);
}

TEST(ObjectPathManner, HasNoCharactersForAbsentTexts) {
    MannerCall call("sfcb");
    const CMPIObjectPath* const path = call.eft().newObjectPath(call.broker(), "", "C", nullptr);
    const CMPIString* const nameSpace = path->ft->getNameSpace(path, nullptr);
    const CMPIString* const host = path->ft->getHostname(path, nullptr);
    EXPECT_EQ(nameSpace->ft->getCharPtr(nameSpace, nullptr), nullptr);
    EXPECT_EQ(host->ft->getCharPtr(host, nullptr), nullptr);
    path->ft->setHostname(path, "host");
    EXPECT_EQ(textOf(path->ft->getHostname(path, nullptr)), "host");
}

TEST(ObjectPathManner, PutsTheHostIntoPathsOfRequests) {
    MannerCall call("openpegasus");
    EXPECT_NE(modelOf(makeRequestPath(call.realBroker, {})).host, "");
    EXPECT_EQ(modelOf(makeRequestPath(call.realBroker, {"given", {}, {}, {}})).host, "given");
    MannerCall other("sfcb");
    EXPECT_EQ(modelOf(makeRequestPath(other.realBroker, {})).host, "");
}

TEST(ObjectPathManner, LeavesTheStatusOfACloneAlone) {
    MannerCall call("sfcb");
    CMPIObjectPath* const path = call.newPath();
    CMPIStatus status{CMPI_RC_ERROR, nullptr};
    CMPIObjectPath* const clone = path->ft->clone(path, &status);
    EXPECT_EQ(status, CMPI_RC_ERROR);
    clone->ft->release(clone);
    EXPECT_EQ(path->ft->clone(nullptr, &status), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST(ObjectPathMannerDeathTest, EndsWhereTheHostWouldCrash) {
    MannerCall call("sfcb");
    const CMPIObjectPath* const path = call.newPath();
    CMPIString* name = nullptr;
    EXPECT_DEATH(path->ft->getKeyAt(path, 0, &name, nullptr), "");
    EXPECT_EQ(path->ft->getKeyAt(path, 0, nullptr, &call.status).type, CMPI_null);
    EXPECT_DEATH(path->ft->setNameSpace(path, nullptr), "");
}

}  // namespace
}  // namespace cimhost
