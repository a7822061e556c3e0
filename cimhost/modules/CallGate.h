#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace cimhost {

/// Counts the calls in progress and, once closed, lets no further one in. Starts closed.
/// Safe from several threads; entering and leaving an open gate takes no lock. A call may enter
/// again while it is inside. The gate may be destroyed as soon as waitUntilIdle has returned true.
class CallGate {
public:
    CallGate() = default;
    CallGate(const CallGate&) = delete;
    CallGate& operator=(const CallGate&) = delete;

    /// False when the gate is closed; otherwise the caller must leave.
    bool enter() noexcept;
    void leave() noexcept;

    bool isClosed() const noexcept { return (_state.load() & closed) != 0; }
    void open() noexcept;
    void close() noexcept;

    /// Closes it when no call is inside; false when there is one.
    bool closeIfIdle() noexcept;

    /// Waits until the last call has left, which must be a closed gate's. False when the time has
    /// come first.
    bool waitUntilIdle(std::chrono::steady_clock::time_point end);

private:
    static constexpr std::uint64_t closed = std::uint64_t{1} << 63;

    std::atomic<std::uint64_t> _state{closed};  // the number of calls, and the mark
    std::mutex _mutex;
    std::condition_variable _left;
};

}  // namespace cimhost
