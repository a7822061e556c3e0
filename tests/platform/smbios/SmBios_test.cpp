#include "platform/smbios/SmBios.h"

#include "tests/platform/smbios/SmbiosImage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace {

using testing::IsEmpty;
using testing::StartsWith;

class SmBiosTest : public testing::Test {
protected:
    ~SmBiosTest() override { SmBios::setSource(nullptr); }

    static std::shared_ptr<const SmbiosSource> memoryOf(const std::string& machine) {
        return std::make_shared<SmbiosMemory>(readDump(machine));
    }

    std::shared_ptr<CapturingSink> _sink = std::make_shared<CapturingSink>();
    Logger _log{"smbios", _sink};
};

TEST_F(SmBiosTest, HasNothingBeforeItsFirstScan) {
    const SmBios smbios(_log, memoryOf("wavek"));
    EXPECT_EQ(smbios.table(), nullptr);
    EXPECT_EQ(smbios.getDmiBios(), nullptr);
    EXPECT_EQ(smbios.getDmiSystem(), nullptr);
    EXPECT_EQ(smbios.getDmiBaseboard(), nullptr);
    EXPECT_EQ(smbios.getDmiChassis(), nullptr);
    EXPECT_EQ(smbios.getKTQServerSystemId(), nullptr);
}

TEST_F(SmBiosTest, GivesAllRecordsOfAGoodTableAndLogsNothing) {
    SmBios smbios(_log, memoryOf("wavek"));
    EXPECT_EQ(smbios.scan(), 0);
    EXPECT_NE(smbios.table(), nullptr);
    EXPECT_NE(smbios.getDmiBios(), nullptr);
    EXPECT_NE(smbios.getDmiSystem(), nullptr);
    EXPECT_NE(smbios.getDmiBaseboard(), nullptr);
    EXPECT_NE(smbios.getDmiChassis(), nullptr);
    ASSERT_NE(smbios.getKTQServerSystemId(), nullptr);
    EXPECT_EQ(smbios.getKTQServerSystemId()->identifier, "KTQ-K-0002");
    EXPECT_THAT(_sink->messages(), IsEmpty());
}

TEST_F(SmBiosTest, GivesNoRecordsThatTheTableDoesNotHave) {
    SmBios smbios(_log, memoryOf("empty"));
    EXPECT_EQ(smbios.scan(), 0);
    EXPECT_NE(smbios.table(), nullptr);
    EXPECT_EQ(smbios.getDmiBios(), nullptr);
    EXPECT_EQ(smbios.getDmiSystem(), nullptr);
    EXPECT_EQ(smbios.getDmiBaseboard(), nullptr);
    EXPECT_EQ(smbios.getDmiChassis(), nullptr);
    EXPECT_EQ(smbios.getKTQServerSystemId(), nullptr);
}

TEST_F(SmBiosTest, ForgetsAnEarlierScanWhenALaterOneFails) {
    class FailingLater : public SmbiosMemory {
    public:
        using SmbiosMemory::SmbiosMemory;
        Bytes entryPoint() const override {
            if (_read) throw SmbiosError("unplugged");
            _read = true;
            return SmbiosMemory::entryPoint();
        }

    private:
        mutable bool _read = false;
    };
    SmBios smbios(_log, std::make_shared<FailingLater>(readDump("wavej")));
    EXPECT_EQ(smbios.scan(), 0);
    EXPECT_NE(smbios.scan(), 0);
    EXPECT_EQ(smbios.getDmiSystem(), nullptr);
    EXPECT_EQ(smbios.table(), nullptr);
    EXPECT_THAT(_sink->messages(LogLevel::error),
                testing::ElementsAre("No SMBIOS data from memory: unplugged"));
}

TEST_F(SmBiosTest, ReadsTheKernelsTablesUnlessToldOtherwise) {
    SmBios smbios(_log);
    if (smbios.scan() == 0) {
        EXPECT_NE(smbios.table(), nullptr);
    } else {
        EXPECT_THAT(
            _sink->messages(),
            testing::ElementsAre(StartsWith("No SMBIOS data from /sys/firmware/dmi/tables: ")));
    }
}

TEST_F(SmBiosTest, ReadsTheSourceOfTheProcessOnceItIsSet) {
    SmBios::setSource(std::make_shared<SmbiosDumpFile>(dumpPath("wavej")));
    SmBios smbios(_log);
    ASSERT_EQ(smbios.scan(), 0);
    EXPECT_EQ(smbios.getDmiSystem()->productName, "Server Wave 300 J");
}

TEST_F(SmBiosTest, KeepsTheSourceThatItWasMadeWith) {
    SmBios::setSource(memoryOf("wavej"));
    SmBios smbios(_log);
    SmBios::setSource(memoryOf("wavek"));
    ASSERT_EQ(smbios.scan(), 0);
    EXPECT_EQ(smbios.getDmiSystem()->productName, "Server Wave 300 J");
}

TEST_F(SmBiosTest, ServesReadersOfSeveralThreadsWhileTheSourceChanges) {
    SmBios::setSource(memoryOf("wavej"));
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([this, number] {
            for (int round = 0; round < 50; ++round) {
                if (number == 0) SmBios::setSource(memoryOf(round % 2 ? "wavej" : "wavek"));
                SmBios smbios(_log);
                EXPECT_EQ(smbios.scan(), 0);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

}  // namespace
