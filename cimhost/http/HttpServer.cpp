#include "cimhost/http/HttpServer.h"

#include "cimhost/http/PlainStream.h"
#include "cimhost/http/TlsStream.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <system_error>

namespace cimhost {
namespace {

constexpr int outOfDescriptorsPause = 100;  // milliseconds

bool lacksResources(int error) noexcept {
    return error == EMFILE || error == ENFILE || error == ENOBUFS || error == ENOMEM;
}

std::string localName(int socket) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (getsockname(socket, generic, &size) != 0) return {};
    return formatAddress(*generic);
}

}  // namespace

HttpServer::HttpServer(ListenSocket listener, const HttpServices& services, const TlsContext* tls)
    : _listener(std::move(listener)),
      _services(services),
      _budgets(services.limits),
      _tls(tls),
      _wakeUp(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    _services.usesTls = tls != nullptr;
    if (!_wakeUp) throw std::system_error(errno, std::generic_category(), "eventfd");
}

HttpServer::~HttpServer() {
    stop(std::chrono::milliseconds(0));
    std::unique_lock lock(_mutex);
    _ended.wait(lock, [this] { return _connections.empty(); });
    lock.unlock();
    _joinEnded();
}

void HttpServer::start() {
    _acceptor = std::thread([this] { _acceptUntilStopped(); });
}

void HttpServer::_acceptUntilStopped() {
    std::array<pollfd, 2> entries{pollfd{_wakeUp.get(), POLLIN, 0},
                                  pollfd{_listener.handle(), POLLIN, 0}};
    while (!_stopping) {
        if (poll(entries.data(), entries.size(), -1) <= 0) continue;
        if (entries[0].revents != 0) {
            eventfd_t count = 0;
            eventfd_read(_wakeUp.get(), &count);
            _joinEnded();
        }
        if (entries[1].revents != 0) _accept();
    }
}

void HttpServer::_accept() try {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    Descriptor socket(accept4(_listener.handle(), generic, &size, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (!socket && lacksResources(errno)) {  // the pending connection would wake us again at once
        pollfd entry{_wakeUp.get(), POLLIN, 0};
        poll(&entry, 1, outOfDescriptorsPause);
    }
    if (!socket) return;
    HttpAddresses addresses{formatAddress(*generic), localName(socket.get())};
    _begin(std::move(socket), std::move(addresses));
} catch (const std::exception&) {
    // No memory or no thread for this client: its connection closes, the next one may fare better.
}

void HttpServer::_begin(Descriptor socket, HttpAddresses addresses) {
    const std::lock_guard lock(_mutex);
    const bool isRefused = !_makeRoom();
    if (isRefused && _connections.size() >= _services.limits.connections + _refusedAtOnce) return;
    const auto connection = _connections.emplace(_connections.end());
    connection->socket = std::move(socket);
    connection->addresses = std::move(addresses);
    connection->presence.waitingSince = Clock::now().time_since_epoch().count();
    connection->isRefused = isRefused;
    try {
        connection->thread = std::thread([this, connection] { _serve(connection); });
    } catch (...) {
        _connections.erase(connection);
        throw;
    }
}

/// True when one more connection may be served.
bool HttpServer::_makeRoom() {
    const auto served = std::ranges::count_if(_connections, [](const auto& other) {
        return !other.isRefused && other.presence.endStatus == 0;
    });
    return static_cast<std::size_t>(served) < _services.limits.connections ||
           _evictLongestWaiting();
}

bool HttpServer::_evictLongestWaiting() {
    Connection* longest = nullptr;
    Clock::rep since = (Clock::now() - _services.limits.evictionTime).time_since_epoch().count();
    for (Connection& connection : _connections) {
        const Clock::rep waitingSince = connection.presence.waitingSince;
        const bool mayGo = !connection.isRefused && connection.presence.endStatus == 0;
        if (!mayGo || waitingSince == 0 || waitingSince > since) continue;
        longest = &connection;
        since = waitingSince;
    }
    if (!longest) return false;
    longest->presence.endStatus = 408;
    shutdown(longest->socket.get(), longest->presence.sendingSince == 0 ? SHUT_RD : SHUT_RDWR);
    return true;
}

void HttpServer::_serve(Connections::iterator connection) noexcept {
    try {
        PlainStream plain(connection->socket.get());
        std::optional<TlsStream> tls;
        if (_tls != nullptr) tls.emplace(plain, *_tls);
        Stream& stream = tls ? static_cast<Stream&>(*tls) : plain;
        HttpConnection http(stream, _services, _budgets, connection->addresses,
                            connection->presence);
        if (connection->isRefused) {
            http.refuse(503);
        } else {
            http.serve();
        }
    } catch (const std::exception&) {
        // No memory for this client: its connection closes.
    }
    _end(connection);
}

void HttpServer::_end(Connections::iterator connection) noexcept {
    {
        const std::lock_guard lock(_mutex);
        connection->socket.reset();
        _endedConnections.splice(_endedConnections.end(), _connections, connection);
        _ended.notify_all();
    }
    _wake();
}

void HttpServer::_joinEnded() {
    Connections ended;
    {
        const std::lock_guard lock(_mutex);
        ended.swap(_endedConnections);
    }
    for (Connection& connection : ended) connection.thread.join();
}

void HttpServer::_wake() const noexcept { eventfd_write(_wakeUp.get(), 1); }

bool HttpServer::_waitForEnd(std::chrono::milliseconds time) {
    std::unique_lock lock(_mutex);
    return _ended.wait_for(lock, time, [this] { return _connections.empty(); });
}

/// Ends what waits for a client to take a reply, and what will.
void HttpServer::_hurry() {
    const Clock::rep since = (Clock::now() - _hurryTime).time_since_epoch().count();
    const std::lock_guard lock(_mutex);
    for (Connection& connection : _connections) {
        connection.presence.isHurried = true;
        const Clock::rep sendingSince = connection.presence.sendingSince;
        if (sendingSince != 0 && sendingSince <= since) {
            shutdown(connection.socket.get(), SHUT_RDWR);
        }
    }
}

bool HttpServer::stop(std::chrono::milliseconds grace) {
    constexpr std::chrono::milliseconds breakTime{500};
    _stopping = true;
    _wake();
    if (_acceptor.joinable()) _acceptor.join();
    _listener.close();
    {
        const std::lock_guard lock(_mutex);
        for (Connection& connection : _connections) {
            connection.presence.endStatus = 503;
            shutdown(connection.socket.get(), SHUT_RD);
        }
    }
    const Clock::time_point end = Clock::now() + grace;
    bool allEnded = _waitForEnd(std::min(grace, _sendGrace));
    while (!allEnded && Clock::now() < end) {
        _hurry();
        allEnded = _waitForEnd(_hurryTime);
    }
    if (!allEnded) {
        {
            const std::lock_guard lock(_mutex);
            for (Connection& connection : _connections) {
                shutdown(connection.socket.get(), SHUT_RDWR);
            }
        }
        allEnded = _waitForEnd(breakTime);
    }
    _joinEnded();
    return allEnded;
}

std::size_t HttpServer::connectionCount() const {
    const std::lock_guard lock(_mutex);
    return _connections.size();
}

}  // namespace cimhost
