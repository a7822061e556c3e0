#pragma once

#include "platform/logger/Logger.h"
#include "providers/baseserver/ServerInventory.h"
#include "providers/baseserver/ServerWatch.h"
#include "providers/baseserver/WorkCounter.h"
#include "toolkit/CollectionProvider.h"
#include "toolkit/WatchingProvider.h"

#include <cstdint>

namespace baseserver {

/// Answers for the host's computer system, its chassis, its PCI devices with their group, and the
/// links between them, does the worker instance's work, and raises the server's alerts. Read-only.
/// Every answer comes from the inventory, refreshed first.
class BaseServerProvider : public PYL::CollectionProvider, public PYL::WatchingProvider {
public:
    BaseServerProvider(const CmpiCpp::CmpiBroker& broker, Logger& log,
                       InventorySources sources = {});

    /// PerformWork of the worker: reads the hardware again, posts the devices' status, and counts.
    /// PostStatus of the computer system: goes on to the consolidated status, with its answer. Not
    /// every object manager lets two modules serve one class, so that this one serves all of it.
    void invokeMethod(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                      const CmpiCpp::CmpiName& methodName, const CmpiCpp::CmpiArgs& in,
                      CmpiCpp::CmpiMethodResult& result) override;

protected:
    void refresh(const CmpiCpp::CmpiContext& context) override;
    void startWatching(const CmpiCpp::CmpiContext& context) override { _watch.start(context); }
    void stopWatching() override { _watch.stop(); }

private:
    void _handOnStatus(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiArgs& in);
    std::uint64_t _performWork(const CmpiCpp::CmpiContext& context);

    ServerInventory _inventory;
    WorkCounter _workCounter;
    ServerWatch _watch;
};

}  // namespace baseserver
