#include "providers/consolidatedstatus/ConsolidatedStatusProvider.h"

#include "common/PYLUtil.h"
#include "tests/common/CapturedResults.h"
#include "tests/common/Failures.h"
#include "tests/common/QuietResults.h"
#include "tests/support/TestBroker.h"

#include <thread>
#include <vector>

namespace {

using CmpiCpp::CmpiArgs;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiValue;
using consolidatedstatus::ConsolidatedStatusProvider;

constexpr const char* overallText =
    "//server-1/root/ktq:PYL_ConsolidatedStatus.InstanceID=\"KTQ:PYL_ConsolidatedStatus\"";

std::string postedText(const std::string& className) {
    return "//server-1/root/ktq:PYL_ConsolidatedStatus.InstanceID=\"KTQ:PYL_ConsolidatedStatus:" +
           className + "\"";
}

struct ConsolidatedStatusTest : testing::Test {
    TestBroker host{{{"PYL_ConsolidatedStatus", ""}}};
    Logger log = silentLogger();
    Journal journal;
    CapturedPaths paths{journal};
    CapturedInstances instances{journal};
    CapturedMethodResult method{journal};
    ConsolidatedStatusProvider provider{host.broker(), log, [] {
                                            using std::chrono::seconds;
                                            using std::chrono::system_clock;
                                            return system_clock::time_point(seconds(86'400));
                                        }};

    CmpiObjectPath classPath(const char* className) {
        return CmpiCpp::makeCmpiObjectPath(host.broker(), "root/ktq", className);
    }
    std::string call(const CmpiArgs& in, const char* name = "PostStatus",
                     const char* className = "PYL_ConsolidatedStatus") {
        return outcomeOf(
            [&] { provider.invokeMethod(host.context(), classPath(className), name, in, method); });
    }
    std::string post(const CmpiValue& className, const CmpiValue& status) {
        auto in = CmpiCpp::makeCmpiArgs(host.broker());
        in.addArg("ClassName", className);
        in.addArg("Status", status);
        return call(in);
    }
    static CmpiValue status(unsigned value) {
        return CmpiValue(static_cast<unsigned short>(value));
    }
    Lines names() {
        journal.take();
        provider.enumInstanceNames(host.context(), classPath("PYL_ConsolidatedStatus"), paths);
        return journal.take();
    }
    /// The one instance with this path.
    std::string shown(const std::string& path) {
        journal.take();
        provider.enumInstances(host.context(), classPath("PYL_ConsolidatedStatus"), nullptr,
                               instances);
        for (const auto& line : journal.take()) {
            if (line.ends_with(" at " + path)) return line;
        }
        return "none";
    }
};

TEST_F(ConsolidatedStatusTest, KnowsNothingAtFirst) {
    EXPECT_EQ(names(), Lines{std::string("delivered ") + overallText});
    const auto overall = shown(overallText);
    EXPECT_NE(overall.find("OperationalStatus = {0};"), overall.npos) << overall;
    EXPECT_NE(overall.find("PostCount = 0;"), overall.npos) << overall;
    EXPECT_EQ(overall.find("LastPosted"), overall.npos) << overall;
}

TEST_F(ConsolidatedStatusTest, ShowsWhatWasPosted) {
    EXPECT_EQ(post("PYL_Fan", status(3)), "none");
    EXPECT_EQ(journal.take(), Lines{"delivered uint32 0"});
    EXPECT_EQ(names(), (Lines{std::string("delivered ") + overallText,
                              "delivered " + postedText("PYL_Fan")}));
    EXPECT_EQ(shown(postedText("PYL_Fan")),
              "delivered instance of PYL_ConsolidatedStatus {InstanceID = "
              "\"KTQ:PYL_ConsolidatedStatus:PYL_Fan\"; ElementName = \"Status of PYL_Fan\"; "
              "ReportingClass = \"PYL_Fan\"; OperationalStatus = {3}; StatusDescriptions = "
              "{\"Degraded\"}; HealthState = 10; PostCount = 1; LastPosted = "
              "\"19700102000000.000000+000\";} at " +
                  postedText("PYL_Fan"));
}

TEST_F(ConsolidatedStatusTest, ShowsEachClassOnceAndTheWorstOfAll) {
    post("PYL_Fan", status(6));
    post("PYL_Power", status(2));
    post("PYL_Fan", status(3));
    EXPECT_EQ(names().size(), 3U);
    const auto overall = shown(overallText);
    EXPECT_NE(overall.find("OperationalStatus = {3};"), overall.npos) << overall;
    EXPECT_NE(overall.find("PostCount = 3;"), overall.npos) << overall;
}

TEST_F(ConsolidatedStatusTest, CountsAnUndefinedStatusAsUnknown) {
    post("PYL_Fan", status(99));
    EXPECT_NE(shown(postedText("PYL_Fan")).find("OperationalStatus = {0};"), std::string::npos);
}

TEST_F(ConsolidatedStatusTest, GetsOneByItsPath) {
    post("PYL_Fan", status(2));
    journal.take();
    auto path = classPath("PYL_ConsolidatedStatus");
    path.addKey("InstanceID", "KTQ:PYL_ConsolidatedStatus:PYL_Fan");
    provider.getInstance(host.context(), path, nullptr, instances);
    EXPECT_EQ(journal.take().size(), 1U);
    path = classPath("PYL_ConsolidatedStatus");
    path.addKey("InstanceID", "KTQ:PYL_ConsolidatedStatus:PYL_Other");
    EXPECT_EQ(outcomeOf([&] { provider.getInstance(host.context(), path, nullptr, instances); }),
              "status 6 no such instance: " + path.str());
}

TEST_F(ConsolidatedStatusTest, TellsTheCallerWhatIsWrongWithItsArguments) {
    auto in = CmpiCpp::makeCmpiArgs(host.broker());
    EXPECT_EQ(call(in), "status 4 Argument 'ClassName' not present");
    in.addArg("ClassName", "PYL_Fan");
    EXPECT_EQ(call(in), "status 4 Argument 'Status' not present");
    EXPECT_EQ(post("PYL_Fan", 3U),
              "status 4 Argument 'Status' has bad type uint32, expecting uint16");
    EXPECT_EQ(post(status(3), status(3)),
              "status 4 Argument 'ClassName' has bad type uint16, expecting string");
    EXPECT_EQ(names().size(), 1U);
}

TEST_F(ConsolidatedStatusTest, RefusesWhatCannotBeAClass) {
    for (const std::string& name :
         {std::string(), std::string("1Fan"), std::string("PYL Fan"), std::string("PYL_\n"),
          std::string("PYL_F\xC3\xA4n"), std::string("%s%n"), std::string(256, 'a')}) {
        EXPECT_EQ(post(name, status(2)), "status 4 Argument 'ClassName' is not a class name")
            << name;
    }
    EXPECT_TRUE(post(CmpiValue::null(CMPI_string), status(2)).starts_with("status "));
    EXPECT_EQ(names().size(), 1U);
    EXPECT_EQ(post(std::string(255, 'a'), status(2)), "none");
}

TEST_F(ConsolidatedStatusTest, HasRoomForSoManyClasses) {
    for (std::size_t i = 0; i < consolidatedstatus::StatusBoard::mostClasses; ++i) {
        post("PYL_" + std::to_string(i), status(2));
    }
    EXPECT_EQ(post("PYL_More", status(2)), "status 1 too many classes have posted their status");
}

TEST_F(ConsolidatedStatusTest, KnowsNoOtherMethod) {
    const auto in = CmpiCpp::makeCmpiArgs(host.broker());
    EXPECT_EQ(call(in, "Reset"), "status 17 no such method: Reset");
    EXPECT_EQ(call(in, "PostStatus", "PYL_ComputerSystem"), "status 17 no such method: PostStatus");
}

TEST_F(ConsolidatedStatusTest, StaysLoadedForWhatItKeeps) {
    EXPECT_EQ(provider.unloadOK(host.context()), 0);
    post("PYL_Fan", status(2));
    EXPECT_EQ(provider.unloadOK(host.context()), 1);
}

TEST_F(ConsolidatedStatusTest, TakesPostsFromSeveralThreads) {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            for (int round = 0; round < 50; ++round) {
                const cimhost::CallScope scope;
                auto in = CmpiCpp::makeCmpiArgs(host.broker());
                in.addArg("ClassName", "PYL_" + std::to_string((thread + round) % 5));
                in.addArg("Status", status(2));
                Journal own;
                CapturedMethodResult result(own);
                provider.invokeMethod(host.context(), classPath("PYL_ConsolidatedStatus"),
                                      "PostStatus", in, result);
            }
        });
    }
    threads.clear();
    EXPECT_EQ(names().size(), 6U);
    EXPECT_NE(shown(overallText).find("PostCount = 200;"), std::string::npos);
}

}  // namespace
