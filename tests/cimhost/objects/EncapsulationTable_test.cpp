#include "cimhost/repository/CimError.h"
#include "tests/support/BrokerFixture.h"

namespace cimhost {
namespace {

class EncapsulationTable : public BrokerTest {
protected:
    bool isA(const CMPIObjectPath* path, const char* className) {
        return eft().classPathIsA(broker(), path, className, &status) != 0;
    }
};

TEST_F(EncapsulationTable, KnowsTheClassTree) {
    EXPECT_TRUE(isA(newPath("test_derived"), "TEST_BASE"));
    EXPECT_TRUE(isA(newPath("Test_Base"), "Test_Base"));
    EXPECT_FALSE(isA(newPath("Test_Base"), "Test_Derived"));
    EXPECT_FALSE(isA(newPath("Test_Base"), "Test_Other"));
    EXPECT_FALSE(isA(newPath("Test_Base"), "Test_Nowhere"));
    EXPECT_EQ(status, CMPI_RC_OK);
}

TEST_F(EncapsulationTable, TellsThatAClassIsUnknown) {
    EXPECT_FALSE(isA(newPath("Test_Nowhere"), "Test_Base"));
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_CLASS);
    const CMPIObjectPath* const far =
        eft().newObjectPath(broker(), "root/nowhere", "Test_Base", nullptr);
    EXPECT_FALSE(isA(far, "Test_Other"));
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_NAMESPACE);
}

TEST_F(EncapsulationTable, TakesAClassForItsOwnKindThoughItIsUnknown) {
    EXPECT_TRUE(isA(newPath("Test_Nowhere"), "TEST_NOWHERE"));
    EXPECT_EQ(status, CMPI_RC_OK);
}

TEST_F(EncapsulationTable, ClassPathIsANeedsItsArguments) {
    EXPECT_FALSE(isA(nullptr, "Test_Base"));
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_FALSE(isA(newPath(), nullptr));
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(EncapsulationTable, KnowsTheTypesOfObjects) {
    ResultSink sink;
    const std::pair<const void*, const char*> objects[] = {
        {newPath(), "CMPIObjectPath"},
        {newInstance(), "CMPIInstance"},
        {eft().newArgs(broker(), nullptr), "CMPIArgs"},
        {newString("x"), "CMPIString"},
        {eft().newArray(broker(), 0, CMPI_uint8, nullptr), "CMPIArray"},
        {eft().newDateTime(broker(), nullptr), "CMPIDateTime"},
        {makeEnumeration(realBroker, std::vector<Instance>{}), "CMPIEnumeration"},
        {makeContext(realBroker, {}), "CMPIContext"},
        {makeResult(realBroker, sink), "CMPIResult"},
        {eft().newCMPIError(broker(), "", "", "", ErrorSevLow, Timeout, CMPI_RC_OK, nullptr),
         "CMPIError"},
        {eft().newPropertyList(broker(), nullptr, nullptr), "CMPIPropertyList"},
        {eft().newEnumerationFilter(broker(), nullptr, nullptr, nullptr), "CMPIEnumerationFilter"},
    };
    for (const auto& [object, name] : objects) {
        EXPECT_EQ(textOf(eft().getType(broker(), object, &status)), name);
        EXPECT_NE(eft().isOfType(broker(), object, name, &status), 0) << name;
        EXPECT_EQ(eft().isOfType(broker(), object, "CMPISelectExp", &status), 0) << name;
        EXPECT_NE(textOf(eft().toString(broker(), object, &status)), "<null>") << name;
        EXPECT_EQ(status, CMPI_RC_OK);
    }
}

TEST_F(EncapsulationTable, HasNoTypeForNullAndForeignObjects) {
    const CMPIString foreign = foreignHandle(newString("x"));
    for (const void* const bad :
         {static_cast<const void*>(nullptr), static_cast<const void*>(&foreign)}) {
        status = {CMPI_RC_OK, nullptr};
        EXPECT_EQ(eft().getType(broker(), bad, &status), nullptr);
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(eft().isOfType(broker(), bad, "CMPIString", &status), 0);
        EXPECT_EQ(eft().toString(broker(), bad, &status), nullptr);
    }
    EXPECT_EQ(eft().isOfType(broker(), newString("x"), nullptr, &status), 0);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(EncapsulationTable, WritesLogLinesWithTheirLevel) {
    EXPECT_EQ(eft().logMessage(broker(), CMPI_SEV_ERROR, "id", "an error", nullptr), CMPI_RC_OK);
    EXPECT_EQ(eft().logMessage(broker(), CMPI_SEV_INFO, nullptr, nullptr, newString("news")),
              CMPI_RC_OK);
    EXPECT_EQ(eft().logMessage(broker(), CMPI_SEV_WARNING, "id", "text", newString("ignored")),
              CMPI_RC_OK);
    EXPECT_EQ(eft().logMessage(broker(), CMPI_DEV_DEBUG, "id", "debug", nullptr), CMPI_RC_OK);
    const auto lines = log.lines();
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[0].level, BrokerLog::Level::error);
    EXPECT_EQ(lines[0].source, "id");
    EXPECT_EQ(lines[0].message, "an error");
    EXPECT_EQ(lines[1].level, BrokerLog::Level::information);
    EXPECT_EQ(lines[1].source, "provider");
    EXPECT_EQ(lines[1].message, "news");
    EXPECT_EQ(lines[2].level, BrokerLog::Level::warning);
    EXPECT_EQ(lines[2].message, "text");
    EXPECT_EQ(lines[3].level, BrokerLog::Level::debug);
}

TEST_F(EncapsulationTable, WritesTraceLinesWithTheirLevel) {
    EXPECT_EQ(eft().trace(broker(), CMPI_LEV_INFO, "part", "a", nullptr), CMPI_RC_OK);
    EXPECT_EQ(eft().trace(broker(), CMPI_LEV_WARNING, "part", "b", nullptr), CMPI_RC_OK);
    EXPECT_EQ(eft().trace(broker(), CMPI_LEV_VERBOSE, "part", nullptr, newString("c")), CMPI_RC_OK);
    const auto lines = log.lines();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].level, BrokerLog::Level::information);
    EXPECT_EQ(lines[1].level, BrokerLog::Level::warning);
    EXPECT_EQ(lines[2].level, BrokerLog::Level::debug);
    EXPECT_EQ(lines[2].message, "c");
}

TEST_F(EncapsulationTable, RefusesLinesWithoutTextOrLevel) {
    EXPECT_EQ(eft().logMessage(broker(), CMPI_SEV_INFO, "id", nullptr, nullptr),
              CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(eft().logMessage(broker(), static_cast<CMPISeverity>(9), "id", "x", nullptr),
              CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(eft().trace(broker(), static_cast<CMPILevel>(0), "id", "x", nullptr),
              CMPI_RC_ERR_INVALID_PARAMETER);
    const CMPIString foreign = foreignHandle(newString("x"));
    EXPECT_EQ(eft().trace(broker(), CMPI_LEV_INFO, "id", nullptr, &foreign),
              CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(EncapsulationTable, HasNoTranslatedMessages) {
    CMPIMsgFileHandle file = &status;
    EXPECT_EQ(eft().openMessageFile(broker(), "messages", &file), CMPI_RC_OK);
    EXPECT_EQ(file, nullptr);
    EXPECT_EQ(eft().closeMessageFile(broker(), file), CMPI_RC_OK);
    EXPECT_EQ(eft().closeMessageFile(broker(), &status), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(eft().openMessageFile(broker(), nullptr, &file), CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(eft().openMessageFile(broker(), "x", nullptr), CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(EncapsulationTable, ExpandsInsertsOfEveryType) {
    const CMPIString* const text = eft().getMessage2(
        broker(), "id", nullptr, "$0 $1 $2 $3 $4 $5 $6 $7", &status, 8, CMPI_sint32, -1L,
        CMPI_uint32, 4000000000UL, CMPI_sint64, -5000000000LL, CMPI_uint64, 5000000000ULL,
        CMPI_real64, 1.5, CMPI_boolean, 1, CMPI_chars, "c", CMPI_string, newString("s"));
    EXPECT_EQ(textOf(text), "-1 4000000000 -5000000000 5000000000 1.5 true c s");
    EXPECT_EQ(status, CMPI_RC_OK);
}

TEST_F(EncapsulationTable, LeavesPlacesWithoutAnInsertAlone) {
    EXPECT_EQ(textOf(eft().getMessage(broker(), "id", "$1 of $0, $2 $x $", &status, 2, CMPI_chars,
                                      "b", CMPI_chars, "a")),
              "a of b, $2 $x $");
    EXPECT_EQ(textOf(eft().getMessage(broker(), nullptr, "$0", &status, 1, CMPI_chars,
                                      static_cast<char*>(nullptr))),
              "NULL");
    EXPECT_EQ(textOf(eft().getMessage(broker(), nullptr, "$0", &status, 1, CMPI_chars, "$0")),
              "$0");
}

TEST_F(EncapsulationTable, GivesTheTemplateWhenInsertsAreBad) {
    EXPECT_EQ(textOf(eft().getMessage(broker(), "id", "$0", &status, 1, CMPI_uint8, 1)), "$0");
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_DATA_TYPE);
    EXPECT_EQ(textOf(eft().getMessage2(broker(), "id", nullptr, "$0", &status, 11)), "$0");
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
    const CMPIString foreign = foreignHandle(newString("x"));
    EXPECT_EQ(textOf(eft().getMessage(broker(), "id", "$0", &status, 1, CMPI_string, &foreign)),
              "$0");
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(eft().getMessage(broker(), "id", nullptr, &status, 0), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
}

}  // namespace
}  // namespace cimhost
