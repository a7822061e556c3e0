#pragma once

#include "cimhost/objects/Broker.h"
#include "cimhost/server/events/EventFeed.h"
#include "cimhost/server/isolation/ChildProcess.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace cimhost {

/// How the processes of modules are started and watched.
struct IsolationSettings {
    /// This program and its arguments; the name of the module goes behind them.
    std::vector<std::string> command;
    std::chrono::milliseconds providerTime{60'000};
    std::chrono::milliseconds restorePause{60'000};  ///< before what failed is restored once more
    EventFeed* feed = nullptr;                       ///< of the lines that they write, too
};

/// What is asked of a module, for the words of its failure.
struct AskedOfModule {
    std::string_view provider;
    std::string_view operation;
    std::string path;
    std::string_view method{};  ///< of "invokeMethod" alone
};

/// The process of one module: started by the first request, and again by one that comes after it
/// has died. The second death in a row is followed by a pause of a second, in which requests fail
/// at once, each further one by twice the pause, up to a minute. A process that has lived for a
/// minute begins a new row. Safe from several threads.
class ModuleProcess {
public:
    /// So many requests run in it at once: each has a connection and a thread there.
    static constexpr int mostRequests = 200;

    struct State {
        pid_t id = 0;                 ///< 0 while there is none
        Clock::time_point started{};  ///< tells it from those before; none while there is none
        bool isPaused = false;
        std::uint32_t starts = 0;
        std::uint32_t crashes = 0;
        std::string lastWords;  ///< of the last crash
        std::string failure;    ///< why it could not load the module, when it was asked last
    };

    /// All outlive this.
    ModuleProcess(std::string module, const IsolationSettings& settings, HttpHandler& upCalls,
                  BrokerLog& log);
    ~ModuleProcess();
    ModuleProcess(const ModuleProcess&) = delete;
    ModuleProcess& operator=(const ModuleProcess&) = delete;

    const std::string& module() const noexcept { return _module; }

    /// Runs `work` with the way to the process, and tells when that was started. A StreamError of
    /// it is an end of the process or its silence, and becomes CimError failed that says so; so
    /// does a process that cannot be started or is paused. One request too many is CimError
    /// serverLimitsExceeded. Throws what else `work` throws.
    Clock::time_point ask(const AskedOfModule& asked,
                          const std::function<void(ClientTransport&)>& work);

    /// Makes a process, which was started then, what one before it was. What it throws is logged,
    /// and it is called again after a while; a process that is silent is killed.
    using Restore = std::function<void(ClientTransport&, Clock::time_point started)>;

    /// From now on, whenever a new process has taken the place of one that died, and before it is
    /// asked by whoever has it started, each of these is called. As long as more have said that
    /// they need it than that they do no longer, that happens without a request, too.
    void onRestart(Restore restore);
    void keepRunning(bool isNeeded);

    /// Held while a process is told to do, until further notice, what one after it has to be told
    /// again, and while that is done. Before it is asked.
    std::recursive_mutex& lasting() noexcept { return _lasting; }

    /// Kills the process if a request still runs in it. True when there was one.
    bool killIfBusy();

    State state() const;

    /// Further requests go to a new process; this one, if there is one, ends after its last.
    void replace() noexcept;
    /// Asks those that were replaced and have no request any more to end. True when one is there
    /// still: ask again.
    bool releaseReplaced();

    /// Asks the process to end, and has it start no more.
    void beginEnd() noexcept;
    /// False when it has not ended in order by then; it is killed.
    bool awaitEnd(Clock::time_point deadline);

private:
    using Child = std::shared_ptr<ChildProcess>;

    struct Replaced {
        Child child;
        std::optional<Clock::time_point> deadline;  ///< of its end, once it was asked to
    };

    void _noteFailure(const std::string& text);
    Child _running();
    Child _startNew(std::unique_lock<std::mutex>& lock);
    void _restore(const Child& child);
    bool _restoreBy(const Restore& restore, const Child& child);
    Child _toRestore(std::unique_lock<std::mutex>& lock);
    [[noreturn]] void _refuse(const Child& child, const AskedOfModule& asked,
                              const StreamError& error);
    void _noteLine(std::string_view line) const noexcept;
    void _noteEnd(ChildProcess& child, const std::string& end) noexcept;
    void _keep() noexcept;
    std::string _name() const { return "module " + _module; }
    std::string _silence() const;

    const std::string _module;
    const IsolationSettings& _settings;
    HttpHandler& _upCalls;
    BrokerLog& _log;

    std::atomic<int> _requests = 0;  ///< that run

    std::recursive_mutex _lasting;
    mutable std::mutex _mutex;
    std::condition_variable _changed;
    Child _child;
    std::vector<Child> _old;  ///< of which something may run still
    std::vector<Replaced> _replaced;
    bool _isStopping = false;
    int _needs = 0;
    bool _isDead = false;  ///< the child has ended unasked
    std::uint32_t _starts = 0;
    std::uint32_t _crashes = 0;
    unsigned _deathsInRow = 0;
    Clock::time_point _notBefore{};
    std::string _lastWords;
    std::string _failure;
    std::atomic<bool> _hasFailure = false;
    std::vector<Restore> _restores;
    std::optional<Clock::time_point> _restoreAgain;
    std::string _lastTrouble;  ///< that restoring met
    std::thread _keeper;
};

}  // namespace cimhost
