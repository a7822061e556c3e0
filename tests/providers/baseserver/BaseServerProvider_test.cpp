#include "providers/baseserver/BaseServerProvider.h"

#include "cmpicpp/CmpiStatus.h"
#include "common/PYLUtil.h"
#include "providers/baseserver/Worker.h"
#include "tests/common/CapturedResults.h"
#include "tests/common/Failures.h"
#include "tests/common/QuietResults.h"
#include "tests/providers/baseserver/BaseServerFixture.h"

#include <algorithm>
#include <atomic>
#include <future>

namespace {

using baseserver::BaseServerProvider;
using baseserver::InventorySources;
using baseserver::ServerFacts;
using baseserver::WorkerInstance;
using CmpiCpp::CmpiObjectPath;
using PYL::PYLUtil;

struct BaseServerProviderTest : BaseServerFixture {
    Logger log = silentLogger();
    Journal journal;
    CapturedPaths paths{journal};
    CapturedInstances instances{journal};
    CapturedMethodResult method{journal};
    int reads = 0;
    BaseServerProvider provider{host.broker(), log, sources()};

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
    CmpiObjectPath classPath(const char* className) {
        return CmpiCpp::makeCmpiObjectPath(host.broker(), "root/ktq", className);
    }
};

TEST_F(BaseServerProviderTest, HandsOutItsBroker) {
    EXPECT_EQ(provider.getBroker(), host.broker().toRawCMPI());
    EXPECT_EQ(reads, 0);
}

TEST_F(BaseServerProviderTest, EnumeratesAfterARefresh) {
    provider.enumInstanceNames(host.context(), classPath("PYL_PCIDevice"), paths);
    EXPECT_EQ(reads, 1);
    EXPECT_EQ(journal.take(),
              (Lines{"delivered " + deviceText("00:02.0"), "delivered " + deviceText("1a:03.1")}));
    provider.enumInstances(host.context(), classPath("PYL_ComputerSystem"), nullptr, instances);
    EXPECT_EQ(journal.take().size(), 1U);
}

TEST_F(BaseServerProviderTest, GetsAnInstanceWhateverHostTheClientNames) {
    auto path = PYLUtil::getPCIDevicePath(0, 0x1a, 3, 1);
    path.setHost("10.0.0.1");
    provider.getInstance(host.context(), path, nullptr, instances);
    EXPECT_EQ(journal.take().size(), 1U);
}

TEST_F(BaseServerProviderTest, SaysWhichInstanceItHasNot) {
    const auto missing = PYLUtil::getPCIDevicePath(0, 9, 9, 9);
    EXPECT_EQ(outcomeOf([&] { provider.getInstance(host.context(), missing, nullptr, instances); }),
              "status 6 no such instance: " + missing.str());
    auto withMore = PYLUtil::getComputerSystemPath();
    withMore.addKey("Extra", "key");
    EXPECT_EQ(
        outcomeOf([&] { provider.getInstance(host.context(), withMore, nullptr, instances); }),
        "status 6 no such instance: " + withMore.str());
}

TEST_F(BaseServerProviderTest, LeadsFromTheSystemToItsChassisAndDevicesAndBack) {
    const auto system = PYLUtil::getComputerSystemPath();
    provider.associatorNames(host.context(), system, "", "", "", "", paths);
    EXPECT_EQ(journal.take(),
              (Lines{"delivered " + chassisText, "delivered " + deviceText("00:02.0"),
                     "delivered " + deviceText("1a:03.1")}));
    provider.associatorNames(host.context(), PYLUtil::getPCIDevicePath(0, 0, 2, 0), "", "", "", "",
                             paths);
    EXPECT_EQ(journal.take(), Lines{"delivered " + systemText});
    provider.associators(host.context(), system, "CIM_SystemDevice", "PYL_PCIDevice", "", "",
                         nullptr, instances);
    EXPECT_EQ(journal.take().size(), 2U);
    provider.associators(host.context(), PYLUtil::getChassisPath(), "", "CIM_ComputerSystem", "",
                         "", nullptr, instances);
    EXPECT_EQ(journal.take().size(), 1U);
}

TEST_F(BaseServerProviderTest, ReportsTheLinksThemselves) {
    const auto system = PYLUtil::getComputerSystemPath();
    provider.references(host.context(), system, "CIM_SystemDevice", "", nullptr, instances);
    EXPECT_EQ(journal.take().size(), 2U);
    provider.referenceNames(host.context(), system, "PYL_ComputerSystemPackage", "", paths);
    EXPECT_EQ(journal.take().size(), 1U);
    provider.referenceNames(host.context(), PYLUtil::getChassisPath(), "", "", paths);
    EXPECT_EQ(journal.take().size(), 1U);
}

TEST_F(BaseServerProviderTest, RefusesWhatItsCollectionRefuses) {
    EXPECT_EQ(outcomeOf([&] {
                  provider.referenceNames(host.context(), PYLUtil::getChassisPath(), "",
                                          "Antecedent", paths);
              }),
              "status 7 role filters not supported");
}

TEST_F(BaseServerProviderTest, DoesTheWorkersWorkAndCountsIt) {
    std::string posted;
    host.onInvokeMethod = [&](const CmpiObjectPath& path, const std::string& name,
                              const CmpiCpp::CmpiArgs& in) {
        posted = name + " of " + path.str() + " " + in.getArg("ClassName").str() + " " +
                 in.getArg("Status").str();
    };
    const auto worker = WorkerInstance().getPath();
    const auto none = CmpiCpp::makeCmpiArgs(host.broker());
    for (const auto* count : {"1", "2"}) {
        provider.invokeMethod(host.context(), worker, "performwork", none, method);
        EXPECT_EQ(journal.take(), (Lines{std::string("delivered WorkCount = uint64 ") + count,
                                         "delivered uint32 0"}));
        EXPECT_EQ(posted, "PostStatus of /root/ktq:PYL_ComputerSystem \"PYL_PCIDeviceGroup\" 0");
    }
    EXPECT_EQ(reads, 2);
}

TEST_F(BaseServerProviderTest, GoesOnCountingAfterARestart) {
    const auto worker = WorkerInstance().getPath();
    const auto none = CmpiCpp::makeCmpiArgs(host.broker());
    provider.invokeMethod(host.context(), worker, "PerformWork", none, method);
    journal.take();
    BaseServerProvider restarted(host.broker(), log, sources());
    restarted.invokeMethod(host.context(), worker, "PerformWork", none, method);
    EXPECT_EQ(journal.take().front(), "delivered WorkCount = uint64 2");
}

TEST_F(BaseServerProviderTest, HandsAPostedStatusOnToTheConsolidatedStatus) {
    std::string handedOn;
    host.onInvokeMethod = [&](const CmpiObjectPath& path, const std::string& name,
                              const CmpiCpp::CmpiArgs& in) {
        handedOn = name + " of " + path.str() + " " + in.getArg("ClassName").str() + " " +
                   in.getArg("Status").str();
    };
    auto in = CmpiCpp::makeCmpiArgs(host.broker());
    in.addArg("ClassName", "PYL_FanGroup");
    in.addArg("Status", static_cast<unsigned short>(3));
    for (const auto& system : {classPath("PYL_ComputerSystem"), PYLUtil::getComputerSystemPath()}) {
        handedOn.clear();
        provider.invokeMethod(host.context(), system, "poststatus", in, method);
        EXPECT_EQ(journal.take(), Lines{"delivered uint32 0"});
        EXPECT_EQ(handedOn, "PostStatus of /root/ktq:PYL_ConsolidatedStatus \"PYL_FanGroup\" 3");
    }
    EXPECT_EQ(reads, 0);
}

TEST_F(BaseServerProviderTest, AnswersAPostAsTheConsolidatedStatusDoes) {
    const auto post = [&] {
        return outcomeOf([&] {
            provider.invokeMethod(host.context(), classPath("PYL_ComputerSystem"), "PostStatus",
                                  CmpiCpp::makeCmpiArgs(host.broker()), method);
        });
    };
    EXPECT_TRUE(post().starts_with("status 17")) << post();
    host.onInvokeMethod = [](const auto&, const auto&, const auto&) {
        throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, "the board is strict");
    };
    EXPECT_EQ(post(), "status 4 the board is strict");
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(BaseServerProviderTest, KnowsNoOtherMethod) {
    const auto none = CmpiCpp::makeCmpiArgs(host.broker());
    const auto call = [&](const CmpiObjectPath& path, const char* name) {
        return outcomeOf([&] { provider.invokeMethod(host.context(), path, name, none, method); });
    };
    EXPECT_EQ(call(WorkerInstance().getPath(), "Rest"), "status 17 no such method: Rest");
    EXPECT_EQ(call(PYLUtil::getComputerSystemPath(), "PerformWork"),
              "status 17 no such method: PerformWork");
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(BaseServerProviderTest, TakesEveryFilterAndNeedsNoPolling) {
    const auto path = classPath("PYL_BaseServerIndication");
    const std::string name = "PYL_BaseServerIndication";
    provider.authorizeFilter(host.context(), nullptr, name, path, "me");
    provider.activateFilter(host.context(), nullptr, name, path, true);
    provider.deactivateFilter(host.context(), nullptr, name, path, true);
    EXPECT_EQ(outcomeOf([&] { provider.mustPoll(host.context(), nullptr, name, path); }),
              "status 7 nothing has to be polled");
}

TEST_F(BaseServerProviderTest, WatchesTheServerWhileIndicationsAreEnabled) {
    std::promise<std::string> first;
    std::atomic<bool> isFirst{true};
    host.onIndication = [&](const cimhost::Instance& indication) {
        if (isFirst.exchange(false)) {
            first.set_value(indication.find("Summary")->value.get<cimhost::Text>()->str());
        }
    };
    provider.enableIndications(host.context());
    EXPECT_EQ(first.get_future().get(), "WBEM Providers started ");
    provider.disableIndications(host.context());
    provider.enableIndications(host.context());
    provider.cleanup(host.context(), true);
}

TEST_F(BaseServerProviderTest, IsReadOnly) {
    const auto path = PYLUtil::getChassisPath();
    const auto instance = CmpiCpp::makeCmpiInstance(host.broker(), path);
    const auto refused = [](const std::string& outcome) {
        return outcome.starts_with("status 7 ");
    };
    EXPECT_TRUE(refused(outcomeOf([&] { provider.deleteInstance(host.context(), path); })));
    EXPECT_TRUE(refused(
        outcomeOf([&] { provider.modifyInstance(host.context(), path, instance, nullptr); })));
    EXPECT_TRUE(refused(
        outcomeOf([&] { provider.createInstance(host.context(), path, instance, paths); })));
    EXPECT_TRUE(
        refused(outcomeOf([&] { provider.execQuery(host.context(), path, "q", "CQL", paths); })));
}

}  // namespace
