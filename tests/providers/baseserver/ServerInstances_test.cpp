#include "providers/baseserver/ServerInstances.h"

#include "tests/providers/baseserver/BaseServerFixture.h"

#include <memory>

namespace {

using baseserver::ChassisInstance;
using baseserver::ComputerSystemInstance;
using baseserver::PciDeviceGroupInstance;
using baseserver::PciDeviceInstance;
using baseserver::PciErrors;
using baseserver::ServerFacts;

struct ServerInstancesTest : BaseServerFixture {
    static std::shared_ptr<const ServerFacts> allFacts() {
        ServerFacts facts;
        facts.manufacturer = "KT";
        facts.productName = "Wave \"K\"";
        facts.serialNumber = "SN1";
        facts.uuid = "uuid-1";
        facts.productId = "P1";
        facts.biosVendor = "BV";
        facts.biosVersion = "1.2";
        facts.osName = "Linux";
        facts.osVersion = "6";
        facts.serverSystemId = "ID-1";
        facts.agentlessOnly = true;
        facts.chassisManufacturer = "KT chassis";
        facts.chassisSerialNumber = "CSN";
        facts.chassisAssetTag = "tag";
        facts.chassisType = 0x17;
        return std::make_shared<const ServerFacts>(facts);
    }
    static std::shared_ptr<const ServerFacts> noFacts() {
        return std::make_shared<const ServerFacts>();
    }
};

TEST_F(ServerInstancesTest, DescribeTheComputerSystem) {
    ComputerSystemInstance system(allFacts());
    EXPECT_EQ(system.getClassName().str(), "PYL_ComputerSystem");
    EXPECT_EQ(system.getPath().str(), systemText);
    const auto instance = system.getInstance();
    EXPECT_EQ(instance.getPath().str(), systemText);
    EXPECT_EQ(property(instance, "CreationClassName"), "string \"PYL_ComputerSystem\"");
    EXPECT_EQ(property(instance, "Name"), "string \"server-1\"");
    EXPECT_EQ(property(instance, "ElementName"), "string \"server-1\"");
    EXPECT_EQ(property(instance, "Caption"), "string \"Host computer system\"");
    EXPECT_EQ(property(instance, "EnabledState"), "uint16 2");
    EXPECT_EQ(property(instance, "RequestedState"), "uint16 12");
    EXPECT_EQ(property(instance, "Dedicated"), "uint16 array {0}");
    EXPECT_EQ(property(instance, "Description"), "string \"Wave \\\"K\\\"\"");
    EXPECT_EQ(property(instance, "Manufacturer"), "string \"KT\"");
    EXPECT_EQ(property(instance, "Model"), "string \"Wave \\\"K\\\"\"");
    EXPECT_EQ(property(instance, "SerialNumber"), "string \"SN1\"");
    EXPECT_EQ(property(instance, "UUID"), "string \"uuid-1\"");
    EXPECT_EQ(property(instance, "BIOSVendor"), "string \"BV\"");
    EXPECT_EQ(property(instance, "BIOSVersion"), "string \"1.2\"");
    EXPECT_EQ(property(instance, "OperatingSystem"), "string \"Linux 6\"");
    EXPECT_EQ(property(instance, "ServerSystemID"), "string \"ID-1\"");
    EXPECT_EQ(property(instance, "AgentlessOnly"), "boolean true");
    EXPECT_EQ(property(instance, "OtherIdentifyingInfo"),
              "string array {\"uuid-1\", \"SN1\", \"ID-1\"}");
    EXPECT_EQ(property(instance, "IdentifyingDescriptions"),
              "string array {\"System UUID\", \"Serial number\", \"Server system identifier\"}");
}

TEST_F(ServerInstancesTest, LeaveOutWhatIsNotKnownOfTheComputerSystem) {
    const auto instance = ComputerSystemInstance(noFacts()).getInstance();
    for (const auto* name : {"Description", "Manufacturer", "Model", "SerialNumber", "UUID",
                             "BIOSVendor", "BIOSVersion", "OperatingSystem", "ServerSystemID",
                             "OtherIdentifyingInfo", "IdentifyingDescriptions"}) {
        EXPECT_EQ(property(instance, name), "absent") << name;
    }
    EXPECT_EQ(property(instance, "AgentlessOnly"), "boolean false");
    EXPECT_EQ(property(instance, "Name"), "string \"server-1\"");
}

TEST_F(ServerInstancesTest, NameAnOperatingSystemOfUnknownVersion) {
    auto facts = std::make_shared<ServerFacts>();
    facts->osVersion = "6";
    EXPECT_EQ(property(ComputerSystemInstance(facts).getInstance(), "OperatingSystem"), "absent");
    facts->osName = "Linux";
    facts->osVersion.reset();
    EXPECT_EQ(property(ComputerSystemInstance(facts).getInstance(), "OperatingSystem"),
              "string \"Linux\"");
}

TEST_F(ServerInstancesTest, ListOnlyTheIdentifiersThatAreKnown) {
    auto facts = std::make_shared<ServerFacts>();
    facts->serialNumber = "SN1";
    const auto instance = ComputerSystemInstance(facts).getInstance();
    EXPECT_EQ(property(instance, "OtherIdentifyingInfo"), "string array {\"SN1\"}");
    EXPECT_EQ(property(instance, "IdentifyingDescriptions"), "string array {\"Serial number\"}");
}

TEST_F(ServerInstancesTest, DescribeTheChassis) {
    ChassisInstance chassis(allFacts());
    EXPECT_EQ(chassis.getClassName().str(), "PYL_ComputerSystemChassis");
    EXPECT_EQ(chassis.getPath().str(), chassisText);
    const auto instance = chassis.getInstance();
    EXPECT_EQ(property(instance, "Tag"), "string \"1\"");
    EXPECT_EQ(property(instance, "ElementName"), "string \"server-1 chassis\"");
    EXPECT_EQ(property(instance, "Caption"), "string \"Server chassis\"");
    EXPECT_EQ(property(instance, "Manufacturer"), "string \"KT chassis\"");
    EXPECT_EQ(property(instance, "Model"), "string \"Wave \\\"K\\\"\"");
    EXPECT_EQ(property(instance, "PartNumber"), "string \"P1\"");
    EXPECT_EQ(property(instance, "SerialNumber"), "string \"CSN\"");
    EXPECT_EQ(property(instance, "UserTracking"), "string \"tag\"");
    EXPECT_EQ(property(instance, "ChassisPackageType"), "uint16 23");
}

TEST_F(ServerInstancesTest, DescribeAChassisOfUnknownKindByItsServer) {
    auto facts = std::make_shared<ServerFacts>();
    facts->manufacturer = "KT";
    facts->serialNumber = "SN1";
    const auto instance = ChassisInstance(facts).getInstance();
    EXPECT_EQ(property(instance, "Manufacturer"), "string \"KT\"");
    EXPECT_EQ(property(instance, "SerialNumber"), "string \"SN1\"");
    EXPECT_EQ(property(instance, "ChassisPackageType"), "uint16 0");
    EXPECT_EQ(property(instance, "UserTracking"), "absent");
}

TEST_F(ServerInstancesTest, CutTheLockBitOffTheKindOfChassis) {
    auto facts = std::make_shared<ServerFacts>();
    facts->chassisType = 0x97;
    EXPECT_EQ(property(ChassisInstance(facts).getInstance(), "ChassisPackageType"), "uint16 23");
}

TEST_F(ServerInstancesTest, DescribeAPciFunction) {
    auto data = function(0x1a, 0x1f, 1);
    data.classCode = 0x020001;
    data.vendorId = 0x8086;
    data.deviceId = 0x0001;
    data.subsystemVendorId = 0xffff;
    data.subsystemId = 2;
    data.revision = 255;
    data.slot = "4-1";
    data.driver = "i40e";
    PciDeviceInstance device(data);
    EXPECT_EQ(device.getClassName().str(), "PYL_PCIDevice");
    EXPECT_EQ(device.getPath().str(), deviceText("1a:31.1"));
    const auto instance = device.getInstance();
    EXPECT_EQ(property(instance, "DeviceID"), "string \"KTQ:PYL_PCIDevice:0000:1a:31.1\"");
    EXPECT_EQ(property(instance, "ElementName"), "string \"Ethernet controller 8086:0001\"");
    EXPECT_EQ(property(instance, "Description"), "string \"Ethernet controller 8086:0001\"");
    EXPECT_EQ(property(instance, "Caption"), "string \"PCI device\"");
    EXPECT_EQ(property(instance, "BusNumber"), "uint8 26");
    EXPECT_EQ(property(instance, "DeviceNumber"), "uint8 31");
    EXPECT_EQ(property(instance, "FunctionNumber"), "uint8 1");
    EXPECT_EQ(property(instance, "ClassCode"), "uint8 2");
    EXPECT_EQ(property(instance, "VendorID"), "uint16 32902");
    EXPECT_EQ(property(instance, "PCIDeviceID"), "uint16 1");
    EXPECT_EQ(property(instance, "SubsystemVendorID"), "uint16 65535");
    EXPECT_EQ(property(instance, "SubsystemID"), "uint16 2");
    EXPECT_EQ(property(instance, "RevisionID"), "uint8 255");
    EXPECT_EQ(property(instance, "PhysicalSlot"), "string \"4-1\"");
    EXPECT_EQ(property(instance, "DriverName"), "string \"i40e\"");
}

TEST_F(ServerInstancesTest, LeaveOutWhatIsNotKnownOfAPciFunction) {
    const auto instance = PciDeviceInstance(function(0, 0, 0)).getInstance();
    EXPECT_EQ(property(instance, "ElementName"), "string \"Unknown device\"");
    for (const auto* name : {"ClassCode", "VendorID", "PCIDeviceID", "SubsystemVendorID",
                             "SubsystemID", "RevisionID", "PhysicalSlot", "DriverName"}) {
        EXPECT_EQ(property(instance, name), "absent") << name;
    }
}

TEST_F(ServerInstancesTest, TellTheStateOfAFunctionByItsErrors) {
    auto data = function(0, 2, 0);
    const auto state = [&] {
        const auto instance = PciDeviceInstance(data).getInstance();
        return property(instance, "OperationalStatus") + ", " + property(instance, "HealthState");
    };
    EXPECT_EQ(state(), "uint16 array {0}, uint16 0");
    data.errors = PciErrors{0, 0};
    EXPECT_EQ(state(), "uint16 array {2}, uint16 5");
    data.errors = PciErrors{0, 1};
    EXPECT_EQ(state(), "uint16 array {3}, uint16 10");
    data.errors = PciErrors{1, 1};
    EXPECT_EQ(state(), "uint16 array {6}, uint16 20");
}

TEST_F(ServerInstancesTest, DescribeTheGroupOfPciDevices) {
    PciDeviceGroupInstance group(PYL::statusDegraded);
    EXPECT_EQ(group.getClassName().str(), "PYL_PCIDeviceGroup");
    EXPECT_EQ(group.getPath().str(), groupText);
    const auto instance = group.getInstance();
    EXPECT_EQ(property(instance, "InstanceID"), "string \"KTQ:PYL_PCIDeviceGroup:1\"");
    EXPECT_EQ(property(instance, "GroupOperationalStatus"), "uint16 array {3}");
    EXPECT_EQ(property(instance, "HealthState"), "uint16 10");
}

}  // namespace
