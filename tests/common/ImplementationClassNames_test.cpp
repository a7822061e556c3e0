#include "common/ImplementationClassNames.h"

#include "tests/common/TextTable.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace {

using PYL::dmtfEthPortClassNames;
using PYL::dmtfSWInvClassNames;
using PYL::emptyString;
using PYL::ktCollectionProfile;
using PYL::ktCSClassNames;
using PYL::ktEthernetTeamingClassNames;
using PYL::ktSASClassNames;
using PYL::ktVAClassNames;
using PYL::sniaArrayClassNames;

static_assert(std::is_same_v<std::remove_extent_t<decltype(emptyString)>, const char* const>,
              "a table cannot be written to");

struct Pair {
    const char* profile;
    const char* const* classNames;
    const char* const* nameSpaces;
    std::size_t size;
};

#define PYL_PAIR(profile, size) \
    { #profile, PYL::profile##ClassNames, PYL::profile##NameSpaces, size }

const Pair pairs[] = {
    PYL_PAIR(dmtfEthPort, 1),
    PYL_PAIR(dmtfIPInterface, 1),
    PYL_PAIR(dmtfOS, 1),
    PYL_PAIR(dmtfPCIDevice, 1),
    PYL_PAIR(dmtfSWInv, 10),
    PYL_PAIR(sniaArray, 2),
    PYL_PAIR(sniaHHRC, 2),
    PYL_PAIR(ktCarrowLite, 1),
    PYL_PAIR(ktCPU, 1),
    PYL_PAIR(ktCPUConStat, 1),
    PYL_PAIR(ktCS, 1),
    PYL_PAIR(ktCollection, 1),
    PYL_PAIR(ktEthernetTeaming, 1),
    PYL_PAIR(ktFCHBA, 1),
    PYL_PAIR(ktFan, 1),
    PYL_PAIR(ktMPLite, 1),
    PYL_PAIR(ktMemory, 1),
    PYL_PAIR(ktPhysCPU, 1),
    PYL_PAIR(ktPhysCS, 1),
    PYL_PAIR(ktPhysFan, 1),
    PYL_PAIR(ktPhysMemory, 1),
    PYL_PAIR(ktPhysPowerSupply, 1),
    PYL_PAIR(ktPowerSupply, 1),
    PYL_PAIR(ktRecordLog, 1),
    PYL_PAIR(ktVA, 1),
    PYL_PAIR(ktSAS, 1),
    PYL_PAIR(ktSCSI, 1),
    PYL_PAIR(ktSWInv, 10),
    PYL_PAIR(ktSensor, 1),
    PYL_PAIR(ktServerProduct, 2),
    PYL_PAIR(ktStorageEnc, 2),
};

TEST(ImplementationClassNames, GiveEachClassItsNamespace) {
    for (const auto& pair : pairs) {
        EXPECT_EQ(entries(pair.classNames).size(), pair.size) << pair.profile;
        EXPECT_EQ(entries(pair.nameSpaces), std::vector<std::string>(pair.size, "root/ktq"))
            << pair.profile;
    }
}

TEST(ImplementationClassNames, AreOfTheFamilysClasses) {
    for (const auto& pair : pairs) {
        for (const auto& name : entries(pair.classNames)) {
            EXPECT_TRUE(name.starts_with("PYL_")) << pair.profile << ": " << name;
        }
    }
}

TEST(ImplementationClassNames, AreTheSameForTheSameHardware) {
    EXPECT_EQ(entries(ktEthernetTeamingClassNames), entries(dmtfEthPortClassNames));
    EXPECT_EQ(entries(sniaArrayClassNames),
              (std::vector<std::string>{ktVAClassNames[0], ktSASClassNames[0]}));
}

TEST(ImplementationClassNames, KeepTheSpellingOfTheirProviders) {
    EXPECT_STREQ(dmtfSWInvClassNames[3], "PYL_FCHBAFirmwareIdentitiBIOS");
    EXPECT_STREQ(dmtfSWInvClassNames[4], "PYL_FCHBAFirmwareIdentityFW");
}

TEST(ImplementationClassNames, HaveATableOfNothing) { EXPECT_EQ(emptyString[0], nullptr); }

TEST(ImplementationClassNames, NameTheDataCollectionAsItsOwnProfile) {
    EXPECT_EQ(entries(ktCollectionProfile),
              std::vector<std::string>{"KT Configuration Data Collection"});
}

// A static of another module that reads a table before main().
const std::string_view readEarly = ktCSClassNames[0];

TEST(ImplementationClassNames, AreThereBeforeMain) { EXPECT_EQ(readEarly, "PYL_ComputerSystem"); }

}  // namespace
