#include "cimhost/http/HostResolver.h"

#include <netdb.h>

#include <condition_variable>
#include <cstring>
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

/// What a look-up and the one who waits for it share.
struct HostResolver::Lookup {
    std::mutex mutex;
    std::condition_variable changed;
    bool isDone = false;
    bool isAborted = false;
    Found found;
};

HostResolver::HostResolver(std::string host, std::uint16_t port)
    : _host(std::move(host)), _port(std::to_string(port)) {}

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

    std::shared_ptr<Lookup> lookup;
    {
        const std::lock_guard lock(_mutex);
        if (_isAborted) throw StreamError(StreamError::Kind::lost, "delivery ends");
        if (!_lookup) {
            const auto fresh = std::make_shared<Lookup>();
            std::thread([fresh, host = _host, port = _port] {
                Found found = lookUp(host, port, AI_ADDRCONFIG);
                const std::lock_guard own(fresh->mutex);
                fresh->found = std::move(found);
                fresh->isDone = true;
                fresh->changed.notify_all();
            }).detach();
            _lookup = fresh;
        }
        lookup = _lookup;
    }
    std::unique_lock lock(lookup->mutex);
    const bool isWoken = lookup->changed.wait_until(
        lock, deadline, [&] { return lookup->isDone || lookup->isAborted; });
    if (!isWoken) {
        throw StreamError(StreamError::Kind::timeout,
                          "looking up host " + _host + " took too long");
    }
    if (!lookup->isDone) throw StreamError(StreamError::Kind::lost, "delivery ends");
    const std::lock_guard own(_mutex);
    _lookup.reset();
    return require(_host, std::move(lookup->found));
}

void HostResolver::abort() noexcept {
    const std::lock_guard lock(_mutex);
    _isAborted = true;
    if (!_lookup) return;
    const std::lock_guard own(_lookup->mutex);
    _lookup->isAborted = true;
    _lookup->changed.notify_all();
}

}  // namespace cimhost
