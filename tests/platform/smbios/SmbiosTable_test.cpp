#include "platform/smbios/SmbiosTable.h"

#include "tests/platform/smbios/SmbiosImage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string errorOf(const SmbiosImage& image) {
    const std::string prefix = "No SMBIOS data from memory: ";
    const std::string error = ScannedDump(image).error();
    return error.starts_with(prefix) ? error.substr(prefix.size()) : error;
}

TEST(SmbiosTable, GivesItsStructuresInOrder) {
    const ScannedDump scanned(SmbiosImage(
        concatenated({structure(1, 0x1234, {1}, {"a"}), structure(200, 7), endOfTable()})));
    ASSERT_EQ(scanned.result(), 0);
    const auto records = scanned->table()->records();
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[0].type(), 1);
    EXPECT_EQ(records[0].handle(), 0x1234);
    EXPECT_EQ(records[0].length(), 5);
    EXPECT_EQ(records[1].type(), 200);
    EXPECT_EQ(records[1].handle(), 7);
    EXPECT_EQ(records[2].type(), SmbiosTable::endOfTable);
}

TEST(SmbiosTable, FindsTheFirstStructureOfAType) {
    const ScannedDump scanned(
        SmbiosImage(concatenated({structure(9, 1), structure(9, 2), endOfTable()})));
    ASSERT_EQ(scanned.result(), 0);
    EXPECT_EQ(scanned->table()->findType(9)->handle(), 1);
    EXPECT_EQ(scanned->table()->findType(10), nullptr);
}

TEST(SmbiosTable, ReadsLittleEndianFieldsUpToTheEndOfTheFormattedArea) {
    const Bytes fields{0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x88};
    const ScannedDump scanned(SmbiosImage(concatenated({structure(200, 1, fields), endOfTable()})));
    const SmbiosRecord& record = scanned->table()->records()[0];
    EXPECT_EQ(record.byte(4), 0x01);
    EXPECT_EQ(record.byte(11), 0x88);
    EXPECT_EQ(record.byte(12), std::nullopt);
    EXPECT_EQ(record.word(10), 0x8807);
    EXPECT_EQ(record.word(11), std::nullopt);
    EXPECT_EQ(record.doubleWord(8), 0x88070605U);
    EXPECT_EQ(record.doubleWord(9), std::nullopt);
    EXPECT_EQ(record.quadWord(4), 0x8807060504030201U);
    EXPECT_EQ(record.quadWord(5), std::nullopt);
    EXPECT_EQ(record.byte(SIZE_MAX), std::nullopt);
    EXPECT_EQ(record.quadWord(SIZE_MAX - 3), std::nullopt);
}

TEST(SmbiosTable, FindsStringsByTheirNumber) {
    const ScannedDump scanned(SmbiosImage(
        concatenated({structure(200, 1, {2, 1, 0, 3, 255}, {"first", "second"}), endOfTable()})));
    const SmbiosRecord& record = scanned->table()->records()[0];
    EXPECT_THAT(record.strings(), ElementsAre("first", "second"));
    EXPECT_EQ(record.string(4), "second");
    EXPECT_EQ(record.string(5), "first");
    EXPECT_EQ(record.string(6), "") << "number 0";
    EXPECT_EQ(record.string(7), "") << "one too many";
    EXPECT_EQ(record.string(8), "") << "number 255";
    EXPECT_EQ(record.string(9), "") << "beyond the formatted area";
}

TEST(SmbiosTable, GivesNoStringsWhereThereAreNone) {
    const ScannedDump scanned(SmbiosImage(concatenated({structure(200, 1, {1}), endOfTable()})));
    EXPECT_THAT(scanned->table()->records()[0].strings(), IsEmpty());
    EXPECT_EQ(scanned->table()->records()[0].string(4), "");
}

TEST(SmbiosTable, StaysWithItsRecordsWhenMoved) {
    const auto bytes = concatenated({structure(200, 1, {1}, {"text"}), endOfTable()});
    const ScannedDump scanned{SmbiosImage(bytes)};
    EXPECT_EQ(scanned->table()->records()[0].string(4), "text");
}

TEST(SmbiosTable, StopsAtTheEndOfTableStructure) {
    const ScannedDump scanned(
        SmbiosImage(concatenated({structure(1, 1), endOfTable(), {0xff, 0x00, 0x11}})));
    EXPECT_EQ(scanned.result(), 0);
    EXPECT_EQ(scanned->table()->records().size(), 2U);
}

TEST(SmbiosTable, RefusesAStructureShorterThanItsHeader) {
    for (const std::uint8_t length : Bytes{0, 1, 2, 3}) {
        EXPECT_EQ(errorOf(SmbiosImage(
                      concatenated({structure(1, 1), {2, length, 0, 0, 0, 0}, endOfTable()}))),
                  "the structure at offset 6 gives its length as " + std::to_string(length));
    }
}

TEST(SmbiosTable, StopsAtARecordThatRunsPastTheTable) {
    EXPECT_EQ(errorOf(SmbiosImage({200, 9, 0, 0, 1, 2, 0, 0})),
              "the structure at offset 0 runs past the end of the table");
    EXPECT_EQ(errorOf(SmbiosImage(concatenated({structure(1, 1), {200, 255, 0, 0}}))),
              "the structure at offset 6 runs past the end of the table");
}

TEST(SmbiosTable, RefusesStringsThatDoNotEnd) {
    const std::string expected =
        "the structure at offset 0 has strings that run past the end of the table";
    EXPECT_EQ(errorOf(SmbiosImage({200, 4, 0, 0})), expected);
    EXPECT_EQ(errorOf(SmbiosImage({200, 4, 0, 0, 0})), expected);
    EXPECT_EQ(errorOf(SmbiosImage({200, 4, 0, 0, 'a', 'b'})), expected);
    EXPECT_EQ(errorOf(SmbiosImage({200, 4, 0, 0, 'a', 'b', 0})), expected);
    EXPECT_EQ(errorOf(SmbiosImage({200, 4, 0, 0, 0, 'a', 0, 'b'})), expected);
}

TEST(SmbiosTable, RefusesATableThatStopsInAHeader) {
    EXPECT_EQ(errorOf(SmbiosImage(concatenated({structure(1, 1), {127, 4, 0}}))),
              "the structure at offset 6 is cut short in its header");
}

TEST(SmbiosTable, RefusesATableWithoutAnEndMark) {
    EXPECT_EQ(errorOf(SmbiosImage(concatenated({structure(1, 1), structure(2, 2)}))),
              "the table ends after 2 structures without an end mark");
}

TEST(SmbiosTable, RefusesATableWithoutStructures) {
    const std::string expected = "the table ends after 0 structures without an end mark";
    EXPECT_EQ(errorOf(SmbiosImage(Bytes{})), expected);
    EXPECT_EQ(errorOf(SmbiosImage(Bytes{}).countIs(0)), expected);
    EXPECT_EQ(errorOf(SmbiosImage(endOfTable()).lengthIs(0)), expected);
    EXPECT_EQ(errorOf(SmbiosImage(endOfTable()).addressIs(38)), expected);
    EXPECT_EQ(errorOf(SmbiosImage(endOfTable()).addressIs(UINT64_MAX)), expected);
}

TEST(SmbiosTable, TakesAStatedCountInPlaceOfAnEndMark) {
    const auto table = concatenated({structure(1, 1), structure(2, 2)});
    const ScannedDump scanned(SmbiosImage(table).countIs(2));
    EXPECT_EQ(scanned.result(), 0);
    EXPECT_THAT(scanned.warnings(), IsEmpty());
    EXPECT_EQ(errorOf(SmbiosImage(table).countIs(3)),
              "the table ends after 2 structures without an end mark");
}

TEST(SmbiosTable, IgnoresPaddingAfterTheCountedStructures) {
    for (const std::uint8_t filler : Bytes{0x00, 0xff}) {
        const ScannedDump scanned(
            SmbiosImage(concatenated({structure(1, 1), Bytes(64, filler)})).countIs(1));
        EXPECT_EQ(scanned.result(), 0) << scanned.error();
        EXPECT_EQ(scanned->table()->records().size(), 1U);
        EXPECT_THAT(scanned.warnings(), IsEmpty());
    }
}

TEST(SmbiosTable, ReadsToTheEndMarkAndWarnsOfAWrongCount) {
    const auto table = concatenated({structure(1, 1), structure(2, 2), endOfTable()});
    for (const std::uint16_t count : std::vector<std::uint16_t>{0, 1, 4, 0xffff}) {
        const ScannedDump scanned(SmbiosImage(table).countIs(count));
        EXPECT_EQ(scanned.result(), 0);
        EXPECT_EQ(scanned->table()->records().size(), 3U);
        EXPECT_THAT(scanned.warnings(),
                    ElementsAre("The SMBIOS entry point of memory counts " + std::to_string(count) +
                                " structures, its table holds 3"));
        EXPECT_THAT(scanned.errors(), IsEmpty());
    }
}

TEST(SmbiosTable, ReadsNoFurtherThanTheStatedLength) {
    const auto table = concatenated({structure(1, 1), structure(2, 2), endOfTable()});
    EXPECT_EQ(errorOf(SmbiosImage(table).lengthIs(12)),
              "the table ends after 2 structures without an end mark");
    EXPECT_EQ(errorOf(SmbiosImage(table).lengthIs(9)),
              "the structure at offset 6 is cut short in its header");
}

TEST(SmbiosTable, TakesTheLengthOfTheLongFormAsAnUpperBound) {
    EXPECT_EQ(ScannedDump(SmbiosImage(endOfTable()).lengthIs(UINT32_MAX)).result(), 0);
}

}  // namespace
