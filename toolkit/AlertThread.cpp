#include "toolkit/AlertThread.h"

#include "cmpicpp/CmpiMBService.h"
#include "toolkit/FailureText.h"

#include <atomic>
#include <condition_variable>
#include <thread>

namespace PYL {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiThreadContext;

/// One thread, from start to stop.
class AlertThread::Watcher {
public:
    Watcher(const AlertThread& owner, const CmpiContext& context)
        : _owner(owner), _prepared(owner._broker.toCMPI(), context), _thread([this] { _run(); }) {}
    ~Watcher() {
        {
            const std::lock_guard lock(_mutex);
            _isStopping = true;
        }
        _wake.notify_all();
        _thread.join();
    }
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

    /// It was told to, or the object manager took no thread of its.
    bool hasEnded() const noexcept { return _hasEnded; }

private:
    /// Calls nothing of the object manager itself.
    void _run() noexcept {
        while (_lookOnItsOwn()) {
        }
        _hasEnded = true;
    }

    /// On a thread that ends with the look: what is made of the object manager lives until it is
    /// detached or, in some, until it has ended, and this one may run for years. False at the end.
    bool _lookOnItsOwn() {
        bool goesOn = false;
        try {
            std::thread([this, &goesOn] { goesOn = _tryLook(); }).join();
            return goesOn;
        } catch (...) {
            _owner._log.error("a look is left out: %s", failureText());
            return !_isStoppedWithin(_owner._period);
        }
    }

    bool _tryLook() noexcept {
        try {
            return _lookOnce();
        } catch (...) {
            _owner._log.error("nothing is watched: %s", failureText());
            return false;
        }
    }

    bool _lookOnce() {
        const CmpiThreadContext::Attachment attachment(_prepared);
        _look(attachment.context());
        while (!_isStoppedWithin(_owner._period)) {
            if (_prepareNext(attachment.context())) return true;
        }
        return false;
    }

    void _look(const CmpiContext& context) const {
        try {
            _owner._look(context);
        } catch (...) {
            _owner._log.error("a look failed: %s", failureText());
        }
    }

    bool _prepareNext(const CmpiContext& context) {
        try {
            _prepared = CmpiThreadContext(_owner._broker.toCMPI(), context);
            return true;
        } catch (...) {
            _owner._log.error("a look is left out: %s", failureText());
            return false;
        }
    }

    bool _isStoppedWithin(std::chrono::milliseconds time) {
        std::unique_lock lock(_mutex);
        return _wake.wait_for(lock, time, [this] { return _isStopping; });
    }

    const AlertThread& _owner;
    CmpiThreadContext _prepared;
    std::mutex _mutex;
    std::condition_variable _wake;
    bool _isStopping = false;
    std::atomic<bool> _hasEnded{false};
    std::thread _thread;  // last: it uses the others
};

AlertThread::AlertThread(const CmpiCpp::CmpiBroker& broker, Logger& log,
                         std::chrono::milliseconds period, Look look)
    : _broker(broker), _log(log), _period(period), _look(std::move(look)) {}

AlertThread::~AlertThread() { stop(); }

void AlertThread::start(const CmpiContext& context) {
    const std::lock_guard lock(_mutex);
    if (!_watcher || _watcher->hasEnded()) _watcher = std::make_unique<Watcher>(*this, context);
}

void AlertThread::stop() {
    const std::lock_guard lock(_mutex);
    _watcher.reset();
}

}  // namespace PYL
