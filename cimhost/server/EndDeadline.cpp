#include "cimhost/server/EndDeadline.h"

#include "cimhost/modules/RunningCall.h"

#include <cstdlib>

namespace cimhost {

EndDeadline::EndDeadline(BrokerLog& log, std::chrono::milliseconds time)
    : _log(log), _thread([this, time] { _watch(time); }) {}

EndDeadline::~EndDeadline() {
    {
        const std::lock_guard lock(_mutex);
        _isReached = true;
    }
    _changed.notify_all();
    _thread.join();
}

void EndDeadline::_watch(std::chrono::milliseconds time) noexcept {
    std::unique_lock lock(_mutex);
    if (_changed.wait_for(lock, time, [this] { return _isReached; })) return;
    logHangingCalls(_log);
    _log.write(BrokerLog::Level::error, "cimhost",
               "a module's clean-up does not return; leaving without it");
    std::_Exit(1);
}

}  // namespace cimhost
