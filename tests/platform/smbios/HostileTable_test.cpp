// Whole tables that lie, in exact-size heap blocks, so that a sanitizer sees every read outside.

#include "tests/platform/smbios/SmbiosImage.h"

#include <gtest/gtest.h>

namespace {

/// Every accessor, so that a wrong span is read and not only made.
void readEverything(const SmBios& smbios) {
    for (const SmbiosRecord& record : smbios.table()->records()) {
        for (std::size_t offset = 0; offset < 260; ++offset) {
            static_cast<void>(record.string(offset).size());
            static_cast<void>(record.quadWord(offset));
        }
        std::size_t total = 0;
        for (const std::string_view text : record.strings()) total += std::string(text).size();
        EXPECT_LE(total, 65536U);
    }
}

/// A scan either succeeds without an error line or fails with one, and then has no records.
void expectAnHonestAnswer(const Bytes& dump, const std::string& what) {
    const ScannedDump scanned(dump);
    if (scanned.result() == 0) {
        EXPECT_EQ(scanned.errors().size(), 0U) << what;
        readEverything(*scanned);
    } else {
        EXPECT_EQ(scanned.errors().size(), 1U) << what;
        EXPECT_EQ(scanned->table(), nullptr) << what;
        EXPECT_EQ(scanned->getDmiSystem(), nullptr) << what;
    }
}

class HostileTable : public testing::TestWithParam<const char*> {};

TEST_P(HostileTable, FailsInEveryPrefix) {
    const Bytes dump = readDump(GetParam());
    ASSERT_EQ(ScannedDump(dump).result(), 0);
    for (std::size_t size = 0; size < dump.size(); ++size) {
        const Bytes prefix(dump.begin(), dump.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_NE(ScannedDump(prefix).result(), 0) << size;
        expectAnHonestAnswer(prefix, "prefix " + std::to_string(size));
    }
}

TEST_P(HostileTable, AnswersHonestlyToEveryChangeOfOneByte) {
    const Bytes dump = readDump(GetParam());
    for (std::size_t at = 0; at < dump.size(); ++at) {
        for (const std::uint8_t value : Bytes{0x00, 0x7f, 0x80, 0xff}) {
            Bytes changed = dump;
            changed[at] = value;
            expectAnHonestAnswer(changed, std::to_string(at) + " = " + std::to_string(value));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Machines, HostileTable, testing::Values("wavej", "entry21", "entry30"),
                         [](const auto& machine) { return std::string(machine.param); });

TEST(HostileTables, AnswersHonestlyToTablesOfOneByteValue) {
    for (const std::size_t size : {64U, 65535U}) {
        for (const unsigned value : {0x00U, 0x01U, 0x04U, 0x7fU, 0x80U, 0xffU}) {
            const Bytes table(size, static_cast<std::uint8_t>(value));
            const ScannedDump scanned{SmbiosImage(table)};
            EXPECT_NE(scanned.result(), 0) << value;
            expectAnHonestAnswer(SmbiosImage(table).dump(), "long form");
            expectAnHonestAnswer(SmbiosImage(table).countIs(1).dump(), "short form");
            expectAnHonestAnswer(SmbiosImage(table).countIs(0).dump(), "no structures");
        }
    }
}

TEST(HostileTables, TakesAFullTableOfTheSmallestStructures) {
    Bytes table;
    for (int number = 0; number < 10'000; ++number) {
        const Bytes record = structure(0xd8, 1);
        table.insert(table.end(), record.begin(), record.end());
    }
    const Bytes end = endOfTable();
    table.insert(table.end(), end.begin(), end.end());
    const ScannedDump scanned{SmbiosImage(table).countIs(10'001)};
    ASSERT_EQ(scanned.result(), 0);
    EXPECT_EQ(scanned->table()->records().size(), 10'001U);
}

TEST(HostileTables, TakesStructuresThatAllHaveOneHandle) {
    Bytes table;
    const Bytes record = structure(200, 0xffff);
    for (int number = 0; number < 65'535; ++number) {
        table.insert(table.end(), record.begin(), record.end());
    }
    const Bytes end = endOfTable();
    table.insert(table.end(), end.begin(), end.end());
    const ScannedDump scanned{SmbiosImage(table)};
    ASSERT_EQ(scanned.result(), 0);
    EXPECT_EQ(scanned->table()->records().size(), 65'536U);
    EXPECT_EQ(scanned.warnings().size(), 0U) << "a count that is not stated cannot be wrong";
}

TEST(HostileTables, TakesOneStructureWithManyStrings) {
    Bytes table{200, 5, 0, 0, 255};
    for (int number = 0; number < 30'000; ++number) {
        table.push_back('x');
        table.push_back(0);
    }
    table.push_back(0);
    const Bytes end = endOfTable();
    table.insert(table.end(), end.begin(), end.end());
    const ScannedDump scanned{SmbiosImage(table)};
    ASSERT_EQ(scanned.result(), 0);
    EXPECT_EQ(scanned->table()->records()[0].strings().size(), 30'000U);
    EXPECT_EQ(scanned->table()->records()[0].string(4), "x");
}

}  // namespace
