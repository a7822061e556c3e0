// Sends one HTTP request over and over and tells how long the replies took.
//   load_client PORT REQUEST-FILE CONNECTIONS REQUESTS [REPLY-FILE]
// Each connection sends REQUESTS requests one after the other; a tenth as many before are not
// counted. Prints "p50 p99 rate bytes": microseconds, requests a second, bytes of a reply. The last
// reply goes to REPLY-FILE.
#include "bench/server/MessageReader.h"
#include "bench/server/Socket.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <latch>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;

struct Load {
    std::uint16_t port;
    std::string request;
    std::size_t connections;
    std::size_t requests;
};

class Connection {
public:
    explicit Connection(const Load& load) : _load(load), _socket(Socket::connect(load.port)) {}

    void warmUp() {
        for (std::size_t i = 0; i < _load.requests / 10 + 1; ++i) _exchange();
    }
    void run() {
        latencies.reserve(_load.requests);
        for (std::size_t i = 0; i < _load.requests; ++i) {
            const auto begin = Clock::now();
            _exchange();
            latencies.push_back(Microseconds(Clock::now() - begin).count());
        }
    }
    std::string fetch() {
        std::string reply;
        _exchange(&reply);
        return reply;
    }

    std::vector<double> latencies;
    std::size_t replySize = 0;

private:
    void _exchange(std::string* copy = nullptr) {
        _socket.write(_load.request);
        replySize = _reader.read(copy);
        if (replySize == 0) throw std::runtime_error("the server has closed the connection");
    }

    const Load& _load;
    Socket _socket;
    MessageReader _reader{_socket};
};

[[noreturn]] void fail(const std::exception& failure) {
    std::cerr << "load_client: " << failure.what() << '\n';
    std::_Exit(1);
}

double percentile(const std::vector<double>& sorted, double share) {
    const auto place = static_cast<std::size_t>(share * static_cast<double>(sorted.size() - 1));
    return sorted[place];
}

void report(const Load& load) {
    std::vector<std::unique_ptr<Connection>> connections;
    for (std::size_t i = 0; i < load.connections; ++i) {
        connections.push_back(std::make_unique<Connection>(load));
    }
    std::latch warm(static_cast<std::ptrdiff_t>(load.connections + 1));
    std::vector<std::jthread> threads;
    for (const auto& connection : connections) {
        threads.emplace_back([&warm, &connection = *connection] {
            try {
                connection.warmUp();
                warm.arrive_and_wait();
                connection.run();
            } catch (const std::exception& failure) {
                fail(failure);
            }
        });
    }
    warm.arrive_and_wait();
    const auto begin = Clock::now();
    threads.clear();
    const std::chrono::duration<double> elapsed = Clock::now() - begin;

    std::vector<double> latencies;
    for (const auto& connection : connections) {
        latencies.insert(latencies.end(), connection->latencies.begin(),
                         connection->latencies.end());
    }
    std::sort(latencies.begin(), latencies.end());
    std::cout << percentile(latencies, 0.5) << ' ' << percentile(latencies, 0.99) << ' '
              << static_cast<double>(latencies.size()) / elapsed.count() << ' '
              << connections.front()->replySize << '\n';
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 5 && argc != 6) {
        std::cerr << "usage: load_client PORT REQUEST-FILE CONNECTIONS REQUESTS [REPLY-FILE]\n";
        return 2;
    }
    const Load load{static_cast<std::uint16_t>(std::stoul(argv[1])), readFile(argv[2]),
                    std::stoul(argv[3]), std::stoul(argv[4])};
    if (load.connections == 0 || load.requests == 0) throw std::runtime_error("nothing to do");
    report(load);
    if (argc == 6) std::ofstream(argv[5], std::ios::binary) << Connection(load).fetch();
    return 0;
} catch (const std::exception& failure) {
    fail(failure);
}
