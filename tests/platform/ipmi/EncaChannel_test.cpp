#include "platform/ipmi/Bmc.h"
#include "testing/pylcommon/testing/FakeController.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

struct EncaChannel : testing::Test {
    cimtest::FakeController controller;
    BmcHandle handle;
    EncaRequest request;
    std::vector<char> output = std::vector<char>(1000);
    std::vector<char> errors = std::vector<char>(100);
    EncaOutput standardOutput{output.data(), output.size()};
    EncaOutput standardError{errors.data(), errors.size()};
    std::uint8_t completion = 99;

    EncaChannel() {
        BMC_open(handle, 0, 1);
        std::string("MPEventGen").copy(request.command.data(), request.command.size());
        request.argument = "--EID 1";
    }
    int run() { return ENCA_CLI_Exec(handle, request, standardOutput, standardError, completion); }
    static std::string text(const EncaOutput& from) { return {from.data, from.used}; }

    /// Answers one of the channel's messages in place of the controller.
    void answer(int command, int status, std::uint8_t code, std::vector<std::uint8_t> data) {
        controller.onExchange = [=](const IpmiRequest& asked,
                                    IpmiResponse& response) -> std::optional<int> {
            if (asked.networkFunction != 0x2E || asked.command != command) return std::nullopt;
            response = {code, data};
            return status;
        };
    }
};

TEST_F(EncaChannel, RunsACommandWithItsLine) {
    controller.errors = "a warning";
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(completion, 0);
    EXPECT_EQ(controller.command, "MPEventGen");
    EXPECT_EQ(controller.line, "--EID 1");
    EXPECT_EQ(text(standardOutput), "done");
    EXPECT_EQ(text(standardError), "a warning");
    EXPECT_EQ(controller.executions, 1U);
    EXPECT_EQ(controller.ended, 1U);
}

TEST_F(EncaChannel, CarriesALineOfAnyLengthInSmallMessages) {
    for (const std::size_t size : {0U, 1U, 23U, 24U, 25U, 48U, 7998U, 7999U}) {
        std::string line;
        while (line.size() < size) line += static_cast<char>('a' + line.size() % 26);
        request.argument = line.c_str();
        EXPECT_EQ(run(), 0);
        EXPECT_EQ(controller.line, line);
    }
    EXPECT_LE(controller.longestRequest, 32U);
}

TEST_F(EncaChannel, CutsALineAtItsRoom) {
    const std::string line(20'000, 'x');
    request.argument = line.c_str();
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(controller.line.size(), encaArgumentSize - 1);
}

TEST_F(EncaChannel, CarriesOutputsOfManyMessages) {
    controller.output = std::string(1000, 'o');
    controller.errors = std::string(100, 'e');
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(text(standardOutput), controller.output);
    EXPECT_EQ(text(standardError), controller.errors);
}

TEST_F(EncaChannel, HandsOverTheCommandsOwnCompletionCode) {
    for (int code = 1; code <= 255; ++code) {
        controller.completion = static_cast<std::uint8_t>(code);
        EXPECT_EQ(run(), 0);
        EXPECT_EQ(completion, code);
        EXPECT_EQ(standardOutput.used, 0U);
    }
    EXPECT_EQ(controller.ended, 255U);
}

TEST_F(EncaChannel, SaysThatAnOutputIsLargerThanItsRoom) {
    controller.output = std::string(1001, 'o');
    EXPECT_EQ(run(), encaOutputTooLarge);
    EXPECT_EQ(standardOutput.used, 1000U);
    controller.output = "";
    controller.errors = std::string(200'000, 'e');
    EXPECT_EQ(run(), encaOutputTooLarge);
    EXPECT_EQ(standardError.used, 100U);
    EXPECT_EQ(controller.ended, 2U);
}

TEST_F(EncaChannel, WantsRoomForBothOutputs) {
    standardOutput.data = nullptr;
    EXPECT_EQ(run(), encaPointerIsNull);
    standardOutput.data = output.data();
    standardError.data = nullptr;
    EXPECT_EQ(run(), encaPointerIsNull);
    EXPECT_EQ(controller.executions, 0U);
}

TEST_F(EncaChannel, WantsALineAndAnOpenHandle) {
    request.argument = nullptr;
    EXPECT_EQ(run(), EINVAL);
    request.argument = "";
    BMC_close(handle);
    EXPECT_EQ(run(), EINVAL);
}

TEST_F(EncaChannel, RunsOutOfTimeAtEveryStep) {
    for (const int step : {0x40, 0x41, 0x42, 0x43}) {
        answer(step, ETIMEDOUT, 0, {});
        EXPECT_EQ(run(), encaCommandTimeout);
        answer(step, 0, 0xC3, {});
        EXPECT_EQ(run(), encaCommandTimeout);
    }
}

TEST_F(EncaChannel, HandsOnWhatGoesWrongAtEveryStep) {
    for (const int step : {0x40, 0x41, 0x42, 0x43}) {
        answer(step, EIO, 0, {});
        EXPECT_EQ(run(), EIO);
        answer(step, 0, 0xC1, {});
        EXPECT_EQ(run(), 0x10C1);
    }
}

TEST_F(EncaChannel, RefusesAnswersThatAreCutShortOrNotForTheMaker) {
    for (const int step : {0x40, 0x42, 0x43}) {
        answer(step, 0, 0, {});
        EXPECT_EQ(run(), EPROTO);
        answer(step, 0, 0, {0xD9, 0x7E, 0x00});
        EXPECT_EQ(run(), EPROTO);
        answer(step, 0, 0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
        EXPECT_EQ(run(), EPROTO);
    }
}

TEST_F(EncaChannel, TakesNoMoreOutputThanWasAnnounced) {
    std::vector<std::uint8_t> more{0xD9, 0x7E, 0x00};
    more.insert(more.end(), 230, 'x');
    answer(0x43, 0, 0, more);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(text(standardOutput), "xxxx");
}

}  // namespace
