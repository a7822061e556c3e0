#pragma once

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiContext.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

namespace PYL {

/// Watches for an indication provider: while indications are enabled, a thread of its own, known to
/// the object manager, looks again and again. Each look has a new one: some object managers free
/// what a thread makes of them when it ends, and no sooner.
///
/// Safe from several threads. What a look throws is a line in the log; the next one comes all the
/// same.
class PYL_EXPORT AlertThread {
public:
    /// Looks once. Called on the thread, with a context for what it asks of the object manager;
    /// what it makes of the object manager lives until it returns.
    using Look = std::function<void(const CmpiCpp::CmpiContext&)>;

    /// Looks at once when it is started, then a period after each look. Keeps a copy of the logger.
    AlertThread(const CmpiCpp::CmpiBroker& broker, Logger& log, std::chrono::milliseconds period,
                Look look);
    /// Stops.
    ~AlertThread();
    AlertThread(const AlertThread&) = delete;
    AlertThread& operator=(const AlertThread&) = delete;

    /// Starts the thread, on one that serves a request with this context. Nothing when it runs
    /// already; one that the object manager did not take, which is a line in the log, is tried
    /// again. Throws CmpiStatus when the object manager prepares no thread.
    void start(const CmpiCpp::CmpiContext& context);

    /// Ends the thread and waits for it. Nothing when none runs. Not from within a look.
    void stop();

private:
    class Watcher;

    CmpiCpp::CmpiBroker _broker;
    Logger _log;
    std::chrono::milliseconds _period;
    Look _look;
    std::mutex _mutex;
    std::unique_ptr<Watcher> _watcher;
};

}  // namespace PYL
