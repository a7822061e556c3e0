// The whole way: over the wire to a simulated controller with an enclosure's module in it.

#include "platform/ipmi/Bmc.h"
#include "platform/ipmi/detail/BmcWays.h"
#include "tests/support/TemporaryFolder.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

/// The OpenIPMI simulator on a free loopback port, with the enclosure's module in it. It ends with
/// this.
class Simulator {
public:
    /// `product` is what the controller says it is.
    explicit Simulator(unsigned product = 4098);
    ~Simulator();
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    const std::string& port() const noexcept { return _port; }

    /// What the module is to answer from now on: "completion 5", "output 300000".
    void behave(const std::string& behaviour) const;

    /// The lines that the module was given, each with its end of line.
    std::string lines() const;

private:
    void _start();
    void _stop() noexcept;

    cimhost::TemporaryFolder _folder;
    std::string _port;
    int _process = -1;
};

sockaddr_in loopback(unsigned port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

/// A port that was free a moment ago: the simulator cannot choose one itself.
unsigned freePort() {
    const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    auto address = loopback(0);
    socklen_t size = sizeof address;
    ::bind(descriptor, reinterpret_cast<sockaddr*>(&address), size);
    ::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size);
    ::close(descriptor);
    return ntohs(address.sin_port);
}

/// By the kernel's table: the simulator takes one client at a time, and a look at it would be that
/// one.
bool isListening(unsigned port) {
    constexpr const char* listenState = "0A";
    char address[16];
    std::snprintf(address, sizeof address, "0100007F:%04X", port);
    std::ifstream table("/proc/net/tcp");
    for (std::string line; std::getline(table, line);) {
        std::istringstream words(line);
        std::string number;
        std::string local;
        std::string remote;
        std::string state;
        words >> number >> local >> remote >> state;
        if (local == address && state == listenState) return true;
    }
    return false;
}

Simulator::Simulator(unsigned product) {
    std::filesystem::create_directory(_folder / "state");
    std::ofstream commands(_folder / "commands");
    commands << "mc_setbmc 0x20\nmc_add 0x20 0 no-device-sdrs 0x23 9 8 0x9f 0x7ed9 0x" << std::hex
             << product << "\nmc_enable 0x20\n";
    commands.close();
    try {
        _start();
    } catch (...) {
        _stop();
        throw;
    }
}

Simulator::~Simulator() { _stop(); }

void Simulator::_start() {
    constexpr int attempts = 5;  // somebody else may take the port first
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const auto port = freePort();
        _port = std::to_string(port);
        std::ofstream(_folder / "lan.conf")
            << "name \"enclosure\"\nset_working_mc 0x20\n  serial 15 127.0.0.1 " << _port
            << " codec VM\nloadlib \"" << PYL_ENCLOSURE_MODULE << "\" \"" << _folder.path().string()
            << "\"\n";
        std::array<std::string, 8> words{
            "ipmi_sim",       "-n", "-c", _folder / "lan.conf", "-f", _folder / "commands", "-s",
            _folder / "state"};
        std::array<char*, 9> arguments{};
        for (std::size_t i = 0; i < words.size(); ++i) arguments[i] = words[i].data();
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&actions, 1, (_folder / "log").c_str(), O_WRONLY | O_CREAT,
                                         0600);
        posix_spawn_file_actions_adddup2(&actions, 1, 2);
        const int error =
            posix_spawnp(&_process, "ipmi_sim", &actions, nullptr, arguments.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        if (error != 0) throw std::runtime_error("ipmi_sim cannot be started");
        for (int i = 0; i < 200; ++i) {
            if (::waitpid(_process, nullptr, WNOHANG) == _process) break;
            if (isListening(port)) return;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
    throw std::runtime_error("ipmi_sim does not answer: " + _folder.read("log"));
}

void Simulator::_stop() noexcept {
    if (_process > 0) {
        ::kill(_process, SIGKILL);
        ::waitpid(_process, nullptr, 0);
    }
}

void Simulator::behave(const std::string& behaviour) const {
    std::ofstream(_folder / "behaviour") << behaviour << '\n';
}

std::string Simulator::lines() const { return _folder.read("lines"); }

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
