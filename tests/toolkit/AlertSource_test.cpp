#include "toolkit/AlertSource.h"

#include "cimhost/repository/CimError.h"
#include "common/PYLUtil.h"
#include "platform/smbios/SmBios.h"
#include "testing/pylcommon/testing/FakeController.h"
#include "testing/pylcommon/testing/SystemName.h"
#include "tests/common/Failures.h"
#include "tests/support/Journal.h"
#include "tests/support/TestBroker.h"
#include "toolkit/AlertThread.h"
#include "toolkit/WatchingProvider.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <cerrno>
#include <chrono>
#include <optional>
#include <semaphore>
#include <stdexcept>
#include <vector>

namespace {

using PYL::AlertDefinition;
using PYL::AlertSource;

struct AlertSourceTest : testing::Test {
    TestBroker host{{{"KT_AlertIndication", ""}, {"PYL_ComputerSystem", ""}}};
    cimtest::FakeController controller;
    JournalLog log;
    std::optional<cimhost::Instance> raised;

    AlertSourceTest() {
        SmBios::setSource(std::make_shared<SmbiosMemory>(std::vector<std::uint8_t>()));
        controller.openStatus = ENOENT;
        host.onIndication = [this](const cimhost::Instance& indication) { raised = indication; };
    }
    ~AlertSourceTest() override { SmBios::setSource(nullptr); }

    std::string text(const char* property) const {
        const auto* const found = raised ? raised->find(property) : nullptr;
        const auto* const value = found ? found->value.get<cimhost::Text>() : nullptr;
        return value ? value->str() : "absent";
    }
    std::uint64_t number(const char* property) const {
        const auto* const found = raised->find(property);
        return found ? *found->value.get<std::uint64_t>() : 0;
    }
    /// The error lines of the sources themselves.
    Lines errors() {
        auto lines = log.journal->take();
        std::erase_if(lines, [](const auto& line) {
            return !line.starts_with("error: event") && !line.starts_with("error: a look");
        });
        return lines;
    }
};

TEST_F(AlertSourceTest, FillsAnAlertFromItsDefinition) {
    AlertSource source(host.broker(), log.logger, "PYL_FanIndication");
    source.raise(host.context(), 3);
    ASSERT_TRUE(raised);
    EXPECT_EQ(raised->className(), "KT_AlertIndication");
    EXPECT_EQ(text("EventID"), "3");
    EXPECT_EQ(text("ProviderName"), "KT Cooling");
    EXPECT_EQ(text("Summary"), "Fan failed");
    EXPECT_EQ(text("ProbableCauseDescription"), "Fan Failed");
    EXPECT_EQ(number("PerceivedSeverity"), 5U);
    EXPECT_EQ(number("AlertType"), 5U);
    EXPECT_EQ(number("EventCategory"), 23U);
    EXPECT_EQ(number("ProbableCause"), 94U);
    EXPECT_EQ(number("AlertingElementFormat"), 2U);
    EXPECT_EQ(text("SystemCreationClassName"), "PYL_ComputerSystem");
    EXPECT_TRUE(
        text("AlertingManagedElement").starts_with("//server-1/root/ktq:PYL_ComputerSystem."));
    EXPECT_NE(text("Description"), "absent");
}

TEST_F(AlertSourceTest, PutsADetailBehindTheSummary) {
    AlertSource source(host.broker(), log.logger, "PYL_BaseServerIndication");
    source.raise(host.context(), 100, "42");
    EXPECT_EQ(text("Summary"), "Base Server Heart Beat indication Id:42");
}

TEST_F(AlertSourceTest, TakesWhatTheProviderKnows) {
    AlertSource source(host.broker(), log.logger, "PYL_FanIndication");
    source.raise(host.context(), 3, {}, [](PYL::KTAlertIndication& alert) {
        alert.setHWPhysicalLocation("Bay 3");
        alert.setAlertingManagedElement("the fan");
    });
    EXPECT_EQ(text("HWPhysicalLocation"), "Bay 3");
    EXPECT_EQ(text("AlertingManagedElement"), "the fan");
}

TEST_F(AlertSourceTest, ForwardsAnAlertToTheEnclosure) {
    controller.openStatus = 0;
    AlertSource source(host.broker(), log.logger, "PYL_FanIndication");
    source.raise(host.context(), 3);
    source.waitUntilForwarded();
    EXPECT_EQ(controller.executions, 1U);
    EXPECT_TRUE(controller.line.starts_with("--PNAM KT_Cooling --EID 3 ")) << controller.line;
    source.raise(host.context(), 1);
    source.waitUntilForwarded();
    EXPECT_EQ(controller.executions, 1U);
}

TEST_F(AlertSourceTest, ForwardsAnAlertThatTheObjectManagerDoesNotTake) {
    controller.openStatus = 0;
    AlertSource source(host.broker(), log.logger, "PYL_FanIndication");
    host.onIndication = nullptr;
    source.raise(host.context(), 3);
    source.waitUntilForwarded();
    EXPECT_EQ(controller.executions, 1U);
}

/// A controller that takes requests and answers none, until it is given up.
std::optional<int> neverAnswer(const IpmiRequest&, IpmiResponse&) {
    pollfd interruption{BmcInterruption::descriptor(), POLLIN, 0};
    poll(&interruption, 1, -1);
    return ECANCELED;
}

TEST_F(AlertSourceTest, DelaysNoAlertForAControllerThatNeverAnswers) {
    constexpr int count = 100;
    controller.openStatus = 0;
    controller.onExchange = neverAnswer;
    int delivered = 0;
    host.onIndication = [&](const cimhost::Instance&) { ++delivered; };
    {
        AlertSource source(host.broker(), log.logger, "PYL_FanIndication");
        for (int i = 0; i < count; ++i) source.raise(host.context(), 3);
        EXPECT_EQ(delivered, count);
    }
    auto lines = log.journal->take();
    std::erase_if(lines, [](const auto& line) { return !line.starts_with("warning: "); });
    const std::string dropped =
        "warning: an alert is not forwarded to the enclosure: too many wait for the controller; ";
    // The first may or may not be on its way to the controller already.
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_EQ(lines[0], dropped + "1 were dropped so far");
    EXPECT_EQ(lines[1], dropped + "2 were dropped so far");
    EXPECT_EQ(lines[5], dropped + "32 were dropped so far");
    EXPECT_TRUE(lines[6].ends_with(" alerts are not forwarded to the enclosure: the provider ends"))
        << lines[6];
}

/// Raises an alert whenever it begins to watch.
struct RaisingProvider : PYL::WatchingProvider {
    RaisingProvider(const CmpiCpp::CmpiBroker& broker, Logger& log)
        : source(broker, log, "PYL_FanIndication"),
          thread(broker, log, std::chrono::hours(1),
                 [this](const CmpiCpp::CmpiContext& context) { source.raise(context, 3); }) {}

    CMPIBroker* getBroker() override { return nullptr; }

    AlertSource source;
    PYL::AlertThread thread;

protected:
    void startWatching(const CmpiCpp::CmpiContext& context) override { thread.start(context); }
    void stopWatching() override { thread.stop(); }
};

// It would wait for ever: nobody gives the controller up before the source ends.
TEST_F(AlertSourceTest, DelaysNoUnsubscribingForAControllerThatNeverAnswers) {
    std::counting_semaphore<> isAsked(0);
    controller.openStatus = 0;
    controller.onExchange = [&](const IpmiRequest& request, IpmiResponse& response) {
        isAsked.release();
        return neverAnswer(request, response);
    };
    int delivered = 0;
    host.onIndication = [&](const cimhost::Instance&) { ++delivered; };
    const auto path = host.path("PYL_ComputerSystem", "a");
    {
        RaisingProvider provider(host.broker(), log.logger);
        provider.enableIndications(host.context());
        isAsked.acquire();
        provider.deactivateFilter(host.context(), nullptr, "KT_AlertIndication", path, true);
        provider.disableIndications(host.context());
        EXPECT_EQ(delivered, 1);
        provider.enableIndications(host.context());
        provider.disableIndications(host.context());
        EXPECT_EQ(delivered, 2) << "who subscribes again is told, too";
        provider.cleanup(host.context(), true);
    }
    EXPECT_EQ(errors(), Lines{});
}

TEST_F(AlertSourceTest, SaysOnceWhatTheHostLacks) {
    AlertSource source(host.broker(), log.logger, "PYL_FanIndication");
    const auto troubles = [&] {
        source.raise(host.context(), 3);
        source.waitUntilForwarded();
        auto lines = log.journal->take();
        std::erase_if(lines, [](const auto& line) {
            return !line.starts_with("error: ") && line.find("BMC") == line.npos;
        });
        return lines;
    };
    const Lines noSmbios{"error: No SMBIOS data from memory: the entry point has no SMBIOS anchor",
                         "error: failed to _BladeMRA::getFirstData()"};
    const std::string noController = "information: BMC_open() failed: No such file or directory";
    EXPECT_EQ(troubles(), (Lines{noSmbios[0], noSmbios[1], noController}));
    EXPECT_EQ(troubles(), Lines{});
    EXPECT_EQ(troubles(), Lines{});
    controller.openStatus = 0;
    EXPECT_EQ(troubles(), Lines{});
    controller.openStatus = ENOENT;
    EXPECT_EQ(troubles(), Lines{noController}) << "it was there meanwhile";
    controller.openStatus = EACCES;
    EXPECT_EQ(troubles(), Lines{"information: BMC_open() failed: Permission denied"});
}

constexpr AlertDefinition ownAlerts[] = {
    {.number = 50,
     .eventID = "5050",
     .providerName = "Example Uptime",
     .severity = PYL::severityMinor,
     .summary = "Server is up since ",
     .description = "The server has not been restarted for long.",
     .eventCategory = 9,
     .alertType = PYL::alertTypeEnvironmental,
     .probableCause = 1,
     .probableCauseDescription = "Long Uptime",
     .recommendedActions = "Restart it."},
    {.number = 51,
     .eventID = "5051",
     .providerName = "Example Uptime",
     .severity = PYL::severityInformational,
     .summary = "Server was restarted"},
};

TEST_F(AlertSourceTest, RaisesAlertsOfTheProvidersOwnBesideThoseOfTheLibrary) {
    AlertSource source(host.broker(), log.logger, "PYL_FanIndication", ownAlerts);
    source.raise(host.context(), 50, "Monday");
    EXPECT_EQ(text("EventID"), "5050");
    EXPECT_EQ(text("ProviderName"), "Example Uptime");
    EXPECT_EQ(text("Summary"), "Server is up since Monday");
    EXPECT_EQ(text("Description"), "The server has not been restarted for long.");
    EXPECT_EQ(text("ProbableCauseDescription"), "Long Uptime");
    EXPECT_EQ(number("PerceivedSeverity"), 4U);
    EXPECT_EQ(number("AlertType"), 6U);
    EXPECT_EQ(number("EventCategory"), 9U);
    EXPECT_EQ(number("ProbableCause"), 1U);
    source.raise(host.context(), 51);
    EXPECT_EQ(text("Summary"), "Server was restarted");
    EXPECT_EQ(text("EventID"), "5051");
    source.raise(host.context(), 3);
    EXPECT_EQ(text("Summary"), "Fan failed");
    AlertSource another(host.broker(), log.logger, "PYL_FanIndication");
    raised.reset();
    another.raise(host.context(), 50);
    EXPECT_FALSE(raised) << "what one provider defines is its own";
}

TEST_F(AlertSourceTest, RaisesAlertsOfAProviderThatTheLibraryDoesNotKnow) {
    AlertSource source(host.broker(), log.logger, "PYL_UptimeIndication", ownAlerts);
    source.raise(host.context(), 51);
    EXPECT_EQ(text("Summary"), "Server was restarted");
    EXPECT_EQ(errors(), Lines{});
}

TEST_F(AlertSourceTest, RefusesTwoDefinitionsOfOneNumber) {
    const auto outcomeWith = [&](const char* indication, std::vector<AlertDefinition> own) {
        return outcomeOf([&] { AlertSource(host.broker(), log.logger, indication, own); });
    };
    auto clashing = ownAlerts[1];
    clashing.number = 3;
    EXPECT_EQ(outcomeWith("PYL_FanIndication", {clashing}),
              "status 11 event 3 of PYL_FanIndication is defined already: \"Fan failed\"");
    EXPECT_EQ(outcomeWith("PYL_UptimeIndication", {clashing}), "none");
    EXPECT_EQ(outcomeWith("PYL_UptimeIndication", {ownAlerts[1], ownAlerts[0], ownAlerts[1]}),
              "status 11 event 51 of PYL_UptimeIndication is defined already: "
              "\"Server was restarted\"");
    clashing.number = 0;
    EXPECT_EQ(outcomeWith("PYL_UptimeIndication", {clashing}),
              "status 4 event 0 of PYL_UptimeIndication: numbers start at 1");
}

TEST_F(AlertSourceTest, SaysThatAnEventHasNoDefinition) {
    AlertSource source(host.broker(), log.logger, "PYL_FanIndication");
    source.raise(host.context(), 7);
    EXPECT_FALSE(raised);
    EXPECT_EQ(errors(), Lines{"error: event 7 has no definition and is not raised"});
    AlertSource unknown(host.broker(), log.logger, "PYL_Nothing");
    for (const int event : {3, 0, -1}) unknown.raise(host.context(), event);
    EXPECT_FALSE(raised);
    EXPECT_EQ(errors(), (Lines{"error: event 3 has no definition and is not raised",
                               "error: event 0 has no definition and is not raised",
                               "error: event -1 has no definition and is not raised"}));
}

TEST_F(AlertSourceTest, GoesOnWhenTheObjectManagerDoesNotTakeIt) {
    AlertSource source(host.broker(), log.logger, "PYL_FanIndication");
    host.onIndication = nullptr;
    source.raise(host.context(), 3);
    EXPECT_EQ(errors(), Lines{"error: event 3 could not be raised: CMPI_RC_ERR_NOT_SUPPORTED (7): "
                              "nobody takes indications"});
    PYL::PYLUtil::setBroker(CmpiCpp::CmpiBroker(nullptr));
    source.raise(host.context(), 3);
    EXPECT_EQ(errors().size(), 1U);
}

TEST_F(AlertSourceTest, GoesOnWhenTheProviderFails) {
    AlertSource source(host.broker(), log.logger, "PYL_FanIndication");
    source.raise(host.context(), 3, {},
                 [](PYL::KTAlertIndication&) { throw std::runtime_error("no idea"); });
    EXPECT_EQ(errors(), Lines{"error: event 3 could not be raised: no idea"});
    EXPECT_FALSE(raised);
}

}  // namespace
