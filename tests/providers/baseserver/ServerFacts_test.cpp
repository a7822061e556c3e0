#include "providers/baseserver/ServerFacts.h"

#include "tests/common/QuietResults.h"

#include <gtest/gtest.h>
#include <pylcommon/testing.h>

namespace {

using baseserver::readServerFacts;
using cimtest::concatenated;
using cimtest::endOfTable;
using cimtest::SmbiosImage;
using cimtest::structure;

struct ServerFactsTest : testing::Test {
    cimtest::FakeHost machine;

    void firmwareIs(const std::string& name) const {
        machine.firmwareIs(PYL_SMBIOS_DUMPS "/" + name + ".bin");
    }

    Logger log = silentLogger();
};

TEST_F(ServerFactsTest, ComeFromTheFirmware) {
    firmwareIs("wavek");
    const auto facts = readServerFacts(log);
    EXPECT_EQ(facts.manufacturer, "kt");
    EXPECT_EQ(facts.productName, "Server WaveK 400");
    EXPECT_EQ(facts.serialNumber, "KTQ0012345");
    EXPECT_EQ(facts.uuid, "4c4c4544-0035-5a10-8052-b4c04f4d3232");
    EXPECT_EQ(facts.productId, "P12345-B21");
    EXPECT_EQ(facts.biosVendor, "KT");
    EXPECT_EQ(facts.biosVersion, "K42 v1.20");
    EXPECT_EQ(facts.serverSystemId, "KTQ-K-0002");
    EXPECT_TRUE(facts.agentlessOnly);
    EXPECT_EQ(facts.chassisManufacturer, "KT");
    EXPECT_EQ(facts.chassisSerialNumber, "KTQC000888");
    EXPECT_EQ(facts.chassisAssetTag, "Asset-2");
    EXPECT_EQ(facts.chassisType, 0x17);
    EXPECT_EQ(facts, readServerFacts(log));
}

TEST_F(ServerFactsTest, AreOpenWhereTheFirmwareTellsNothing) {
    firmwareIs("empty");
    const auto facts = readServerFacts(log);
    EXPECT_EQ(facts.serverSystemId, std::nullopt);
    EXPECT_EQ(facts.chassisManufacturer, std::nullopt);
    EXPECT_EQ(facts.chassisSerialNumber, std::nullopt);
    EXPECT_EQ(facts.chassisAssetTag, std::nullopt);
    EXPECT_EQ(facts.chassisType, std::nullopt);
    EXPECT_FALSE(facts.agentlessOnly);
}

TEST_F(ServerFactsTest, AreOpenWhereTheFirmwareTellsBlanks) {
    machine.firmwareIs(SmbiosImage(concatenated(
        {structure(1, 1, {1, 1, 1, 1}, {" "}), structure(3, 3, {1, 0x17, 1, 2, 1}, {"  ", " \t"}),
         structure(0xd9, 4, {1, 2}, {"KTQ", "   "}), endOfTable()})));
    const auto facts = readServerFacts(log);
    EXPECT_EQ(facts.chassisType, 0x17);
    EXPECT_EQ(facts.chassisManufacturer, std::nullopt);
    EXPECT_EQ(facts.chassisSerialNumber, std::nullopt);
    EXPECT_EQ(facts.chassisAssetTag, std::nullopt);
    EXPECT_EQ(facts.serverSystemId, std::nullopt);
}

TEST_F(ServerFactsTest, AreReadWithoutFirmwareTables) {
    machine.write("/etc/os-release", "NAME=\"Debian GNU/Linux\"\n");
    const auto facts = readServerFacts(log);
    EXPECT_EQ(facts.chassisType, std::nullopt);
    EXPECT_FALSE(facts.agentlessOnly);
    // The operating system is the kernel's and the distribution's to tell.
    EXPECT_NE(facts.osName, std::nullopt);
}

}  // namespace
