#include "providers/alerts/AlertThread.h"

#include "cmpicpp/CmpiMBService.h"
#include "providers/alerts/FailureText.h"

namespace alerts {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiThreadContext;

/// One thread, from start to stop.
class AlertThread::Watcher {
public:
    Watcher(AlertThread const& owner, CmpiContext const& context)
        : _owner(owner), _prepared(owner._broker.toCMPI(), context), _thread([this] { run(); }) {}
    ~Watcher() {
        {
            std::lock_guard const lock(_mutex);
            _isStopping = true;
        }
        _wake.notify_all();
        _thread.join();
    }
    Watcher(Watcher const&) = delete;
    Watcher& operator=(Watcher const&) = delete;

private:
    void run() noexcept {
        try {
            while (lookOnce()) {
            }
        } catch (...) {
            _owner._log.error("nothing is watched: %s", failureText());
        }
    }

    /// Attached for one look alone: what is made of the object manager lives until the thread is
    /// detached, and this one may run for years. False at the end.
    bool lookOnce() {
        CmpiThreadContext::Attachment const attachment(_prepared);
        look(attachment.context());
        while (!isStoppedWithin(_owner._period))
            if (prepareNext(attachment.context())) return true;
        return false;
    }

    void look(CmpiContext const& context) const {
        try {
            _owner._look(context);
        } catch (...) {
            _owner._log.error("a look failed: %s", failureText());
        }
    }

    bool prepareNext(CmpiContext const& context) {
        try {
            _prepared = CmpiThreadContext(_owner._broker.toCMPI(), context);
            return true;
        } catch (...) {
            _owner._log.error("a look is left out: %s", failureText());
            return false;
        }
    }

    bool isStoppedWithin(std::chrono::milliseconds time) {
        std::unique_lock lock(_mutex);
        return _wake.wait_for(lock, time, [this] { return _isStopping; });
    }

    AlertThread const& _owner;
    CmpiThreadContext _prepared;
    std::mutex _mutex;
    std::condition_variable _wake;
    bool _isStopping = false;
    std::thread _thread;  // last: it uses the others
};

AlertThread::AlertThread(CmpiCpp::CmpiBroker const& broker, Logger& log,
                         std::chrono::milliseconds period, Look look)
    : _broker(broker), _log(log), _period(period), _look(std::move(look)) {}

AlertThread::~AlertThread() {
    stop();
}

void AlertThread::start(CmpiContext const& context) {
    std::lock_guard const lock(_mutex);
    if (!_watcher) _watcher = std::make_unique<Watcher>(*this, context);
}

void AlertThread::stop() {
    std::lock_guard const lock(_mutex);
    _watcher.reset();
}

}  // namespace alerts
