#include "AcmeEthernetProvider.h"

#include <gtest/gtest.h>
#include <pylcommon/testing.h>

namespace {

constexpr const char* left =
    "ACME_Ethernet.CreationClassName=\"ACME_Ethernet\",DeviceID=\"left\","
    "SystemCreationClassName=\"PYL_ComputerSystem\",SystemName=\"server-1\"";
constexpr const char* server =
    "PYL_ComputerSystem.CreationClassName=\"PYL_ComputerSystem\",Name=\"server-1\"";

struct AcmeEthernetProviderTest : testing::Test {
    cimtest::FakeHost machine;
    cimtest::ProviderHost host{
        "root/ktq",
        {"base/base.mof", "PYL_Indications.mof", "PYL_BaseServer.mof", "AcmeEthernet.mof"}};
    AcmeEthernetProvider& provider =
        host.serve(std::make_unique<AcmeEthernetProvider>(host.broker(), host.logger()),
                   {"ACME_Ethernet", "ACME_SystemEthernet", "ACME_EthernetIndication"});

    AcmeEthernetProviderTest() {
        machine.device("/sys/class/net/left", {{"type", "1"},
                                               {"address", "02:00:00:00:00:01"},
                                               {"operstate", "up"},
                                               {"speed", "1000"},
                                               {"statistics/rx_bytes", "4711"}});
        machine.device("/sys/class/net/lo", {{"type", "772"}});
    }
};

TEST_F(AcmeEthernetProviderTest, ShowsWhatTheKernelTellsOfAPort) {
    ASSERT_EQ(host.names("ACME_Ethernet").size(), 1U) << "lo is none";
    const auto port = host.get(left);
    EXPECT_EQ(port["PermanentAddress"], "02:00:00:00:00:01");
    EXPECT_EQ(port["Speed"], 1'000'000'000);
    EXPECT_EQ(port["OperationalStatus"], cimtest::arrayOf(2));
}

TEST_F(AcmeEthernetProviderTest, LeavesTheSpeedOutWithoutALink) {
    machine.write("/sys/class/net/left/operstate", "down");
    machine.write("/sys/class/net/left/speed", "-1");
    const auto port = host.get(left);
    EXPECT_FALSE(port.has("Speed"));
    EXPECT_EQ(port["StatusDescriptions"], cimtest::arrayOf("Stopped"));
}

TEST_F(AcmeEthernetProviderTest, LinksEachPortToTheServer) {
    EXPECT_EQ(host.associatorNames(server, {.resultClass = "ACME_Ethernet"}),
              std::vector<cimtest::Path>{left});
    EXPECT_EQ(host.referenceNames(left).size(), 1U);
}

TEST_F(AcmeEthernetProviderTest, ReadsCounters) {
    const auto answer = host.invoke(left, "ReadCounter", {{"Name", "rx_bytes"}});
    EXPECT_EQ(answer.returned, 0);
    EXPECT_EQ(answer["Count"], 4711);
    for (const auto* name : {"rx_bites", "../speed", ""}) {
        EXPECT_EQ(host.invoke(left, "ReadCounter", {{"Name", name}}).returned, 1) << name;
    }
}

TEST_F(AcmeEthernetProviderTest, TellsOfALinkThatGoesAndComes) {
    provider.look(host.context());
    for (const auto* state : {"down", "lowerlayerdown", "up", "unknown"}) {
        machine.write("/sys/class/net/left/operstate", state);
        provider.look(host.context());
    }
    const auto alerts = host.alerts().take();
    ASSERT_EQ(alerts.size(), 2U);
    EXPECT_EQ(alerts[0]["Summary"], "Link is down on port: left");
    EXPECT_EQ(alerts[1]["Summary"], "Link is up on port: left");
}

}  // namespace
