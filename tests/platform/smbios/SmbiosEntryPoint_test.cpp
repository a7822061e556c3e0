#include "platform/smbios/SmbiosEntryPoint.h"

#include "tests/platform/smbios/SmbiosImage.h"

#include <gtest/gtest.h>

namespace {

constexpr char prefix[] = "No SMBIOS data from memory: ";

std::string errorOf(Bytes dump) { return ScannedDump(std::move(dump)).error(); }

SmbiosImage image32() { return SmbiosImage(endOfTable()).countIs(1); }
SmbiosImage image64() { return SmbiosImage(endOfTable()); }

TEST(SmbiosEntryPoint, ReadsThe32BitForm) {
    const ScannedDump scanned(image32().versionIs(2, 8));
    ASSERT_EQ(scanned.result(), 0);
    const SmbiosEntryPoint& entry = scanned->table()->entryPoint();
    EXPECT_EQ(entry.version, 0x0208);
    EXPECT_EQ(entry.tableAddress, 32U);
    EXPECT_EQ(entry.tableLength, 6U);
    EXPECT_EQ(entry.structureCount, 1);
}

TEST(SmbiosEntryPoint, ReadsThe64BitForm) {
    const ScannedDump scanned(image64().versionIs(3, 7));
    ASSERT_EQ(scanned.result(), 0);
    const SmbiosEntryPoint& entry = scanned->table()->entryPoint();
    EXPECT_EQ(entry.version, 0x0307);
    EXPECT_EQ(entry.tableAddress, 32U);
    EXPECT_EQ(entry.tableLength, 6U);
    EXPECT_EQ(entry.structureCount, std::nullopt);
}

TEST(SmbiosEntryPoint, ReadsAllOfItsNumbers) {
    // The table lies where the full address says, and is shorter than the most it may take.
    Bytes dump = image64().addressIs(0x10123).lengthIs(0x01020304).dump();
    dump.resize(0x10123);
    const ScannedDump scanned(concatenated({dump, endOfTable()}));
    ASSERT_EQ(scanned.result(), 0) << scanned.error();
    EXPECT_EQ(scanned->table()->entryPoint().tableLength, 0x01020304U);
}

TEST(SmbiosEntryPoint, AcceptsTheMisprintedLengthOfVersion21) {
    EXPECT_EQ(ScannedDump(readDump("entry21")).result(), 0);
    EXPECT_EQ(readDump("entry21").at(5), 0x1e);
}

TEST(SmbiosEntryPoint, RepairsVersionsThatFirmwareMiswrites) {
    struct Case {
        std::uint8_t minor;
        std::uint16_t version;
    };
    for (const auto& [minor, version] :
         {Case{0x1f, 0x0203}, Case{0x21, 0x0203}, Case{0x33, 0x0206}}) {
        const ScannedDump scanned(image32().versionIs(2, minor));
        ASSERT_EQ(scanned.result(), 0);
        EXPECT_EQ(scanned->table()->entryPoint().version, version);
    }
}

TEST(SmbiosEntryPoint, RefusesBytesWithoutAnAnchor) {
    const std::string expected = std::string(prefix) + "the entry point has no SMBIOS anchor";
    EXPECT_EQ(errorOf({}), expected);
    EXPECT_EQ(errorOf(Bytes(64, 0x00)), expected);
    EXPECT_EQ(errorOf(Bytes(64, 0xff)), expected);
    EXPECT_EQ(errorOf({'_', 'S', 'M'}), expected);
    EXPECT_EQ(errorOf({'_', 'D', 'M', 'I', '_'}), expected);
}

TEST(SmbiosEntryPoint, RefusesEveryPrefixOfItself) {
    for (const auto& [dump, size] :
         {std::pair{image32().dump(), 0x1fU}, {image64().dump(), 0x18U}}) {
        for (unsigned length = 5; length < size; ++length) {
            EXPECT_EQ(errorOf({dump.begin(), dump.begin() + length}),
                      std::string(prefix) + "the entry point is cut short");
        }
    }
}

TEST(SmbiosEntryPoint, RefusesAChangeOfAnyByteThatAChecksumCovers) {
    for (const auto& [dump, size] :
         {std::pair{image32().dump(), 0x1fU}, {image64().dump(), 0x18U}}) {
        for (unsigned at = 0; at < size; ++at) {
            for (unsigned bit = 0; bit < 8; ++bit) {
                Bytes changed = dump;
                changed[at] = static_cast<std::uint8_t>(changed[at] ^ 1U << bit);
                EXPECT_NE(ScannedDump(changed).result(), 0) << "byte " << at << " bit " << bit;
            }
        }
    }
}

TEST(SmbiosEntryPoint, NamesTheChecksumThatIsWrong) {
    Bytes first = image32().dump();
    first[0x04] ^= 1;
    EXPECT_EQ(errorOf(first), std::string(prefix) + "the checksum of the entry point is wrong");
    Bytes second = image32().dump();
    ++second[0x15];
    --second[0x04];
    EXPECT_EQ(errorOf(second),
              std::string(prefix) + "the checksum of the entry point's second half is wrong");
}

TEST(SmbiosEntryPoint, RefusesALengthThatDoesNotCoverIt) {
    for (const std::uint8_t length : Bytes{0x00, 0x04, 0x1d, 0x21, 0x7f, 0xff}) {
        EXPECT_EQ(errorOf(image32().set(0x05, length, 1).dump()),
                  prefix + ("the entry point gives its length as " + std::to_string(length)));
    }
    for (const std::uint8_t length : Bytes{0x00, 0x17, 0x21, 0xff}) {
        EXPECT_EQ(errorOf(image64().set(0x06, length, 1).dump()),
                  prefix + ("the entry point gives its length as " + std::to_string(length)));
    }
}

TEST(SmbiosEntryPoint, RefusesAStatedLengthBeyondTheBytes) {
    Bytes dump = image32().set(0x05, 0x20, 1).dump();
    dump.resize(0x1f);
    EXPECT_EQ(errorOf(dump), std::string(prefix) + "the entry point is cut short");
}

TEST(SmbiosEntryPoint, RefusesA32BitFormWithoutItsSecondAnchor) {
    EXPECT_EQ(errorOf(image32().set(0x11, 'd', 1).dump()),
              std::string(prefix) + "the entry point lacks its second anchor");
}

}  // namespace
