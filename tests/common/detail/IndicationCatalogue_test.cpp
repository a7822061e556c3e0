#include "common/detail/IndicationCatalogue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

using PYL::IndicationGroup;
using PYL::IndicationRow;
using PYL::RecordSet;

std::vector<IndicationRow> rowsOf(std::string_view provider, RecordSet set) {
    std::vector<IndicationRow> rows;
    for (const auto& row : PYL::findIndicationRows(provider)) {
        if (row.isIn(set)) rows.push_back(row);
    }
    return rows;
}

std::vector<int> numbersOf(std::string_view provider, RecordSet set) {
    std::vector<int> numbers;
    for (const auto& row : rowsOf(provider, set)) numbers.push_back(row.eventID);
    return numbers;
}

IndicationRow rowOf(std::string_view provider, int number, RecordSet set = RecordSet::nonValmor) {
    for (const auto& row : rowsOf(provider, set)) {
        if (row.eventID == number) return row;
    }
    ADD_FAILURE() << provider << " has no event " << number;
    return {};
}

template <typename Visit>
void forEachRow(Visit visit) {
    for (const IndicationGroup& group : PYL::indicationGroups()) {
        for (const IndicationRow& row : group.rows) {
            SCOPED_TRACE(std::string(group.providerName) + " " + std::to_string(row.eventID));
            visit(group, row);
        }
    }
}

bool isHeartBeat(const IndicationRow& row) {
    return row.probableCauseDescription.ends_with(" Heart Beat");
}

bool isPolicy(const IndicationRow& row) {
    return row.family.otherEventSubCategory == "Consolidated Status Policy Changed";
}

bool isTemplate(const IndicationRow& row) { return row.summary == "<Summary>"; }

TEST(IndicationCatalogue, HoldsAsManyRecordsOfEachGroupAsThereAreEvents) {
    struct {
        const char* provider;
        std::size_t nonValmor;
        std::size_t valmor;
    } const groups[] = {
        {"PYL_FanIndication", 10, 1},
        {"PYL_PowerSupplyIndication", 12, 2},
        {"PYL_BaseServerIndication", 11, 5},
        {"PYL_CPUIndication", 4, 1},
        {"PYL_MemoryIndication", 5, 1},
        {"PYL_VelaArrayIndication", 12, 12},
        {"PYL_VelaArrayCntlrIndication", 2, 2},
        {"PYL_VelaArrayStorageVolumeIndication", 13, 13},
        {"PYL_VelaArrayDiskDriveIndication", 13, 13},
        {"PYL_VelaArrayStorageEnclosureIndication", 6, 6},
        {"PYL_VelaArrayStorageEnclosureTempIndication", 3, 3},
        {"PYL_MCARecordLogIndication", 0, 1},
        {"PYL_SELRecordLogIndication", 0, 1},
        {"PYL_SensorIndication", 3, 1},
        {"PYL_ConfigRecordLogIndication", 2, 2},
        {"PYL_EthernetIndication", 17, 17},
        {"PYL_FCHBAFCPortIndication", 10, 10},
        {"PYL_SASIndication", 20, 0},
        {"PYL_MPIndication", 8, 8},
        {"PYL_SCInstallerIndication", 1, 0},
    };
    EXPECT_EQ(PYL::indicationGroups().size(), std::size(groups));
    std::size_t nonValmor = 0;
    std::size_t valmor = 0;
    for (const auto& group : groups) {
        EXPECT_EQ(rowsOf(group.provider, RecordSet::nonValmor).size(), group.nonValmor)
            << group.provider;
        EXPECT_EQ(rowsOf(group.provider, RecordSet::valmor).size(), group.valmor) << group.provider;
        nonValmor += group.nonValmor;
        valmor += group.valmor;
    }
    EXPECT_EQ(nonValmor, 152U);
    EXPECT_EQ(valmor, 99U);
}

TEST(IndicationCatalogue, KeepsTheOrderOfTheEvents) {
    EXPECT_EQ(numbersOf("PYL_EthernetIndication", RecordSet::nonValmor),
              (std::vector{100, 2, 3, 1, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 201}));
    EXPECT_EQ(numbersOf("PYL_EthernetIndication", RecordSet::valmor),
              (std::vector{100, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 201}));
    EXPECT_EQ(numbersOf("PYL_VelaArrayDiskDriveIndication", RecordSet::valmor),
              (std::vector{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 13, 14}));
    EXPECT_EQ(numbersOf("PYL_MPIndication", RecordSet::nonValmor),
              (std::vector{100, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(numbersOf("PYL_MPIndication", RecordSet::valmor),
              (std::vector{100, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(numbersOf("PYL_BaseServerIndication", RecordSet::valmor),
              (std::vector{1, 100, 101, 102, 103}));
}

TEST(IndicationCatalogue, NumbersEventsForConsolesInTheirOwnWay) {
    for (int number = 1; number <= 13; ++number) {
        EXPECT_EQ(rowOf("PYL_VelaArrayStorageVolumeIndication", number).WBEMEventID, 100 + number);
    }
    EXPECT_EQ(rowOf("PYL_VelaArrayDiskDriveIndication", 11).WBEMEventID, 211);
    EXPECT_EQ(rowOf("PYL_VelaArrayDiskDriveIndication", 13).WBEMEventID, 212);
    EXPECT_EQ(rowOf("PYL_VelaArrayDiskDriveIndication", 14).WBEMEventID, 213);
    EXPECT_EQ(rowOf("PYL_ConfigRecordLogIndication", 201).WBEMEventID, 20);
    EXPECT_EQ(rowOf("PYL_EthernetIndication", 201).WBEMEventID, 1);
    EXPECT_EQ(rowOf("PYL_FCHBAFCPortIndication", 9).WBEMEventID, 9);
}

TEST(IndicationCatalogue, KeepsTheTextsThatConsolesKnowWithTheirMistakes) {
    EXPECT_EQ(rowOf("PYL_FCHBAFCPortIndication", 3).probableCauseDescription,
              "FC HBA Port State Changed to Offine");
    EXPECT_EQ(rowOf("PYL_FCHBAFCPortIndication", 3).summary, "FC HBA port in offine state");
    EXPECT_EQ(rowOf("PYL_SensorIndication", 1).summary, "Temperature threshhold exceeded detected");
    EXPECT_EQ(rowOf("PYL_BaseServerIndication", 1).summary, "WBEM Providers started ");
    EXPECT_EQ(rowOf("PYL_BaseServerIndication", 101).summary, "Test Event Id: ");
    EXPECT_EQ(rowOf("PYL_BaseServerIndication", 101).description,
              "This is an Informational Test Event. ");
    const auto drive = "PYL_VelaArrayDiskDriveIndication";
    EXPECT_EQ(rowOf(drive, 6).summary, "Physical drive in Predictive Failure  state");
    EXPECT_EQ(rowOf(drive, 6).probableCauseDescription,
              "Physical drive status has changed to Predictive Failure due to Solid State wear "
              "out.");
    EXPECT_EQ(rowOf(drive, 6, RecordSet::valmor).probableCauseDescription,
              "Physical drive status has changed to Predictive Failure  due to Solid State wear "
              "out.");
    EXPECT_NE(rowOf(drive, 7, RecordSet::valmor).probableCauseDescription.find(" notable to be "),
              std::string_view::npos);
    EXPECT_EQ(rowOf(drive, 9).probableCauseDescription.back(), ' ');
}

TEST(IndicationCatalogue, SpeaksOfOneCollectionOnValmorAndOfSeveralElsewhere) {
    for (const int number : {2, 3}) {
        const auto here = rowOf("PYL_MPIndication", number).probableCauseDescription;
        const auto there =
            rowOf("PYL_MPIndication", number, RecordSet::valmor).probableCauseDescription;
        EXPECT_NE(here.find("KT_GroupSystemSpecificCollections operational"), here.npos);
        EXPECT_NE(there.find("KT_GroupSystemSpecificCollection operational"), there.npos);
    }
}

TEST(IndicationCatalogue, SaysInEveryRecordWhatHappenedAndWhatToDo) {
    forEachRow([](const IndicationGroup&, const IndicationRow& row) {
        EXPECT_GT(row.WBEMEventID, 0);
        EXPECT_TRUE(row.family.WBEMProviderName.starts_with("KT "));
        EXPECT_FALSE(row.probableCauseDescription.empty());
        EXPECT_FALSE(row.summary.empty());
        EXPECT_FALSE(row.description.empty());
        EXPECT_FALSE(row.recommendedActions.empty());
        EXPECT_NE(row.description, row.summary);
        EXPECT_NE(row.description, row.probableCauseDescription);
    });
}

TEST(IndicationCatalogue, HoldsTextsThatEveryConsoleCanShow) {
    forEachRow([](const IndicationGroup&, const IndicationRow& row) {
        for (const auto text :
             {row.family.WBEMProviderName, row.probableCauseDescription, row.summary,
              row.description, row.recommendedActions, row.family.otherEventSubCategory}) {
            EXPECT_TRUE(std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; }))
                << text;
        }
    });
}

TEST(IndicationCatalogue, RecommendsAnActionForEveryFault) {
    forEachRow([](const IndicationGroup&, const IndicationRow& row) {
        const bool isTest = row.family.WBEMProviderName == "KT Test";
        if (row.severity <= PYL::severityInformational || isTest) return;
        EXPECT_NE(row.recommendedActions, "No action is recommended");
    });
}

TEST(IndicationCatalogue, SaysSomethingOfItsOwnOfEachEvent) {
    using Events = std::set<std::pair<std::string_view, int>>;
    std::map<std::string_view, Events> users;
    forEachRow([&users](const IndicationGroup& group, const IndicationRow& row) {
        if (!isPolicy(row) && !isTemplate(row)) {
            users[row.description].insert({group.providerName, row.eventID});
        }
    });
    // Nothing but their numbers tells these three from each other.
    const std::string_view drives = "PYL_VelaArrayDiskDriveIndication";
    const Events alike{{drives, 9}, {drives, 10}, {drives, 11}};
    for (const auto& [description, events] : users) {
        EXPECT_TRUE(events.size() == 1 || events == alike) << description;
    }
}

bool speaksOf(const IndicationRow& row, std::string_view word) {
    return (std::string(row.description) + " " + std::string(row.recommendedActions)).find(word) !=
           std::string::npos;
}

TEST(IndicationCatalogue, SpeaksOfSolidStateDrivesOnlyWhereTheEventDoes) {
    forEachRow([](const IndicationGroup&, const IndicationRow& row) {
        const bool isOfOne =
            row.probableCauseDescription.find("Solid State") != std::string_view::npos ||
            row.summary.find("SSD") != std::string_view::npos;
        for (const auto* const word : {"olid state", "SSD", "flash memory", "endurance"}) {
            EXPECT_TRUE(isOfOne || !speaksOf(row, word)) << row.description;
        }
    });
}

TEST(IndicationCatalogue, SpeaksOfTheTemperatureWhereThatIsTheCause) {
    forEachRow([](const IndicationGroup&, const IndicationRow& row) {
        if (row.probableCause != PYL::causeTemperature) return;
        EXPECT_NE(row.description.find("temperature"), std::string_view::npos) << row.description;
    });
}

TEST(IndicationCatalogue, IsUrgentOnlyWhereTheSeverityIs) {
    int count = 0;
    forEachRow([&count](const IndicationGroup&, const IndicationRow& row) {
        for (const auto* const word : {"without delay", "at once", "immediately",
                                       "as soon as possible", " soon", "at any moment"}) {
            if (!speaksOf(row, word)) continue;
            ++count;
            EXPECT_GE(row.severity, PYL::severityMinor) << word << ": " << row.description;
        }
    });
    EXPECT_GT(count, 5);
    EXPECT_TRUE(speaksOf(rowOf("PYL_VelaArrayDiskDriveIndication", 6), "as soon as possible"));
}

TEST(IndicationCatalogue, SpeaksAsOperatorsDo) {
    forEachRow([](const IndicationGroup&, const IndicationRow& row) {
        for (const auto* const word : {"to spare", "foresee", "foretell", "in reach",
                                       "out of reach", "in order.", "told to run", "meanwhile"}) {
            EXPECT_FALSE(speaksOf(row, word)) << word << ": " << row.description;
        }
    });
}

TEST(IndicationCatalogue, UsesTheCodesThatConsolesKnow) {
    const std::set<unsigned> categories{1, 2, 3, 4, 6, 9, 11, 16, 17, 23, 24, 29};
    forEachRow([&categories](const IndicationGroup& group, const IndicationRow& row) {
        const bool isNetwork = group.providerName == "PYL_EthernetIndication";
        EXPECT_GE(row.severity, PYL::severityInformational);
        EXPECT_LE(row.severity, PYL::severityCritical);
        EXPECT_TRUE(categories.contains(row.family.eventCategory)) << row.family.eventCategory;
        EXPECT_TRUE(row.family.eventSubCategory == 0 || isNetwork);
        EXPECT_EQ(row.family.alertType == PYL::alertTypeCommunications,
                  isNetwork && !isPolicy(row));
        EXPECT_GE(row.probableCause, 1);
    });
}

TEST(IndicationCatalogue, WritesAllHeartBeatsAlike) {
    int count = 0;
    forEachRow([&count](const IndicationGroup& group, const IndicationRow& row) {
        if (!isHeartBeat(row)) return;
        ++count;
        const auto title = std::string(row.probableCauseDescription);
        EXPECT_EQ(row.eventID, 100);
        EXPECT_EQ(row.WBEMEventID, 100);
        EXPECT_EQ(row.severity, PYL::severityInformational);
        EXPECT_EQ(row.family.eventCategory, 1U);
        EXPECT_EQ(row.summary, title + " indication Id:");
        EXPECT_EQ(row.description, title + " test indication");
        EXPECT_EQ(row.recommendedActions, "No action is recommended");
        EXPECT_EQ(row.family.alertType == PYL::alertTypeModelChange,
                  group.providerName == "PYL_MPIndication");
    });
    EXPECT_EQ(count, 12);
}

TEST(IndicationCatalogue, WritesAllChangesOfPolicyAlike) {
    int count = 0;
    forEachRow([&count](const IndicationGroup& group, const IndicationRow& row) {
        if (!isPolicy(row)) {
            EXPECT_EQ(row.family.otherEventSubCategory, "");
            return;
        }
        ++count;
        EXPECT_EQ(row.family.WBEMProviderName, "KT Consolidated Status");
        EXPECT_EQ(row.family.alertType, PYL::alertTypeModelChange);
        EXPECT_EQ(row.sets, RecordSet::both);
        const bool isPower = group.providerName == "PYL_PowerSupplyIndication";
        EXPECT_TRUE(row.probableCauseDescription.starts_with(
            isPower ? "This group status policy change is caused by one activation or"
                    : "This group status policy change is caused by activation or"));
    });
    EXPECT_EQ(count, 4);
}

TEST(IndicationCatalogue, NamesTheProviderThatARecordIsShownUnder) {
    struct {
        const char* provider;
        std::map<std::string_view, std::set<int>> events;
    } const groups[] = {
        {"PYL_BaseServerIndication",
         {{"KT WBEM", {1, 4}},
          {"KT Server", {100}},
          {"KT Test", {101, 102, 103}},
          {"KT POST", {202}},
          {"KT Recovery", {200, 201, 203, 204}}}},
        {"PYL_MPIndication", {{"KT Consolidated Status", {1, 2, 3, 4}}, {"KT MP", {5, 6, 7, 100}}}},
        {"PYL_SensorIndication", {{"KT Temperature", {1, 2}}, {"KT Sensor", {100}}}},
        {"PYL_PowerSupplyIndication",
         {{"KT Consolidated Status", {201}}, {"KT Power", {1, 2, 3, 4, 5, 6, 8, 9, 20, 21, 100}}}},
        {"PYL_FCHBAFCPortIndication",
         {{"KT Consolidated Status", {9}}, {"KT FCHBA", {1, 2, 3, 4, 5, 6, 7, 8, 100}}}},
    };
    for (const auto& group : groups) {
        std::map<std::string_view, std::set<int>> found;
        for (const auto& row : rowsOf(group.provider, RecordSet::nonValmor)) {
            found[row.family.WBEMProviderName].insert(row.eventID);
        }
        EXPECT_EQ(found, group.events) << group.provider;
    }
    EXPECT_EQ(rowOf("PYL_SASIndication", 2).family.WBEMProviderName, "KT SAS HBA");
    EXPECT_EQ(rowOf("PYL_SASIndication", 101).family.WBEMProviderName, "KT SAS");
}

TEST(IndicationCatalogue, LeavesTheTextsOfRecordLogsToTheirProviders) {
    for (const auto* const provider :
         {"PYL_MCARecordLogIndication", "PYL_SELRecordLogIndication"}) {
        const auto row = rowOf(provider, 1, RecordSet::valmor);
        EXPECT_EQ(row.WBEMEventID, 201);
        EXPECT_EQ(row.description, "<Description>");
        EXPECT_EQ(row.summary, "<Summary>");
        EXPECT_EQ(row.probableCauseDescription, "<Probable Cause>");
        EXPECT_EQ(row.recommendedActions, "<Recommended Action>");
    }
}

TEST(IndicationCatalogue, FindsNothingUnderAnotherName) {
    for (const auto* const name : {"", "PYL_Fan", "pyl_FanIndication", "PYL_FanIndication "}) {
        EXPECT_TRUE(PYL::findIndicationRows(name).empty()) << name;
    }
}

}  // namespace
