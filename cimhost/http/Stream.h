#pragma once

#include <chrono>
#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace cimhost {

using Clock = std::chrono::steady_clock;

/// The peer is gone, broke its side of the protocol, or did not answer in time.
class StreamError : public std::runtime_error {
public:
    enum class Kind { lost, timeout };
    StreamError(Kind kind, const std::string& message) : std::runtime_error(message), _kind(kind) {}

    Kind kind() const noexcept { return _kind; }

private:
    Kind _kind;
};

/// A connection to one peer, as bytes. Used by one thread.
class Stream {
public:
    virtual ~Stream() = default;

    /// Agrees with the peer on how to talk; needed before the first send() without a receive().
    /// Throws StreamError: timeout, lost.
    virtual void establish(Clock::time_point deadline) = 0;

    /// Waits for bytes and returns how many came; 0 when the peer has sent its last.
    /// Throws StreamError: timeout at the deadline, lost.
    virtual std::size_t receive(std::span<char> buffer, Clock::time_point deadline) = 0;

    /// Sends the pieces in order, in as few packets as they fit.
    /// Throws StreamError: timeout when they have not left by the deadline, lost.
    virtual void send(std::span<const std::string_view> pieces, Clock::time_point deadline) = 0;

    /// Sends what the peer takes without a wait, and returns how many bytes that were.
    /// Throws StreamError: lost.
    virtual std::size_t trySend(std::span<const std::string_view> pieces) = 0;

    /// True when the peer is known to be gone or to have sent its last; asks without a wait.
    virtual bool hasPeerEnded() const noexcept { return false; }

    /// Tells the peer that nothing more will be sent. What it says is gone is no error.
    virtual void endSending() noexcept = 0;
};

}  // namespace cimhost
