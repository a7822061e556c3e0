#include "tests/support/BrokerFixture.h"

#include <thread>

namespace cimhost {
namespace {

class MemoryTable : public BrokerTest {
protected:
    std::size_t warnings() const { return log.lines().size(); }
};

TEST_F(MemoryTable, HandsOutBlocksAndTakesThemBack) {
    auto* block = static_cast<char*>(mft().cmpiMalloc(broker(), 4));
    std::memcpy(block, "abc", 4);
    block = static_cast<char*>(mft().cmpiRealloc(broker(), block, 100));
    EXPECT_STREQ(block, "abc");
    mft().cmpiFree(broker(), block);
    char* const text = mft().cmpiStrDup(broker(), "text");
    EXPECT_STREQ(text, "text");
    mft().cmpiFree(broker(), text);
    EXPECT_NE(mft().cmpiCalloc(broker(), 2, 2), nullptr);
    EXPECT_EQ(mft().cmpiStrDup(broker(), nullptr), nullptr);
    mft().cmpiFree(broker(), nullptr);
    mft().freeChars(broker(), nullptr);
    EXPECT_EQ(warnings(), 0U);
}

TEST_F(MemoryTable, LogsFreesOfWhatIsNotThere) {
    void* const block = mft().cmpiMalloc(broker(), 4);
    mft().cmpiFree(broker(), block);
    mft().cmpiFree(broker(), block);
    char local = 0;
    mft().freeChars(broker(), &local);
    char* const text = mft().cmpiStrDup(broker(), "text");
    mft().freeChars(broker(), text);
    EXPECT_EQ(warnings(), 3U);
    mft().cmpiFree(nullptr, text);
    EXPECT_STREQ(text, "text");
}

TEST_F(MemoryTable, FreesEveryKindOfObjectEarly) {
    mft().freeString(broker(), newString("x"));
    mft().freeString(broker(), newString(std::string(1000, 'x').c_str()));
    mft().freeObjectPath(broker(), newPath());
    mft().freeInstance(broker(), newInstance());
    mft().freeArgs(broker(), eft().newArgs(broker(), nullptr));
    mft().freeArray(broker(), eft().newArray(broker(), 3, CMPI_string, nullptr));
    mft().freeDateTime(broker(), eft().newDateTime(broker(), nullptr));
    EXPECT_EQ(warnings(), 0U);
}

TEST_F(MemoryTable, IgnoresNull) {
    mft().freeString(broker(), nullptr);
    mft().freeObjectPath(broker(), nullptr);
    mft().freeInstance(broker(), nullptr);
    mft().freeArgs(broker(), nullptr);
    mft().freeArray(broker(), nullptr);
    mft().freeDateTime(broker(), nullptr);
    mft().freeSelectExp(broker(), nullptr);
    mft().freeString(nullptr, newString("x"));
    EXPECT_EQ(warnings(), 0U);
}

TEST_F(MemoryTable, UsesTheMemoryOfFreedObjectsAgain) {
    CMPIInstance* const first = newInstance();
    mft().freeInstance(broker(), first);
    const CMPIObjectPath* const path = newPath();
    const CMPIInstance* const second = eft().newInstance(broker(), path, &status);
    EXPECT_EQ(first, second);
}

TEST_F(MemoryTable, SeesThatAnObjectIsFreedTwice) {
    CMPIString* const string = newString("x");
    mft().freeString(broker(), string);
    mft().freeString(broker(), string);
    EXPECT_EQ(warnings(), 1U);
    EXPECT_EQ(newString("y"), string);
    EXPECT_EQ(textOf(string), "y");
}

TEST_F(MemoryTable, AnswersInvalidHandleForFreedObjects) {
    CMPIObjectPath* const path = newPath();
    const CMPIObjectPathFT& table = *path->ft;
    mft().freeObjectPath(broker(), path);
    EXPECT_EQ(table.getNameSpace(path, &status), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(MemoryTable, DoesNotFreeAnotherKindClonesPartsOrResults) {
    CMPIObjectPath* const path = newPath();
    mft().freeInstance(broker(), reinterpret_cast<CMPIInstance*>(path));
    CMPIObjectPath* const copy = path->ft->clone(path, &status);
    mft().freeObjectPath(broker(), copy);
    CMPIString* const part = path->ft->getClassName(path, &status);
    mft().freeString(broker(), part);
    EXPECT_EQ(warnings(), 3U);
    CMPIString* const passedIn = makeString(realBroker, "in");
    mft().freeString(broker(), passedIn);
    EXPECT_EQ(textOf(part), "Test_Base");
    EXPECT_EQ(textOf(passedIn), "in");
    EXPECT_EQ(copy->ft->release(copy), CMPI_RC_OK);
    EXPECT_EQ(log.lines()[0].message, "free on a CMPIInstance that it must not end: ignored");
}

TEST_F(MemoryTable, WarnsOfAWrongEndOnceForEachFunctionAndKind) {
    CMPIString* const string = newString("x");
    CMPIObjectPath* const path = newPath();
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(string->ft->release(string), CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(path->ft->release(path), CMPI_RC_ERR_INVALID_HANDLE);
        mft().freeString(broker(), path->ft->getClassName(path, &status));
    }
    ASSERT_EQ(warnings(), 3U);
    EXPECT_EQ(log.lines()[0].message, "release on a CMPIString that it must not end: ignored");
    EXPECT_EQ(log.lines()[1].message, "release on a CMPIObjectPath that it must not end: ignored");
    EXPECT_EQ(log.lines()[2].message, "free on a CMPIString that it must not end: ignored");
}

TEST_F(MemoryTable, DoesNotFreeObjectsOfAnotherThread) {
    CMPIString* const string = newString("mine");
    std::thread([this, string] { mft().freeString(broker(), string); }).join();
    EXPECT_EQ(warnings(), 1U);
    EXPECT_EQ(textOf(string), "mine");
}

TEST_F(MemoryTable, ReleasesClonesOnly) {
    CMPIString* const string = newString("x");
    EXPECT_EQ(string->ft->release(string), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(textOf(string), "x");
    EXPECT_EQ(warnings(), 1U);
}

TEST_F(MemoryTable, FreeingAnObjectEndsItsParts) {
    CMPIInstance* const instance = newInstance();
    instance->ft->setProperty(instance, "Text", charsValue("x"), CMPI_chars);
    const CMPIObjectPath* const path = instance->ft->getObjectPath(instance, &status);
    const CMPIString* const text = path->ft->getClassName(path, &status);
    const CMPIStringFT& table = *text->ft;
    mft().freeInstance(broker(), instance);
    EXPECT_EQ(table.getCharPtr(text, &status), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(MemoryTable, MarksEndTheirObjectsButNotClones) {
    CMPIGcStat* const mark = mft().mark(broker(), &status);
    ASSERT_NE(mark, nullptr);
    CMPIString* const copy = newString("x")->ft->clone(newString("x"), &status);
    EXPECT_EQ(mft().release(broker(), mark), CMPI_RC_OK);
    EXPECT_EQ(textOf(copy), "x");
    EXPECT_EQ(copy->ft->release(copy), CMPI_RC_OK);
}

TEST_F(MemoryTable, ObjectsMadeBeforeAMarkOutliveIt) {
    CMPIObjectPath* const path = newPath();
    CMPIGcStat* const mark = mft().mark(broker(), &status);
    path->ft->addKey(path, "Name", charsValue("a"), CMPI_chars);
    path->ft->getClassName(path, &status);
    EXPECT_EQ(mft().release(broker(), mark), CMPI_RC_OK);
    EXPECT_EQ(textOf(path->ft->getKey(path, "Name", &status).value.string), "a");
}

TEST_F(MemoryTable, AnObjectCanBeFreedInsideALaterMark) {
    CMPIString* const string = newString("x");
    CMPIGcStat* const mark = mft().mark(broker(), &status);
    mft().freeString(broker(), string);
    EXPECT_EQ(mft().release(broker(), mark), CMPI_RC_OK);
    EXPECT_EQ(warnings(), 0U);
}

TEST_F(MemoryTable, MarksNestAndTheOuterOneEndsTheInner) {
    CMPIGcStat* const outer = mft().mark(broker(), &status);
    CMPIGcStat* const inner = mft().mark(broker(), &status);
    newString("x");
    EXPECT_EQ(mft().release(broker(), outer), CMPI_RC_OK);
    EXPECT_EQ(mft().release(broker(), inner), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(mft().release(broker(), outer), CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(MemoryTable, RefusesTokensThatAreNone) {
    EXPECT_EQ(mft().release(broker(), nullptr), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(mft().release(broker(), &status), CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(MemoryTable, RefusesTheMarkOfAnOuterCall) {
    CMPIGcStat* const mark = mft().mark(broker(), &status);
    {
        const CallScope innerCall;
        EXPECT_EQ(mft().release(broker(), mark), CMPI_RC_ERR_INVALID_HANDLE);
    }
    EXPECT_EQ(mft().release(broker(), mark), CMPI_RC_OK);
}

TEST_F(MemoryTable, MarksLeftOpenEndWithTheCall) {
    {
        const CallScope call;
        mft().mark(broker(), &status);
        newString("x");
    }
    EXPECT_EQ(textOf(newString("y")), "y");
}

TEST_F(MemoryTable, FreesQueriesAndNothingElseInTheirPlace) {
    mft().freeSelectExp(
        broker(), eft().newSelectExp(broker(), "SELECT * FROM Test_Base", "WQL", nullptr, &status));
    EXPECT_EQ(warnings(), 0U);
    mft().freeSelectExp(broker(), reinterpret_cast<CMPISelectExp*>(newPath()));
    EXPECT_EQ(warnings(), 1U);
}

}  // namespace
}  // namespace cimhost
