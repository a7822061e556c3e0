#include "providers/fan/FanProvider.h"

#include "common/PYLUtil.h"
#include "platform/smbios/SmBios.h"
#include "providers/fan/FanInstance.h"
#include "testing/pylcommon/testing/FakeController.h"
#include "tests/common/CapturedResults.h"
#include "tests/common/Failures.h"
#include "tests/common/QuietResults.h"
#include "tests/support/TestBroker.h"
#include "tests/support/WaitingLines.h"

#include <gtest/gtest.h>

namespace {

using CmpiCpp::CmpiObjectPath;
using fan::Fan;
using fan::FanInstance;
using fan::FanProvider;

struct FanProviderTest : testing::Test {
    TestBroker host{{{"PYL_Fan", ""},
                     {"PYL_FanGroup", ""},
                     {"PYL_ComputerSystem", ""},
                     {"KT_AlertIndication", ""}}};
    cimtest::FakeController controller;
    Logger log = silentLogger();
    Journal journal;
    CapturedPaths paths{journal};
    CapturedInstances instances{journal};
    std::vector<Fan> fans{Fan{"chip:fan1", "CPU fan", 1200, 300, 1250, false, false, true},
                          Fan{"chip:fan2", "fan2", {}, {}, {}, {}, {}, {}}};
    Lines raised;
    Lines posted;
    FanProvider provider{host.broker(), log, [this] { return fans; }};

    FanProviderTest() {
        SmBios::setSource(std::make_shared<SmbiosMemory>(std::vector<std::uint8_t>()));
        controller.openStatus = ENOENT;
        host.onIndication = [this](const cimhost::Instance& indication) {
            raised.push_back(indication.find("Summary")->value.get<cimhost::Text>()->str() +
                             " at " +
                             *indication.find("HWPhysicalLocation")->value.get<cimhost::Text>());
        };
        host.onInvokeMethod = [this](const auto&, const auto&, const CmpiCpp::CmpiArgs& in) {
            posted.push_back(in.getArg("ClassName").str() + " " + in.getArg("Status").str());
        };
    }
    ~FanProviderTest() override { SmBios::setSource(nullptr); }

    CmpiObjectPath classPath(const char* className) {
        return CmpiCpp::makeCmpiObjectPath(host.broker(), "root/ktq", className);
    }
    std::string fanText(const std::string& id) const {
        return host
            .path("PYL_Fan", {{"CreationClassName", "PYL_Fan"},
                              {"SystemCreationClassName", "PYL_ComputerSystem"},
                              {"SystemName", "server-1"},
                              {"DeviceID", "KTQ:PYL_Fan:" + id}})
            .str();
    }
};

TEST_F(FanProviderTest, NamesItsFansAndTheirGroup) {
    provider.enumInstanceNames(host.context(), classPath("PYL_Fan"), paths);
    EXPECT_EQ(journal.take(),
              (Lines{"delivered " + fanText("chip:fan1"), "delivered " + fanText("chip:fan2")}));
    provider.enumInstanceNames(host.context(), classPath("PYL_FanGroup"), paths);
    EXPECT_EQ(journal.take(), Lines{"delivered //server-1/root/ktq:PYL_FanGroup.InstanceID="
                                    "\"KTQ:PYL_FanGroup:1\""});
}

TEST_F(FanProviderTest, DescribesAFanByWhatIsKnown) {
    provider.enumInstances(host.context(), classPath("PYL_Fan"), nullptr, instances);
    const auto lines = journal.take();
    ASSERT_EQ(lines.size(), 2U);
    for (const auto* part : {"ElementName = \"CPU fan\";", "VariableSpeed = true;",
                             "DesiredSpeed = 1250;", "CurrentSpeed = 1200;", "MinimumSpeed = 300;",
                             "OperationalStatus = {2};", "HealthState = 5;"}) {
        EXPECT_NE(lines[0].find(part), std::string::npos) << part;
    }
    for (const auto* part : {"DesiredSpeed", "CurrentSpeed", "MinimumSpeed"}) {
        EXPECT_EQ(lines[1].find(part), std::string::npos) << part;
    }
    EXPECT_NE(lines[1].find("OperationalStatus = {0};"), std::string::npos) << lines[1];
}

TEST_F(FanProviderTest, ReadsAfreshForEachRequest) {
    fans.clear();
    provider.enumInstanceNames(host.context(), classPath("PYL_Fan"), paths);
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(FanProviderTest, GetsAFanByItsPathAndSaysWhichItHasNot) {
    auto path = FanInstance(fans[0]).getPath();
    provider.getInstance(host.context(), path, nullptr, instances);
    EXPECT_EQ(journal.take().size(), 1U);
    fans.clear();
    EXPECT_EQ(outcomeOf([&] { provider.getInstance(host.context(), path, nullptr, instances); }),
              "status 6 no such instance: " + path.str());
}

TEST_F(FanProviderTest, RaisesWhatHappensAndPostsAChangeOfTheGroup) {
    provider.look(host.context());
    EXPECT_EQ(raised, Lines{});
    EXPECT_EQ(posted, Lines{"\"PYL_FanGroup\" 2"});
    provider.look(host.context());
    EXPECT_EQ(posted.size(), 1U);
    fans[0].fault = true;
    provider.look(host.context());
    EXPECT_EQ(raised, Lines{"Fan failed at CPU fan"});
    EXPECT_EQ(posted.back(), "\"PYL_FanGroup\" 6");
    fans[0].fault = false;
    fans.pop_back();
    provider.look(host.context());
    EXPECT_EQ(raised,
              (Lines{"Fan failed at CPU fan", "Fan repaired at CPU fan", "Fan removed at fan2"}));
    EXPECT_EQ(posted.back(), "\"PYL_FanGroup\" 2");
}

TEST_F(FanProviderTest, TakesEveryFilterAndNeedsNoPolling) {
    const auto path = classPath("PYL_FanIndication");
    provider.authorizeFilter(host.context(), nullptr, "PYL_FanIndication", path, "me");
    provider.activateFilter(host.context(), nullptr, "PYL_FanIndication", path, true);
    provider.deactivateFilter(host.context(), nullptr, "PYL_FanIndication", path, true);
    EXPECT_EQ(
        outcomeOf([&] { provider.mustPoll(host.context(), nullptr, "PYL_FanIndication", path); }),
        "status 7 nothing has to be polled");
}

TEST_F(FanProviderTest, WatchesWhileIndicationsAreEnabled) {
    WaitingLines events;
    host.onIndication = [&](const cimhost::Instance& indication) {
        events.note(indication.find("Summary")->value.get<cimhost::Text>()->str());
    };
    host.onInvokeMethod = [&](const auto&, const auto&, const CmpiCpp::CmpiArgs& in) {
        events.note("posted " + in.getArg("Status").str());  // the last that a look does
    };
    fans[0].fault = true;
    for (int i = 0; i < 2; ++i) provider.enableIndications(host.context());
    events.waitFor("posted 6");
    for (int i = 0; i < 2; ++i) provider.disableIndications(host.context());
    EXPECT_EQ(events.take(), (Lines{"Fan failed", "posted 6"}));
    fans[0].fault = false;  // while nobody looks
    EXPECT_EQ(events.take(), Lines{});
    provider.enableIndications(host.context());
    events.waitFor("posted 2");
    provider.cleanup(host.context(), true);
    EXPECT_EQ(events.take(), (Lines{"Fan repaired", "posted 2"}));
}

}  // namespace
