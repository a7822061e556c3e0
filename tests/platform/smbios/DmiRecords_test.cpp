#include "platform/smbios/DmiRecords.h"

#include "tests/platform/smbios/SmbiosImage.h"

#include <gtest/gtest.h>

namespace {

/// A system record as long as the standard's newest, with this UUID.
Bytes systemWithUuid(const Bytes& uuid) {
    return structure(1, 1, concatenated({{1, 2, 0, 3}, uuid, {6, 4, 5}}),
                     {"Maker", "Product", "Serial", "Sku", "Family"});
}

const Bytes countingUuid{0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77,
                         0x88, 0x99, 0xaa, 0xbb, 0xcc, 0xdd, 0xee, 0xff};

Bytes biosWithMarker(std::uint8_t low, std::uint8_t high) {
    return structure(0, 0, {1, 2, 0, 0xe0, 3, 0xff, 0x80, 0x98, 0, 0, 0, 0, low, high},
                     {"Vendor", "Version", "01/02/2024"});
}

std::string uuidOf(const Bytes& uuid, std::uint8_t major, std::uint8_t minor) {
    SmbiosImage image(concatenated({systemWithUuid(uuid), endOfTable()}));
    if (major < 3) image.countIs(2);
    const ScannedDump scanned(image.versionIs(major, minor));
    return scanned->getDmiSystem() ? scanned->getDmiSystem()->uuid : "no record";
}

TEST(DmiRecords, DecodeTheSystem) {
    const ScannedDump scanned(readDump("entry30"));
    ASSERT_NE(scanned->getDmiSystem(), nullptr);
    const DmiSystem& system = *scanned->getDmiSystem();
    EXPECT_EQ(system.manufacturer, "KT");
    EXPECT_EQ(system.productName, "SERVER");
    EXPECT_EQ(system.version, "1.0");
    EXPECT_EQ(system.serialNumber, "KTQ0012345");
    EXPECT_EQ(system.uuid, "4c4c4544-0035-5a10-8052-b4c04f4d3232");
    EXPECT_EQ(system.wakeUpType, 6);
    EXPECT_EQ(system.skuNumber, "P12345-B21");
    EXPECT_EQ(system.family, "Wave");
}

TEST(DmiRecords, DecodeTheBios) {
    const ScannedDump scanned(readDump("wavej-marker"));
    ASSERT_NE(scanned->getDmiBios(), nullptr);
    const DmiBios& bios = *scanned->getDmiBios();
    EXPECT_EQ(bios.vendor, "KT");
    EXPECT_EQ(bios.version, "K42 v1.20");
    EXPECT_EQ(bios.releaseDate, "03/14/2024");
    EXPECT_EQ(bios.characteristics, 0x4000000813099880U);
    EXPECT_EQ(bios.biosMarker, 0x4000);
    EXPECT_EQ(bios.newerGeneration, 0);
}

TEST(DmiRecords, DecodeBaseboardAndChassis) {
    const ScannedDump scanned(readDump("wavek"));
    ASSERT_NE(scanned->getDmiBaseboard(), nullptr);
    EXPECT_EQ(scanned->getDmiBaseboard()->manufacturer, "KT");
    EXPECT_EQ(scanned->getDmiBaseboard()->product, "Main board");
    EXPECT_EQ(scanned->getDmiBaseboard()->version, "A");
    EXPECT_EQ(scanned->getDmiBaseboard()->serialNumber, "KTQB000777");
    EXPECT_EQ(scanned->getDmiBaseboard()->assetTag, "Asset-1");
    ASSERT_NE(scanned->getDmiChassis(), nullptr);
    EXPECT_EQ(scanned->getDmiChassis()->manufacturer, "KT");
    EXPECT_EQ(scanned->getDmiChassis()->type, 0x17) << "without the bit of the lock";
    EXPECT_EQ(scanned->getDmiChassis()->version, "");
    EXPECT_EQ(scanned->getDmiChassis()->serialNumber, "KTQC000888");
    EXPECT_EQ(scanned->getDmiChassis()->assetTag, "Asset-2");
}

TEST(DmiRecords, LeaveOutWhatAnOlderRecordDoesNotHave) {
    const ScannedDump scanned(readDump("entry21"));
    ASSERT_NE(scanned->getDmiSystem(), nullptr);
    EXPECT_EQ(scanned->getDmiSystem()->uuid, "4c4c4544-0035-5a10-8052-b4c04f4d3232");
    EXPECT_EQ(scanned->getDmiSystem()->skuNumber, "");
    EXPECT_EQ(scanned->getDmiSystem()->family, "");
}

TEST(DmiRecords, LeaveOutEverythingThatAHeaderAloneDoesNotHave) {
    const ScannedDump scanned(SmbiosImage(concatenated(
        {structure(0, 0), structure(1, 1), structure(2, 2), structure(3, 3), endOfTable()})));
    ASSERT_EQ(scanned.result(), 0);
    EXPECT_EQ(scanned->getDmiBios()->vendor, "");
    EXPECT_EQ(scanned->getDmiBios()->characteristics, 0U);
    EXPECT_EQ(scanned->getDmiSystem()->manufacturer, "");
    EXPECT_EQ(scanned->getDmiSystem()->uuid, "");
    EXPECT_EQ(scanned->getDmiBaseboard()->product, "");
    EXPECT_EQ(scanned->getDmiChassis()->type, 0);
}

TEST(DmiRecords, TakeATextOfBlanksForNone) {
    const ScannedDump scanned(SmbiosImage(concatenated(
        {structure(0, 0, {1, 2}, {"  ", "1.0"}),
         structure(1, 1, concatenated({{1, 2, 0, 3}, countingUuid, {6, 4, 4}}),
                   {" ", "Product", "   ", "\t \r\n"}),
         structure(2, 2, {1, 1, 1, 1, 1}, {" "}), structure(3, 3, {1, 1, 1, 1, 1}, {" "}),
         structure(0xd9, 4, {1, 2}, {"KTQ", "    "}),
         structure(0xda, 5, {1, 1, 2, 2}, {"KTQ", "  "}),
         structure(0xdb, 6, {1, 2, 2}, {"KTQ", " "}), endOfTable()})));
    ASSERT_EQ(scanned.result(), 0);
    EXPECT_EQ(scanned->getDmiBios()->vendor, "");
    EXPECT_EQ(scanned->getDmiBios()->version, "1.0");
    const DmiSystem& system = *scanned->getDmiSystem();
    EXPECT_EQ(system.manufacturer + system.serialNumber + system.skuNumber + system.family, "");
    EXPECT_EQ(system.productName, "Product");
    const DmiBaseboard& baseboard = *scanned->getDmiBaseboard();
    EXPECT_EQ(baseboard.manufacturer + baseboard.product + baseboard.version, "");
    EXPECT_EQ(baseboard.serialNumber + baseboard.assetTag, "");
    const DmiChassis& chassis = *scanned->getDmiChassis();
    EXPECT_EQ(chassis.manufacturer + chassis.version, "");
    EXPECT_EQ(chassis.serialNumber + chassis.assetTag, "");
    EXPECT_EQ(scanned->getKTQServerSystemId()->identifier, "");
    const KTQEnclosure& enclosure = *scanned->getKTQEnclosure();
    EXPECT_EQ(enclosure.enclosureName + enclosure.rackName, "");
    const KTQServerProfile& profile = *scanned->getKTQServerProfile();
    EXPECT_EQ(profile.virtualSerialNumber + profile.solutionName, "");
}

TEST(DmiRecords, OrderTheUuidByTheVersionOfTheTable) {
    const std::string littleEndian = "33221100-5544-7766-8899-aabbccddeeff";
    const std::string asItStands = "00112233-4455-6677-8899-aabbccddeeff";
    EXPECT_EQ(uuidOf(countingUuid, 2, 5), asItStands);
    EXPECT_EQ(uuidOf(countingUuid, 2, 6), littleEndian);
    EXPECT_EQ(uuidOf(countingUuid, 2, 0x1f), asItStands) << "a miswritten 2.3";
    EXPECT_EQ(uuidOf(countingUuid, 3, 0), littleEndian);
}

TEST(DmiRecords, GiveNoUuidWhereTheFirmwareSaysThereIsNone) {
    EXPECT_EQ(uuidOf(Bytes(16, 0x00), 3, 0), "");
    EXPECT_EQ(uuidOf(Bytes(16, 0xff), 3, 0), "");
    EXPECT_EQ(uuidOf(Bytes(16, 0x11), 3, 0), "11111111-1111-1111-1111-111111111111");
    Bytes almost(16, 0xff);
    almost[15] = 0xfe;
    EXPECT_EQ(uuidOf(almost, 3, 0), "ffffffff-ffff-ffff-ffff-fffffffffffe");
}

TEST(DmiRecords, GiveNoUuidThatIsCutShort) {
    const Bytes shortUuid(countingUuid.begin(), countingUuid.end() - 1);
    const ScannedDump scanned(SmbiosImage(concatenated(
        {structure(1, 1, concatenated({{1, 0, 0, 0}, shortUuid}), {"Maker"}), endOfTable()})));
    ASSERT_NE(scanned->getDmiSystem(), nullptr);
    EXPECT_EQ(scanned->getDmiSystem()->manufacturer, "Maker");
    EXPECT_EQ(scanned->getDmiSystem()->uuid, "");
}

TEST(DmiRecords, TakeTheMarkersOnTheMakersMachinesOnly) {
    struct Case {
        Bytes own;
        std::uint16_t marker;
        std::uint8_t newer;
    };
    for (const auto& [own, marker, newer] : {
             Case{structure(0xd8, 5, {1, 0}, {"KTQ"}), 0x4021, 0},
             Case{structure(0xd8, 5, {1, 0xff}, {"KTQ"}), 0x4021, 0xff},
             Case{structure(0xd8, 5, {2, 1}, {"x", "KTQ"}), 0x4021, 1},
             Case{structure(0xd8, 5, {1}, {"KTQ"}), 0x4021, 0},
             Case{structure(0xd8, 5, {1, 1}, {"KTQX"}), 0, 0},
             Case{structure(0xd8, 5, {0, 1}, {"KTQ"}), 0, 0},
             Case{structure(0xd8, 5), 0, 0},
             Case{structure(0xd7, 5, {1, 1}, {"KTQ"}), 0, 0},
         }) {
        const ScannedDump scanned(
            SmbiosImage(concatenated({biosWithMarker(0x21, 0x40), own, endOfTable()})));
        ASSERT_NE(scanned->getDmiBios(), nullptr);
        EXPECT_EQ(scanned->getDmiBios()->biosMarker, marker);
        EXPECT_EQ(scanned->getDmiBios()->newerGeneration, newer);
    }
}

TEST(DmiRecords, FindTheServerSystemIdentifierByItsSignature) {
    const ScannedDump scanned(
        SmbiosImage(concatenated({structure(0xd9, 5, {1, 2}, {"Other", "not ours"}),
                                  structure(0xd9, 6, {1, 2}, {"KTQ", "KTQ-0815"}),
                                  structure(0xd9, 7, {1, 2}, {"KTQ", "second"}), endOfTable()})));
    ASSERT_NE(scanned->getKTQServerSystemId(), nullptr);
    EXPECT_EQ(scanned->getKTQServerSystemId()->identifier, "KTQ-0815");
}

TEST(DmiRecords, DecodeTheEnclosure) {
    const ScannedDump scanned(readDump("blade"));
    ASSERT_NE(scanned->getKTQEnclosure(), nullptr);
    const KTQEnclosure& enclosure = *scanned->getKTQEnclosure();
    EXPECT_TRUE(enclosure.isBlade);
    EXPECT_FALSE(enclosure.isSLServer);
    EXPECT_EQ(enclosure.enclosureName, "enc-7");
    EXPECT_EQ(enclosure.rackName, "rack-B");
    EXPECT_EQ(enclosure.rackUuid, "00112233-4455-6677-8899-aabbccddeeff");
}

TEST(DmiRecords, DecodeTheServerProfile) {
    const ScannedDump scanned(readDump("blade"));
    ASSERT_NE(scanned->getKTQServerProfile(), nullptr);
    const KTQServerProfile& profile = *scanned->getKTQServerProfile();
    EXPECT_EQ(profile.virtualSerialNumber, "VKT000042");
    EXPECT_EQ(profile.virtualUuid, "0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0");
    EXPECT_EQ(profile.solutionName, "Private Cloud 20");
}

TEST(DmiRecords, TakeTheTwoLowestFlagsOfTheEnclosureAlone) {
    struct {
        std::uint8_t flags;
        bool isBlade;
        bool isSLServer;
    } const rows[] = {{0x00, false, false}, {0x01, true, false},  {0x02, false, true},
                      {0x03, true, true},   {0xfc, false, false}, {0xff, true, true}};
    for (const auto& row : rows) {
        const ScannedDump scanned(SmbiosImage(
            concatenated({structure(0xda, 5, {1, row.flags, 0, 0}, {"KTQ"}), endOfTable()})));
        ASSERT_NE(scanned->getKTQEnclosure(), nullptr);
        EXPECT_EQ(scanned->getKTQEnclosure()->isBlade, row.isBlade) << int{row.flags};
        EXPECT_EQ(scanned->getKTQEnclosure()->isSLServer, row.isSLServer) << int{row.flags};
    }
}

TEST(DmiRecords, LeaveOutWhatTheMakersRecordsAreTooShortFor) {
    const ScannedDump scanned(SmbiosImage(concatenated(
        {structure(0xda, 5, {1}, {"KTQ"}), structure(0xdb, 6, {1}, {"KTQ"}), endOfTable()})));
    ASSERT_NE(scanned->getKTQEnclosure(), nullptr);
    EXPECT_FALSE(scanned->getKTQEnclosure()->isBlade);
    EXPECT_EQ(scanned->getKTQEnclosure()->enclosureName, "");
    EXPECT_EQ(scanned->getKTQEnclosure()->rackUuid, "");
    ASSERT_NE(scanned->getKTQServerProfile(), nullptr);
    EXPECT_EQ(scanned->getKTQServerProfile()->virtualSerialNumber, "");
    EXPECT_EQ(scanned->getKTQServerProfile()->virtualUuid, "");
}

TEST(DmiRecords, OrderTheMakersUuidsByTheVersionOfTheTable) {
    const auto rackUuid = [](std::uint8_t minor) {
        SmbiosImage image(
            concatenated({structure(0xda, 5, concatenated({{1, 1, 0, 0}, countingUuid}), {"KTQ"}),
                          endOfTable()}));
        const ScannedDump scanned(image.countIs(2).versionIs(2, minor));
        return scanned->getKTQEnclosure() ? scanned->getKTQEnclosure()->rackUuid : "no record";
    };
    EXPECT_EQ(rackUuid(5), "00112233-4455-6677-8899-aabbccddeeff");
    EXPECT_EQ(rackUuid(6), "33221100-5544-7766-8899-aabbccddeeff");
}

TEST(DmiRecords, FindTheMakersRecordsByTheirSignature) {
    const ScannedDump scanned(SmbiosImage(concatenated(
        {structure(0xda, 5, {1, 1, 0, 0}, {"Other"}), structure(0xda, 6, {1, 2, 0, 0}, {"KTQ"}),
         structure(0xdb, 7, {1, 2, 0, 0}, {"KTX", "V"}), endOfTable()})));
    ASSERT_NE(scanned->getKTQEnclosure(), nullptr);
    EXPECT_FALSE(scanned->getKTQEnclosure()->isBlade);
    EXPECT_TRUE(scanned->getKTQEnclosure()->isSLServer);
    EXPECT_EQ(scanned->getKTQServerProfile(), nullptr);
}

TEST(DmiRecords, KnowNothingOfAnotherMakersOwnRecords) {
    const ScannedDump scanned(readDump("foreign"));
    ASSERT_NE(scanned->getDmiBios(), nullptr);
    EXPECT_EQ(scanned->getDmiBios()->characteristics >> 48, 0x4000U);
    EXPECT_EQ(scanned->getDmiBios()->biosMarker, 0);
    EXPECT_EQ(scanned->getDmiBios()->newerGeneration, 0);
    EXPECT_EQ(scanned->getKTQServerSystemId(), nullptr);
    EXPECT_EQ(scanned->getKTQEnclosure(), nullptr);
    EXPECT_EQ(scanned->getKTQServerProfile(), nullptr);
}

}  // namespace
