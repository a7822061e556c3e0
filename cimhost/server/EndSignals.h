#pragma once

#include <chrono>
#include <csignal>
#include <optional>
#include <thread>

namespace cimhost {

/// Takes the signals that ask a program to end, so that it can end in order, and lets a broken pipe
/// and a file that is too long be an error rather than the end. Made before any thread, which then
/// inherit that; never undone.
class EndSignals {
public:
    /// Throws std::system_error.
    EndSignals();

    enum class Reason {
        asked,
        reload,  ///< SIGHUP, unless it tells that the terminal is gone: then it asks to end
        timePassed,
        interrupted,
    };

    /// Waits for SIGTERM, SIGINT or SIGHUP, for the time to pass, or for an interruption.
    Reason wait(std::optional<std::chrono::seconds> time) const;

    /// Ends the wait of this thread, now or when it begins.
    static void interrupt(std::thread& waiting) noexcept;

private:
    sigset_t _signals;
    bool _hadTerminal;
};

}  // namespace cimhost
