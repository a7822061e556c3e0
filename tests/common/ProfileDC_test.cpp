#include "common/ProfileDC.h"

#include "common/ImplementationClassNames.h"
#include "testing/cimhost/testing/Allocations.h"
#include "tests/support/Journal.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace {

using PYL::ProfileDC;
using PYL::PRPDCRec;

static_assert(!std::is_copy_constructible_v<ProfileDC>);
static_assert(std::is_constructible_v<PRPDCRec, int, std::string, std::string, const char**,
                                      const char**, int*>,
              "tables that are not constant are taken too");

constexpr int noLevels[] = {-1};

PRPDCRec row(int id, const std::string& name) {
    return {id, name, "root/x", PYL::emptyString, PYL::emptyString, noLevels};
}

/// The row and its classes, as text; a class without a type or a level would end the program.
std::string text(const PRPDCRec& row) {
    auto all = std::to_string(row.getId()) + "|" + row.getRegName() + "|" +
               row.getCollectionNameSpace() + "|";
    for (unsigned i = 0; i < row.getSizeofCollectionClassName(); ++i) {
        all += row.getCollectionClassName(i) + " " + row.getCollectionNameType(i) + " " +
               std::to_string(row.getCollectionClassLevel(i)) + ",";
    }
    return all;
}

std::string implemented(const PRPDCRec& row) {
    std::string all;
    for (unsigned i = 0; i < row.getSizeofImplementClassName(); ++i) {
        all += row.getImplementClassName(i) + " " + row.getImplementClassType(i) + " " +
               std::to_string(row.getImplementClassLevel(i)) + ",";
    }
    return all;
}

/// A row made from tables that are gone when it is returned.
std::unique_ptr<PRPDCRec> fullRow() {
    const std::string first = "A", second = "B";
    const char* names[] = {first.c_str(), second.c_str(), nullptr};
    const char* types[] = {"Instance", "Association", nullptr};
    const int levels[] = {0, 4, -1};
    return std::make_unique<PRPDCRec>(7, "Fan", "root/x", names, types, levels);
}

const std::string fullRowText = "7|Fan|root/x|A Instance 0,B Association 4,";

TEST(PRPDCRec, IsEmptyAtFirst) {
    EXPECT_EQ(text(PRPDCRec()), "0|||");
    EXPECT_EQ(PRPDCRec().getSizeofCollectionNameType(), 0U);
    EXPECT_EQ(PRPDCRec().getSizeofImplementClassName(), 0U);
}

TEST(PRPDCRec, ReadsEachTableToItsEndAndKeepsLevelZero) {
    EXPECT_EQ(text(*fullRow()), fullRowText);
    EXPECT_EQ(fullRow()->getSizeofCollectionNameType(), 2U);
}

TEST(PRPDCRec, HasNoEntriesOfTablesThatHoldTheirEndOnly) {
    EXPECT_EQ(text(row(5, "")), "5||root/x|");
}

TEST(PRPDCRec, ReadsTablesOfDifferentLengths) {
    const char* const names[] = {"A", nullptr};
    const char* const types[] = {"Instance", "Instance", "Association", nullptr};
    const int levels[] = {0, 0, 1, 2, -1};
    const PRPDCRec uneven(1, "x", "n", names, types, levels);
    EXPECT_EQ(uneven.getSizeofCollectionClassName(), 1U);
    EXPECT_EQ(uneven.getSizeofCollectionNameType(), 3U);
    EXPECT_EQ(uneven.getCollectionNameType(2), "Association");
    EXPECT_EQ(uneven.getCollectionClassLevel(3), 2);
}

TEST(PRPDCRec, KeepsWhatItWasMadeFromInItsCopies) {
    auto original = fullRow();
    auto copy = *original;
    const auto moved = std::move(*original);
    EXPECT_EQ(text(*original), fullRowText);
    original.reset();
    PRPDCRec assigned;
    assigned = copy;
    copy = row(1, "other");
    EXPECT_EQ(text(moved), fullRowText);
    EXPECT_EQ(text(assigned), fullRowText);
}

TEST(PRPDCRec, AppendsImplementedClassesOneValueAtATime) {
    auto full = *fullRow();
    full.setImplementClassNames("C");
    full.setImplementClassTypes("Instance");
    full.setImplementClassLevels(0);
    full.setImplementClassNames("D");
    full.setImplementClassTypes("Association");
    full.setImplementClassLevels(-1);
    EXPECT_EQ(implemented(full), "C Instance 0,D Association -1,");
    EXPECT_EQ(text(full), fullRowText);
}

TEST(PRPDCRec, LosesNothingWhenMemoryEnds) {
    int failures = 0;
    for (int nth = 1;; ++nth) {
        const cimtest::FailingAllocation failing(nth, false);
        try {
            fullRow();
            break;
        } catch (const std::bad_alloc&) {
            ++failures;
        }
    }
    EXPECT_GT(failures, 3);
}

struct ProfileDCTest : testing::Test {
    JournalLog log;
    ProfileDC table{log.logger};

    std::string at(unsigned int number) {
        auto found = row(99, "untouched");
        const auto status = table.getRecord(number, found);
        return std::to_string(status) + " " + found.getRegName();
    }
};

TEST_F(ProfileDCTest, KeepsRowsInTheOrderInWhichTheyCame) {
    EXPECT_EQ(table.getNumRecords(), 0U);
    for (int id : {30, 10, 20}) table.make(row(id, "r" + std::to_string(id)));
    EXPECT_EQ(table.getNumRecords(), 3U);
    EXPECT_EQ(at(0), "0 r30");
    EXPECT_EQ(at(1), "0 r10");
    EXPECT_EQ(at(2), "0 r20");
}

TEST_F(ProfileDCTest, RefusesNumbersFromTheCountUpwards) {
    EXPECT_EQ(at(0), "4 untouched");
    table.make(row(1, "one"));
    for (unsigned int number : {1U, 2U, 1000U, UINT_MAX}) EXPECT_EQ(at(number), "4 untouched");
}

TEST_F(ProfileDCTest, HandsOutCopies) {
    table.make(row(1, "one"));
    PRPDCRec taken;
    table.getRecord(0, taken);
    taken.setImplementClassNames("C");
    PRPDCRec again;
    table.getRecord(0, again);
    EXPECT_EQ(taken.getSizeofImplementClassName(), 1U);
    EXPECT_EQ(again.getSizeofImplementClassName(), 0U);
}

TEST(ProfileDC, LogsItsMakingAndItsEndAndNothingElse) {
    struct Sources : LogSink {
        void write(LogLevel, std::string_view source, std::string_view message) noexcept override {
            lines.push_back(std::string(source) + " " + std::string(message));
        }
        Lines lines;
    };
    const auto sink = std::make_shared<Sources>();
    Logger log("test", sink);
    {
        ProfileDC table(log);
        table.initialize();
        PRPDCRec taken;
        table.getRecord(1000, taken);
    }
    EXPECT_EQ(sink->lines, (Lines{"test:ProfileDC cxtor()", "test:ProfileDC dxtor()"}));
}

}  // namespace
