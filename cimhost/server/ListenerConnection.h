#pragma once

#include "cimhost/http/HostResolver.h"
#include "cimhost/http/HttpClient.h"
#include "cimhost/indications/ListenerUrl.h"

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// The way to one listener: posts export messages and judges the answers. The connection is kept
/// from one message to the next where the listener allows. Used by one thread, abort aside.
class ListenerConnection {
public:
    static constexpr std::size_t answerBytes = 64 * 1024;  ///< of an answer's body at most

    /// `attemptTime` bounds each attempt as a whole: look-up, connection, request and answer.
    ListenerConnection(const ListenerUrl& url, std::chrono::milliseconds attemptTime);

    /// Why the listener did not take the message; nothing when it did. When a connection that was
    /// kept turns out to be closed, a new one is made and the message sent again. A lack of memory
    /// or of threads is a reason like any other.
    std::optional<std::string> post(std::string_view message) noexcept;

    /// The attempt in progress, and later ones, fail at once. From any thread.
    void abort() noexcept;

private:
    std::optional<std::string> _attempt(std::string_view message,
                                        Clock::time_point deadline) noexcept;
    std::optional<std::string> _exchange(std::string_view message, Clock::time_point deadline);
    void _connect(Clock::time_point deadline);
    bool _connectTo(const SocketAddress& address, Clock::time_point deadline, std::string& problem);
    void _open(const SocketAddress& address);
    void _close() noexcept;

    std::chrono::milliseconds _attemptTime;
    std::string _authority;
    std::string _path;
    std::vector<HttpAnswerHead::Field> _headers;
    HostResolver _resolver;
    std::mutex _mutex;  ///< guards the client from being closed, and the flag
    std::optional<HttpClient> _client;
    bool _isAborted = false;
};

}  // namespace cimhost
