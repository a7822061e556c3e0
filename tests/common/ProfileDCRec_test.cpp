// The rows of the data collection, as ProfileDC loads them.

#include "common/PYLConstants.h"
#include "common/ProfileDB.h"
#include "common/ProfileDC.h"
#include "testing/cimhost/testing/Allocations.h"
#include "tests/support/Journal.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

using PYL::PRPDCRec;

struct CollectionTableTest : testing::Test {
    JournalLog log;
    PYL::ProfileDC table{log.logger};

    CollectionTableTest() { table.initialize(); }

    PRPDCRec at(unsigned int number) const {
        PRPDCRec row;
        EXPECT_EQ(table.getRecord(number, row), 0) << number;
        return row;
    }
};

/// How often each level occurs among the classes.
std::map<int, int> levels(const PRPDCRec& row) {
    std::map<int, int> counts;
    for (unsigned int i = 0; i < row.getSizeofCollectionClassName(); ++i) {
        ++counts[row.getCollectionClassLevel(i)];
    }
    return counts;
}

struct Expected {
    int id;
    const char* name;
    unsigned int classes;
    std::map<int, int> levels;
};

TEST_F(CollectionTableTest, HasItsRowsInTheirOrder) {
    const Expected expected[] = {
        {105, "KT Base Server", 14, {{0, 7}, {1, 2}, {2, 5}}},
        {110, "KT Memory", 4, {{2, 4}}},
        {106, "KT CPU", 21, {{0, 15}, {2, 6}}},
        {108, "KT CPU Physical Asset", 6, {{0, 4}, {2, 2}}},
        {111, "KT Memory Physical Asset", 37, {{0, 31}, {2, 6}}},
        {114, "KT Base Server Physical Asset", 4, {{0, 2}, {2, 2}}},
        {109, "KT Record Log", 7, {{0, 3}, {4, 4}}},
        {127, "KT Software Inventory and Update", 11, {{0, 7}, {2, 4}}},
        {100, "KT Profile Registration", 6, {{0, 6}}},
        {125, "KT Carrow Lite", 20, {{0, 14}, {2, 6}}},
        {101, "KT Management Processor Lite", 18, {{0, 12}, {2, 6}}},
        {119, "KT FC HBA", 71, {{0, 59}, {1, 2}, {2, 10}}},
        {121, "KT Vela Array", 186, {{0, 162}, {1, 2}, {2, 22}}},
        {117, "KT Ethernet Teaming", 61, {{0, 57}, {2, 4}}},
        {124, "KT Location", 12, {{0, 10}, {2, 2}}},
        {113, "KT Consolidated Status", 9, {{0, 7}, {2, 2}}},
        {122, "KT SAS HBA", 140, {{0, 132}, {2, 8}}},
        {199, "KT PCI", 16, {{0, 10}, {2, 6}}},
    };
    ASSERT_EQ(table.getNumRecords(), std::size(expected));
    for (unsigned int i = 0; i < std::size(expected); ++i) {
        const auto row = at(i);
        EXPECT_EQ(row.getId(), expected[i].id);
        EXPECT_EQ(row.getRegName(), expected[i].name);
        EXPECT_EQ(row.getSizeofCollectionClassName(), expected[i].classes) << expected[i].name;
        EXPECT_EQ(row.getSizeofCollectionNameType(), expected[i].classes) << expected[i].name;
        EXPECT_EQ(levels(row), expected[i].levels) << expected[i].name;
        EXPECT_EQ(row.getSizeofImplementClassName(), 0U);
    }
}

TEST_F(CollectionTableTest, IsInOneNamespaceButForProfileRegistration) {
    for (unsigned int i = 0; i < table.getNumRecords(); ++i) {
        EXPECT_EQ(at(i).getCollectionNameSpace(),
                  at(i).getRegName() == "KT Profile Registration" ? "root/interop" : "root/ktq");
    }
}

TEST_F(CollectionTableTest, KeepsTheSurplusLevelsOfTheRecordLog) {
    const auto recordLog = at(6);
    ASSERT_EQ(recordLog.getSizeofCollectionClassName(), 7U);
    EXPECT_EQ(recordLog.getCollectionClassName(6), "PYL_ConfigRecordLog");
    EXPECT_EQ(recordLog.getCollectionClassLevel(6), 4);
    EXPECT_EQ(recordLog.getCollectionClassLevel(7), 4);
    EXPECT_EQ(recordLog.getCollectionClassLevel(8), 4);
}

TEST_F(CollectionTableTest, GathersOldAndNewNamesAlike) {
    const auto memory = at(1);
    EXPECT_EQ(memory.getCollectionClassName(0), "KT_Memory");
    EXPECT_EQ(memory.getCollectionClassName(1), "PYL_Memory");
    EXPECT_EQ(memory.getCollectionNameType(0), memory.getCollectionNameType(1));
    EXPECT_EQ(memory.getCollectionClassLevel(0), memory.getCollectionClassLevel(1));
}

TEST_F(CollectionTableTest, HasNamesThatTheCatalogueHasNot) {
    PYL::ProfileDB profiles(log.logger);
    profiles.initialize();
    std::set<std::string> registered;
    PYL::PRPDBRec record;
    for (unsigned int i = 0; profiles.getRecord(i, record) == 0; ++i) {
        registered.insert(record.getRegName());
    }
    std::set<std::string> unregistered;
    for (unsigned int i = 0; i < table.getNumRecords(); ++i) {
        if (!registered.contains(at(i).getRegName())) unregistered.insert(at(i).getRegName());
    }
    EXPECT_EQ(unregistered,
              (std::set<std::string>{"KT Software Inventory and Update", "KT Ethernet Teaming",
                                     "KT Location", "KT Consolidated Status", "KT PCI"}));
}

TEST_F(CollectionTableTest, IsThereTwiceWhenLoadedTwice) {
    table.initialize();
    ASSERT_EQ(table.getNumRecords(), 36U);
    EXPECT_EQ(at(0).getId(), at(18).getId());
}

TEST_F(CollectionTableTest, TakesOneAllocation) {
    PYL::ProfileDC another(log.logger);
    const auto before = cimtest::allocationCount();
    another.initialize();
    EXPECT_EQ(cimtest::allocationCount() - before, 1);
}

}  // namespace
