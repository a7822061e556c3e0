#pragma once

#include "common/KTAlertIndication.h"
#include "platform/logger/Logger.h"

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>

namespace PYL {

/// Forwards alerts to the enclosure, one after the other, on a thread of its own, so that a
/// controller that never answers keeps nobody else waiting. The thread begins with the first alert.
/// Safe from several threads.
class AlertForwarder {
public:
    /// How many alerts may wait. What finds no room is dropped, counted, and told in the log.
    static constexpr std::size_t mostWaiting = 64;

    /// Keeps a copy of the logger.
    explicit AlertForwarder(const Logger& log);
    /// Lets what waits go out for half a second, then ends what is under way and drops the rest.
    ~AlertForwarder();
    AlertForwarder(const AlertForwarder&) = delete;
    AlertForwarder& operator=(const AlertForwarder&) = delete;

    /// Takes the alert, which must be filled and have made its instance.
    void forward(std::unique_ptr<KTAlertIndication> alert) noexcept;

    /// Waits until nothing waits and nothing is under way.
    void waitUntilIdle();

private:
    class Interruption;

    void _work(int interruption) noexcept;
    void _take(std::unique_ptr<KTAlertIndication> alert);
    void _drop(std::string_view reason) noexcept;

    Logger _log;
    std::mutex _mutex;  ///< guards all below
    std::condition_variable _changed;
    std::deque<std::unique_ptr<KTAlertIndication>> _waiting;
    bool _isForwarding = false;
    bool _isEnding = false;
    unsigned long long _dropped = 0;
    std::unique_ptr<Interruption> _interruption;
    std::thread _thread;
};

}  // namespace PYL
