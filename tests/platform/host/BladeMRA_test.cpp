#include "platform/host/BladeMRA.h"

#include "platform/host/HostSource.h"
#include "tests/platform/smbios/SmbiosImage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using Data = BladeMRADataObject;
using Getter = MRAStatusEnum (Data::*)(std::string&) const;

struct Blade : testing::Test {
    ~Blade() override { SmBios::setSource(nullptr); }

    static void firmwareIs(const std::string& machine) {
        SmBios::setSource(std::make_shared<SmbiosDumpFile>(dumpPath(machine)));
    }
    static void tableIs(const Bytes& record) {
        SmBios::setSource(std::make_shared<SmbiosMemory>(
            SmbiosImage(concatenated({record, endOfTable()})).dump()));
    }
    static void firmwareIsUnreadable() {
        SmBios::setSource(std::make_shared<SmbiosMemory>(Bytes()));
    }

    MRAStatusEnum fill() { return HostSource(log).getEnclosureData(data); }

    /// What a getter fills in, or "(absent)" when it answers so and leaves its argument alone.
    std::string get(Getter getter) const {
        std::string value = "untouched";
        const MRAStatusEnum status = (data.*getter)(value);
        if (status == MRA_STATUS_SUCCESS) return value;
        const bool honest = status == MRA_STATUS_DATA_NOT_AVAILABLE && value == "untouched";
        return honest ? "(absent)" : "(status " + std::to_string(status) + ", " + value + ")";
    }
    void expectNoEnclosure() const {
        EXPECT_FALSE(data.isBlade());
        EXPECT_FALSE(data.isSLServer());
        for (const Getter getter :
             {&Data::getEnclosureName, &Data::getRackName, &Data::getRackUUID}) {
            EXPECT_EQ(get(getter), "(absent)");
        }
    }

    std::shared_ptr<CapturingSink> sink = std::make_shared<CapturingSink>();
    Logger log{"blade", sink};
    Data data{log};
};

TEST_F(Blade, HasNoEnclosureBeforeItIsFilled) { expectNoEnclosure(); }

TEST_F(Blade, TellsTheEnclosureOfABlade) {
    firmwareIs("blade");
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    EXPECT_TRUE(data.isBlade());
    EXPECT_FALSE(data.isSLServer());
    EXPECT_EQ(get(&Data::getEnclosureName), "enc-7");
    EXPECT_EQ(get(&Data::getRackName), "rack-B");
    EXPECT_EQ(get(&Data::getRackUUID), "00112233-4455-6677-8899-aabbccddeeff");
    EXPECT_THAT(sink->messages(), testing::IsEmpty());
}

TEST_F(Blade, KnowsServersOfTheSLLine) {
    firmwareIs("sl-blade");
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    EXPECT_TRUE(data.isBlade());
    EXPECT_TRUE(data.isSLServer());
    EXPECT_EQ(get(&Data::getEnclosureName), "sl-chassis-2");
}

TEST_F(Blade, TakesAServerWithoutTheRecordForNoBlade) {
    for (const auto* const machine : {"wavek", "foreign", "empty"}) {
        firmwareIs("blade");
        ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
        firmwareIs(machine);
        ASSERT_EQ(fill(), MRA_STATUS_SUCCESS) << machine;
        expectNoEnclosure();
    }
}

TEST_F(Blade, InventsNothingThatTheRecordLeavesBlank) {
    tableIs(structure(0xda, 5, {1, 1, 2, 0}, {"KTQ", "   "}));
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    EXPECT_TRUE(data.isBlade());
    for (const Getter getter : {&Data::getEnclosureName, &Data::getRackName, &Data::getRackUUID}) {
        EXPECT_EQ(get(getter), "(absent)");
    }
}

TEST_F(Blade, FailsAndKeepsItsDataWhenTheFirmwareCannotBeRead) {
    firmwareIs("blade");
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    firmwareIsUnreadable();
    EXPECT_EQ(fill(), MRA_STATUS_FAILED);
    EXPECT_EQ(sink->messages(LogLevel::error).size(), 1U) << "of the scan";
    EXPECT_TRUE(data.isBlade());
    EXPECT_EQ(get(&Data::getEnclosureName), "enc-7");
}

TEST_F(Blade, FactoryMakesASourceOfThisHost) {
    firmwareIs("blade");
    const std::unique_ptr<BladeMRA> source(BladeMRAFactory(log));
    ASSERT_NE(source, nullptr);
    ASSERT_EQ(source->getEnclosureData(data), MRA_STATUS_SUCCESS);
    EXPECT_EQ(get(&Data::getRackName), "rack-B");
}

}  // namespace
