#include "tests/platform/ipmi/Simulator.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace fs = std::filesystem;

namespace {

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

std::string read(const fs::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

Simulator::Simulator(unsigned product) {
    std::string name = fs::temp_directory_path() / "simulator-XXXXXX";
    if (!mkdtemp(name.data())) throw std::runtime_error("no scratch directory");
    _folder = name;
    fs::create_directory(_folder / "state");
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

Simulator::~Simulator() {
    _stop();
}

void Simulator::_start() {
    constexpr int attempts = 5;  // somebody else may take the port first
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const auto port = freePort();
        _port = std::to_string(port);
        std::ofstream(_folder / "lan.conf")
            << "name \"enclosure\"\nset_working_mc 0x20\n  serial 15 127.0.0.1 " << _port
            << " codec VM\nloadlib \"" << PYL_ENCLOSURE_MODULE << "\" \"" << _folder.string()
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
    throw std::runtime_error("ipmi_sim does not answer: " + read(_folder / "log"));
}

void Simulator::_stop() noexcept {
    if (_process > 0) {
        ::kill(_process, SIGKILL);
        ::waitpid(_process, nullptr, 0);
    }
    std::error_code ignored;
    fs::remove_all(_folder, ignored);
}

void Simulator::behave(const std::string& behaviour) const {
    std::ofstream(_folder / "behaviour") << behaviour << '\n';
}

std::string Simulator::lines() const {
    return read(_folder / "lines");
}
