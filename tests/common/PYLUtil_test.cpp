#include "common/PYLUtil.h"

#include "platform/smbios/SmBios.h"
#include "testing/cimhost/testing/FaultyBroker.h"
#include "testing/cimhost/testing/HostName.h"
#include "tests/common/Failures.h"
#include "tests/support/Journal.h"
#include "tests/support/TestBroker.h"

#include <gtest/gtest.h>

#include <climits>
#include <type_traits>

namespace {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiObjectPath;
using PYL::PYLUtil;

static_assert(!std::is_default_constructible_v<PYLUtil>);

const std::string unreadableName = "Host Name Not Defined!";

TEST(HostName, IsWhatTheSystemAnswersNow) {
    EXPECT_EQ(PYLUtil::getHostName(), "server-1");
    const cimtest::HostNameIs renamed("server-2.example.com");
    EXPECT_EQ(PYLUtil::getHostName(), "server-2.example.com");
}

TEST(HostName, HasAFallbackWhenItCannotBeRead) {
    const cimtest::HostNameIs unreadable(std::nullopt);
    EXPECT_EQ(PYLUtil::getHostName(), unreadableName);
}

TEST(HostName, EndsWithinTheBufferHoweverLongItIs) {
    for (std::size_t length : {253U, 254U, 255U, 300U}) {
        const cimtest::HostNameIs renamed(std::string(length, 'h'));
        EXPECT_EQ(PYLUtil::getHostName(), std::string(std::min(length, std::size_t{255}), 'h'));
    }
}

TEST(HostName, MayBeEmpty) {
    const cimtest::HostNameIs renamed("");
    EXPECT_EQ(PYLUtil::getHostName(), "");
}

TEST(PYLUtil, NamesTheProfileThatTheHostConformsTo) {
    EXPECT_EQ(PYLUtil::getScopedConformingProfileName(), "Base Server");
}

TEST(PYLUtil, KeepsTheBrokersHandle) {
    EXPECT_EQ(PYLUtil::getBroker(), nullptr);
    const CMPIBroker first{};
    const CMPIBroker second{};
    PYLUtil::setBroker(CmpiBroker(&first));
    EXPECT_EQ(PYLUtil::getBroker(), &first);
    PYLUtil::setBroker(CmpiBroker(&second));
    EXPECT_EQ(PYLUtil::getBroker(), &second);
    PYLUtil::setBroker(CmpiBroker(nullptr));
}

TEST(PYLUtil, BuildsNoPathWithoutABroker) {
    EXPECT_THROW(PYLUtil::getComputerSystemPath(), CmpiCpp::CmpiStatus);
    EXPECT_THROW(PYLUtil::getPCIDevicePath(0, 0, 0, 0), CmpiCpp::CmpiStatus);
    EXPECT_THROW(PYLUtil::getChassisPath(), CmpiCpp::CmpiStatus);
    EXPECT_THROW(PYLUtil::getChassisPath(1), CmpiCpp::CmpiStatus);
}

struct ObjectPaths : testing::Test {
    TestBroker host;

    static std::string key(const CmpiObjectPath& path, const char* name) {
        const auto value = path.getKey(name);
        EXPECT_EQ(value.getType(), CMPI_string);
        return value.asString();
    }
    static std::string deviceId(int domain, int bus, int device, int function) {
        return key(PYLUtil::getPCIDevicePath(domain, bus, device, function), "DeviceID");
    }
    static std::string tag(unsigned int bladeNum) {
        return key(PYLUtil::getChassisPath(bladeNum), "Tag");
    }
};

TEST_F(ObjectPaths, NameTheComputerSystem) {
    EXPECT_EQ(PYLUtil::getComputerSystemPath().str(),
              "//server-1/root/ktq:PYL_ComputerSystem.CreationClassName=\"PYL_ComputerSystem\","
              "Name=\"server-1\"");
}

TEST_F(ObjectPaths, NameAPciDevice) {
    EXPECT_EQ(PYLUtil::getPCIDevicePath(0, 0x1a, 3, 1).str(),
              "//server-1/root/ktq:PYL_PCIDevice.CreationClassName=\"PYL_PCIDevice\","
              "SystemCreationClassName=\"PYL_ComputerSystem\",SystemName=\"server-1\","
              "DeviceID=\"KTQ:PYL_PCIDevice:0000:1a:03.1\"");
}

TEST_F(ObjectPaths, NameTheChassis) {
    EXPECT_EQ(PYLUtil::getChassisPath().str(),
              "//server-1/root/ktq:PYL_ComputerSystemChassis."
              "CreationClassName=\"PYL_ComputerSystemChassis\",Tag=\"1\"");
    EXPECT_EQ(PYLUtil::getChassisPath(7).str(),
              "//server-1/root/ktq:PYL_ComputerSystemChassis."
              "CreationClassName=\"PYL_ComputerSystemChassis\",Tag=\"7\"");
}

TEST_F(ObjectPaths, CarryTheFallbackWhereTheHostNameCannotBeRead) {
    const cimtest::HostNameIs unreadable(std::nullopt);
    const auto system = PYLUtil::getComputerSystemPath();
    EXPECT_EQ(system.getHost().str(), unreadableName);
    EXPECT_EQ(key(system, "Name"), unreadableName);
    const auto device = PYLUtil::getPCIDevicePath(0, 0, 0, 0);
    EXPECT_EQ(device.getHost().str(), unreadableName);
    EXPECT_EQ(key(device, "SystemName"), unreadableName);
    EXPECT_EQ(PYLUtil::getChassisPath().getHost().str(), unreadableName);
}

TEST_F(ObjectPaths, LeaveTheDomainOutAndPrintTheDeviceInDecimal) {
    EXPECT_EQ(deviceId(5, 0x1a, 11, 2), "KTQ:PYL_PCIDevice:0000:1a:11.2");
    EXPECT_EQ(deviceId(0, 0, 0, 0), "KTQ:PYL_PCIDevice:0000:00:00.0");
    EXPECT_EQ(deviceId(-1, 0xff, 99, 9), "KTQ:PYL_PCIDevice:0000:ff:99.9");
}

TEST_F(ObjectPaths, HoldLocationsThatAreOutOfRangeWhole) {
    EXPECT_EQ(deviceId(0, 0x100, 100, 10), "KTQ:PYL_PCIDevice:0000:100:100.10");
    EXPECT_EQ(deviceId(INT_MAX, INT_MAX, INT_MAX, INT_MAX),
              "KTQ:PYL_PCIDevice:0000:7fffffff:2147483647.2147483647");
    EXPECT_EQ(deviceId(INT_MIN, INT_MIN, INT_MIN, INT_MIN),
              "KTQ:PYL_PCIDevice:0000:80000000:-2147483648.-2147483648");
    EXPECT_EQ(deviceId(0, -1, -1, -1), "KTQ:PYL_PCIDevice:0000:ffffffff:-1.-1");
}

TEST_F(ObjectPaths, CutTheNumberOfABladeAfterThreeCharacters) {
    EXPECT_EQ(tag(0), "0");
    EXPECT_EQ(tag(7), "7");
    EXPECT_EQ(tag(999), "999");
    EXPECT_EQ(tag(1000), "100");
    EXPECT_EQ(tag(12345), "123");
    EXPECT_EQ(tag(INT_MAX), "214");
    EXPECT_EQ(tag(UINT_MAX), "-1");
    EXPECT_EQ(tag(static_cast<unsigned int>(-12)), "-12");
    EXPECT_EQ(tag(static_cast<unsigned int>(-123)), "-12");
    EXPECT_EQ(tag(static_cast<unsigned int>(INT_MAX) + 1), "-21");
}

TEST_F(ObjectPaths, AskForTheHostNameAnewEachTime) {
    const auto before = PYLUtil::getComputerSystemPath();
    const cimtest::HostNameIs renamed("server-2");
    EXPECT_EQ(key(PYLUtil::getComputerSystemPath(), "Name"), "server-2");
    EXPECT_EQ(key(before, "Name"), "server-1");
}

TEST_F(ObjectPaths, FailWithAStatusWhateverTheBrokerRefuses) {
    using cimtest::FaultyBroker;
    FaultyBroker faulty(host.real());
    host.use(faulty.handle());
    const auto build = [] {
        PYLUtil::getComputerSystemPath();
        PYLUtil::getPCIDevicePath(0, 1, 2, 3);
        PYLUtil::getChassisPath();
        PYLUtil::getChassisPath(7);
    };
    int failures = 0;
    for (const auto& slot : FaultyBroker::slots()) {
        faulty.heal();
        build();
        const auto count = faulty.calls(slot);
        for (unsigned nth = 1; nth <= count; ++nth) {
            faulty.failCall(slot, nth, FaultyBroker::Fault::status);
            EXPECT_EQ(outcomeOf(build).rfind("status 1", 0), 0U) << slot << " " << nth;
            ++failures;
        }
    }
    EXPECT_GE(failures, 4 * 3);
}

struct SystemUUID : testing::Test {
    ~SystemUUID() override { SmBios::setSource(nullptr); }
    JournalLog log;
};

TEST_F(SystemUUID, IsWhatTheFirmwareSays) {
    SmBios::setSource(std::make_shared<SmbiosDumpFile>(PYL_SMBIOS_DUMPS "/wavek.bin"));
    EXPECT_EQ(PYLUtil::getSystemUUID(log.logger), "4c4c4544-0035-5a10-8052-b4c04f4d3232");
    // Nothing is kept: without a table the kernel's copy counts, which most hosts show to root
    // only.
    SmBios::setSource(std::make_shared<SmbiosMemory>(SmbiosSource::Bytes()));
    EXPECT_NE(PYLUtil::getSystemUUID(log.logger), "4c4c4544-0035-5a10-8052-b4c04f4d3232");
}

}  // namespace
