#include "common/ProfileDB.h"

#include "common/ImplementationClassNames.h"
#include "common/PYLUtil.h"
#include "platform/smbios/SmBios.h"
#include "testing/cimhost/testing/Allocations.h"
#include "testing/cimhost/testing/FaultyBroker.h"
#include "testing/cimhost/testing/HostName.h"
#include "tests/common/Failures.h"
#include "tests/support/Journal.h"
#include "tests/support/TestBroker.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using PYL::ProfileDB;
using PYL::PRPDBRec;

static_assert(!std::is_copy_constructible_v<ProfileDB>);
static_assert(std::is_nothrow_copy_constructible_v<PRPDBRec>);
static_assert(std::is_constructible_v<PRPDBRec, int, int, std::string, std::string, std::string,
                                      const char**, const char**, const char**, int*, int*>,
              "tables that are not constant are taken too");

constexpr int none[] = {0};

/// A record of these lists; its id is also its version.
PRPDBRec record(int id, const std::string& name, const std::string& owner = "",
                int organization = 2) {
    return {id,
            organization,
            owner,
            name,
            std::to_string(id),
            PYL::emptyString,
            PYL::emptyString,
            PYL::emptyString,
            none,
            none};
}

/// Everything that a record tells, as text.
std::string text(const PRPDBRec& record) {
    auto all = std::to_string(record.getId()) + "|" + std::to_string(record.getRegOrgId()) + "|" +
               record.getOtherRegOrg() + "|" + record.getRegName() + "|" + record.getRegVersion();
    all += "|";
    for (unsigned i = 0; i < record.getSizeofRefedProfiles(); ++i) {
        all += std::to_string(record.getRefedProfile(i)) + " ";
    }
    all += "|";
    for (unsigned i = 0; i < record.getSizeofExtendsProfiles(); ++i) {
        all += std::to_string(record.getExtendsProfile(i)) + " ";
    }
    all += "|";
    for (unsigned i = 0; i < record.getSizeofImpClassNames(); ++i) {
        all += record.getImpClassName(i) + " ";
    }
    all += "|";
    for (unsigned i = 0; i < record.getSizeofImpNameSpaces(); ++i) {
        all += record.getImpNameSpace(i) + " ";
    }
    all += "|";
    for (unsigned i = 0; i < record.getSizeofImpProfiles(); ++i) {
        all += record.getImpProfile(i) + " ";
    }
    return all;
}

const std::string fullText = "7|1|Acme|Fan|1.2|3 1 2 |9 |A B |n1 n2 |P |";

/// A record made from tables that are gone when it is returned.
std::unique_ptr<PRPDBRec> fullRecord() {
    const auto names = std::make_unique<std::string[]>(5);
    const char* const texts[] = {"A", "B", "n1", "n2", "P"};
    for (std::size_t i = 0; i < 5; ++i) names[i] = texts[i];
    const char* classes[] = {names[0].c_str(), names[1].c_str(), nullptr};
    const char* nameSpaces[] = {names[2].c_str(), names[3].c_str(), nullptr};
    const char* profiles[] = {names[4].c_str(), nullptr};
    const int references[] = {3, 1, 2, 0};
    const int extends[] = {9, 0};
    return std::make_unique<PRPDBRec>(7, 1, "Acme", "Fan", "1.2", classes, nameSpaces, profiles,
                                      references, extends);
}

TEST(PRPDBRec, IsEmptyAtFirst) { EXPECT_EQ(text(PRPDBRec()), "0|0||||||||"); }

TEST(PRPDBRec, ReadsEachTableToItsEndAndInOrder) { EXPECT_EQ(text(*fullRecord()) + "|", fullText); }

TEST(PRPDBRec, HasNoEntriesOfTablesThatHoldTheirEndOnly) {
    EXPECT_EQ(text(record(5, "")), "5|2|||5|||||");
}

TEST(PRPDBRec, ReadsTablesOfDifferentLengths) {
    const char* const classes[] = {"A", "B", "C", nullptr};
    const char* const nameSpaces[] = {"n", nullptr};
    const PRPDBRec uneven(1, 2, "", "x", "", classes, nameSpaces, PYL::emptyString, none, none);
    EXPECT_EQ(uneven.getSizeofImpClassNames(), 3U);
    EXPECT_EQ(uneven.getSizeofImpNameSpaces(), 1U);
}

TEST(PRPDBRec, KeepsWhatItWasMadeFromInItsCopies) {
    auto original = fullRecord();
    const auto copy = *original;
    PRPDBRec assigned;
    assigned = copy;
    original.reset();
    EXPECT_EQ(text(copy) + "|", fullText);
    EXPECT_EQ(text(assigned) + "|", fullText);
    auto& itself = assigned;
    assigned = itself;
    EXPECT_EQ(text(assigned) + "|", fullText);
}

TEST(PRPDBRec, StaysWhatItIsWhenMovedFrom) {
    auto original = *fullRecord();
    const auto moved = std::move(original);
    EXPECT_EQ(text(original) + "|", fullText);
    EXPECT_EQ(text(moved) + "|", fullText);
}

TEST(PRPDBRec, TakesTextsWithAnyByte) {
    const std::string odd("a\0b", 3);
    const auto made = record(1, odd, odd);
    EXPECT_EQ(made.getRegName(), odd);
    EXPECT_EQ(made.getOtherRegOrg(), odd);
}

TEST(PRPDBRec, LosesNothingWhenMemoryEnds) {
    int failures = 0;
    for (int nth = 1;; ++nth) {
        const cimtest::FailingAllocation failing(nth, false);
        try {
            fullRecord();
            break;
        } catch (const std::bad_alloc&) {
            ++failures;
        }
    }
    EXPECT_GT(failures, 3);
}

struct ProfileDBTest : testing::Test {
    TestBroker host;
    JournalLog log;
    ProfileDB profiles{log.logger};

    std::string path(int organization, const std::string& owner, const std::string& name,
                     const std::string& version) {
        return profiles.getECTPpath(organization, owner, name, version).str();
    }
    static std::string pathText(int id) {
        return "//server-1/interop:PYL_RegisteredProfile.InstanceID=\"KTQ:" + std::to_string(id) +
               "\"";
    }
    std::string at(unsigned int number) {
        PRPDBRec found = record(99, "untouched");
        const auto status = profiles.getRecord(number, found);
        return std::to_string(status) + " " + found.getRegName();
    }
};

TEST_F(ProfileDBTest, IsEmptyAtFirst) {
    EXPECT_EQ(profiles.getNumRecords(), 0U);
    EXPECT_EQ(at(0), "4 untouched");
}

TEST_F(ProfileDBTest, KeepsRecordsInTheOrderInWhichTheyCame) {
    for (int id : {30, 10, 20}) profiles.make(record(id, "r" + std::to_string(id)));
    EXPECT_EQ(profiles.getNumRecords(), 3U);
    EXPECT_EQ(at(0), "0 r30");
    EXPECT_EQ(at(1), "0 r10");
    EXPECT_EQ(at(2), "0 r20");
}

TEST_F(ProfileDBTest, RefusesNumbersFromTheCountUpwards) {
    profiles.make(record(1, "one"));
    for (unsigned int number : {1U, 2U, 1000U, UINT_MAX}) EXPECT_EQ(at(number), "4 untouched");
}

TEST_F(ProfileDBTest, HandsOutCopies) {
    profiles.make(record(1, "one"));
    PRPDBRec taken;
    profiles.getRecord(0, taken);
    taken = record(2, "two");
    EXPECT_EQ(at(0), "0 one");
}

TEST_F(ProfileDBTest, MakesThePathOfARecordFromItsId) {
    profiles.make(record(12, "Fan", "Acme", 1));
    EXPECT_EQ(path(1, "Acme", "Fan", "12"), pathText(12));
    const cimtest::HostNameIs renamed("server-2");
    EXPECT_EQ(path(1, "Acme", "Fan", ""),
              "//server-2/interop:PYL_RegisteredProfile.InstanceID=\"KTQ:12\"");
}

TEST_F(ProfileDBTest, ComparesEverythingExactly) {
    profiles.make(record(12, "Fan", "Acme", 1));
    for (const auto& [organization, owner, name, version] :
         std::vector<std::tuple<int, std::string, std::string, std::string>>{
             {2, "Acme", "Fan", "12"},
             {1, "", "Fan", "12"},
             {1, "acme", "Fan", "12"},
             {1, "Acme", "fan", "12"},
             {1, "Acme", "Fan ", "12"},
             {1, "Acme", "Fa", "12"},
             {1, "Acme", "", "12"},
             {1, "Acme", "Fan", "1"},
             {1, "Acme", "Fan", "12 "}}) {
        EXPECT_TRUE(profiles.getECTPpath(organization, owner, name, version).empty())
            << organization << owner << name << version;
    }
}

TEST_F(ProfileDBTest, AnswersAMissWithAnEmptyPathOfTheBroker) {
    const auto missed = profiles.getECTPpath(2, "", "Fan", "");
    EXPECT_TRUE(missed.empty());
    EXPECT_EQ(missed.broker(), host.broker().toCMPI());
    EXPECT_TRUE(missed.getNameSpace().empty());
    EXPECT_TRUE(missed.getClassName().empty());
    EXPECT_TRUE(missed.getHost().empty());
    EXPECT_EQ(missed.getKeyCount(), 0U);
}

TEST_F(ProfileDBTest, FindsTheFirstOfSeveralVersionsWhenNoneIsGiven) {
    profiles.make(record(3, "Fan"));
    profiles.make(record(2, "Fan"));
    EXPECT_EQ(path(2, "", "Fan", ""), pathText(3));
    EXPECT_EQ(path(2, "", "Fan", "2"), pathText(2));
}

TEST_F(ProfileDBTest, FindsARecordWithoutAVersionWhenNoneIsGivenOnly) {
    profiles.make(
        {4, 2, "", "Fan", "", PYL::emptyString, PYL::emptyString, PYL::emptyString, none, none});
    EXPECT_EQ(path(2, "", "Fan", ""), pathText(4));
    EXPECT_TRUE(profiles.getECTPpath(2, "", "Fan", "1.0").empty());
}

TEST_F(ProfileDBTest, NamesTheScopingSystems) {
    EXPECT_EQ(profiles.getScopedPathToComputerSystem().str(),
              "//server-1/root/ktq:PYL_ComputerSystem.CreationClassName=\"PYL_ComputerSystem\","
              "Name=\"server-1\"");
    SmBios::setSource(std::make_shared<SmbiosDumpFile>(PYL_SMBIOS_DUMPS "/wavek.bin"));
    const auto uuid = PYL::PYLUtil::getSystemUUID(log.logger);
    EXPECT_FALSE(uuid.empty());
    const std::string untilName =
        "//server-1/root/ktq:PYL_FCHBAComputerSystem.CreationClassName="
        "\"PYL_FCHBAComputerSystem\",Name=\"";
    EXPECT_EQ(profiles.getScopedPathToFCHBAComputerSystem().str(), untilName + uuid + "\"");
    SmBios::setSource(std::make_shared<SmbiosDumpFile>("/nonexistent"));
    EXPECT_EQ(profiles.getScopedPathToFCHBAComputerSystem().str(), untilName + "\"");
    SmBios::setSource(nullptr);
}

TEST_F(ProfileDBTest, PassesOnWhatTheBrokerAnswers) {
    profiles.make(record(1, "Fan"));
    cimtest::FaultyBroker faulty(host.real());
    host.use(faulty.handle());
    for (const char* slot : {"CMPIBrokerEncFT.newObjectPath", "CMPIObjectPathFT.setHostname",
                             "CMPIObjectPathFT.addKey"}) {
        faulty.failCall(slot, 1, cimtest::FaultyBroker::Fault::status);
        EXPECT_TRUE(
            outcomeOf([&] { profiles.getECTPpath(2, "", "Fan", ""); }).starts_with("status 1"))
            << slot;
        EXPECT_TRUE(
            outcomeOf([&] { profiles.getScopedPathToFCHBAComputerSystem(); }).starts_with("none"))
            << slot;
    }
    faulty.heal();
    host.use(host.real());
}

TEST(ProfileDB, LogsItsMakingAndItsEndAndNothingElse) {
    struct Sources : LogSink {
        void write(LogLevel, std::string_view source, std::string_view message) noexcept override {
            lines.push_back(std::string(source) + " " + std::string(message));
        }
        Lines lines;
    };
    const auto sink = std::make_shared<Sources>();
    Logger log("test", sink);
    {
        ProfileDB profiles(log);
        profiles.initialize();
        PRPDBRec taken;
        profiles.getRecord(1000, taken);
        profiles.getECTPpath(2, "", "no such profile", "");
    }
    EXPECT_EQ(sink->lines, (Lines{"test:ProfileDB cxtor()", "test:ProfileDB dxtor()"}));
    EXPECT_EQ(log.logSource(), "test");
}

}  // namespace
