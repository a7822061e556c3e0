#include "providers/baseserver/PciClass.h"

#include <gtest/gtest.h>

namespace {

using baseserver::pciClassName;

TEST(PciClass, NamesTheSubClassWhereItIsKnown) {
    EXPECT_STREQ(pciClassName(0x020000), "Ethernet controller");
    EXPECT_STREQ(pciClassName(0x010802), "Non-volatile memory controller");
    EXPECT_STREQ(pciClassName(0x0C0701), "IPMI interface");
    EXPECT_STREQ(pciClassName(0x060400), "PCI-to-PCI bridge");
}

TEST(PciClass, FallsBackToTheBaseClass) {
    EXPECT_STREQ(pciClassName(0x02FF00), "Network controller");
    EXPECT_STREQ(pciClassName(0x000000), "Device without class");
    EXPECT_STREQ(pciClassName(0x130000), "Non-essential instrumentation");
}

TEST(PciClass, KnowsNoOther) {
    EXPECT_STREQ(pciClassName(0x140000), "Unknown device");
    EXPECT_STREQ(pciClassName(0xFF0000), "Unknown device");
    EXPECT_STREQ(pciClassName(0xFFFFFFFF), "Unknown device");
    // More than 24 bits is no class code, whatever its lower bits say.
    EXPECT_STREQ(pciClassName(0x01020000), "Unknown device");
}

}  // namespace
