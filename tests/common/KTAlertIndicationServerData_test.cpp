// What an alert tells of the server and of its enclosure.

#include "platform/smbios/SmBios.h"
#include "tests/common/IndicationFixture.h"
#include "tests/platform/smbios/SmbiosImage.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

const std::string noServer = "error: failed to _computerSystemMRA::getFirstData()";
const std::string noEnclosure = "error: failed to _BladeMRA::getFirstData()";

struct ServerData : IndicationFixture {
    /// The properties that tell of server and enclosure, after all others.
    Lines told() {
        auto lines = properties();
        const auto version =
            std::find(lines.begin(), lines.end(), "ProviderVersion string \"03.02.00\"");
        lines.erase(lines.begin(), version == lines.end() ? version : version + 1);
        return lines;
    }
    Lines errors() {
        auto lines = log.journal->take();
        std::erase_if(lines, [](const auto& line) { return !line.starts_with("error"); });
        return lines;
    }
};

const Lines everything{"OSType uint16 36",
                       "OSVersion string \"12\"",
                       "SystemFirmwareVersion string[] {\"B1\"}",
                       "SystemSerialNumber string \"S1\"",
                       "SystemVirtualSerialNumber string[] {\"V1\"}",
                       "SystemProductID string \"P1-B21\"",
                       "SystemModel string \"Wave 1\"",
                       "SystemGUID string \"uuid\"",
                       "SystemVirtualUUID string[] {\"virtual-uuid\"}",
                       "SolutionProductModel string \"solution\"",
                       "EnclosureName string \"enc\"",
                       "RackName string \"rack\"",
                       "RackUUID string \"rack-uuid\"",
                       "ImpactedDomain uint16 3"};

constexpr struct {
    std::optional<std::string> HostFacts::*fact;
    const char* property;
} texts[] = {{&HostFacts::osVersion, "OSVersion"},
             {&HostFacts::biosVersion, "SystemFirmwareVersion"},
             {&HostFacts::serialNumber, "SystemSerialNumber"},
             {&HostFacts::virtualSerialNumber, "SystemVirtualSerialNumber"},
             {&HostFacts::productId, "SystemProductID"},
             {&HostFacts::productName, "SystemModel"},
             {&HostFacts::uuid, "SystemGUID"},
             {&HostFacts::virtualUuid, "SystemVirtualUUID"},
             {&HostFacts::solutionName, "SolutionProductModel"}};

TEST_F(ServerData, AreToldInTheirOrder) {
    everythingIsKnown();
    EXPECT_EQ(told(), everything);
    EXPECT_EQ(errors(), Lines{});
    EXPECT_EQ(sources.made, 2);
    EXPECT_EQ(sources.alive, 0);
}

TEST_F(ServerData, AreReadWhenTheInstanceIsMade) {
    EXPECT_EQ(sources.made, 0);
    EXPECT_EQ(told(), Lines{"ImpactedDomain uint16 4"});
    everythingIsKnown();
    EXPECT_EQ(told(), everything);
}

TEST_F(ServerData, AreLeftOutOneByOneWhereTheyAreNotKnown) {
    for (const auto& [fact, name] : texts) {
        everythingIsKnown();
        ((*sources.computerSystem).*fact).reset();
        auto expected = everything;
        std::erase_if(expected, [name = std::string(name) + " "](const auto& line) {
            return line.starts_with(name);
        });
        ASSERT_EQ(expected.size(), everything.size() - 1);
        EXPECT_EQ(told(), expected) << name;
    }
    everythingIsKnown();
    sources.computerSystem->osType.reset();
    EXPECT_EQ(told(), Lines(everything.begin() + 1, everything.end()));
    EXPECT_EQ(errors(), Lines{});
}

TEST_F(ServerData, AreSentEmptyUnlessTheServerNeedNotHaveThem) {
    everythingIsKnown();
    for (const auto& text : texts) (*sources.computerSystem).*text.fact = "";
    sources.computerSystem->osType.reset();
    sources.blade->enclosureName = sources.blade->rackName = sources.blade->rackUuid = "";
    EXPECT_EQ(told(), (Lines{"OSVersion string \"\"", "SystemFirmwareVersion string[] {\"\"}",
                             "SystemSerialNumber string \"\"", "SystemProductID string \"\"",
                             "SystemModel string \"\"", "SystemGUID string \"\"",
                             "EnclosureName string \"\"", "RackName string \"\"",
                             "RackUUID string \"\"", "ImpactedDomain uint16 3"}));
}

TEST_F(ServerData, TellTheOperatingSystemInTheCodesOfTheSchema) {
    struct {
        operatingSystemEnum type;
        const char* code;
    } const rows[] = {{OSvm, "uint16 39"},
                      {OSlinux, "uint16 36"},
                      {OSopenvms, "uint16 0"},
                      {OSunkown, "uint16 0"}};
    for (const auto& row : rows) {
        sources.computerSystem.emplace().osType = row.type;
        EXPECT_EQ(property("OSType"), row.code) << row.type;
    }
}

TEST_F(ServerData, AreMissedWithALineForEachSource) {
    struct {
        bool hasComputerSystem;
        bool hasBlade;
        bool isComputerSystemRead;
        bool isBladeRead;
        Lines expected;
    } const rows[] = {
        {true, true, false, true, {noServer}},
        {false, true, true, true, {noServer}},
        {true, true, true, false, {noEnclosure}},
        {true, false, true, true, {noEnclosure}},
        {false, false, true, true, {noServer, noEnclosure}},
        {true, true, false, false, {noServer, noEnclosure}},
    };
    for (const auto& row : rows) {
        everythingIsKnown();
        if (!row.isComputerSystemRead) sources.computerSystem.reset();
        if (!row.isBladeRead) sources.blade.reset();
        sources.hasComputerSystem = row.hasComputerSystem;
        sources.hasBlade = row.hasBlade;
        PYL::KTAlertIndication fresh(log.logger, "KT_AlertIndication", "root/ktq", 2);
        const auto lines = propertiesOf(fresh.getInstance());
        const bool noServerData = row.expected[0] == noServer;
        const bool noBladeData = row.expected.back() == noEnclosure;
        const auto count = std::count_if(lines.begin(), lines.end(), [](const auto& line) {
            return std::find(everything.begin(), everything.end(), line) != everything.end();
        });
        EXPECT_EQ(count, (noServerData ? 0 : 10) + (noBladeData ? 0 : 4));
        EXPECT_EQ(lines.back(),
                  noBladeData ? "ImpactedDomain uint16 4" : "ImpactedDomain uint16 3");
        EXPECT_EQ(errors(), row.expected);
        EXPECT_EQ(sources.alive, 0);
    }
}

TEST_F(ServerData, TellNothingOfAnEnclosureThatTheServerIsNoBladeOf) {
    everythingIsKnown();
    sources.computerSystem = HostFacts();
    for (const bool isSLServer : {false, true}) {
        sources.blade->isBlade = false;
        sources.blade->isSLServer = isSLServer;
        EXPECT_EQ(told(), Lines{"ImpactedDomain uint16 4"});
    }
    EXPECT_EQ(errors(), Lines{});
}

TEST_F(ServerData, ConcernTheServerAloneOnServersOfTheSLLine) {
    everythingIsKnown();
    sources.computerSystem = HostFacts();
    sources.blade->isSLServer = true;
    EXPECT_EQ(told(), (Lines{"EnclosureName string \"enc\"", "RackName string \"rack\"",
                             "RackUUID string \"rack-uuid\"", "ImpactedDomain uint16 4"}));
}

TEST_F(ServerData, LeaveOutWhatTheEnclosureDoesNotTell) {
    for (const auto fact :
         {&HostFacts::enclosureName, &HostFacts::rackName, &HostFacts::rackUuid}) {
        everythingIsKnown();
        sources.computerSystem = HostFacts();
        ((*sources.blade).*fact).reset();
        EXPECT_EQ(told().size(), 3U);
        EXPECT_EQ(told().back(), "ImpactedDomain uint16 3");
    }
}

/// The same from the firmware, through the sources that a server has.
struct FirmwareData : testing::Test {
    TestBroker host{{{"KT_AlertIndication", ""}}};
    JournalLog log;
    PYL::KTAlertIndication alert{log.logger, "KT_AlertIndication", "root/ktq", 2};

    ~FirmwareData() override { SmBios::setSource(nullptr); }
    std::string property(const char* name) {
        const cimhost::CallScope scope;
        try {
            return alert.getInstance().getProperty(name).str();
        } catch (const CmpiCpp::CmpiStatus&) {
            return "(absent)";
        }
    }
};

TEST_F(FirmwareData, TellsABladeAndItsEnclosure) {
    SmBios::setSource(std::make_shared<SmbiosDumpFile>(dumpPath("blade")));
    EXPECT_EQ(property("EnclosureName"), "\"enc-7\"");
    EXPECT_EQ(property("RackUUID"), "\"00112233-4455-6677-8899-aabbccddeeff\"");
    EXPECT_EQ(property("SystemVirtualSerialNumber"), "{\"VKT000042\"}");
    EXPECT_EQ(property("SystemFirmwareVersion"), "{\"K42 v1.20\"}");
    EXPECT_EQ(property("ImpactedDomain"), "3");
}

TEST_F(FirmwareData, TellsAServerOfTheSLLine) {
    SmBios::setSource(std::make_shared<SmbiosDumpFile>(dumpPath("sl-blade")));
    EXPECT_EQ(property("EnclosureName"), "\"sl-chassis-2\"");
    EXPECT_EQ(property("ImpactedDomain"), "4");
}

TEST_F(FirmwareData, TellsNoEnclosureOfAnotherServer) {
    SmBios::setSource(std::make_shared<SmbiosDumpFile>(dumpPath("wavek")));
    EXPECT_EQ(property("SystemModel"), "\"Server WaveK 400\"");
    EXPECT_EQ(property("EnclosureName"), "(absent)");
    EXPECT_EQ(property("ImpactedDomain"), "4");
}

}  // namespace
