#include "cimhost/server/isolation/ModuleProcess.h"

#include "cimhost/modules/ModuleHost.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/server/events/RelayedLine.h"
#include "cimhost/server/isolation/AwaitedCall.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace cimhost {
namespace {

using std::chrono::seconds;

constexpr seconds longLife{60};
constexpr seconds longestPause{60};
/// For a process whose connection ended to end itself.
constexpr seconds dyingTime{5};
/// For one that was replaced to clean up.
constexpr seconds leavingTime{10};
constexpr const char* orderlyEnd = "ended with 0";

seconds pauseAfter(unsigned deaths) noexcept {
    if (deaths < 2) return seconds(0);
    return deaths > 7 ? longestPause : std::min(longestPause, seconds(1U << (deaths - 2)));
}

/// Counts a request while it runs.
class Turn {
public:
    explicit Turn(std::atomic<int>& running) noexcept : _running(running), _number(++running) {}
    ~Turn() { --_running; }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    int number() const noexcept { return _number; }

private:
    std::atomic<int>& _running;
    int _number;
};

std::string inSeconds(std::chrono::milliseconds time) {
    const auto whole = std::chrono::ceil<seconds>(time).count();
    return std::to_string(whole) + " s";
}

}  // namespace

ModuleProcess::ModuleProcess(std::string module, const IsolationSettings& settings,
                             HttpHandler& upCalls, BrokerLog& log)
    : _module(std::move(module)), _settings(settings), _upCalls(upCalls), _log(log) {}

ModuleProcess::~ModuleProcess() {
    beginEnd();
    if (_keeper.joinable()) _keeper.join();
}

Clock::time_point ModuleProcess::ask(const AskedOfModule& asked,
                                     const std::function<void(ClientTransport&)>& work) {
    const Turn turn(_requests);
    if (turn.number() > mostRequests) {
        throw CimError(CimCode::serverLimitsExceeded,
                       _name() + ": so many requests run already: " + std::to_string(mostRequests));
    }
    const Child child = _running();
    const AwaitedCall awaited;
    try {
        work(child->transport());
        child->relayLines();
        if (_hasFailure) _noteFailure({});
        return child->started();
    } catch (const CimError& error) {
        child->relayLines();
        if (std::string_view(error.what()).starts_with(cannotBeLoaded(_module))) {
            _noteFailure(error.what());
        }
        throw;
    } catch (const StreamError& error) {
        _refuse(child, asked, error);
    } catch (const HttpClientError& error) {
        _refuse(child, asked, StreamError(StreamError::Kind::lost, error.what()));
    }
}

void ModuleProcess::_noteFailure(const std::string& text) {
    const std::lock_guard lock(_mutex);
    _failure = text;
    _hasFailure = !text.empty();
}

ModuleProcess::Child ModuleProcess::_running() {
    std::unique_lock lock(_mutex);
    if (_isStopping) throw CimError(CimCode::serverIsShuttingDown, "the server is shutting down");
    if (_child && !_isDead) return _child;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(_notBefore - Clock::now());
    if (left.count() > 0) {
        throw CimError(CimCode::failed, _name() + " is not started again for another " +
                                            inSeconds(left) + ": its process died " +
                                            std::to_string(_deathsInRow) +
                                            " times in a row, at last: " + _lastWords);
    }
    return _startNew(lock);
}

ModuleProcess::Child ModuleProcess::_startNew(std::unique_lock<std::mutex>& lock) {
    if (_child) _old.push_back(std::exchange(_child, nullptr));
    std::erase_if(_old, [](const Child& each) { return each.use_count() == 1 && each->isOver(); });
    ChildProcess::Settings settings;
    settings.command = _settings.command;
    settings.command.push_back(_module);
    settings.patience = [this](Clock::time_point lastByte) {
        return AwaitedCall::silentSince(lastByte) + _settings.providerTime;
    };
    settings.onEnd = [this](ChildProcess& child, const std::string& end) { _noteEnd(child, end); };
    settings.onLine = [this](std::string_view line) { _noteLine(line); };
    try {
        _child = std::make_shared<ChildProcess>(std::move(settings), _upCalls);
    } catch (const std::system_error& error) {
        throw CimError(CimCode::failed,
                       _name() + ": its process cannot be started: " + error.what());
    }
    _isDead = false;
    const bool isRestart = _starts++ > 0;
    Child child = _child;
    lock.unlock();
    if (isRestart) _restore(child);
    return child;
}

void ModuleProcess::_restore(const Child& child) {
    std::vector<Restore> restores;
    {
        const std::lock_guard lock(_mutex);
        restores = _restores;
    }
    bool isWhole = true;
    for (const auto& restore : restores) isWhole = _restoreBy(restore, child) && isWhole;
    const std::lock_guard lock(_mutex);
    if (isWhole) {
        _lastTrouble.clear();
    } else {
        _restoreAgain = Clock::now() + _settings.restorePause;
        _changed.notify_all();
    }
}

bool ModuleProcess::_restoreBy(const Restore& restore, const Child& child) {
    std::string trouble;
    try {
        const AwaitedCall awaited;
        restore(child->transport(), child->started());
        return true;
    } catch (const StreamError& error) {
        if (error.kind() == StreamError::Kind::timeout) child->kill(_silence());
        trouble = error.what();
    } catch (const std::exception& error) {
        trouble = error.what();
    }
    const std::lock_guard lock(_mutex);
    if (std::exchange(_lastTrouble, trouble) != trouble) {
        _log.write(BrokerLog::Level::warning, _module, "after its new start: " + trouble);
    }
    return false;
}

// The process that something is to be restored in by now, if there is one.
ModuleProcess::Child ModuleProcess::_toRestore(std::unique_lock<std::mutex>& lock) {
    if (!_restoreAgain) {
        _changed.wait(lock);
        return nullptr;
    }
    if (Clock::now() >= *_restoreAgain) {
        _restoreAgain.reset();
        return _child;
    }
    _changed.wait_until(lock, *_restoreAgain);
    return nullptr;
}

bool ModuleProcess::killIfBusy() {
    const std::lock_guard lock(_mutex);
    if (_requests == 0 || !_child || _isDead) return false;
    _child->kill("killed: a request did not end with the server");
    return true;
}

std::string ModuleProcess::_silence() const {
    return "killed: it has not answered for " + inSeconds(_settings.providerTime);
}

void ModuleProcess::_refuse(const Child& child, const AskedOfModule& asked,
                            const StreamError& error) {
    if (error.kind() == StreamError::Kind::timeout) child->kill(_silence());
    auto end = child->awaitEnd(Clock::now() + dyingTime);
    if (!end) {
        child->kill(std::string("killed: its connection ended: ") + error.what());
        end = child->awaitEnd(Clock::now() + dyingTime).value_or("lost");
    }
    std::string text = _name() + ", provider " + std::string(asked.provider) + ", operation " +
                       std::string(asked.operation) + (asked.method.empty() ? "" : " ") +
                       std::string(asked.method) + ", path " + asked.path + ": its process " + *end;
    throw CimError(CimCode::failed, text);
}

void ModuleProcess::_noteLine(std::string_view line) const noexcept try {
    if (!_settings.feed || !_settings.feed->isWatched()) return;
    _settings.feed->publish("log", relayedLine(_module, line));
} catch (const std::exception&) {
    // Out of memory: the event is lost.
}

void ModuleProcess::_noteEnd(ChildProcess& child, const std::string& end) noexcept try {
    const std::string said = child.lastWords();
    const std::lock_guard lock(_mutex);
    if (_isStopping) return;
    if (_child.get() != &child) {  // it was replaced
        if (end == orderlyEnd) return;
        return _log.write(BrokerLog::Level::warning, _module,
                          "the module's process of before " + end);
    }
    const Clock::time_point now = Clock::now();
    if (now - child.started() >= longLife) _deathsInRow = 0;
    ++_deathsInRow;
    ++_crashes;
    _notBefore = now + pauseAfter(_deathsInRow);
    _lastWords = said.empty() ? end : end + ": " + said;
    _isDead = true;
    _changed.notify_all();
    _log.write(BrokerLog::Level::error, _module, "the module's process " + _lastWords);
} catch (const std::exception&) {
    _log.write(BrokerLog::Level::error, _module, "the module's process has ended");
}

void ModuleProcess::onRestart(Restore restore) {
    const std::lock_guard lock(_mutex);
    _restores.push_back(std::move(restore));
}

void ModuleProcess::keepRunning(bool isNeeded) {
    const std::lock_guard lock(_mutex);
    _needs += isNeeded ? 1 : -1;
    _changed.notify_all();
    if (!isNeeded || _keeper.joinable() || _isStopping) return;
    try {
        _keeper = std::thread([this] { _keep(); });
    } catch (const std::exception& error) {
        _log.write(BrokerLog::Level::error, _module,
                   std::string("is not started again by itself: ") + error.what());
    }
}

void ModuleProcess::_keep() noexcept {
    std::unique_lock lock(_mutex);
    while (!_isStopping) {
        if (_needs == 0) {
            _changed.wait(lock);
        } else if (!_isDead) {
            const Child child = _toRestore(lock);
            if (!child) continue;
            lock.unlock();
            _restore(child);
            lock.lock();
        } else if (Clock::now() < _notBefore) {
            _changed.wait_until(lock, _notBefore);
        } else {
            try {
                _startNew(lock);
            } catch (const std::exception& error) {
                if (!lock.owns_lock()) lock.lock();
                _notBefore = Clock::now() + longestPause;
                _log.write(BrokerLog::Level::error, _module, error.what());
            }
            if (!lock.owns_lock()) lock.lock();
        }
    }
}

ModuleProcess::State ModuleProcess::state() const {
    const std::lock_guard lock(_mutex);
    State state;
    if (_child && !_isDead) {
        state.id = _child->id();
        state.started = _child->started();
    }
    state.isPaused = _isDead && Clock::now() < _notBefore;
    state.starts = _starts;
    state.crashes = _crashes;
    state.lastWords = _lastWords;
    state.failure = _failure;
    return state;
}

void ModuleProcess::replace() noexcept try {
    std::unique_lock lock(_mutex);
    _failure.clear();  // it was that of another file
    if (!_child || _isDead || _isStopping) return;
    _replaced.push_back({std::exchange(_child, nullptr), {}});
    _isDead = true;  // until there is another; the keeper goes on trying
    _changed.notify_all();
    // Its filters are to be active again before anybody asks.
    if (_needs > 0) _startNew(lock);
} catch (const std::exception& error) {
    _log.write(BrokerLog::Level::error, _module, error.what());
}

bool ModuleProcess::releaseReplaced() {
    std::vector<Child> over;  // destroyed without the lock, which their end may want
    const std::lock_guard lock(_mutex);
    const Clock::time_point now = Clock::now();
    for (Replaced& each : _replaced) {
        if (each.child.use_count() != 1) continue;
        if (!each.deadline) {
            each.deadline = now + leavingTime;
            each.child->beginEnd();
        }
        if (now > *each.deadline) each.child->kill("killed: its clean-up does not return");
        if (each.child->isOver()) over.push_back(std::move(each.child));
    }
    std::erase_if(_replaced, [](const Replaced& each) { return !each.child; });
    return !_replaced.empty();
}

void ModuleProcess::beginEnd() noexcept {
    const std::lock_guard lock(_mutex);
    _isStopping = true;
    _changed.notify_all();
    if (_child) _child->beginEnd();
    for (const Replaced& each : _replaced) each.child->beginEnd();
}

bool ModuleProcess::awaitEnd(Clock::time_point deadline) {
    Child child;
    std::vector<Replaced> replaced;
    {
        const std::lock_guard lock(_mutex);
        if (!_isDead) child = _child;
        replaced.swap(_replaced);
    }
    for (const Replaced& each : replaced) each.child->awaitEnd(deadline);
    if (!child) return true;
    if (const auto end = child->awaitEnd(deadline)) return *end == orderlyEnd;
    child->kill("killed: its clean-up does not return");
    _log.write(BrokerLog::Level::error, _module, "its clean-up does not return; it is killed");
    return false;
}

}  // namespace cimhost
