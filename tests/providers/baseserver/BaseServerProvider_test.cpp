#include "providers/baseserver/BaseServerProvider.h"

#include "providers/consolidatedstatus/ConsolidatedStatusProvider.h"
#include "tests/providers/baseserver/BaseServerFixture.h"

#include <gmock/gmock.h>

namespace {

using baseserver::BaseServerProvider;
using baseserver::InventorySources;
using baseserver::ServerFacts;
using cimtest::arrayOf;
using cimtest::failureOf;

struct BaseServerProviderTest : BaseServerFixture {
    int reads = 0;
    BaseServerProvider& provider =
        host.serve(std::make_unique<BaseServerProvider>(host.broker(), host.logger(), sources()),
                   {"PYL_ComputerSystem", "PYL_ComputerSystemChassis", "PYL_PCIDevice",
                    "PYL_PCIDeviceGroup", "PYL_BaseServerWorker", "PYL_SystemPCIDevice",
                    "PYL_ComputerSystemPackage", "PYL_BaseServerIndication"});

    InventorySources sources() {
        return {[this](Logger&) {
                    ++reads;
                    return ServerFacts{};
                },
                [] {
                    return std::vector{function(0, 2, 0), function(0x1a, 3, 1)};
                },
                [] { return std::chrono::steady_clock::time_point{}; }};
    }
    const Paths devices{devicePath("00:02.0"), devicePath("1a:03.1")};
};

TEST_F(BaseServerProviderTest, HandsOutItsBroker) {
    EXPECT_EQ(provider.getBroker(), host.broker().toRawCMPI());
    EXPECT_EQ(reads, 0);
}

TEST_F(BaseServerProviderTest, EnumeratesAfterARefresh) {
    EXPECT_EQ(host.names("PYL_PCIDevice"), devices);
    EXPECT_EQ(reads, 1);
    EXPECT_EQ(host.enumerate("PYL_ComputerSystem").size(), 1U);
}

TEST_F(BaseServerProviderTest, GetsAnInstanceWhateverHostTheClientNames) {
    EXPECT_EQ(host.get("//10.0.0.1/" + systemPath.str()).path(), systemPath);
}

TEST_F(BaseServerProviderTest, KnowsNoOtherMethod) {
    EXPECT_EQ(failureOf([&] { host.invoke(workerPath, "Rest"); }).substr(0, 3), "17 ");
    EXPECT_EQ(failureOf([&] { host.invoke(systemPath, "PerformWork"); }).substr(0, 3), "17 ");
}

TEST_F(BaseServerProviderTest, SaysWhichInstanceItHasNot) {
    const auto missing = devicePath("09:09.9");
    EXPECT_EQ(failureOf([&] { host.get(missing); }).substr(0, 21), "6 no such instance: /");
}

TEST_F(BaseServerProviderTest, LeadsFromTheSystemToItsChassisAndDevicesAndBack) {
    EXPECT_THAT(host.associatorNames(systemPath),
                testing::UnorderedElementsAre(chassisPath, devices[0], devices[1]));
    EXPECT_EQ(host.associatorNames(devices[0]), Paths{systemPath});
    EXPECT_EQ(host.associators(systemPath, {.associationClass = "CIM_SystemDevice",
                                            .resultClass = "PYL_PCIDevice"})
                  .size(),
              2U);
    EXPECT_EQ(host.associators(chassisPath, {.resultClass = "CIM_ComputerSystem"}).size(), 1U);
}

TEST_F(BaseServerProviderTest, ReportsTheLinksThemselves) {
    EXPECT_EQ(host.references(systemPath, {.resultClass = "CIM_SystemDevice"}).size(), 2U);
    EXPECT_EQ(host.referenceNames(systemPath, {.resultClass = "PYL_ComputerSystemPackage"}).size(),
              1U);
    EXPECT_EQ(host.referenceNames(chassisPath).size(), 1U);
}

TEST_F(BaseServerProviderTest, RefusesWhatItsCollectionRefuses) {
    EXPECT_EQ(failureOf([&] { host.referenceNames(chassisPath, {.role = "Antecedent"}); }),
              "7 role filters not supported");
}

/// Beside the provider that it hands posts on to.
struct BaseServerWithStatusBoard : BaseServerProviderTest {
    BaseServerWithStatusBoard() {
        host.readMof("PYL_ConsolidatedStatus.mof");
        host.serve(std::make_unique<consolidatedstatus::ConsolidatedStatusProvider>(host.broker(),
                                                                                    host.logger()),
                   {"PYL_ConsolidatedStatus"});
    }
    cimtest::Instance posted(const std::string& className) {
        return host.get(Path("PYL_ConsolidatedStatus",
                             {{"InstanceID", "KTQ:PYL_ConsolidatedStatus:" + className}}));
    }
};

TEST_F(BaseServerWithStatusBoard, DoesTheWorkersWorkCountsItAndPostsTheGroup) {
    for (const int count : {1, 2}) {
        const auto answer = host.invoke(workerPath, "performwork");
        EXPECT_EQ(answer.returned, 0);
        EXPECT_EQ(answer["WorkCount"], count);
        EXPECT_EQ(posted("PYL_PCIDeviceGroup")["PostCount"], count);
        EXPECT_EQ(posted("PYL_PCIDeviceGroup")["OperationalStatus"], arrayOf(0));
    }
    EXPECT_EQ(reads, 2);
}

TEST_F(BaseServerProviderTest, GoesOnCountingAfterARestart) {
    host.invoke(workerPath, "PerformWork");
    host.end();
    cimtest::ProviderHost next("root/ktq", {"base/base.mof", "PYL_BaseServer.mof"});
    next.serve(std::make_unique<BaseServerProvider>(next.broker(), next.logger(), sources()),
               {"PYL_BaseServerWorker"});
    EXPECT_EQ(next.invoke(workerPath, "PerformWork")["WorkCount"], 2);
}

TEST_F(BaseServerWithStatusBoard, HandsAPostedStatusOnToTheConsolidatedStatus) {
    for (const auto& path : {Path("PYL_ComputerSystem"), systemPath}) {
        EXPECT_EQ(host.invoke(path, "poststatus", {{"ClassName", "PYL_FanGroup"}, {"Status", 3}})
                      .returned,
                  0);
        EXPECT_EQ(posted("PYL_FanGroup")["OperationalStatus"], arrayOf(3));
    }
    EXPECT_EQ(posted("PYL_FanGroup")["PostCount"], 2);
    EXPECT_EQ(reads, 0);
}

TEST_F(BaseServerWithStatusBoard, AnswersAPostAsTheConsolidatedStatusDoes) {
    EXPECT_EQ(failureOf([&] {
                  host.invoke(systemPath, "PostStatus", {{"ClassName", "1"}, {"Status", 3}});
              }),
              "4 Argument 'ClassName' is not a class name");
}

TEST_F(BaseServerProviderTest, RefusesPostsThatNobodyTakes) {
    EXPECT_NE(failureOf([&] {
                  host.invoke(systemPath, "PostStatus", {{"ClassName", "PYL_Fan"}, {"Status", 3}});
              }),
              "");
}

TEST_F(BaseServerProviderTest, WatchesTheServerWhileIndicationsAreEnabled) {
    host.subscribe("PYL_BaseServerIndication");
    EXPECT_EQ(host.alerts().waitFor("WBEM Providers")["Summary"], "WBEM Providers started ");
    host.unsubscribe();
    host.subscribe("PYL_BaseServerIndication");
    host.end();
}

TEST_F(BaseServerProviderTest, IsReadOnly) {
    EXPECT_EQ(failureOf([&] { host.remove(chassisPath); }).substr(0, 2), "7 ");
    EXPECT_EQ(failureOf([&] { host.modify(chassisPath, {{"Caption", "x"}}); }).substr(0, 2), "7 ");
    EXPECT_EQ(
        failureOf([&] {
            host.create("PYL_ComputerSystemChassis", {{"CreationClassName", "x"}, {"Tag", "2"}});
        }).substr(0, 2),
        "7 ");
    EXPECT_EQ(
        failureOf([&] { host.query("SELECT * FROM PYL_ComputerSystemChassis"); }).substr(0, 2),
        "7 ");
}

}  // namespace
