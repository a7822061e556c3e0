#pragma once

#include "cimhost/http/ListenSocket.h"
#include "cimhost/http/Stream.h"
#include "cimhost/http/TlsStream.h"

#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace cimhost {

/// A server on a free port that answers with the bytes that a test sends, well-formed or not.
class ScriptedServer {
public:
    /// Given each request of whatever connection, head and body, answers it; false ends the
    /// connection.
    using Script = std::function<bool(const std::string& request, Stream& client)>;

    explicit ScriptedServer(Script script, const TlsContext* tls = nullptr);
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    std::uint16_t port() const noexcept { return _listener.port(); }
    std::size_t connections() const;
    std::vector<std::string> requests() const;

private:
    void _accept();
    void _serve(int socket);

    Script _script;
    const TlsContext* _tls;
    ListenSocket _listener{"127.0.0.1", 0};
    mutable std::mutex _mutex;  ///< guards the three below
    std::list<Descriptor> _sockets;
    std::vector<std::string> _requests;
    std::vector<std::thread> _threads;
    std::thread _acceptor;
};

/// Sends bytes; StreamError when the client has gone.
void send(Stream& client, std::string_view bytes);

/// An answer with status 200 and its length.
std::string answerWith(std::string_view body, std::string_view moreHeaders = {});

}  // namespace cimhost
