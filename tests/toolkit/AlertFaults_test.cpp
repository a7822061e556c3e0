// The data sources, the controller, the object manager and the provider fail while a module raises
// its events: each event comes out as whole as it can, what went wrong is in the log, nothing is
// left over, and the next event is whole again.

#include "cimhost/repository/CimError.h"
#include "testing/cimhost/testing/Allocations.h"
#include "testing/cimhost/testing/FaultyBroker.h"
#include "testing/cimhost/testing/HostName.h"
#include "testing/pylcommon/testing/FakeController.h"
#include "testing/pylcommon/testing/SystemName.h"
#include "tests/common/Failures.h"
#include "tests/common/QuietResults.h"
#include "tests/support/DataSources.h"
#include "tests/support/Journal.h"
#include "tests/support/TestBroker.h"
#include "toolkit/AlertSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <string>
#include <vector>

namespace {

using cimtest::FaultyBroker;
using PYL::AlertSource;

constexpr int fanFailed = 3;
constexpr const char* indicationName = "PYL_FanIndication";

const std::string noServer = "error: failed to _computerSystemMRA::getFirstData()";
const std::string noEnclosure = "error: failed to _BladeMRA::getFirstData()";
const std::string callingPrefix = "information: calling ENCA_CLI_Exec with arg ";
const std::string notRaised = "error: event 3 could not be raised: ";

std::string textOf(const cimhost::Value& value) {
    if (const auto* const text = value.get<cimhost::Text>()) return text->str();
    if (const auto* const number = value.get<std::uint64_t>()) return std::to_string(*number);
    std::string all;
    if (const auto* const elements = value.get<cimhost::Value::Array>()) {
        for (const auto& element : *elements) all += textOf(element) + ";";
    }
    return all;
}

/// "Name value" of each property but those that differ from event to event.
Lines propertiesOf(const cimhost::Instance& indication) {
    Lines lines;
    for (const auto& [name, value, origin] : indication.properties) {
        if (name != "IndicationIdentifier" && name != "IndicationTime" && name != "EventTime") {
            lines.push_back(name.str() + " " + textOf(value));
        }
    }
    return lines;
}

Lines without(Lines lines, const std::string& property) {
    std::erase_if(lines, [&](const auto& line) { return line.starts_with(property + " "); });
    return lines;
}

/// A fan's module on a blade that tells everything, with a controller that takes everything.
struct AlertFaults : testing::Test {
    TestBroker host{{{"KT_AlertIndication", ""}, {"PYL_ComputerSystem", ""}}};
    DataSources sources;
    cimtest::FakeController controller;
    JournalLog log;
    AlertSource source{host.broker(), log.logger, indicationName};
    std::vector<Lines> delivered;

    AlertFaults() {
        sources.everythingIsKnown();
        host.onIndication = [this](const auto& indication) {
            delivered.push_back(propertiesOf(indication));
        };
        whole = told();
        EXPECT_NE(std::find(whole.begin(), whole.end(), "RackUUID rack-uuid"), whole.end());
        forwarded = callingPrefix + controller.line;
        EXPECT_TRUE(controller.line.starts_with("--PNAM KT_Cooling --EID 3 "));
    }

    Lines whole;            ///< what an event tells that nothing is missing of
    std::string forwarded;  ///< what the log says of its way to the enclosure

    /// Raises an event, which is delivered once, and leaves nothing open. What it told.
    Lines told() {
        raise(source);
        EXPECT_EQ(delivered.size(), 1U);
        return delivered.empty() ? Lines{} : delivered.front();
    }

    void raise(AlertSource& by, const AlertSource::Fill& fill = {}) {
        delivered.clear();
        log.journal->take();
        controller.line.clear();
        controller.opened = controller.closed = 0;
        controller.executions = 0;
        by.raise(host.context(), fanFailed, {}, fill);
        by.waitUntilForwarded();
        EXPECT_EQ(sources.alive, 0);
        EXPECT_EQ(controller.opened, controller.closed);
    }

    /// The log of the last event, without what marks the steps of every indication.
    Lines logged() {
        auto lines = log.journal->take();
        std::erase_if(lines, [](const auto& line) {
            return line.starts_with("information") &&
                   (line.ends_with("()") || line.ends_with("getRecord for event 3") ||
                    line.ends_with("Found record"));
        });
        return lines;
    }

    void expectWholeEvent() {
        EXPECT_EQ(told(), whole);
        EXPECT_EQ(logged(), Lines{forwarded});
        EXPECT_EQ(controller.executions, 1U);
    }

    /// An event that is delivered whole while the controller fails, and what the log says of that.
    Lines loggedOfAWholeEvent() {
        EXPECT_EQ(told(), whole);
        return logged();
    }
    /// The same where the command is on its way already.
    Lines loggedBehindTheCall() {
        auto lines = loggedOfAWholeEvent();
        EXPECT_FALSE(lines.empty());
        if (lines.empty()) return lines;
        EXPECT_EQ(lines.front(), forwarded);
        lines.erase(lines.begin());
        return lines;
    }

    /// The controller answers a command of this network function with a status of the way to it, or
    /// with a completion code of its own.
    void wayFails(std::uint8_t function, std::uint8_t command, int status) {
        controller.onExchange = [=](const IpmiRequest& request, IpmiResponse&) {
            const bool isMeant = request.networkFunction == function && request.command == command;
            return isMeant ? std::optional(status) : std::nullopt;
        };
    }
    void answers(std::uint8_t function, std::uint8_t command, std::uint8_t completionCode) {
        controller.onExchange = [=](const IpmiRequest& request, IpmiResponse& response) {
            const bool isMeant = request.networkFunction == function && request.command == command;
            if (isMeant) response.completionCode = completionCode;
            return isMeant ? std::optional(0) : std::nullopt;
        };
    }

    /// Each call of the broker fails in turn: an event is delivered, or it is a line in the log.
    /// How many were lost.
    int raiseWithEachCallFailing(FaultyBroker::Fault fault);
    /// Each allocation fails in turn, alone or with all that follow. How many events were lost.
    int raiseWithEachAllocationFailing(bool forever);
};

constexpr std::uint8_t application = 0x06;
constexpr std::uint8_t enclosure = 0x2E;
constexpr std::uint8_t deviceId = 0x01;
constexpr std::uint8_t systemGuid = 0x37;
constexpr std::uint8_t begin = 0x40;
constexpr std::uint8_t argument = 0x41;
constexpr std::uint8_t execute = 0x42;
constexpr std::uint8_t read = 0x43;
constexpr std::uint8_t end = 0x44;

constexpr struct {
    std::optional<std::string> HostFacts::*fact;
    const char* property;
} serverFacts[] = {{&HostFacts::osVersion, "OSVersion"},
                   {&HostFacts::biosVersion, "SystemFirmwareVersion"},
                   {&HostFacts::serialNumber, "SystemSerialNumber"},
                   {&HostFacts::virtualSerialNumber, "SystemVirtualSerialNumber"},
                   {&HostFacts::productId, "SystemProductID"},
                   {&HostFacts::productName, "SystemModel"},
                   {&HostFacts::uuid, "SystemGUID"},
                   {&HostFacts::virtualUuid, "SystemVirtualUUID"},
                   {&HostFacts::solutionName, "SolutionProductModel"}};

constexpr struct {
    std::optional<std::string> HostFacts::*fact;
    const char* property;
} bladeFacts[] = {{&HostFacts::enclosureName, "EnclosureName"},
                  {&HostFacts::rackName, "RackName"},
                  {&HostFacts::rackUuid, "RackUUID"}};

TEST_F(AlertFaults, LeaveOutOneByOneWhatTheServerDoesNotTell) {
    for (const auto& [fact, property] : serverFacts) {
        ((*sources.computerSystem).*fact).reset();
        const auto expected = without(whole, property);
        ASSERT_EQ(expected.size(), whole.size() - 1) << property;
        EXPECT_EQ(told(), expected);
        EXPECT_EQ(controller.executions, 1U) << property;
        EXPECT_EQ(logged(), Lines{callingPrefix + controller.line}) << "and nothing is wrong";
        sources.everythingIsKnown();
        expectWholeEvent();
    }
    sources.computerSystem->osType.reset();
    EXPECT_EQ(told(), without(whole, "OSType"));
    sources.everythingIsKnown();
    expectWholeEvent();
}

TEST_F(AlertFaults, LeaveOutOneByOneWhatTheEnclosureDoesNotTell) {
    for (const auto& [fact, property] : bladeFacts) {
        ((*sources.blade).*fact).reset();
        EXPECT_EQ(told(), without(whole, property));
        EXPECT_EQ(logged(), Lines{forwarded}) << property;
        sources.everythingIsKnown();
        expectWholeEvent();
    }
}

TEST_F(AlertFaults, TellTheEnclosureOfNoFirmwareThatTheServerDoesNotTell) {
    sources.computerSystem->biosVersion.reset();
    told();
    EXPECT_NE(controller.line.find(" --SFWVER  --SNAM "), std::string::npos) << controller.line;
    sources.everythingIsKnown();
    told();
    EXPECT_NE(controller.line.find(" --SFWVER B1 --SNAM "), std::string::npos) << controller.line;
}

TEST_F(AlertFaults, LoseTheServerAndTheEnclosureAloneWithTheirSources) {
    struct {
        std::function<void()> breaking;
        bool isServerLost;
        bool isEnclosureLost;
    } const rows[] = {
        {[this] { sources.hasComputerSystem = false; }, true, false},
        {[this] { sources.computerSystem.reset(); }, true, false},
        {[this] { sources.hasBlade = false; }, false, true},
        {[this] { sources.blade.reset(); }, false, true},
        {[this] { sources.hasComputerSystem = sources.hasBlade = false; }, true, true},
        {[this] { sources.computerSystem.reset(), sources.blade.reset(); }, true, true},
    };
    for (const auto& row : rows) {
        row.breaking();
        auto expected = whole;
        Lines lines;
        if (row.isServerLost) {
            expected = without(expected, "OSType");
            for (const auto& fact : serverFacts) expected = without(expected, fact.property);
            lines.push_back(noServer);
        }
        if (row.isEnclosureLost) {
            for (const auto& fact : bladeFacts) expected = without(expected, fact.property);
            expected.back() = "ImpactedDomain 4";
            lines.push_back(noEnclosure);
        }
        EXPECT_EQ(told(), expected);
        lines.push_back(callingPrefix + controller.line);
        EXPECT_EQ(logged(), lines);
        EXPECT_EQ(controller.executions, 1U);
        sources.everythingIsKnown();
        expectWholeEvent();
    }
}

TEST_F(AlertFaults, AreDeliveredWhileTheControllerCannotBeOpened) {
    for (const int status : {ENOENT, EACCES, ECONNREFUSED, ETIMEDOUT, EINVAL, ENOMEM}) {
        controller.openStatus = status;
        EXPECT_EQ(loggedOfAWholeEvent(),
                  Lines{"information: BMC_open() failed: " + BMC_strerror(status)});
        EXPECT_EQ(controller.opened, 0);
        controller.openStatus = 0;
        expectWholeEvent();
    }
}

TEST_F(AlertFaults, AreDeliveredWhenTheControllerVanishesBehindItsOpening) {
    for (const auto command : {deviceId, systemGuid}) {
        for (const int status : {ETIMEDOUT, ECONNRESET, EPROTO, EIO}) {
            wayFails(application, command, status);
            EXPECT_EQ(loggedOfAWholeEvent(),
                      Lines{"information: BMC_open() failed: " + BMC_strerror(status)});
            EXPECT_EQ(controller.opened, 1);
            EXPECT_EQ(controller.executions, 0U);
            controller.onExchange = nullptr;
            expectWholeEvent();
        }
    }
    answers(application, deviceId, 0xC1);
    EXPECT_EQ(loggedOfAWholeEvent(),
              Lines{"information: BMC_open() failed: " + BMC_strerror(0x10C1)});
    answers(application, systemGuid, 0xC1);
    EXPECT_EQ(told(), whole);
    EXPECT_EQ(controller.executions, 1U) << "not every controller has a GUID";
    EXPECT_EQ(controller.line.find("--SGUID"), std::string::npos);
}

TEST_F(AlertFaults, AreDeliveredWhenTheControllerVanishesInTheMiddleOfTheCommand) {
    for (const auto command : {begin, argument, execute, read}) {
        struct {
            int status;
            const char* line;
        } const rows[] = {{ETIMEDOUT, "information: Command time out."},
                          {ECONNRESET, "information: Unknown interface error(68)."},
                          {ENODEV, "information: Unknown interface error(13)."},
                          {EPROTO, "information: Unknown interface error(47)."}};
        for (const auto& row : rows) {
            wayFails(enclosure, command, row.status);
            EXPECT_EQ(loggedBehindTheCall(), Lines{row.line}) << unsigned{command};
            controller.onExchange = nullptr;
            expectWholeEvent();
        }
    }
}

TEST_F(AlertFaults, AreForwardedThoughTheControllerVanishesBehindTheCommand) {
    wayFails(enclosure, end, ECONNRESET);
    EXPECT_EQ(loggedBehindTheCall(), Lines{});
    EXPECT_EQ(controller.executions, 1U);
    controller.onExchange = nullptr;
    expectWholeEvent();
}

TEST_F(AlertFaults, SayWithWhichCodeTheControllerRefusesACommand) {
    struct {
        std::uint8_t code;
        const char* line;
    } const rows[] = {{0xC3, "information: Command time out."},
                      {0xC1, "information: Unknown interface error(10c1)."},
                      {0xFF, "information: Unknown interface error(10ff)."}};
    for (const auto command : {begin, argument, execute, read}) {
        for (const auto& row : rows) {
            answers(enclosure, command, row.code);
            EXPECT_EQ(loggedBehindTheCall(), Lines{row.line}) << unsigned{command};
            controller.onExchange = nullptr;
            expectWholeEvent();
        }
    }
}

TEST_F(AlertFaults, SayThatAnAnswerIsCutOffOrTooLong) {
    controller.onExchange = [](const IpmiRequest& request, IpmiResponse&) {
        return request.networkFunction == enclosure ? std::optional(0) : std::nullopt;
    };
    EXPECT_EQ(loggedBehindTheCall(), Lines{"information: Unknown interface error(47)."});
    controller.onExchange = nullptr;
    controller.output = std::string(200'001, 'o');
    EXPECT_EQ(loggedBehindTheCall(),
              Lines{"information: The size of stdout or stderr is not enough."});
    controller.output = "done";
    controller.errors = std::string(15'001, 'e');
    EXPECT_EQ(loggedBehindTheCall(),
              Lines{"information: The size of stdout or stderr is not enough."});
    controller.errors.clear();
    expectWholeEvent();
}

TEST_F(AlertFaults, SayWhatTheEnclosureThinksOfThem) {
    struct {
        std::uint8_t code;
        const char* line;
    } const rows[] = {{1, "information: Provided command input data is not complete."},
                      {5,
                       "information: Invalid command - provided command is not supported via "
                       "the ipmi cli interface."},
                      {9, "information: Unknown response error."}};
    for (const auto& row : rows) {
        controller.completion = row.code;
        EXPECT_EQ(loggedBehindTheCall(), Lines{row.line});
        controller.completion = 0;
        expectWholeEvent();
    }
}

TEST_F(AlertFaults, StayAwayFromAControllerOfAnotherServer) {
    controller.product = 4097;
    EXPECT_EQ(loggedOfAWholeEvent(),
              Lines{"information: not forwarded to ENCA since not a Tarsus server"});
    controller.product = 4098;
    expectWholeEvent();
}

TEST_F(AlertFaults, AreNotRaisedByAProviderThatFails) {
    for (const auto& failure : allFailures()) {
        raise(source, [&](PYL::KTAlertIndication&) { failure.raise(); });
        EXPECT_TRUE(delivered.empty()) << failure.name;
        EXPECT_EQ(controller.opened, 0) << failure.name;
        const auto lines = logged();
        ASSERT_EQ(lines.size(), 1U) << failure.name;
        EXPECT_TRUE(lines[0].starts_with(notRaised)) << lines[0];
        expectWholeEvent();
    }
}

TEST_F(AlertFaults, SayWhatTheProviderSaysOfItsFailure) {
    const auto lineOf = [this](const auto& failure) {
        raise(source, [&](PYL::KTAlertIndication&) { throw failure; });
        const auto lines = logged();
        return lines.empty() ? "" : lines.front();
    };
    EXPECT_EQ(lineOf(CmpiCpp::CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "gone")),
              notRaised + "CMPI_RC_ERR_NOT_FOUND (6): gone");
    EXPECT_EQ(lineOf(std::runtime_error("no idea")), notRaised + "no idea");
    EXPECT_EQ(lineOf(7), notRaised + "unknown exception");
}

TEST_F(AlertFaults, AreLinesInTheLogWhileTheObjectManagerRefusesThem) {
    const auto taking = host.onIndication;
    host.onIndication = [](const auto&) {
        throw cimhost::CimError(cimhost::CimCode::accessDenied, "not from you");
    };
    raise(source);
    auto lines = logged();
    std::sort(lines.begin(), lines.end());
    EXPECT_EQ(lines, (Lines{notRaised + "CMPI_RC_ERR_ACCESS_DENIED (2): not from you", forwarded}));
    EXPECT_EQ(controller.executions, 1U) << "the enclosure is told all the same";
    host.onIndication = taking;
    expectWholeEvent();
}

int AlertFaults::raiseWithEachCallFailing(FaultyBroker::Fault fault) {
    FaultyBroker faulty(host.real());
    FaultyBroker::adopt(host.context().toCMPI());
    host.use(faulty.handle());
    AlertSource failing(host.broker(), log.logger, indicationName);
    int lost = 0;
    for (const auto& slot : FaultyBroker::slots()) {
        faulty.heal();
        raise(failing);
        EXPECT_EQ(delivered, std::vector<Lines>{whole}) << "before " << slot;
        const auto count = faulty.calls(slot);
        for (unsigned nth = 1; nth <= count; ++nth) {
            const cimhost::CallScope scope;
            faulty.failCall(slot, nth, fault);
            raise(failing);
            const auto lines = logged();
            const auto refusals = std::count_if(lines.begin(), lines.end(), [](const auto& line) {
                return line.starts_with(notRaised);
            });
            EXPECT_EQ(delivered.size() + static_cast<std::size_t>(refusals), 1U)
                << "call " << nth << " of " << slot;
            lost += delivered.empty() ? 1 : 0;
        }
    }
    faulty.heal();
    raise(failing);
    EXPECT_EQ(delivered, std::vector<Lines>{whole});
    host.use(host.real());
    return lost;
}

TEST_F(AlertFaults, AreDeliveredOrLoggedWhateverCallOfTheObjectManagerFails) {
    for (const auto fault :
         {FaultyBroker::Fault::status, FaultyBroker::Fault::null, FaultyBroker::Fault::wrongType}) {
        EXPECT_GT(raiseWithEachCallFailing(fault), 50);
    }
    expectWholeEvent();
}

int AlertFaults::raiseWithEachAllocationFailing(bool forever) {
    auto quiet = silentLogger();
    AlertSource starving(host.broker(), quiet, indicationName);
    int count = 0;
    int lost = 0;
    host.onIndication = [&count](const auto&) { ++count; };
    for (int nth = 1; nth == 1 || cimtest::allocationHasFailed(); ++nth) {
        const cimhost::CallScope scope;
        count = 0;
        {
            const cimtest::FailingAllocation failing(nth, forever);
            starving.raise(host.context(), fanFailed);
        }
        starving.waitUntilForwarded();
        EXPECT_LE(count, 1);
        EXPECT_EQ(sources.alive, 0);
        EXPECT_EQ(controller.opened, controller.closed);
        lost += count == 0 ? 1 : 0;
    }
    return lost;
}

TEST_F(AlertFaults, AreLostAtMostWhenMemoryRunsOut) {
    const auto taking = host.onIndication;
    for (const bool forever : {false, true}) EXPECT_GT(raiseWithEachAllocationFailing(forever), 50);
    host.onIndication = taking;
    expectWholeEvent();
}

}  // namespace
