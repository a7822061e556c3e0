#include "cimhost/server/StartWatch.h"

#include <cstdlib>

namespace cimhost {
namespace {

constexpr std::chrono::seconds startGrace{5};

}  // namespace

StartWatch::StartWatch(const EndSignals& signals, BrokerLog& log,
                       std::optional<std::chrono::seconds> time)
    : _signals(signals), _log(log), _thread([this, time] { _watch(time); }) {}

StartWatch::~StartWatch() { finish(); }

bool StartWatch::finish() {
    if (_thread.joinable()) {
        {
            const std::lock_guard lock(_mutex);
            _isFinished = true;
        }
        _changed.notify_all();
        EndSignals::interrupt(_thread);
        _thread.join();
    }
    return _isAsked;
}

void StartWatch::_watch(std::optional<std::chrono::seconds> time) noexcept {
    EndSignals::Reason reason = _signals.wait(time);
    while (reason == EndSignals::Reason::reload) {
        _isReloadAsked = true;
        reason = _signals.wait(time);
    }
    if (reason == EndSignals::Reason::interrupted) return;
    std::unique_lock lock(_mutex);
    _isAsked = reason == EndSignals::Reason::asked;
    if (_changed.wait_for(lock, startGrace, [this] { return _isFinished; })) return;
    _log.write(BrokerLog::Level::error, "cimhost",
               "asked to end while it starts, and the start does not return, most likely from a "
               "module that is asked about a subscription; leaving");
    std::_Exit(1);
}

}  // namespace cimhost
