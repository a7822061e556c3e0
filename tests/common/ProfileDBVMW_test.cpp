// The catalogue, as ProfileDB loads it.

#include "common/ImplementationClassNames.h"
#include "common/PYLConstants.h"
#include "common/ProfileDB.h"
#include "testing/cimhost/testing/Allocations.h"
#include "tests/support/Journal.h"
#include "tests/support/TestBroker.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

using PYL::PRPDBRec;
using Ids = std::vector<int>;

struct ProfileCatalogueTest : testing::Test {
    TestBroker host;
    JournalLog log;
    PYL::ProfileDB profiles{log.logger};

    ProfileCatalogueTest() { profiles.initialize(); }

    PRPDBRec at(unsigned int number) const {
        PRPDBRec record;
        EXPECT_EQ(profiles.getRecord(number, record), 0) << number;
        return record;
    }
    std::vector<PRPDBRec> all() const {
        std::vector<PRPDBRec> records;
        for (unsigned int i = 0; i < profiles.getNumRecords(); ++i) records.push_back(at(i));
        return records;
    }
};

Ids references(const PRPDBRec& record) {
    Ids ids;
    for (unsigned int i = 0; i < record.getSizeofRefedProfiles(); ++i) {
        ids.push_back(record.getRefedProfile(i));
    }
    return ids;
}

Ids extended(const PRPDBRec& record) {
    Ids ids;
    for (unsigned int i = 0; i < record.getSizeofExtendsProfiles(); ++i) {
        ids.push_back(record.getExtendsProfile(i));
    }
    return ids;
}

TEST_F(ProfileCatalogueTest, CountsItsIdsFromOne) {
    ASSERT_EQ(profiles.getNumRecords(), 49U);
    int expected = 1;
    for (const auto& record : all()) EXPECT_EQ(record.getId(), expected++);
}

TEST_F(ProfileCatalogueTest, RefersToItsOwnProfilesOnly) {
    for (const auto& record : all()) {
        for (const auto& ids : {references(record), extended(record)}) {
            for (int id : ids) {
                EXPECT_GE(id, 1) << record.getRegName();
                EXPECT_LE(id, 49) << record.getRegName();
                EXPECT_NE(id, record.getId());
            }
        }
    }
}

TEST_F(ProfileCatalogueTest, NamesAnOwnerForTheMakersProfilesOnly) {
    std::map<int, int> counts;
    for (const auto& record : all()) {
        ++counts[record.getRegOrgId()];
        EXPECT_EQ(record.getOtherRegOrg(), record.getRegOrgId() == 1 ? "KT WBEM TC" : "");
        EXPECT_EQ(record.getRegName().starts_with("KT "), record.getRegOrgId() == 1);
        EXPECT_FALSE(record.getRegVersion().empty());
    }
    EXPECT_EQ(counts, (std::map<int, int>{{1, 25}, {2, 14}, {11, 10}}));
}

TEST_F(ProfileCatalogueTest, GivesEachClassItsNamespace) {
    std::size_t classes = 0;
    for (const auto& record : all()) {
        ASSERT_EQ(record.getSizeofImpClassNames(), record.getSizeofImpNameSpaces());
        classes += record.getSizeofImpClassNames();
        for (unsigned int i = 0; i < record.getSizeofImpNameSpaces(); ++i) {
            EXPECT_EQ(record.getImpNameSpace(i), PYL::BaseServerNameSpace);
        }
    }
    EXPECT_EQ(classes, 48U);
}

TEST_F(ProfileCatalogueTest, BuildsTheBaseServerOfThirteenComponents) {
    const auto baseServer = at(13);
    EXPECT_EQ(baseServer.getRegName(), "Base Server");
    EXPECT_EQ(references(baseServer), (Ids{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}));
    EXPECT_EQ(extended(baseServer), Ids{});
    EXPECT_EQ(extended(at(25)), Ids{14});
    EXPECT_EQ(references(at(25)), Ids{25});
}

TEST_F(ProfileCatalogueTest, BuildsTheRaidControllerInTheOrderOfItsTable) {
    EXPECT_EQ(at(21).getRegName(), "Host Hardware RAID Controller");
    EXPECT_EQ(references(at(21)), (Ids{2, 15, 16, 1, 17, 18, 19, 20, 21}));
}

TEST_F(ProfileCatalogueTest, ExtendsWhatTheMakersProfilesSpecialise) {
    std::set<int> without;
    for (const auto& record : all()) {
        if (record.getRegOrgId() != 1) {
            EXPECT_EQ(extended(record), Ids{});
        } else if (extended(record).empty()) {
            without.insert(record.getId());
        } else {
            EXPECT_EQ(extended(record).size(), 1U);
        }
    }
    EXPECT_EQ(without, (std::set<int>{25, 40, 41, 43, 47, 49}));
}

TEST_F(ProfileCatalogueTest, RegistersProfileRegistrationInTwoVersions) {
    for (const auto& [number, version] : {std::pair{38U, "2.0.0"}, std::pair{47U, "2.1.0"}}) {
        EXPECT_EQ(at(number).getRegName(), "KT Profile Registration");
        EXPECT_EQ(at(number).getRegVersion(), version);
        EXPECT_EQ(extended(at(number)), Ids{7});
    }
    const auto key = [&](const char* version) {
        return profiles.getECTPpath(1, PYL::OrgNameKT, "KT Profile Registration", version)
            .getKey("InstanceID")
            .asString();
    };
    EXPECT_EQ(key(""), "KTQ:39");
    EXPECT_EQ(key("2.1.0"), "KTQ:48");
    EXPECT_EQ(references(at(48)), Ids{48});
}

TEST_F(ProfileCatalogueTest, RelatesTheTwoArraysAlike) {
    EXPECT_EQ(at(43).getRegName(), "KT Vela Array");
    EXPECT_EQ(at(44).getRegName(), "KT SAS HBA");
    for (unsigned int number : {43U, 44U}) {
        EXPECT_EQ(references(at(number)), Ids{43});
        EXPECT_EQ(extended(at(number)), Ids{22});
    }
}

TEST_F(ProfileCatalogueTest, KeepsTheSpellingOfAClass) {
    EXPECT_EQ(at(0).getImpClassName(3), "PYL_FCHBAFirmwareIdentitiBIOS");
}

TEST_F(ProfileCatalogueTest, NamesAnImplementationProfileForTheDataCollectionOnly) {
    for (const auto& record : all()) {
        EXPECT_EQ(record.getSizeofImpProfiles(), record.getId() == 49 ? 1U : 0U);
    }
    EXPECT_EQ(at(48).getRegName(), "KT Configuration Data Collection");
    EXPECT_EQ(at(48).getImpProfile(0), at(48).getRegName());
}

TEST_F(ProfileCatalogueTest, FindsAStandardProfileByName) {
    EXPECT_EQ(profiles.getECTPpath(2, "", "Base Server", "").getKey("InstanceID").asString(),
              "KTQ:14");
    EXPECT_TRUE(profiles.getECTPpath(2, "", "Base Server", "9.9.9").empty());
    EXPECT_TRUE(profiles.getECTPpath(11, "", "Base Server", "").empty());
    EXPECT_TRUE(profiles.getECTPpath(2, "KT WBEM TC", "Base Server", "").empty());
    EXPECT_TRUE(profiles.getECTPpath(2, "", "base server", "").empty());
}

TEST_F(ProfileCatalogueTest, IsThereTwiceWhenLoadedTwice) {
    profiles.initialize();
    ASSERT_EQ(profiles.getNumRecords(), 98U);
    for (unsigned int i = 0; i < 49; ++i) EXPECT_EQ(at(i).getId(), at(i + 49).getId());
}

TEST_F(ProfileCatalogueTest, TakesOneAllocation) {
    PYL::ProfileDB another(log.logger);
    const auto before = cimtest::allocationCount();
    another.initialize();
    EXPECT_EQ(cimtest::allocationCount() - before, 1);
}

}  // namespace
