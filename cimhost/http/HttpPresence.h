#pragma once

#include "cimhost/http/Stream.h"

#include <atomic>

namespace cimhost {

/// What a connection tells the server that holds it, and the other way round. Each member is
/// atomic; times are Clock ticks.
struct HttpPresence {
    /// When the wait for the client began, be it for a request or for it to take the next piece of
    /// a reply; 0 while a request is worked on.
    std::atomic<Clock::rep> waitingSince{0};
    /// When the reply began to leave at the client's pace: what was left of it once the handler had
    /// returned, or what the handler would have leave; 0 while none of it does.
    std::atomic<Clock::rep> sendingSince{0};
    /// The status for a request that is cut off half-way because the server wants the connection to
    /// end; 0 while it does not.
    std::atomic<int> endStatus{0};
    /// The server ends and waits no longer: a reply that needs more than one piece is given up.
    std::atomic<bool> isHurried{false};
};

}  // namespace cimhost
