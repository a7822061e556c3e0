#pragma once

#include "cimhost/objects/Broker.h"
#include "cimhost/server/EndSignals.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

namespace cimhost {

/// Bounds the start of the process, which restores subscriptions and so calls modules that may
/// never return. A start that has not ended five seconds after a signal that asks the process to
/// end, or after the time it has, ends it with exit status 1 and a line in the log.
class StartWatch {
public:
    /// Signals and log outlive this.
    StartWatch(const EndSignals& signals, BrokerLog& log, std::optional<std::chrono::seconds> time);
    ~StartWatch();
    StartWatch(const StartWatch&) = delete;
    StartWatch& operator=(const StartWatch&) = delete;

    /// The start has ended. True when a signal asked the process to end meanwhile.
    bool finish();

    /// A signal asked for a reload meanwhile. Once it has finished.
    bool isReloadAsked() const noexcept { return _isReloadAsked; }

private:
    void _watch(std::optional<std::chrono::seconds> time) noexcept;

    const EndSignals& _signals;
    BrokerLog& _log;
    std::mutex _mutex;  ///< guards the two flags
    std::condition_variable _changed;
    bool _isFinished = false;
    bool _isAsked = false;
    bool _isReloadAsked = false;  ///< the thread's alone until it ends
    std::thread _thread;          ///< last: it uses the others
};

}  // namespace cimhost
