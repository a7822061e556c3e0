#pragma once

#include <chrono>
#include <csignal>
#include <optional>

namespace cimhost {

/// Takes the signals that ask a program to end, so that it can end in order, and lets a broken pipe
/// be an error rather than the end. Made before any thread, which then inherit that; never undone.
class EndSignals {
public:
    /// Throws std::system_error.
    EndSignals();

    /// Waits for SIGTERM, SIGINT or SIGHUP, or for the time to pass.
    void wait(std::optional<std::chrono::seconds> time) const;

private:
    sigset_t _signals;
};

}  // namespace cimhost
