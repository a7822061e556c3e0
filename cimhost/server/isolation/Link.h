#pragma once

#include "cimhost/http/Descriptor.h"
#include "cimhost/http/HttpConnection.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
#include <utility>

namespace cimhost {

/// One end of what joins two processes of an object manager: either asks the other over as many
/// connections as it has requests. Each connection is a pair of sockets, one of which goes to the
/// other side over the link's own pair. So nobody else can connect, and none stands idle that was
/// not needed once. Safe from several threads.
class Link {
public:
    /// A pair for the two ends: keeps the borders of messages, and is not inherited.
    /// Throws std::system_error.
    static std::pair<Descriptor, Descriptor> makePair();

    /// The handler answers the other side, and outlives this.
    Link(Descriptor control, HttpHandler& handler);
    ~Link() { end(); }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    /// A new connection to the other side. Throws StreamError lost.
    Descriptor connect();

    /// Waits for the next connection of the other side and begins to serve it. False when the other
    /// side has ended.
    bool serveOne();

    /// Readable when serveOne() would not wait.
    int control() const noexcept { return _control.get(); }

    /// Tells the other side that this one asks nothing more.
    void endAsking() noexcept;

    bool isIdle() const;

    /// Ends the connections, and waits for what is answered still.
    void end() noexcept;

private:
    static constexpr std::size_t _connectionLimit = 256;

    void _begin(Descriptor socket);
    void _serve(const std::shared_ptr<Descriptor>& socket) noexcept;

    Descriptor _control;
    HttpHandler& _handler;
    HttpLimits _limits;
    HttpBudgets _budgets{_limits};
    mutable std::mutex _mutex;
    std::condition_variable _ended;
    std::set<int> _open;  ///< what is served
};

}  // namespace cimhost
