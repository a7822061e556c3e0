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

TEST_F(ServerAssociationsTest, NameBothEndsInTheirPaths) {
    EXPECT_EQ(devices->getClassName().str(), "PYL_SystemPCIDevice");
    EXPECT_EQ(devices->getPath().str(),
              host.path("PYL_SystemPCIDevice", {{"GroupComponent", systemPath()},
                                                {"PartComponent", devicePath("1a:03.1")}})
                  .str());
    EXPECT_EQ(package->getClassName().str(), "PYL_ComputerSystemPackage");
    EXPECT_EQ(package->getPath().str(),
              host.path("PYL_ComputerSystemPackage",
                        {{"Antecedent", chassisPath()}, {"Dependent", systemPath()}})
                  .str());
}

TEST_F(ServerAssociationsTest, HoldBothEndsAsReferences) {
    const auto instance = devices->getInstance();
    EXPECT_EQ(instance.getPath(), devices->getPath());
    EXPECT_EQ(property(instance, "GroupComponent"), "reference \"" + escaped(systemText) + "\"");
    EXPECT_EQ(instance.getProperty("PartComponent").asObjectPath(),
              PYLUtil::getPCIDevicePath(0, 0x1a, 3, 1));
    EXPECT_EQ(package->getInstance().getProperty("Antecedent").asObjectPath(),
              PYLUtil::getChassisPath());
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
