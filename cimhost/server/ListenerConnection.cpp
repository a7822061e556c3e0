#include "cimhost/server/ListenerConnection.h"

#include "cimhost/cimxml/ExportMessage.h"
#include "cimhost/http/Connecting.h"

#include <sys/socket.h>

#include <array>
#include <exception>
#include <new>
#include <system_error>

namespace cimhost {
namespace {

std::string headFor(const ListenerUrl& url) {
    return "POST " + url.path + " HTTP/1.1\r\nHost: " + url.authority() +
           "\r\n"
           "Content-Type: application/xml; charset=\"utf-8\"\r\n"
           "CIMProtocolVersion: 1.0\r\n"
           "CIMExport: MethodRequest\r\n"
           "CIMExportMethod: ExportIndication\r\n"
           "Content-Length: ";
}

std::optional<std::string> judge(const HttpAnswer& answer) {
    if (answer.status != 200) return "the listener answered " + std::to_string(answer.status);
    return exportFailure(answer.body);
}

std::string reasonOf(const std::exception& error) noexcept try {
    const bool lacksMemory = dynamic_cast<const std::bad_alloc*>(&error) != nullptr;
    return lacksMemory ? "out of memory" : error.what();
} catch (const std::bad_alloc&) {
    return "out of memory";  // short enough to need none
}

}  // namespace

ListenerConnection::ListenerConnection(const ListenerUrl& url,
                                       std::chrono::milliseconds attemptTime)
    : _attemptTime(attemptTime),
      _authority(url.authority()),
      _head(headFor(url)),
      _resolver(url.host, url.port) {}

std::optional<std::string> ListenerConnection::post(std::string_view message) noexcept {
    const Clock::time_point deadline = Clock::now() + _attemptTime;
    const bool isKept = static_cast<bool>(_socket);
    std::optional<std::string> problem = _attempt(message, deadline);
    const bool wasClosed = problem && isKept && !(_answers && _answers->hasBegun());
    if (problem) _close();
    if (!wasClosed || Clock::now() >= deadline) return problem;
    problem = _attempt(message, deadline);
    if (problem) _close();
    return problem;
}

std::optional<std::string> ListenerConnection::_attempt(std::string_view message,
                                                        Clock::time_point deadline) noexcept {
    try {
        if (!_socket) _connect(deadline);
        return _exchange(message, deadline);
    } catch (const std::exception& error) {
        return reasonOf(error);
    }
}

std::optional<std::string> ListenerConnection::_exchange(std::string_view message,
                                                         Clock::time_point deadline) {
    const std::string length = std::to_string(message.size()) + "\r\n\r\n";
    const std::array<std::string_view, 3> pieces{_head, length, message};
    _stream->send(pieces, deadline);
    const HttpAnswer answer = _answers->receive(deadline);
    if (!answer.keepsAlive) _close();
    return judge(answer);
}

void ListenerConnection::_connect(Clock::time_point deadline) {
    std::string problem;
    for (const SocketAddress& address : _resolver.resolve(deadline)) {
        if (_connectTo(address, deadline, problem)) return;
    }
    throw StreamError(StreamError::Kind::lost, problem);
}

bool ListenerConnection::_connectTo(const SocketAddress& address, Clock::time_point deadline,
                                    std::string& problem) {
    _open(address);
    const int error = connectSocket(_socket.get(), address, deadline);
    if (error == 0) {
        _stream.emplace(_socket.get());
        _answers.emplace(*_stream);
        return true;
    }
    problem = "cannot connect to " + _authority + ": " + std::generic_category().message(error);
    _close();
    return false;
}

void ListenerConnection::_open(const SocketAddress& address) {
    Descriptor fresh = makeSocket(address);
    const std::lock_guard lock(_mutex);
    if (_isAborted) throw StreamError(StreamError::Kind::lost, "delivery ends");
    _socket = std::move(fresh);
}

void ListenerConnection::_close() noexcept {
    _answers.reset();
    _stream.reset();
    const std::lock_guard lock(_mutex);
    _socket.reset();
}

void ListenerConnection::abort() noexcept {
    _resolver.abort();
    const std::lock_guard lock(_mutex);
    _isAborted = true;
    if (_socket) shutdown(_socket.get(), SHUT_RDWR);
}

}  // namespace cimhost
