#include "providers/baseserver/PciBus.h"

#include <gtest/gtest.h>
#include <pylcommon/testing.h>

#include <filesystem>
#include <string>

namespace {

using baseserver::parsePciAddress;
using baseserver::PciAddress;
using baseserver::readPciFunctions;
namespace fs = std::filesystem;

TEST(PciAddress, IsReadInTheKernelsNotation) {
    EXPECT_EQ(parsePciAddress("0000:00:00.0"), (PciAddress{0, 0, 0, 0}));
    EXPECT_EQ(parsePciAddress("0000:1a:03.1"), (PciAddress{0, 0x1a, 3, 1}));
    EXPECT_EQ(parsePciAddress("ffff:ff:1f.7"), (PciAddress{0xffff, 0xff, 0x1f, 7}));
    EXPECT_EQ(parsePciAddress("10000:e1:00.0"), (PciAddress{0x10000, 0xe1, 0, 0}));
    EXPECT_EQ(parsePciAddress("7fffffff:00:00.0"), (PciAddress{0x7fffffff, 0, 0, 0}));
}

TEST(PciAddress, IsNothingElse) {
    for (const auto* text : {"",
                             ":",
                             "0000",
                             "0000:00",
                             "0000:00:00",
                             "0000:00:00.",
                             "0000:00:00.00",
                             "0000:00:00.0 ",
                             " 0000:00:00.0",
                             "0000:00:00:0",
                             "0000.00.00.0",
                             "000:00:00.0",
                             "0000:0:00.0",
                             "0000:000:00.0",
                             "0000:00:0.0",
                             "0000:00:20.0",
                             "0000:00:ff.0",
                             "0000:00:00.8",
                             "0000:00:00.f",
                             "-000:00:00.0",
                             "+000:00:00.0",
                             "0000:-1:00.0",
                             "0x00:00:00.0",
                             "0000:0x:00.0",
                             "000g:00:00.0",
                             "80000000:00:00.0",
                             "ffffffff:00:00.0",
                             "100000000:00:00.0",
                             "99999999999999999999:00:00.0",
                             "0000:00:00.0:pcie001",
                             "..",
                             "pci0000"}) {
        EXPECT_EQ(parsePciAddress(text), std::nullopt) << text;
    }
    EXPECT_EQ(parsePciAddress(std::string("0000:00:00.0\0", 13)), std::nullopt);
}

struct PciBusTest : testing::Test {
    cimtest::FakeHost machine;
    const std::string root = machine.root();

    void write(const std::string& path, const std::string& text) const {
        machine.write(path, text);
    }
    void attribute(const std::string& device, const std::string& name,
                   const std::string& text) const {
        write("/sys/bus/pci/devices/" + device + "/" + name, text);
    }
    void directory(const std::string& path) const { machine.device(path, {}); }
};

TEST_F(PciBusTest, IsEmptyOnAHostWithoutOne) {
    EXPECT_TRUE(readPciFunctions(root).empty());
    EXPECT_TRUE(readPciFunctions(root + "/missing").empty());
    write("/sys/bus/pci/devices", "a file where a directory belongs");
    EXPECT_TRUE(readPciFunctions(root).empty());
}

TEST_F(PciBusTest, GivesEveryAttributeOfAFunction) {
    const std::string name = "0000:1a:03.1";
    attribute(name, "class", "0x020000\n");
    attribute(name, "vendor", "0x8086\n");
    attribute(name, "device", "0x1572\n");
    attribute(name, "subsystem_vendor", "0x1028\n");
    attribute(name, "subsystem_device", "0x0000\n");
    attribute(name, "revision", "0xff\n");
    fs::create_symlink("../../../../bus/pci/drivers/i40e",
                       root + "/sys/bus/pci/devices/" + name + "/driver");
    write("/sys/bus/pci/slots/4-1/address", "0000:1a:03\n");

    const auto functions = readPciFunctions(root);
    ASSERT_EQ(functions.size(), 1U);
    const auto& function = functions[0];
    EXPECT_EQ(function.address, (PciAddress{0, 0x1a, 3, 1}));
    EXPECT_EQ(function.classCode, 0x020000U);
    EXPECT_EQ(function.vendorId, 0x8086);
    EXPECT_EQ(function.deviceId, 0x1572);
    EXPECT_EQ(function.subsystemVendorId, 0x1028);
    EXPECT_EQ(function.subsystemId, 0);
    EXPECT_EQ(function.revision, 0xff);
    EXPECT_EQ(function.slot, "4-1");
    EXPECT_EQ(function.driver, "i40e");
}

TEST_F(PciBusTest, LeavesOpenWhatTheKernelDoesNotTell) {
    directory("/sys/bus/pci/devices/0000:00:00.0");
    const auto functions = readPciFunctions(root);
    ASSERT_EQ(functions.size(), 1U);
    EXPECT_EQ(functions[0], baseserver::PciFunction{});
}

TEST_F(PciBusTest, LeavesOpenAttributesThatAreMalformedOrOutOfRange) {
    for (const auto* text : {"", "\n", "0x", "x", "0x10000", "-1", "0x8086 0x1", "8086h", "0x0x8",
                             "0x99999999999999999999", "+1"}) {
        attribute("0000:00:00.0", "vendor", text);
        EXPECT_EQ(readPciFunctions(root)[0].vendorId, std::nullopt) << text;
    }
    attribute("0000:00:00.0", "revision", "0x100\n");
    attribute("0000:00:00.0", "class", "0x100000000\n");
    attribute("0000:00:00.0", "device", "1572\n");  // without the prefix
    attribute("0000:00:00.0", "driver", "a file, not a link");
    directory("/sys/bus/pci/devices/0000:00:00.0/subsystem_vendor");
    const auto function = readPciFunctions(root)[0];
    EXPECT_EQ(function.revision, std::nullopt);
    EXPECT_EQ(function.classCode, std::nullopt);
    EXPECT_EQ(function.deviceId, 0x1572);
    EXPECT_EQ(function.driver, std::nullopt);
    EXPECT_EQ(function.subsystemVendorId, std::nullopt);
}

TEST_F(PciBusTest, PassesOverEntriesThatAreNoAddressAndSortsTheRest) {
    for (const auto* name : {"0000:02:00.0", "0000:00:1f.3", "10000:00:00.0", "0000:00:1f.0",
                             "readme", "0000:00:00.9", "0000:100:00.0"}) {
        directory(std::string("/sys/bus/pci/devices/") + name);
    }
    std::vector<PciAddress> addresses;
    for (const auto& function : readPciFunctions(root)) addresses.push_back(function.address);
    EXPECT_EQ(addresses, (std::vector<PciAddress>{
                             {0, 0, 0x1f, 0}, {0, 0, 0x1f, 3}, {0, 2, 0, 0}, {0x10000, 0, 0, 0}}));
}

TEST_F(PciBusTest, NamesTheSlotOfEveryFunctionOfADevice) {
    for (const auto* name : {"0000:3b:00.0", "0000:3b:00.1", "0000:3c:00.0"}) {
        directory(std::string("/sys/bus/pci/devices/") + name);
    }
    write("/sys/bus/pci/slots/9/address", "0000:3b:00\n");
    write("/sys/bus/pci/slots/10/address", "0000:3b:00\n");  // of two names the first in order
    directory("/sys/bus/pci/slots/empty");
    write("/sys/bus/pci/slots/odd/address", "nonsense\n");
    const auto functions = readPciFunctions(root);
    ASSERT_EQ(functions.size(), 3U);
    EXPECT_EQ(functions[0].slot, "10");
    EXPECT_EQ(functions[1].slot, "10");
    EXPECT_EQ(functions[2].slot, std::nullopt);
}

TEST(PciBus, ReadsThisHost) {
    for (const auto& function : readPciFunctions()) {
        EXPECT_LE(function.address.bus, 0xff);
        EXPECT_LE(function.address.function, 7);
    }
}

TEST_F(PciBusTest, CountsTheErrorsThatAFunctionReported) {
    const std::string device = "0000:00:02.0";
    attribute(device, "aer_dev_fatal", "Undefined 0\nDLP 0\nTOTAL_ERR_FATAL 12\n");
    attribute(device, "aer_dev_nonfatal", "Undefined 0\nTLP 3\nTOTAL_ERR_NONFATAL 3\n");
    const auto functions = readPciFunctions(root);
    ASSERT_EQ(functions.size(), 1U);
    EXPECT_EQ(functions[0].errors, (baseserver::PciErrors{12, 3}));
}

TEST_F(PciBusTest, CountsNoErrorsWhereTheKernelGivesNoGoodNumbers) {
    const std::string device = "0000:00:02.0";
    for (const auto* text :
         {"", "TOTAL_ERR_FATAL", "TOTAL_ERR_FATAL \n", "TOTAL_ERR_FATAL x\n",
          "TOTAL_ERR_FATAL -1\n", "TOTAL_ERR_FATAL 99999999999999999999\n", "Undefined 0\n"}) {
        attribute(device, "aer_dev_fatal", text);
        attribute(device, "aer_dev_nonfatal", "TOTAL_ERR_NONFATAL 3\n");
        EXPECT_EQ(readPciFunctions(root).at(0).errors, std::nullopt) << text;
    }
    fs::remove(root + "/sys/bus/pci/devices/" + device + "/aer_dev_fatal");
    EXPECT_EQ(readPciFunctions(root).at(0).errors, std::nullopt);
}

}  // namespace
