#include "providers/consolidatedstatus/ConsolidatedStatusProvider.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pylcommon/testing.h>

#include <thread>
#include <vector>

namespace {

using cimtest::arrayOf;
using cimtest::failureOf;
using cimtest::Named;
using cimtest::Path;
using cimtest::Value;
using consolidatedstatus::ConsolidatedStatusProvider;
using testing::AllOf;
using testing::EndsWith;
using testing::StartsWith;

const Path overall{"PYL_ConsolidatedStatus.InstanceID=\"KTQ:PYL_ConsolidatedStatus\""};

Path posted(const std::string& className) {
    return {"PYL_ConsolidatedStatus", {{"InstanceID", "KTQ:PYL_ConsolidatedStatus:" + className}}};
}

struct ConsolidatedStatusTest : testing::Test {
    ConsolidatedStatusTest()
        : ConsolidatedStatusTest({"base/base.mof", "PYL_ConsolidatedStatus.mof"}, "") {}
    ConsolidatedStatusTest(const std::vector<std::filesystem::path>& mof,
                           const std::string& classes)
        : host("root/ktq", mof) {
        host.readMofText(classes);
        provider =
            &host.serve(std::make_unique<ConsolidatedStatusProvider>(host.broker(), host.logger()),
                        {"PYL_ConsolidatedStatus"});
    }

    cimtest::TimeIs clock{std::chrono::system_clock::time_point(std::chrono::seconds(86'400))};
    cimtest::FakeHost machine;
    cimtest::ProviderHost host;
    ConsolidatedStatusProvider* provider = nullptr;

    std::string call(const Named& in, const char* method = "PostStatus") {
        return failureOf(
            [&] { EXPECT_EQ(host.invoke("PYL_ConsolidatedStatus", method, in).returned, 0); });
    }
    std::string post(const std::string& className, int status) {
        return call({{"ClassName", className}, {"Status", status}});
    }
    std::size_t count() { return host.names("PYL_ConsolidatedStatus").size(); }
};

TEST_F(ConsolidatedStatusTest, KnowsNothingAtFirst) {
    EXPECT_EQ(host.names("PYL_ConsolidatedStatus"), std::vector<Path>{overall});
    EXPECT_EQ(host.get(overall)["OperationalStatus"], arrayOf(0));
    EXPECT_EQ(host.get(overall)["PostCount"], 0);
    EXPECT_FALSE(host.get(overall).has("LastPosted"));
}

TEST_F(ConsolidatedStatusTest, ShowsWhatWasPosted) {
    EXPECT_EQ(post("PYL_Fan", 3), "");
    EXPECT_EQ(host.names("PYL_ConsolidatedStatus"),
              (std::vector<Path>{overall, posted("PYL_Fan")}));
    EXPECT_EQ(
        host.get(posted("PYL_Fan")),
        cimtest::Instance(posted("PYL_Fan"), {{"InstanceID", "KTQ:PYL_ConsolidatedStatus:PYL_Fan"},
                                              {"ElementName", "Status of PYL_Fan"},
                                              {"ReportingClass", "PYL_Fan"},
                                              {"OperationalStatus", arrayOf(3)},
                                              {"StatusDescriptions", arrayOf("Degraded")},
                                              {"HealthState", 10},
                                              {"PostCount", 1},
                                              {"LastPosted", "19700102000000.000000+000"}}));
}

TEST_F(ConsolidatedStatusTest, ShowsEachClassOnceAndTheWorstOfAll) {
    post("PYL_Fan", 6);
    post("PYL_Power", 2);
    post("PYL_Fan", 3);
    EXPECT_EQ(count(), 3U);
    EXPECT_EQ(host.get(overall)["OperationalStatus"], arrayOf(3));
    EXPECT_EQ(host.get(overall)["PostCount"], 3);
}

TEST_F(ConsolidatedStatusTest, CountsAnUndefinedStatusAsUnknown) {
    post("PYL_Fan", 99);
    EXPECT_EQ(host.get(posted("PYL_Fan"))["OperationalStatus"], arrayOf(0));
}

TEST_F(ConsolidatedStatusTest, SaysWhichItHasNot) {
    EXPECT_THAT(failureOf([&] { host.get(posted("PYL_Other")); }),
                AllOf(StartsWith("6 no such instance: /"),
                      EndsWith("/root/ktq:PYL_ConsolidatedStatus.InstanceID="
                               "\"KTQ:PYL_ConsolidatedStatus:PYL_Other\"")));
}

/// Hosts that hold no arguments against the class let everything through.
struct BehindALooseHost : ConsolidatedStatusTest {
    explicit BehindALooseHost(const std::string& typeOfName = "string")
        : ConsolidatedStatusTest({},
                                 "class PYL_ConsolidatedStatus { [Key] string InstanceID;"
                                 " uint32 Reset(); uint32 PostStatus([In] " +
                                     typeOfName + " ClassName, [In] uint32 Status); };") {}
};
struct BehindAHostThatSendsNumbers : BehindALooseHost {
    BehindAHostThatSendsNumbers() : BehindALooseHost("uint16") {}
};

TEST_F(BehindALooseHost, TellsTheCallerWhatIsWrongWithItsArguments) {
    EXPECT_EQ(call({}), "4 Argument 'ClassName' not present");
    EXPECT_EQ(call({{"ClassName", "PYL_Fan"}}), "4 Argument 'Status' not present");
    EXPECT_EQ(post("PYL_Fan", 3), "4 Argument 'Status' has bad type uint32, expecting uint16");
    EXPECT_NE(call({{"ClassName", Value()}, {"Status", 3}}), "");
    EXPECT_EQ(count(), 1U);
}

TEST_F(BehindAHostThatSendsNumbers, TellsThatANumberIsNoName) {
    EXPECT_EQ(call({{"ClassName", 3}}),
              "4 Argument 'ClassName' has bad type uint16, expecting string");
}

TEST_F(BehindALooseHost, KnowsNoOtherMethod) {
    EXPECT_EQ(call({}, "Reset"), "17 no such method: Reset");
}

TEST_F(ConsolidatedStatusTest, RefusesWhatCannotBeAClass) {
    for (const std::string& name :
         {std::string(), std::string("1Fan"), std::string("PYL Fan"), std::string("PYL_\n"),
          std::string("PYL_F\xC3\xA4n"), std::string("%s%n"), std::string(256, 'a')}) {
        EXPECT_EQ(post(name, 2), "4 Argument 'ClassName' is not a class name") << name;
    }
    EXPECT_EQ(count(), 1U);
    EXPECT_EQ(post(std::string(255, 'a'), 2), "");
}

TEST_F(ConsolidatedStatusTest, HasRoomForSoManyClasses) {
    for (std::size_t i = 0; i < consolidatedstatus::StatusBoard::mostClasses; ++i) {
        post("PYL_" + std::to_string(i), 2);
    }
    EXPECT_EQ(post("PYL_More", 2), "1 too many classes have posted their status");
}

TEST_F(ConsolidatedStatusTest, StaysLoadedForWhatItKeeps) {
    EXPECT_EQ(provider->unloadOK(host.context()), 0);
    post("PYL_Fan", 2);
    EXPECT_EQ(provider->unloadOK(host.context()), 1);
}

TEST_F(ConsolidatedStatusTest, TakesPostsFromSeveralThreads) {
    EXPECT_EQ(count(), 1U);
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([this, thread] {
            for (int round = 0; round < 50; ++round) {
                post("PYL_" + std::to_string((thread + round) % 5), 2);
            }
        });
    }
    threads.clear();
    EXPECT_EQ(count(), 6U);
    EXPECT_EQ(host.get(overall)["PostCount"], 200);
}

}  // namespace
