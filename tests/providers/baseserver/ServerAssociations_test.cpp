#include "providers/baseserver/ServerAssociations.h"

#include "common/PYLUtil.h"
#include "tests/providers/baseserver/BaseServerFixture.h"

namespace {

using PYL::PYLUtil;

struct ServerAssociationsTest : BaseServerFixture {
    std::unique_ptr<PYL::TwoEndedAssociation> devices =
        baseserver::systemPciDevice({0, 0x1a, 3, 1});
    std::unique_ptr<PYL::TwoEndedAssociation> package = baseserver::computerSystemPackage();
};

TEST_F(ServerAssociationsTest, HoldBothEndsInTheirPathsAndAsReferences) {
    const auto device = host.show(*devices);
    EXPECT_EQ(device.className(), "PYL_SystemPCIDevice");
    const auto chassis = host.show(*package);
    EXPECT_EQ(chassis.className(), "PYL_ComputerSystemPackage");
    for (const auto& [shown, role, end] :
         {std::tuple(device, "GroupComponent", systemPath),
          std::tuple(device, "PartComponent", devicePath("1a:03.1")),
          std::tuple(chassis, "Antecedent", chassisPath),
          std::tuple(chassis, "Dependent", systemPath)}) {
        EXPECT_EQ(shown[role], end);
        EXPECT_EQ(shown.path()[role], end);
    }
}

TEST_F(ServerAssociationsTest, LeadFromEachEndToTheOther) {
    const auto system = PYLUtil::getComputerSystemPath();
    const auto device = PYLUtil::getPCIDevicePath(0, 0x1a, 3, 1);
    EXPECT_EQ(devices->getAssociatedPath(system), device);
    EXPECT_EQ(devices->getAssociatedPath(device), system);
    EXPECT_EQ(package->getAssociatedPath(system), PYLUtil::getChassisPath());
    EXPECT_EQ(package->getAssociatedPath(PYLUtil::getChassisPath()), system);
}

TEST_F(ServerAssociationsTest, LeadNowhereFromAnythingElse) {
    EXPECT_TRUE(devices->getAssociatedPath(PYLUtil::getPCIDevicePath(0, 0x1a, 3, 2)).empty());
    EXPECT_TRUE(devices->getAssociatedPath(PYLUtil::getChassisPath()).empty());
    EXPECT_TRUE(devices->getAssociatedPath(CmpiCpp::CmpiObjectPath()).empty());
    auto elsewhere = PYLUtil::getComputerSystemPath();
    elsewhere.setHost("elsewhere");
    EXPECT_TRUE(package->getAssociatedPath(elsewhere).empty());
}

}  // namespace
