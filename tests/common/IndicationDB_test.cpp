#include "common/IndicationDB.h"

#include "platform/logger/CapturingSink.h"
#include "testing/cimhost/testing/Allocations.h"
#include "testing/pylcommon/testing/SystemName.h"
#include "tests/common/Failures.h"
#include "tests/common/QuietResults.h"
#include "tests/support/Journal.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using PYL::IndDBRec;
using PYL::IndicationDB;

const cimtest::SystemName valmor{.machine = "ia64"};

IndDBRec numberedRecord() {
    return {"provider", -7, "display", "text id", 3,     "description", "summary", 11, 12,
            "other",    5,  "alert",   "severe",  65535, "title",       "actions"};
}

bool equal(const IndDBRec& a, const IndDBRec& b) {
    return a._providerName == b._providerName && a._eventID == b._eventID &&
           a._WBEMProviderName == b._WBEMProviderName && a._WBEMEventID == b._WBEMEventID &&
           a._severity == b._severity && a._description == b._description &&
           a._summary == b._summary && a._eventCategory == b._eventCategory &&
           a._eventSubCategory == b._eventSubCategory &&
           a._otherEventSubCategory == b._otherEventSubCategory && a._alertType == b._alertType &&
           a._otherAlertType == b._otherAlertType && a._otherSeverity == b._otherSeverity &&
           a._probableCause == b._probableCause &&
           a._probableCauseDescription == b._probableCauseDescription &&
           a._recommendedActions == b._recommendedActions;
}

struct IndicationDatabase : testing::Test {
    std::shared_ptr<CapturingSink> sink = std::make_shared<CapturingSink>();
    Logger log{"fans", sink};

    Lines messages() {
        auto lines = sink->messages();
        sink->clear();
        return lines;
    }
    /// The numbers from 0 to 500 that a database has a record for.
    static std::vector<int> numbersOf(const std::string& provider) {
        auto quiet = silentLogger();
        const IndicationDB database(quiet, provider);
        std::vector<int> numbers;
        IndDBRec record;
        for (int number = 0; number <= 500; ++number) {
            if (database.getRecord(number, record) == 0) numbers.push_back(number);
        }
        return numbers;
    }
    void expectPlaceholder(const std::string& provider) {
        const IndicationDB database(log, provider);
        IndDBRec record = numberedRecord();
        ASSERT_EQ(database.getRecord(0, record), 0) << provider;
        const IndDBRec expected{"NONE", 0,  "NONE", "NONE", 2,  "", "", 0,
                                0,      "", 5,      "",     "", 0,  "", ""};
        EXPECT_TRUE(equal(record, expected)) << provider;
        EXPECT_EQ(numbersOf(provider), std::vector{0}) << provider;
    }
};

TEST(IndicationRecord, IsEmptyAtFirst) {
    const IndDBRec record;
    EXPECT_EQ(record._providerName + record._WBEMProviderName + record._WBEMEventID +
                  record._description + record._summary + record._otherEventSubCategory +
                  record._otherAlertType + record._otherSeverity +
                  record._probableCauseDescription + record._recommendedActions,
              "");
    EXPECT_EQ(record._eventID, 0);
}

TEST(IndicationRecord, TakesItsValuesInTheOrderOfItsFields) {
    const IndDBRec record = numberedRecord();
    EXPECT_EQ(record._providerName, "provider");
    EXPECT_EQ(record._eventID, -7);
    EXPECT_EQ(record._WBEMProviderName, "display");
    EXPECT_EQ(record._WBEMEventID, "text id");
    EXPECT_EQ(record._severity, 3);
    EXPECT_EQ(record._description, "description");
    EXPECT_EQ(record._summary, "summary");
    EXPECT_EQ(record._eventCategory, 11U);
    EXPECT_EQ(record._eventSubCategory, 12U);
    EXPECT_EQ(record._otherEventSubCategory, "other");
    EXPECT_EQ(record._alertType, 5);
    EXPECT_EQ(record._otherAlertType, "alert");
    EXPECT_EQ(record._otherSeverity, "severe");
    EXPECT_EQ(record._probableCause, 65535);
    EXPECT_EQ(record._probableCauseDescription, "title");
    EXPECT_EQ(record._recommendedActions, "actions");
}

TEST(IndicationRecord, IsCopiedWhole) {
    const IndDBRec record = numberedRecord();
    const IndDBRec copy = record;
    EXPECT_TRUE(equal(copy, record));
    IndDBRec assigned;
    assigned = record;
    EXPECT_TRUE(equal(assigned, record));
}

TEST_F(IndicationDatabase, LogsUnderItsOwnSourceWhatItMakes) {
    IndDBRec record;
    {
        const IndicationDB database(log, "PYL_FanIndication");
        EXPECT_EQ(database.getRecord(100, record), 0);
        EXPECT_EQ(database.getRecord(7, record), 4);
    }
    for (const auto& line : sink->lines()) {
        EXPECT_EQ(line.source, "fans:IndicationDB");
        EXPECT_EQ(line.level, LogLevel::information);
    }
    EXPECT_EQ(messages(),
              (Lines{"cxtor()", "making DB for non-valmor", "getRecord for event 100",
                     "Found record", "getRecord for event 7", "No record found.", "dxtor()"}));
    EXPECT_EQ(log.logSource(), "fans");
}

TEST_F(IndicationDatabase, LogsWhichRecordSetItTakes) {
    const cimtest::SystemNameIs machine(valmor);
    { const IndicationDB database(log, "PYL_FanIndication"); }
    EXPECT_EQ(messages(), (Lines{"cxtor()", "making DB for valmor", "dxtor()"}));
}

TEST_F(IndicationDatabase, TakesTheRecordSetOfTheMachine) {
    EXPECT_EQ(numbersOf("PYL_FanIndication"), (std::vector{1, 2, 3, 4, 5, 6, 8, 9, 10, 100}));
    const cimtest::SystemNameIs machine(valmor);
    EXPECT_EQ(numbersOf("PYL_FanIndication"), std::vector{100});
}

TEST_F(IndicationDatabase, TakesOnlyExactlyTheNameOfThatMachineForIt) {
    for (const auto* const name : {"", "ia6", "ia64x", "IA64", " ia64", "ia64 ", "x86_64"}) {
        const cimtest::SystemNameIs machine(cimtest::SystemName{.machine = name});
        EXPECT_EQ(numbersOf("PYL_FanIndication").size(), 10U) << name;
    }
    const cimtest::SystemNameIs machine(cimtest::SystemName{.machine = std::string(64, 'x')});
    EXPECT_EQ(numbersOf("PYL_FanIndication").size(), 10U);
}

TEST_F(IndicationDatabase, HoldsAPlaceholderWhereTheMachineIsNotKnown) {
    const cimtest::SystemNameIs machine(std::nullopt);
    expectPlaceholder("PYL_FanIndication");
    EXPECT_EQ(messages(), (Lines{"cxtor()", "making empty DB for failed uname",
                                 "getRecord for event 0", "Found record", "dxtor()"}));
}

TEST_F(IndicationDatabase, HoldsAPlaceholderForAnUnknownName) {
    for (const auto* const name :
         {"", "pyl_FanIndication", "PYL_FanIndicatio", "PYL_FanIndicationX", " PYL_FanIndication",
          "NONE", "%s%n", "PYL_MCARecordLogIndication", "PYL_SELRecordLogIndication"}) {
        expectPlaceholder(name);
        EXPECT_EQ(messages()[2],
                  std::string("making empty DB for unrecognized provider name ") + name);
    }
    const cimtest::SystemNameIs machine(valmor);
    expectPlaceholder("PYL_SASIndication");
    expectPlaceholder("PYL_SCInstallerIndication");
    expectPlaceholder(std::string("PYL_FanIndication\0", 18));
}

TEST_F(IndicationDatabase, TakesOnlyTheRecordsOfItsProvider) {
    const IndicationDB database(log, "PYL_PowerSupplyIndication");
    IndDBRec record;
    for (int number = 0; number < 500; ++number) {
        if (database.getRecord(number, record) != 0) continue;
        EXPECT_EQ(record._providerName, "PYL_PowerSupplyIndication");
        EXPECT_EQ(record._otherAlertType + record._otherSeverity, "");
    }
}

TEST_F(IndicationDatabase, CopiesEveryValueOfARecord) {
    const IndicationDB database(log, "PYL_PowerSupplyIndication");
    IndDBRec record;
    ASSERT_EQ(database.getRecord(201, record), 0);
    const IndDBRec expected{
        "PYL_PowerSupplyIndication",
        201,
        "KT Consolidated Status",
        "1",
        2,
        "KT_GroupSystemSpecificCollection operational status policy has been modified to monitor "
        "operational status from a different set of managed elements.",
        "Consolidated Status Collection operational status policy has changed.",
        1,
        0,
        "Consolidated Status Policy Changed",
        7,
        "",
        "",
        1,
        "This group status policy change is caused by one activation or deactivation of State "
        "Propagation Filtering for existing managed elements in KT_GroupSystemSpecificCollection",
        "Inspect members of collection to discover whether each managed element status is included "
        "in collection operational status."};
    EXPECT_TRUE(equal(record, expected));
}

TEST_F(IndicationDatabase, LeavesTheRecordAloneWhenThereIsNone) {
    const IndicationDB database(log, "PYL_FanIndication");
    for (const int number : {0, 7, -1, 11, 2147483647, -2147483647 - 1}) {
        IndDBRec record = numberedRecord();
        EXPECT_EQ(database.getRecord(number, record), 4) << number;
        EXPECT_TRUE(equal(record, numberedRecord())) << number;
    }
}

TEST_F(IndicationDatabase, NeverReturnsALaterRecordOfTheSameNumber) {
    IndicationDB database(log, "PYL_FanIndication");
    auto record = numberedRecord();
    database.make(record);
    record._eventID = 3;
    database.make(record);
    ASSERT_EQ(database.getRecord(3, record), 0);
    EXPECT_EQ(record._probableCauseDescription, "Fan Failed");
    ASSERT_EQ(database.getRecord(-7, record), 0);
    EXPECT_TRUE(equal(record, numberedRecord()));
}

TEST_F(IndicationDatabase, AnswersSeveralThreadsAtOnce) {
    auto quiet = silentLogger();
    const IndicationDB database(quiet, "PYL_SASIndication");
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&database] {
            IndDBRec record;
            for (int turn = 0; turn < 500; ++turn) {
                EXPECT_EQ(database.getRecord(402, record), 0);
                EXPECT_EQ(record._eventCategory, 29U);
            }
        });
    }
    for (auto& thread : threads) thread.join();
}

TEST_F(IndicationDatabase, IsMadeWholeOrNotAtAll) {
    auto quiet = silentLogger(LogLevel::error);
    const std::string name = "PYL_FanIndication";
    for (const bool forever : {false, true}) {
        for (int nth = 1; nth == 1 || cimtest::allocationHasFailed(); ++nth) {
            const auto outcome = outcomeOf([&] {
                const cimtest::FailingAllocation failing(nth, forever);
                const IndicationDB database(quiet, name);
            });
            EXPECT_TRUE(outcome == "none" || outcome == "bad_alloc") << outcome;
            ASSERT_LT(nth, 1000);
        }
    }
}

}  // namespace
