#include "common/CollectionClassNames.h"

#include "tests/common/TextTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace {

using PYL::ConfigurationDataClassLevels;
using PYL::FCHBAClassNames;
using PYL::LocalFileClassLevels;
using PYL::SCSIHBAClassLevels;
using PYL::SCSIHBAClassTypes;
using Texts = std::vector<std::string>;

struct Family {
    const char* name;
    const char* const* classNames;
    const char* const* classTypes;
    std::size_t size;
};

#define PYL_FAMILY(family, size) \
    { #family, PYL::family##ClassNames, PYL::family##ClassTypes, size }

const Family families[] = {
    PYL_FAMILY(BaseServer, 14),
    PYL_FAMILY(BaseServerPhysicalAsset, 4),
    PYL_FAMILY(CarrowLite, 20),
    PYL_FAMILY(CPU, 21),
    PYL_FAMILY(CPUPhysicalAsset, 6),
    PYL_FAMILY(ConfigurationData, 2),
    PYL_FAMILY(ConsolidatedStatus, 9),
    PYL_FAMILY(EthernetTeaming, 61),
    PYL_FAMILY(FCHBA, 71),
    PYL_FAMILY(LocalFile, 5),
    PYL_FAMILY(Location, 12),
    PYL_FAMILY(MPLite, 18),
    PYL_FAMILY(Memory, 4),
    PYL_FAMILY(MemoryPhysical, 37),
    PYL_FAMILY(PCI, 16),
    PYL_FAMILY(ProfileRegistration, 6),
    PYL_FAMILY(RecordLog, 7),
    PYL_FAMILY(SASHBA, 140),
    PYL_FAMILY(SCSIHBA, 28),
    PYL_FAMILY(VelaArray, 186),
    PYL_FAMILY(SoftwareInventory, 11),
};

std::vector<int> levels(const int* table) {
    std::vector<int> found;
    while (*table != -1) found.push_back(*table++);
    return found;
}

TEST(CollectionClassNames, HaveAsManyTypesAsClasses) {
    for (const auto& family : families) {
        EXPECT_EQ(entries(family.classNames).size(), family.size) << family.name;
        EXPECT_EQ(entries(family.classTypes).size(), family.size) << family.name;
    }
}

TEST(CollectionClassNames, NameNoClassTwiceInAFamily) {
    for (const auto& family : families) {
        const auto names = entries(family.classNames);
        EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size())
            << family.name;
    }
}

TEST(CollectionClassNames, AreOfTheFamilysClassesOldAndNew) {
    for (const auto& family : families) {
        for (const auto& name : entries(family.classNames)) {
            EXPECT_TRUE(name.starts_with("PYL_") || name.starts_with("KT")) << name;
        }
    }
}

TEST(CollectionClassNames, AreInstancesOrAssociationsButForOne) {
    Texts others;
    for (const auto& family : families) {
        const auto types = entries(family.classTypes);
        for (std::size_t i = 0; i < types.size(); ++i) {
            if (types[i] != "Instance" && types[i] != "Association") {
                others.push_back(family.classNames[i] + (" " + types[i]));
            }
        }
    }
    EXPECT_EQ(others, Texts{"PYL_SCSIHBAComputerSystemDAPort Asociation"});
    EXPECT_STREQ(SCSIHBAClassTypes[5], "Asociation");
}

TEST(CollectionClassNames, KeepBothSpellingsOfTheFirmwareIdentity) {
    const auto names = entries(FCHBAClassNames);
    EXPECT_TRUE(std::ranges::count(names, "PYL_FCHBAFirmwareIdentityBIOS"));
    EXPECT_FALSE(std::ranges::count(names, "PYL_FCHBAFirmwareIdentitiBIOS"));
}

TEST(CollectionClassNames, HaveTheLevelsOfWhatIsNotCollected) {
    EXPECT_EQ(levels(ConfigurationDataClassLevels), (std::vector<int>{2, 2}));
    EXPECT_EQ(levels(LocalFileClassLevels), std::vector<int>(5, 0));
    const auto scsi = levels(SCSIHBAClassLevels);
    EXPECT_EQ(scsi.size(), 28U);
    EXPECT_EQ(std::ranges::count(scsi, 2), 3);
    EXPECT_EQ(std::ranges::count(scsi, 0), 25);
}

}  // namespace
