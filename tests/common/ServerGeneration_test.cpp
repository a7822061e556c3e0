// The facts of PYLUtil about the server's kind, from the tables of several machines.

#include "common/PYLUtil.h"
#include "platform/smbios/SmBios.h"
#include "tests/platform/smbios/SmbiosImage.h"
#include "tests/support/FreshProcess.h"
#include "tests/support/Journal.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

namespace {

using PYL::PYLUtil;

const std::string noScan = "warning: Could not find SMBios, ensure root permission";
const std::string noSystem = "warning: Could not find SMBios DMISystem Element";
const std::string noBios = "warning: Could not find SMBios DMIBios Element";
const std::string scanning =
    "information: serverSystemIdString is empty.  Scanning from SmBios....";
const std::string known = "information: serverSystemIdstring already set. Skipped SmBios Scan.";

/// A BIOS record of the maker, with its marker word in the upper bits of the characteristics.
Bytes bios(std::uint16_t marker = 0) {
    Bytes fields(0x14, 0);
    fields[0] = 1;
    fields[0x0c] = static_cast<std::uint8_t>(marker & 0xff);
    fields[0x0d] = static_cast<std::uint8_t>(marker >> 8);
    return structure(0, 0, fields, {"KT"});
}

Bytes firmware(std::uint8_t newer) { return structure(0xd8, 9, {1, newer}, {"KTQ"}); }

Bytes identifier(std::string_view text) {
    if (text.empty()) return structure(0xd9, 10, {1, 0}, {"KTQ"});
    return structure(0xd9, 10, {1, 2}, {"KTQ", text});
}

Bytes machine(std::string_view manufacturer, std::string_view product) {
    Bytes fields(0x17, 0);
    std::uint8_t number = 0;
    std::vector<std::string_view> texts;
    for (const auto& [offset, text] : {std::pair{0, manufacturer}, std::pair{1, product}}) {
        if (text.empty()) continue;
        fields[static_cast<std::size_t>(offset)] = ++number;
        texts.push_back(text);
    }
    if (texts.empty()) return structure(1, 1, fields);
    if (texts.size() == 1) return structure(1, 1, fields, {texts[0]});
    return structure(1, 1, fields, {texts[0], texts[1]});
}

struct ServerGeneration : testing::Test {
    ~ServerGeneration() override { SmBios::setSource(nullptr); }

    static void dumpIs(const std::string& name) {
        SmBios::setSource(std::make_shared<SmbiosDumpFile>(dumpPath(name)));
    }
    static void tableIs(std::initializer_list<Bytes> records) {
        auto table = concatenated(records);
        const auto end = endOfTable();
        table.insert(table.end(), end.begin(), end.end());
        SmBios::setSource(std::make_shared<SmbiosMemory>(SmbiosImage(table).dump()));
    }
    static void unreadable() { SmBios::setSource(std::make_shared<SmbiosMemory>(Bytes())); }

    /// The lines but for those in which the reader itself says what is wrong with a table.
    Lines lines() {
        auto all = log.journal->take();
        std::erase_if(all, [](const auto& line) { return line.starts_with("error: No SMBIOS"); });
        return all;
    }

    bool isWaveJ() { return PYLUtil::isWaveJServer(log.logger); }
    bool isAgentlessOnly() { return PYLUtil::isAgentlessOnlyServer(log.logger); }
    std::string serverSystemId() { return PYLUtil::getServerSystemId(log.logger); }

    JournalLog log;
};

TEST_F(ServerGeneration, TellsWaveJServersByNameOrByMarker) {
    for (const auto& [dump, answer] :
         {std::pair{"wavej", true}, std::pair{"wavej-marker", true}, std::pair{"wavek", false},
          std::pair{"wavek-marker", false}, std::pair{"entry30", false}}) {
        dumpIs(dump);
        EXPECT_EQ(isWaveJ(), answer) << dump;
    }
    EXPECT_EQ(lines(), Lines{});
}

TEST_F(ServerGeneration, WantsAJAnywhereAfterWave) {
    struct {
        const char* product;
        bool answer;
    } const rows[] = {
        {"WAVEJ", true},
        {"wave j", true},
        {"SERVER WAVEK", false},
        {"WAVEK J", true},
        {"Wave 300 gen j", true},
        {"J WAVE", false},
        {"JWAVE", false},
        {"WAV EJ", false},
        {"WAVE", false},
        {"WAVEWAVEJ", true},
        {"", false},
        {"J", false},
        {"w\xC3\xA4ve j", false},
    };
    for (const auto& row : rows) {
        tableIs({bios(), machine("KT", row.product)});
        EXPECT_EQ(isWaveJ(), row.answer) << row.product;
    }
}

TEST_F(ServerGeneration, WantsExactlyTheMarkerOfWaveJ) {
    for (int marker : {0x0000, 0x4000, 0x4001, 0xC000, 0x0040, 0x8000}) {
        tableIs({bios(static_cast<std::uint16_t>(marker)), machine("KT", "SERVER"), firmware(0)});
        EXPECT_EQ(isWaveJ(), marker == 0x4000) << marker;
    }
}

TEST_F(ServerGeneration, LooksAtTheMarkerOfAServerThatTellsNoName) {
    tableIs({bios(0x4000), firmware(0)});
    EXPECT_TRUE(isWaveJ());
    EXPECT_EQ(lines(), Lines{noSystem});
}

TEST_F(ServerGeneration, IsNoWaveJWithoutAnyRecord) {
    tableIs({});
    EXPECT_FALSE(isWaveJ());
    EXPECT_EQ(lines(), (Lines{noSystem, noBios}));
    tableIs({machine("KT", "WAVE")});
    EXPECT_FALSE(isWaveJ());
    EXPECT_EQ(lines(), Lines{noBios});
    tableIs({machine("KT", "WAVE J")});
    EXPECT_TRUE(isWaveJ());
    EXPECT_EQ(lines(), Lines{});
}

TEST_F(ServerGeneration, IsNoWaveJWhereTheTableCannotBeRead) {
    unreadable();
    EXPECT_FALSE(isWaveJ());
    EXPECT_EQ(lines(), Lines{noScan});
    dumpIs("wavej");  // nothing was kept
    EXPECT_TRUE(isWaveJ());
}

TEST_F(ServerGeneration, TellsAgentlessServersByNameOrByMarker) {
    for (const auto& [dump, answer] :
         {std::pair{"wavek", true}, std::pair{"wavek-marker", true}, std::pair{"wavej", false},
          std::pair{"wavej-marker", false}, std::pair{"foreign", false}}) {
        dumpIs(dump);
        inFreshProcess([&, answer = answer] {
            EXPECT_EQ(isAgentlessOnly(), answer);
            EXPECT_EQ(lines(), Lines{});
        });
    }
}

TEST_F(ServerGeneration, WantsTheMakersNameWholeAndWaveKAnywhere) {
    struct {
        const char* manufacturer;
        const char* product;
        bool answer;
    } const rows[] = {
        {"KT", "WAVEK", true},      {"kte", "my waveK 4", true}, {"Kt", "xWaVeKx", true},
        {"KT Inc", "WAVEK", false}, {"KTEE", "WAVEK", false},    {"K", "WAVEK", false},
        {" KT", "WAVEK", false},    {"KT", "WAVE K", false},     {"KT", "", false},
        {"", "WAVEK", false},
    };
    for (const auto& row : rows) {
        tableIs({bios(), machine(row.manufacturer, row.product)});
        inFreshProcess([&] {
            EXPECT_EQ(isAgentlessOnly(), row.answer) << row.manufacturer << ", " << row.product;
        });
    }
}

TEST_F(ServerGeneration, BelievesTheMarkerWhateverTheNames) {
    tableIs({bios(), machine("KT Inc", "SERVER"), firmware(1)});
    inFreshProcess([&] { EXPECT_TRUE(isAgentlessOnly()); });
    tableIs({bios(), firmware(0xff)});
    inFreshProcess([&] {
        EXPECT_TRUE(isAgentlessOnly());
        EXPECT_EQ(lines(), Lines{});
    });
}

TEST_F(ServerGeneration, SaysWhichRecordsAnAgentlessServerLacks) {
    tableIs({});
    inFreshProcess([&] {
        EXPECT_FALSE(isAgentlessOnly());
        EXPECT_EQ(lines(), (Lines{noBios, noSystem}));
    });
    tableIs({machine("KT", "WAVEK")});
    inFreshProcess([&] {
        EXPECT_TRUE(isAgentlessOnly());
        EXPECT_EQ(lines(), Lines{noBios});
    });
}

TEST_F(ServerGeneration, ScansAgainAfterAScanThatFailedAndNeverAfterOneThatSucceeded) {
    inFreshProcess([&] {
        unreadable();
        EXPECT_FALSE(isAgentlessOnly());
        EXPECT_FALSE(isAgentlessOnly());
        EXPECT_EQ(lines(), (Lines{noScan, noScan}));
        dumpIs("wavek");
        EXPECT_TRUE(isAgentlessOnly());
        unreadable();
        EXPECT_TRUE(isAgentlessOnly());
        EXPECT_EQ(lines(), Lines{});
    });
    inFreshProcess([&] {
        dumpIs("empty");
        EXPECT_FALSE(isAgentlessOnly());
        dumpIs("wavek");
        EXPECT_FALSE(isAgentlessOnly());
        EXPECT_EQ(lines(), (Lines{noBios, noSystem}));
    });
}

/// A source that lets nobody go on until two readers have met in it.
class MeetingSource : public SmbiosMemory {
public:
    using SmbiosMemory::SmbiosMemory;
    Bytes table(std::uint64_t address, std::size_t length) const override {
        ++_readers;
        while (_readers < 2) std::this_thread::yield();
        return SmbiosMemory::table(address, length);
    }

private:
    mutable std::atomic<int> _readers = 0;
};

TEST_F(ServerGeneration, NeverAnswersAnythingElseToCallersThatComeTogether) {
    for (int turn = 0; turn < 20; ++turn) {
        inFreshProcess([&] {
            SmBios::setSource(std::make_shared<MeetingSource>(readDump("wavek")));
            std::atomic<int> agentless = 0;
            std::vector<std::thread> threads;
            for (int i = 0; i < 8; ++i) {
                threads.emplace_back([&] {
                    bool always = true;
                    for (int calls = 0; calls < 200; ++calls) always = isAgentlessOnly() && always;
                    agentless += always ? 1 : 0;
                });
            }
            for (auto& thread : threads) thread.join();
            EXPECT_EQ(agentless, 8);
        });
    }
}

TEST_F(ServerGeneration, KeepsTheServerSystemIdentifierOnceFound) {
    inFreshProcess([&] {
        dumpIs("wavek");
        EXPECT_EQ(serverSystemId(), "KTQ-K-0002");
        unreadable();
        EXPECT_EQ(serverSystemId(), "KTQ-K-0002");
        dumpIs("wavej");
        EXPECT_EQ(serverSystemId(), "KTQ-K-0002");
        EXPECT_EQ(lines(), (Lines{scanning, known, known}));
    });
}

TEST_F(ServerGeneration, LooksForTheServerSystemIdentifierAgainUntilItIsFound) {
    inFreshProcess([&] {
        unreadable();
        EXPECT_EQ(serverSystemId(), "");
        dumpIs("foreign");
        EXPECT_EQ(serverSystemId(), "");
        tableIs({identifier("")});
        EXPECT_EQ(serverSystemId(), "");
        tableIs({identifier("   ")});
        EXPECT_EQ(serverSystemId(), "");
        tableIs({identifier("late")});
        EXPECT_EQ(serverSystemId(), "late");
        EXPECT_EQ(serverSystemId(), "late");
        EXPECT_EQ(lines(), (Lines{scanning, scanning, scanning, scanning, scanning, known}));
    });
}

TEST_F(ServerGeneration, AgreesOnOneIdentifierWithCallersThatComeTogether) {
    inFreshProcess([&] {
        SmBios::setSource(std::make_shared<MeetingSource>(readDump("wavek")));
        std::atomic<int> found = 0;
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&] { found += serverSystemId() == "KTQ-K-0002" ? 1 : 0; });
        }
        for (auto& thread : threads) thread.join();
        EXPECT_EQ(found, 8);
    });
}

}  // namespace
