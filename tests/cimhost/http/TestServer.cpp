#include "tests/cimhost/http/TestServer.h"

#include <filesystem>
#include <thread>

namespace cimhost {

bool TestServer::awaitConnections(std::size_t count) const {
    return await([this, count] { return server.connectionCount() == count; });
}

bool await(const std::function<bool()>& condition) {
    const auto end = Clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (Clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

std::size_t openDescriptors() {
    const std::filesystem::directory_iterator entries("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

}  // namespace cimhost
