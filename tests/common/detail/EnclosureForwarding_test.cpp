#include "common/detail/EnclosureForwarding.h"

#include "common/KTAlertIndication.h"
#include "testing/cimhost/testing/Allocations.h"
#include "testing/cimhost/testing/HostName.h"
#include "testing/pylcommon/testing/FakeController.h"
#include "testing/pylcommon/testing/SystemName.h"
#include "tests/common/QuietResults.h"
#include "tests/support/Journal.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

/// An alert whose fields a test sets.
class Alert : public PYL::KTAlertIndication {
public:
    Alert(Logger& log, int severity)
        : KTAlertIndication(log, "KT_AlertIndication", "root/ktq", severity) {}

    std::string& providerName() { return _providerName; }
    std::string& eventID() { return _eventID; }
    std::string& firmwareVersion() { return _systemFirmwareVersion; }
    std::vector<std::string>& addresses() { return _IPAddresses; }
};

constexpr int information = 2;
constexpr int degraded = 3;

struct EnclosureForwarding : testing::Test {
    cimtest::FakeController controller;
    JournalLog log;
    std::vector<std::unique_ptr<Alert>> alerts;

    EnclosureForwarding() { cimtest::setTestHostName("server-1"); }
    ~EnclosureForwarding() override { cimtest::setTestHostName(cimtest::testHostName); }

    /// An alert that is forwarded.
    Alert& alert(int severity = degraded) {
        auto& made = *alerts.emplace_back(std::make_unique<Alert>(log.logger, severity));
        made.providerName() = "KT Cooling";
        made.eventID() = "5";
        log.journal->take();
        return made;
    }
    Lines linesOf(Alert& forwarded) {
        log.journal->take();
        EXPECT_EQ(forwarded.mp_event_gen(), 0);
        return log.journal->take();
    }
    static Lines calling(const std::string& line) {
        return {"information: calling ENCA_CLI_Exec with arg " + line};
    }
    static inline const std::string plainLine =
        "--PNAM KT_Cooling --EID 5 --PVER 03.02.00 --OSTYP 39 --OSVER 6.1.0-test --EVTTYP 2 --IMD "
        "5 "
        "--SGUID 00010203-0405-0607-0809-0a0b0c0d0e0f --SFWVER  --SNAM server-1";
};

TEST_F(EnclosureForwarding, RunsTheCommandWithALineOfOptions) {
    auto& forwarded = alert();
    EXPECT_EQ(linesOf(forwarded), calling(plainLine));
    EXPECT_EQ(controller.command, "MPEventGen");
    EXPECT_EQ(controller.line, plainLine);
    EXPECT_EQ(controller.opened, 1);
    EXPECT_EQ(controller.closed, 1);
}

TEST_F(EnclosureForwarding, TellsEverythingThatTheAlertKnows) {
    auto& forwarded = alert();
    forwarded.setHWPartNumber("412-8");
    forwarded.setHWPhysicalLocation("Bay-3-Fan-2-");
    forwarded.firmwareVersion() = "P89 1.2";
    forwarded.addresses() = {"10.0.0.1", "fe80::1", ""};
    EXPECT_EQ(
        linesOf(forwarded),
        calling("--PNAM KT_Cooling --HPART 412-8 --EID 5 --PVER 03.02.00 --OSTYP 39 --OSVER "
                "6.1.0-test --EVTTYP 2 --IMD 5 --SGUID 00010203-0405-0607-0809-0a0b0c0d0e0f "
                "--HPHYL Bay3Fan2 --SFWVER P89 1.2 --NWADD 10.0.0.1__fe80::1__ --SNAM server-1"));
}

TEST_F(EnclosureForwarding, LeavesOutAPartNumberThatIsNone) {
    for (const auto* number : {"NULL", "NULL-1", ""}) {
        auto& forwarded = alert();
        forwarded.setHWPartNumber(number);
        EXPECT_EQ(linesOf(forwarded), calling(plainLine)) << number;
    }
    auto& forwarded = alert();
    forwarded.setHWPartNumber("null");
    linesOf(forwarded);
    EXPECT_NE(controller.line.find(" --HPART null "), std::string::npos);
}

TEST_F(EnclosureForwarding, GivesALocationOfNothingButDashesAsAnEmptyValue) {
    auto& forwarded = alert();
    forwarded.setHWPhysicalLocation("--");
    linesOf(forwarded);
    EXPECT_NE(controller.line.find(" --HPHYL  --SFWVER "), std::string::npos) << controller.line;
}

TEST_F(EnclosureForwarding, LeavesOutAGuidThatTheControllerHasNot) {
    controller.guid.clear();
    auto& forwarded = alert();
    linesOf(forwarded);
    EXPECT_EQ(controller.line.find("--SGUID"), std::string::npos);
}

TEST_F(EnclosureForwarding, WritesTheProvidersNameAsOneWord) {
    auto& forwarded = alert();
    forwarded.providerName() = "KT Vela\tArray\n";
    linesOf(forwarded);
    EXPECT_TRUE(controller.line.starts_with("--PNAM KT_Vela_Array_ --EID")) << controller.line;
    forwarded.providerName() = "KT FCHBA";
    linesOf(forwarded);
    EXPECT_TRUE(controller.line.starts_with("--PNAM KT_Fibre_Channel --EID")) << controller.line;
}

TEST_F(EnclosureForwarding, CallsNetworkEventsByTheirType) {
    struct {
        const char* provider;
        const char* type;
    } const rows[] = {{"KT FCHBA", " --EVTTYP 1 "},
                      {"KT Ethernet", " --EVTTYP 1 "},
                      {"KT Cooling", " --EVTTYP 2 "},
                      {"kt ethernet", " --EVTTYP 2 "}};
    for (const auto& row : rows) {
        auto& forwarded = alert();
        forwarded.providerName() = row.provider;
        linesOf(forwarded);
        EXPECT_NE(controller.line.find(row.type), std::string::npos) << row.provider;
    }
}

TEST_F(EnclosureForwarding, DoesWithoutWhatTheSystemDoesNotTell) {
    cimtest::setTestHostName(std::nullopt);
    const cimtest::SystemNameIs unnamed(std::nullopt);
    auto& forwarded = alert();
    const auto lines = linesOf(forwarded);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_TRUE(lines[0].starts_with("information: gethostname Error=")) << lines[0];
    EXPECT_TRUE(lines[0].ends_with(" ")) << lines[0];
    EXPECT_EQ(controller.line.find("--OSVER"), std::string::npos);
    EXPECT_EQ(controller.line.find("--SNAM"), std::string::npos);
}

TEST_F(EnclosureForwarding, LogsALongLineWholeAndSendsWhatFits) {
    auto& forwarded = alert();
    forwarded.setHWPartNumber(std::string(20'000, 'p'));
    const auto lines = linesOf(forwarded);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_GT(lines[0].size(), 20'000U);
    EXPECT_EQ(controller.line.size(), 7999U);
    EXPECT_EQ(lines[0].find(controller.line),
              std::string("information: calling ENCA_CLI_Exec with arg ").size());
}

TEST_F(EnclosureForwarding, PrintsPercentSignsAsTheyAre) {
    auto& forwarded = alert();
    forwarded.setHWPartNumber("100%s%n");
    EXPECT_NE(linesOf(forwarded)[0].find("--HPART 100%s%n --EID"), std::string::npos);
}

struct Selection {
    const char* provider;
    const char* event;
    int severity;
    bool forwarded;
};

TEST_F(EnclosureForwarding, TakesFaultsAndTheSignsOfLifeAlone) {
    const Selection rows[] = {
        {"KT Cooling", "5", degraded, true},     {"KT Cooling", "5", 7, true},
        {"KT Cooling", "5", information, false}, {"KT Cooling", "5", 0, false},
        {"KT Cooling", "1", -1, false},          {"KT WBEM", "1", information, true},
        {"KT WBEM", "4", information, true},     {"KT WBEM", "2", information, false},
        {"KT FCHBA", "1", information, true},    {"KT FCHBA", "4", information, false},
        {"KT Test", "1", information, true},     {"KT Test", "4", information, false},
        {"kt test", "1", information, false},    {"KT Test", "1x", information, true},
        {"KT Test", " 1", information, true},    {"KT Test", "x", information, false},
        {"KT Test", "", information, false},     {"KT Test", "4294967297", information, false},
    };
    for (const auto& row : rows) {
        auto& forwarded = alert(row.severity);
        forwarded.providerName() = row.provider;
        forwarded.eventID() = row.event;
        controller.opened = 0;
        linesOf(forwarded);
        EXPECT_EQ(controller.opened, row.forwarded ? 1 : 0) << row.provider << " " << row.event;
    }
}

TEST_F(EnclosureForwarding, SaysWhatItDoesNotTake) {
    struct {
        const char* event;
        const char* number;
    } const rows[] = {{"5", "5"},
                      {"", "0"},
                      {"-7", "-7"},
                      {"99999999999", "2147483647"},
                      {"-99999999999999999999", "-2147483648"}};
    for (const auto& row : rows) {
        auto& alive = alert(information);
        alive.eventID() = row.event;
        EXPECT_EQ(
            linesOf(alive),
            Lines{std::string("information: Not forwarded to ENCA since unsupported eventID ") +
                  row.number + " Providername KT Cooling to forward to ENCA"});
    }
}

TEST_F(EnclosureForwarding, SaysThatTheControllerCannotBeOpened) {
    controller.openStatus = ENOENT;
    auto& forwarded = alert();
    EXPECT_EQ(linesOf(forwarded),
              Lines{"information: BMC_open() failed: No such file or directory"});
}

TEST_F(EnclosureForwarding, LeavesOtherServersAlone) {
    auto& forwarded = alert();
    for (const bool isMaker : {false, true}) {
        controller.manufacturer = isMaker ? bmcManufacturerId : bmcManufacturerId + 1;
        controller.product = isMaker ? 4097 : 4098;
        EXPECT_EQ(linesOf(forwarded),
                  Lines{"information: not forwarded to ENCA since not a Tarsus server"});
    }
    EXPECT_EQ(controller.executions, 0U);
    EXPECT_EQ(controller.opened, controller.closed);
}

TEST_F(EnclosureForwarding, SaysWhatTheModuleThinksOfTheCommand) {
    const std::string internal =
        "Internal error - internal error detected - memory could not be allocated, etc.";
    const std::string texts[] = {
        "Provided command input data is not complete.",
        internal,
        "Error in index - given handle number does not match any currently outstanding requests.",
        "Cli entries full - maximum number of outstanding ipmi cli entries has been reached.",
        "Invalid command - provided command is not supported via the ipmi cli interface.",
        internal,
        "Response does not fit into cli response message - output data > excess data lost.",
        "Length exceeded - argument or environment variable length exceeded limit.",
        "Unknown response error."};
    auto& forwarded = alert();
    for (std::size_t i = 0; i < std::size(texts); ++i) {
        controller.completion = static_cast<std::uint8_t>(i + 1);
        auto expected = calling(plainLine);
        expected.push_back("information: " + texts[i]);
        EXPECT_EQ(linesOf(forwarded), expected);
    }
    controller.completion = 255;
    EXPECT_EQ(linesOf(forwarded).back(), "information: Unknown response error.");
}

TEST_F(EnclosureForwarding, SaysWhatIsWrongWithTheInterface) {
    auto& forwarded = alert();
    const auto failing = [&](int status) {
        controller.onExchange = [=](const IpmiRequest& request, IpmiResponse&) {
            return request.command == 0x42 ? std::optional(status) : std::nullopt;
        };
        return linesOf(forwarded).back();
    };
    EXPECT_EQ(failing(ETIMEDOUT), "information: Command time out.");
    EXPECT_EQ(failing(EIO), "information: Unknown interface error(5).");
    EXPECT_EQ(failing(0xAB), "information: Unknown interface error(ab).");
    controller.onExchange = nullptr;
    controller.output = std::string(200'001, 'o');
    EXPECT_EQ(linesOf(forwarded).back(),
              "information: The size of stdout or stderr is not enough.");
    controller.output = std::string(200'000, 'o');
    EXPECT_EQ(linesOf(forwarded), calling(plainLine));
}

TEST_F(EnclosureForwarding, LetsNothingOutWhenMemoryRunsOut) {
    auto logger = silentLogger();
    Alert forwarded(logger, degraded);
    for (int nth = 1; nth == 1 || cimtest::allocationHasFailed(); ++nth) {
        const cimtest::FailingAllocation failing(nth, false);
        EXPECT_EQ(forwarded.mp_event_gen(), 0);
        ASSERT_LT(nth, 5000);
    }
    EXPECT_EQ(controller.opened, controller.closed);
}

}  // namespace
