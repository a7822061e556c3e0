#pragma once

#include "platform/logger/Logger.h"
#include "providers/fan/FanEvents.h"
#include "providers/fan/FanSensors.h"
#include "toolkit/AlertSource.h"
#include "toolkit/AlertThread.h"
#include "toolkit/CollectionProvider.h"
#include "toolkit/WatchingProvider.h"

#include <functional>
#include <mutex>
#include <optional>
#include <vector>

namespace fan {

/// Reports the server's fans and their group, read afresh for each request, and while indications
/// are enabled what happens to them. A change of the group's state is posted to the consolidated
/// status. Read-only.
class FanProvider : public PYL::CollectionProvider, public PYL::WatchingProvider {
public:
    using Source = std::function<std::vector<Fan>()>;

    FanProvider(
        const CmpiCpp::CmpiBroker& broker, Logger& log, Source source = [] { return readFans(); });

    /// One look at the fans, as the watching thread does it.
    void look(const CmpiCpp::CmpiContext& context);

protected:
    void startWatching(const CmpiCpp::CmpiContext& context) override { _thread.start(context); }
    void stopWatching() override { _thread.stop(); }

    /// From a collection of the fans as they are now: no request waits for another one's readings.
    void answer(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                const Ask& ask) override;

private:
    Source _source;
    PYL::AlertSource _alerts;
    std::mutex _looking;
    FanEvents _events;
    std::optional<PYL::operationalStatus> _posted;
    PYL::AlertThread _thread;  // last: its looks use the others
};

}  // namespace fan
