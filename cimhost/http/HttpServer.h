#pragma once

#include "cimhost/http/Descriptor.h"
#include "cimhost/http/HttpConnection.h"
#include "cimhost/http/ListenSocket.h"

#include <condition_variable>
#include <list>
#include <mutex>
#include <thread>

namespace cimhost {

class TlsContext;

/// Accepts connections and serves each on a thread of its own, up to the limit.
///
/// One connection more is answered 503, unless another has kept us waiting for its client: then
/// that one ends and the new one is served, so that clients that idle, trickle or do not read
/// cannot lock others out. start() and stop() are called by one thread.
class HttpServer {
public:
    /// The services, the TLS context (none: plain HTTP) and what they point to outlive the server.
    HttpServer(ListenSocket listener, const HttpServices& services,
               const TlsContext* tls = nullptr);
    /// Stops; waits for requests that still run, however long.
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    /// From now on connections are served. Throws std::system_error when there is no thread to be
    /// had.
    void start();

    /// Accepts no more, ends connections that wait for their client, and lets requests that are
    /// worked on finish. After 400 ms no client is waited for: what has not left of a reply is
    /// dropped. Requests that still run after `grace` lose their connection. False when a handler
    /// has not returned even so; the server must not be destroyed then.
    bool stop(std::chrono::milliseconds grace);

    const ListenSocket& listener() const noexcept { return _listener; }
    /// Connections that are open now, refused ones included.
    std::size_t connectionCount() const;

private:
    struct Connection {
        Descriptor socket;
        HttpAddresses addresses;
        HttpPresence presence;
        bool isRefused = false;
        std::thread thread;
    };
    using Connections = std::list<Connection>;

    void _acceptUntilStopped();
    void _accept();
    void _begin(Descriptor socket, HttpAddresses addresses);
    bool _makeRoom();
    bool _evictLongestWaiting();
    void _serve(Connections::iterator connection) noexcept;
    void _end(Connections::iterator connection) noexcept;
    void _joinEnded();
    void _wake() const noexcept;
    void _hurry();
    bool _waitForEnd(std::chrono::milliseconds time);

    static constexpr std::size_t _refusedAtOnce = 16;
    static constexpr std::chrono::milliseconds _sendGrace{400};
    static constexpr std::chrono::milliseconds _hurryTime{50};

    ListenSocket _listener;
    HttpServices _services;
    HttpBudgets _budgets;
    const TlsContext* _tls;
    Descriptor _wakeUp;
    std::thread _acceptor;
    std::atomic<bool> _stopping{false};

    mutable std::mutex _mutex;  ///< guards the two lists, and the sockets in them from being closed
    std::condition_variable _ended;
    Connections _connections;
    Connections _endedConnections;  ///< their threads are to be joined
};

}  // namespace cimhost
