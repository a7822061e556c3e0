#include "cimhost/http/HostResolver.h"

#include <netdb.h>

#include <condition_variable>
#include <cstring>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace cimhost {

struct HostResolver::Found {
    int error = 0;
    std::vector<SocketAddress> addresses;
};

namespace {

using Found = HostResolver::Found;

Found lookUp(const std::string& host, const std::string& port, int flags) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = flags | AI_NUMERICSERV;
    addrinfo* list = nullptr;
    Found found;
    found.error = getaddrinfo(host.c_str(), port.c_str(), &hints, &list);
    if (found.error != 0) return found;
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(list, freeaddrinfo);
    for (const addrinfo* each = list; each != nullptr; each = each->ai_next) {
        SocketAddress address;
        address.size = each->ai_addrlen;
        std::memcpy(&address.storage, each->ai_addr, each->ai_addrlen);
        found.addresses.push_back(address);
    }
    return found;
}

std::vector<SocketAddress> require(const std::string& host, Found found) {
    if (found.error == 0 && !found.addresses.empty()) return std::move(found.addresses);
    throw StreamError(StreamError::Kind::lost,
                      "host " + host + " is not known: " + gai_strerror(found.error));
}

}  // namespace

/// What a look-up and the one who waits for it share. One mutex for all of it: with one here and
/// another in the resolver, two threads could take them in different orders.
struct HostResolver::Shared {
    std::mutex mutex;
    std::condition_variable changed;
    bool isLookingUp = false;
    bool isAborted = false;
    std::optional<Found> found;  ///< of a look-up that has ended; nobody has taken it yet
};

HostResolver::HostResolver(std::string host, std::uint16_t port)
    : _host(std::move(host)), _port(std::to_string(port)), _shared(std::make_shared<Shared>()) {}

std::vector<SocketAddress> HostResolver::resolve(Clock::time_point deadline) {
    // What needs no look-up has none.
    if (_host == "localhost") {
        Found found = lookUp("127.0.0.1", _port, AI_NUMERICHOST);
        for (const SocketAddress& other : lookUp("::1", _port, AI_NUMERICHOST).addresses) {
            found.addresses.push_back(other);
        }
        return require(_host, std::move(found));
    }
    Found numeric = lookUp(_host, _port, AI_NUMERICHOST);
    if (numeric.error == 0) return require(_host, std::move(numeric));

    std::unique_lock lock(_shared->mutex);
    if (_shared->isAborted) throw StreamError(StreamError::Kind::lost, "delivery ends");
    if (!_shared->isLookingUp && !_shared->found) _beginLookUp();
    const bool isWoken = _shared->changed.wait_until(
        lock, deadline, [&] { return _shared->found || _shared->isAborted; });
    if (!isWoken) {
        throw StreamError(StreamError::Kind::timeout,
                          "looking up host " + _host + " took too long");
    }
    if (!_shared->found) throw StreamError(StreamError::Kind::lost, "delivery ends");
    Found found = std::move(*_shared->found);
    _shared->found.reset();
    return require(_host, std::move(found));
}

/// The lock is held.
void HostResolver::_beginLookUp() {
    std::thread([shared = _shared, host = _host, port = _port] {
        Found found = lookUp(host, port, AI_ADDRCONFIG);
        const std::lock_guard lock(shared->mutex);
        shared->found = std::move(found);
        shared->isLookingUp = false;
        shared->changed.notify_all();
    }).detach();
    _shared->isLookingUp = true;
}

void HostResolver::abort() noexcept {
    const std::lock_guard lock(_shared->mutex);
    _shared->isAborted = true;
    _shared->changed.notify_all();
}

}  // namespace cimhost
