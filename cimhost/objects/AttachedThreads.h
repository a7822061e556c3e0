#pragma once

#include "cmpi/cmpift.h"

#include <mutex>
#include <unordered_map>

namespace cimhost {

class Broker;

/// Contexts made for threads that are to attach, from prepareAttachThread to detachThread; what is
/// never detached is freed with the broker. Safe from several threads.
class PreparedContexts {
public:
    PreparedContexts() = default;
    ~PreparedContexts();
    PreparedContexts(const PreparedContexts&) = delete;
    PreparedContexts& operator=(const PreparedContexts&) = delete;

    /// A copy of the context. Throws std::bad_alloc, Failure for a handle that is not ours.
    CMPIContext* prepare(const CMPIContext* context);

    /// Begins a scope on this thread. Failure CMPI_RC_ERR_INVALID_HANDLE for a context that was not
    /// prepared or has been attached already, CMPI_RC_ERR_FAILED on a thread that is attached.
    void attach(const CMPIContext* context);

    /// Ends the scope and the context; where `keepsObjects`, the scope lasts as long as the thread
    /// or the call around it. Failure CMPI_RC_ERR_INVALID_HANDLE when this thread did not
    /// attach with it.
    void detach(const CMPIContext* context, bool keepsObjects);

private:
    void _end(const CMPIContext* context) noexcept;

    std::mutex _mutex;
    std::unordered_map<const CMPIContext*, bool> _contexts;  ///< true: attached
};

/// The first slots of the broker's table. deliverIndication passes to the broker's indication sink.
void fillThreadsAndIndications(CMPIBrokerFT& table);

}  // namespace cimhost
