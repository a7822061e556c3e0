#include "providers/fan/FanProvider.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pylcommon/testing.h>

namespace {

using cimtest::arrayOf;
using cimtest::failureOf;
using cimtest::Path;
using cimtest::Post;
using cimtest::Value;
using fan::Fan;
using fan::FanProvider;
using testing::AllOf;
using testing::EndsWith;
using testing::StartsWith;

struct FanProviderTest : testing::Test {
    cimtest::FakeHost machine;
    std::vector<Fan> fans{Fan{"chip:fan1", "CPU fan", 1200, 300, 1250, false, false, true},
                          Fan{"chip:fan2", "fan2", {}, {}, {}, {}, {}, {}}};
    cimtest::ProviderHost host{"root/ktq", {"base/base.mof", "PYL_Fan.mof", "PYL_Indications.mof"}};
    FanProvider& provider = host.serve(
        std::make_unique<FanProvider>(host.broker(), host.logger(), [this] { return fans; }),
        {"PYL_Fan", "PYL_FanGroup", "PYL_FanIndication"});

    static Path fanPath(const std::string& id) {
        return {"PYL_Fan",
                {{"CreationClassName", "PYL_Fan"},
                 {"SystemCreationClassName", "PYL_ComputerSystem"},
                 {"SystemName", "server-1"},
                 {"DeviceID", "KTQ:PYL_Fan:" + id}}};
    }
    /// What the next look raises and where.
    std::vector<std::string> raised() {
        provider.look(host.context());
        std::vector<std::string> alerts;
        for (const auto& alert : host.alerts().take()) {
            alerts.push_back(alert["Summary"].text() + " at " + alert["HWPhysicalLocation"].text());
        }
        return alerts;
    }
    using Alerts = std::vector<std::string>;
    using Posts = std::vector<Post>;
};

TEST_F(FanProviderTest, NamesItsFansAndTheirGroup) {
    EXPECT_EQ(host.names("PYL_Fan"),
              (std::vector<Path>{fanPath("chip:fan1"), fanPath("chip:fan2")}));
    EXPECT_EQ(
        host.names("PYL_FanGroup"),
        std::vector<Path>{"//server-1/root/ktq:PYL_FanGroup.InstanceID=\"KTQ:PYL_FanGroup:1\""});
}

TEST_F(FanProviderTest, DescribesAFanByWhatIsKnown) {
    const auto shown = host.enumerate("PYL_Fan");
    ASSERT_EQ(shown.size(), 2U);
    EXPECT_EQ(shown[0]["ElementName"], "CPU fan");
    EXPECT_EQ(shown[0]["VariableSpeed"], true);
    EXPECT_EQ(shown[0]["DesiredSpeed"], 1250);
    EXPECT_EQ(shown[0]["CurrentSpeed"], 1200);
    EXPECT_EQ(shown[0]["MinimumSpeed"], 300);
    EXPECT_EQ(shown[0]["OperationalStatus"], arrayOf(2));
    EXPECT_EQ(shown[0]["HealthState"], 5);
    for (const auto* part : {"DesiredSpeed", "CurrentSpeed", "MinimumSpeed"}) {
        EXPECT_FALSE(shown[1].has(part)) << part;
    }
    EXPECT_EQ(shown[1]["OperationalStatus"], arrayOf(0));
}

TEST_F(FanProviderTest, ReadsAfreshForEachRequest) {
    fans.clear();
    EXPECT_EQ(host.names("PYL_Fan").size(), 0U);
}

TEST_F(FanProviderTest, GetsAFanByItsPathAndSaysWhichItHasNot) {
    EXPECT_EQ(host.get(fanPath("chip:fan1"))["ElementName"], "CPU fan");
    fans.clear();
    EXPECT_THAT(failureOf([&] { host.get("PYL_FanGroup.InstanceID=\"x\""); }),
                AllOf(StartsWith("6 no such instance: /"),
                      EndsWith("/root/ktq:PYL_FanGroup.InstanceID=\"x\"")));
    EXPECT_NE(failureOf([&] { host.get(fanPath("chip:fan1")); }), "");
}

TEST_F(FanProviderTest, RaisesWhatHappensAndPostsAChangeOfTheGroup) {
    EXPECT_EQ(raised(), Alerts{});
    EXPECT_EQ(host.posts().take(), (Posts{{"PYL_FanGroup", 2}}));
    EXPECT_EQ(raised(), Alerts{});
    EXPECT_EQ(host.posts().take(), Posts{});
    fans[0].fault = true;
    EXPECT_EQ(raised(), Alerts{"Fan failed at CPU fan"});
    EXPECT_EQ(host.posts().take(), (Posts{{"PYL_FanGroup", 6}}));
    fans[0].fault = false;
    fans.pop_back();
    EXPECT_EQ(raised(), (Alerts{"Fan repaired at CPU fan", "Fan removed at fan2"}));
    EXPECT_EQ(host.posts().take(), (Posts{{"PYL_FanGroup", 2}}));
}

TEST_F(FanProviderTest, WatchesWhileIndicationsAreEnabled) {
    fans[0].fault = true;
    host.subscribe("PYL_FanIndication");
    host.subscribe("PYL_FanIndication");
    host.posts().waitFor("PYL_FanGroup 6");  // the last that a look does
    host.unsubscribe();
    EXPECT_EQ(host.alerts().take().at(0)["Summary"], "Fan failed");
    fans[0].fault = false;  // while nobody looks
    host.posts().take();
    host.subscribe("PYL_FanIndication");
    host.posts().waitFor("PYL_FanGroup 2");
    host.end();
    EXPECT_EQ(host.alerts().take().at(0)["Summary"], "Fan repaired");
}

TEST_F(FanProviderTest, NeedsNoPolling) {
    host.subscribe("PYL_FanIndication");
    EXPECT_EQ(host.log().countOf("polled"), 0U);
}

}  // namespace
