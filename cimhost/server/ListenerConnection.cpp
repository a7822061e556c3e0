#include "cimhost/server/ListenerConnection.h"

#include "cimhost/cimxml/ExportMessage.h"
#include "cimhost/http/Connecting.h"

#include <sys/socket.h>

#include <exception>
#include <new>
#include <system_error>

namespace cimhost {
namespace {

// A request has no more time to leave than the attempt.
constexpr std::chrono::milliseconds noTime{0};

/// The body of an answer, which is short where all is well.
class ShortBody final : public HttpAnswerTaker {
public:
    std::string text;

    void head(const HttpAnswerHead&) override {}
    void body(std::string_view piece) override {
        if (piece.size() > ListenerConnection::answerBytes - text.size()) {
            throw HttpClientError("the answer is too long");
        }
        text += piece;
    }
};

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
      _path(url.path),
      _headers{{"Host", _authority},
               {"Content-Type", "application/xml; charset=\"utf-8\""},
               {"CIMProtocolVersion", "1.0"},
               {"CIMExport", "MethodRequest"},
               {"CIMExportMethod", "ExportIndication"}},
      _resolver(url.host, url.port) {}

std::optional<std::string> ListenerConnection::post(std::string_view message) noexcept {
    const Clock::time_point deadline = Clock::now() + _attemptTime;
    const bool isKept = _client.has_value();
    std::optional<std::string> problem = _attempt(message, deadline);
    const bool wasClosed = problem && isKept && !_client->hasAnswered();
    if (wasClosed && Clock::now() < deadline) {
        _close();
        problem = _attempt(message, deadline);
    }
    if (_client && (problem || !_client->isReusable())) _close();
    return problem;
}

std::optional<std::string> ListenerConnection::_attempt(std::string_view message,
                                                        Clock::time_point deadline) noexcept {
    try {
        if (!_client) _connect(deadline);
        return _exchange(message, deadline);
    } catch (const std::exception& error) {
        return reasonOf(error);
    }
}

std::optional<std::string> ListenerConnection::_exchange(std::string_view message,
                                                         Clock::time_point deadline) {
    ShortBody body;
    const HttpAnswerHead answer = _client->post(_path, _headers, message, body,
                                                [deadline](Clock::time_point) { return deadline; });
    if (answer.status != 200) return "the listener answered " + std::to_string(answer.status);
    return exportFailure(body.text);
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
    const int error = connectSocket(_client->socket(), address, deadline);
    if (error == 0) return true;
    problem = "cannot connect to " + _authority + ": " + std::generic_category().message(error);
    _close();
    return false;
}

void ListenerConnection::_open(const SocketAddress& address) {
    Descriptor fresh = makeSocket(address);
    const std::lock_guard lock(_mutex);
    if (_isAborted) throw StreamError(StreamError::Kind::lost, "delivery ends");
    _client.emplace(std::move(fresh), noTime);
}

void ListenerConnection::_close() noexcept {
    const std::lock_guard lock(_mutex);
    _client.reset();
}

void ListenerConnection::abort() noexcept {
    _resolver.abort();
    const std::lock_guard lock(_mutex);
    _isAborted = true;
    if (_client) shutdown(_client->socket(), SHUT_RDWR);
}

}  // namespace cimhost
