#include "providers/baseserver/PciNames.h"

#include <gtest/gtest.h>
#include <pylcommon/testing.h>

namespace {

using baseserver::findPciNames;
using baseserver::PciId;
using Names = std::map<PciId, std::string>;

struct PciNamesTest : testing::Test {
    cimtest::FakeHost machine;

    Names find(const std::set<PciId>& wanted) const { return findPciNames(wanted, machine.root()); }
};

constexpr const char* list =
    "#\tList of PCI ID's\n"
    "\n"
    "1b36  Red Hat, Inc.\n"
    "\t000c  QEMU PCIe Root port\n"
    "# a remark\n"
    "8086  Intel Corporation\n"
    "\t10d3  82574L Gigabit Network Connection\n"
    "\t\t8086 000c  a subsystem\n"
    "\t29c0  82G33 Controller\r\n"
    "\t29c  too short\n"
    "\tg9c0  no number\n"
    "C 03  Display controller\n"
    "\t00  VGA compatible controller\n"
    "\t29c1  of a class\n";

TEST_F(PciNamesTest, AreThoseOfVendorAndDevice) {
    machine.write("/usr/share/misc/pci.ids", list);
    EXPECT_EQ(find({{0x8086, 0x10d3}, {0x1b36, 0x000c}, {0x8086, 0x29c0}}),
              (Names{{{0x1b36, 0x000c}, "Red Hat, Inc. QEMU PCIe Root port"},
                     {{0x8086, 0x10d3}, "Intel Corporation 82574L Gigabit Network Connection"},
                     {{0x8086, 0x29c0}, "Intel Corporation 82G33 Controller"}}));
}

TEST_F(PciNamesTest, AreNotThereForWhatTheListDoesNotName) {
    machine.write("/usr/share/misc/pci.ids", list);
    EXPECT_EQ(find({{0x8086, 0x000c}, {0x1234, 0x1111}, {0x8086, 0x29c1}, {0, 0}}), Names{});
    EXPECT_EQ(find({}), Names{});
}

TEST_F(PciNamesTest, AreFoundInEitherOfTwoPlaces) {
    EXPECT_EQ(find({{0x8086, 0x10d3}}), Names{}) << "no list";
    machine.write("/usr/share/hwdata/pci.ids", list);
    EXPECT_EQ(find({{0x8086, 0x10d3}}).size(), 1U);
}

}  // namespace
