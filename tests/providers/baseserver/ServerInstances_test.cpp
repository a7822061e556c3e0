#include "providers/baseserver/ServerInstances.h"

#include "tests/providers/baseserver/BaseServerFixture.h"

#include <memory>
#include <utility>

namespace {

using baseserver::ChassisInstance;
using baseserver::ComputerSystemInstance;
using baseserver::PciDeviceGroupInstance;
using baseserver::PciDeviceInstance;
using baseserver::PciErrors;
using baseserver::ServerFacts;
using cimtest::arrayOf;
using cimtest::Value;

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
    const auto instance = host.show(system);
    EXPECT_EQ(instance["CreationClassName"], "PYL_ComputerSystem");
    EXPECT_EQ(instance["Name"], "server-1");
    EXPECT_EQ(instance["ElementName"], "server-1");
    EXPECT_EQ(instance["Caption"], "Host computer system");
    EXPECT_EQ(instance["EnabledState"], 2);
    EXPECT_EQ(instance["RequestedState"], 12);
    EXPECT_EQ(instance["Dedicated"], arrayOf(0));
    EXPECT_EQ(instance["Description"], "Wave \"K\"");
    EXPECT_EQ(instance["Manufacturer"], "KT");
    EXPECT_EQ(instance["Model"], "Wave \"K\"");
    EXPECT_EQ(instance["SerialNumber"], "SN1");
    EXPECT_EQ(instance["UUID"], "uuid-1");
    EXPECT_EQ(instance["BIOSVendor"], "BV");
    EXPECT_EQ(instance["BIOSVersion"], "1.2");
    EXPECT_EQ(instance["OperatingSystem"], "Linux 6");
    EXPECT_EQ(instance["ServerSystemID"], "ID-1");
    EXPECT_EQ(instance["AgentlessOnly"], true);
    EXPECT_EQ(instance["OtherIdentifyingInfo"], arrayOf("uuid-1", "SN1", "ID-1"));
    EXPECT_EQ(instance["IdentifyingDescriptions"],
              arrayOf("System UUID", "Serial number", "Server system identifier"));
}

TEST_F(ServerInstancesTest, LeaveOutWhatIsNotKnownOfTheComputerSystem) {
    const auto instance = host.show(ComputerSystemInstance(noFacts()));
    for (const auto* name : {"Description", "Manufacturer", "Model", "SerialNumber", "UUID",
                             "BIOSVendor", "BIOSVersion", "OperatingSystem", "ServerSystemID",
                             "OtherIdentifyingInfo", "IdentifyingDescriptions"}) {
        EXPECT_FALSE(instance.has(name)) << name;
    }
    EXPECT_EQ(instance["AgentlessOnly"], false);
    EXPECT_EQ(instance["Name"], "server-1");
}

TEST_F(ServerInstancesTest, NameAnOperatingSystemOfUnknownVersion) {
    auto facts = std::make_shared<ServerFacts>();
    facts->osVersion = "6";
    EXPECT_FALSE(host.show(ComputerSystemInstance(facts)).has("OperatingSystem"));
    facts->osName = "Linux";
    facts->osVersion.reset();
    EXPECT_EQ(host.show(ComputerSystemInstance(facts))["OperatingSystem"], "Linux");
}

TEST_F(ServerInstancesTest, ListOnlyTheIdentifiersThatAreKnown) {
    auto facts = std::make_shared<ServerFacts>();
    facts->serialNumber = "SN1";
    const auto instance = host.show(ComputerSystemInstance(facts));
    EXPECT_EQ(instance["OtherIdentifyingInfo"], arrayOf("SN1"));
    EXPECT_EQ(instance["IdentifyingDescriptions"], arrayOf("Serial number"));
}

TEST_F(ServerInstancesTest, DescribeTheChassis) {
    ChassisInstance chassis(allFacts());
    EXPECT_EQ(chassis.getClassName().str(), "PYL_ComputerSystemChassis");
    const auto instance = host.show(chassis);
    EXPECT_EQ(instance.path(), chassisPath);
    EXPECT_EQ(instance["Tag"], "1");
    EXPECT_EQ(instance["ElementName"], "server-1 chassis");
    EXPECT_EQ(instance["Caption"], "Server chassis");
    EXPECT_EQ(instance["Manufacturer"], "KT chassis");
    EXPECT_EQ(instance["Model"], "Wave \"K\"");
    EXPECT_EQ(instance["PartNumber"], "P1");
    EXPECT_EQ(instance["SerialNumber"], "CSN");
    EXPECT_EQ(instance["UserTracking"], "tag");
    EXPECT_EQ(instance["ChassisPackageType"], 23);
}

TEST_F(ServerInstancesTest, DescribeAChassisOfUnknownKindByItsServer) {
    auto facts = std::make_shared<ServerFacts>();
    facts->manufacturer = "KT";
    facts->serialNumber = "SN1";
    const auto instance = host.show(ChassisInstance(facts));
    EXPECT_EQ(instance["Manufacturer"], "KT");
    EXPECT_EQ(instance["SerialNumber"], "SN1");
    EXPECT_EQ(instance["ChassisPackageType"], 0);
    EXPECT_FALSE(instance.has("UserTracking"));
}

TEST_F(ServerInstancesTest, CutTheLockBitOffTheKindOfChassis) {
    auto facts = std::make_shared<ServerFacts>();
    facts->chassisType = 0x97;
    EXPECT_EQ(host.show(ChassisInstance(facts))["ChassisPackageType"], 23);
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
    const auto instance = host.show(device);
    EXPECT_EQ(instance.path(), devicePath("1a:31.1"));
    EXPECT_EQ(instance["DeviceID"], "KTQ:PYL_PCIDevice:0000:1a:31.1");
    EXPECT_EQ(instance["ElementName"], "Ethernet controller 8086:0001");
    EXPECT_EQ(instance["Description"], "Ethernet controller 8086:0001");
    EXPECT_EQ(instance["Caption"], "PCI device");
    EXPECT_EQ(instance["BusNumber"], 26);
    EXPECT_EQ(instance["DeviceNumber"], 31);
    EXPECT_EQ(instance["FunctionNumber"], 1);
    EXPECT_EQ(instance["ClassCode"], 2);
    EXPECT_EQ(instance["VendorID"], 32902);
    EXPECT_EQ(instance["PCIDeviceID"], 1);
    EXPECT_EQ(instance["SubsystemVendorID"], 65535);
    EXPECT_EQ(instance["SubsystemID"], 2);
    EXPECT_EQ(instance["RevisionID"], 255);
    EXPECT_EQ(instance["PhysicalSlot"], "4-1");
    EXPECT_EQ(instance["DriverName"], "i40e");
}

TEST_F(ServerInstancesTest, CallAPciFunctionByTheNameOfItsDevice) {
    auto data = function(0, 0, 0);
    data.classCode = 0x020000;
    data.vendorId = 0x8086;
    data.deviceId = 0x10d3;
    const auto instance = host.show(PciDeviceInstance(data, "Acme Fast Ethernet"));
    EXPECT_EQ(instance["ElementName"], "Ethernet controller: Acme Fast Ethernet");
    EXPECT_EQ(instance["Description"], "Ethernet controller: Acme Fast Ethernet");
}

TEST_F(ServerInstancesTest, LeaveOutWhatIsNotKnownOfAPciFunction) {
    const auto instance = host.show(PciDeviceInstance(function(0, 0, 0)));
    EXPECT_EQ(instance["ElementName"], "Unknown device");
    for (const auto* name : {"ClassCode", "VendorID", "PCIDeviceID", "SubsystemVendorID",
                             "SubsystemID", "RevisionID", "PhysicalSlot", "DriverName"}) {
        EXPECT_FALSE(instance.has(name)) << name;
    }
}

TEST_F(ServerInstancesTest, TellTheStateOfAFunctionByItsErrors) {
    auto data = function(0, 2, 0);
    const auto state = [&] {
        const auto instance = host.show(PciDeviceInstance(data));
        return std::pair(instance["OperationalStatus"], instance["HealthState"]);
    };
    EXPECT_EQ(state(), std::pair(arrayOf(0), Value(0)));
    data.errors = PciErrors{0, 0};
    EXPECT_EQ(state(), std::pair(arrayOf(2), Value(5)));
    data.errors = PciErrors{0, 1};
    EXPECT_EQ(state(), std::pair(arrayOf(3), Value(10)));
    data.errors = PciErrors{1, 1};
    EXPECT_EQ(state(), std::pair(arrayOf(6), Value(20)));
}

TEST_F(ServerInstancesTest, DescribeTheGroupOfPciDevices) {
    PciDeviceGroupInstance group(PYL::statusDegraded);
    EXPECT_EQ(group.getClassName().str(), "PYL_PCIDeviceGroup");
    const auto instance = host.show(group);
    EXPECT_EQ(instance.path(), groupPath);
    EXPECT_EQ(instance["InstanceID"], "KTQ:PYL_PCIDeviceGroup:1");
    EXPECT_EQ(instance["GroupOperationalStatus"], arrayOf(3));
    EXPECT_EQ(instance["HealthState"], 10);
}

}  // namespace
