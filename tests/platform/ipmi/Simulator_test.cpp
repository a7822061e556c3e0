// The whole way: over the wire to a simulated controller with an enclosure's module in it.

#include "tests/platform/ipmi/Simulator.h"

#include "platform/ipmi/Bmc.h"
#include "platform/ipmi/detail/BmcWays.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::string simulatorPort;

int openSimulator(int, std::unique_ptr<BmcTransport>& transport) noexcept {
    return ipmi::openVmSocket("127.0.0.1", simulatorPort, transport);
}

struct SimulatedController : testing::Test {
    Simulator simulator;
    BmcHandle handle;
    std::vector<char> output = std::vector<char>(200'000);
    std::vector<char> errors = std::vector<char>(15'000);
    EncaOutput standardOutput{output.data(), output.size()};
    EncaOutput standardError{errors.data(), errors.size()};
    std::uint8_t completion = 99;

    SimulatedController() {
        simulatorPort = simulator.port();
        setBmcTransportFactory(openSimulator);
        EXPECT_EQ(BMC_open(handle, 0, 1), 0);
    }
    ~SimulatedController() override { setBmcTransportFactory(nullptr); }

    int run(const char* line) {
        EncaRequest request;
        std::string("MPEventGen").copy(request.command.data(), request.command.size());
        request.argument = line;
        return ENCA_CLI_Exec(handle, request, standardOutput, standardError, completion);
    }
};

TEST_F(SimulatedController, IsKnownByItsIdentityAndGuid) {
    EXPECT_EQ(handle.deviceId.manufacturerId, bmcManufacturerId);
    EXPECT_EQ(handle.deviceId.productId, 4098);
    EXPECT_EQ(handle.deviceId.ipmiVersion, 2);
    EXPECT_EQ(handle.systemGuid, "00010203-0405-0607-0809-0a0b0c0d0e0f");
}

TEST_F(SimulatedController, RunsCommandsOneAfterTheOther) {
    EXPECT_EQ(run("--PNAM KT_Test --EID 1"), 0);
    EXPECT_EQ(completion, 0);
    EXPECT_EQ(std::string(standardOutput.data, standardOutput.used), "oo");
    const std::string longest(encaArgumentSize - 1, 'x');
    EXPECT_EQ(run(longest.c_str()), 0);
    EXPECT_EQ(simulator.lines(), "--PNAM KT_Test --EID 1\n" + longest + "\n");
}

TEST_F(SimulatedController, TellsWhatTheModuleThinksOfACommand) {
    for (const int code : {1, 5, 8, 200}) {
        simulator.behave("completion " + std::to_string(code));
        EXPECT_EQ(run("--EID 1"), 0);
        EXPECT_EQ(completion, code);
    }
}

TEST_F(SimulatedController, GivesLargeOutputsAndSaysWhenTheyAreTooLarge) {
    simulator.behave("output 20000");
    EXPECT_EQ(run("--EID 1"), 0);
    EXPECT_EQ(standardOutput.used, 20'000U);
    standardOutput.size = 100;
    EXPECT_EQ(run("--EID 1"), encaOutputTooLarge);
}

TEST(SimulatedControllerGone, IsAnErrorAndNotAWait) {
    BmcHandle handle;
    {
        const Simulator simulator;
        simulatorPort = simulator.port();
        setBmcTransportFactory(openSimulator);
        ASSERT_EQ(BMC_open(handle, 0, 1), 0);
    }
    char room = 0;
    EncaOutput output{&room, 1};
    EncaOutput errors{&room, 1};
    std::uint8_t completion = 0;
    EncaRequest request;
    request.argument = "";
    EXPECT_NE(ENCA_CLI_Exec(handle, request, output, errors, completion), 0);
    EXPECT_NE(BMC_open(handle, 0, 1), 0);
    setBmcTransportFactory(nullptr);
}

}  // namespace
