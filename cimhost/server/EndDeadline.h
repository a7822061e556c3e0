#pragma once

#include "cimhost/objects/Broker.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace cimhost {

/// Bounds the orderly end of the process: when it lives longer than its time, the process ends with
/// exit status 1 and a line in the log. Code of a module that is asked to clean up may never
/// return.
class EndDeadline {
public:
    /// The log outlives this.
    EndDeadline(BrokerLog& log, std::chrono::milliseconds time);
    /// The end was reached in time.
    ~EndDeadline();
    EndDeadline(const EndDeadline&) = delete;
    EndDeadline& operator=(const EndDeadline&) = delete;

private:
    void _watch(std::chrono::milliseconds time) noexcept;

    BrokerLog& _log;
    std::mutex _mutex;
    std::condition_variable _changed;
    bool _isReached = false;
    std::thread _thread;  ///< last: it uses the others
};

}  // namespace cimhost
