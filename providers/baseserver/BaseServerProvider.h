#pragma once

#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "platform/logger/Logger.h"
#include "providers/baseserver/ServerInventory.h"
#include "providers/baseserver/ServerWatch.h"
#include "providers/baseserver/WorkCounter.h"
#include "toolkit/WatchingProvider.h"

namespace baseserver {

/// Answers for the host's computer system, its chassis, its PCI devices with their group, and the
/// links between them, does the worker instance's work, and raises the server's alerts. Read-only.
/// Every answer comes from the inventory, refreshed first.
class BaseServerProvider : public CmpiCpp::CmpiInstanceProvider,
                           public CmpiCpp::CmpiMethodProvider,
                           public CmpiCpp::CmpiAssociationProvider,
                           public PYL::WatchingProvider {
public:
    BaseServerProvider(const CmpiCpp::CmpiBroker& broker, Logger& log,
                       InventorySources sources = {});

    CMPIBroker* getBroker() override;

    void enumInstanceNames(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                           CmpiCpp::CmpiObjectPathResult& result) override;
    void enumInstances(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                       const char** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void getInstance(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                     const char** properties, CmpiCpp::CmpiInstanceResult& result) override;

    /// PerformWork: reads the hardware again, posts the devices' status, and counts.
    void invokeMethod(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                      const CmpiCpp::CmpiName& methodName, const CmpiCpp::CmpiArgs& in,
                      CmpiCpp::CmpiMethodResult& result) override;

    void associators(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                     const CmpiCpp::CmpiName& assocClass, const CmpiCpp::CmpiName& resultClass,
                     const CmpiCpp::CmpiName& role, const CmpiCpp::CmpiName& resultRole,
                     const char** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void associatorNames(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                         const CmpiCpp::CmpiName& assocClass, const CmpiCpp::CmpiName& resultClass,
                         const CmpiCpp::CmpiName& role, const CmpiCpp::CmpiName& resultRole,
                         CmpiCpp::CmpiObjectPathResult& result) override;
    void references(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                    const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role,
                    const char** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void referenceNames(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                        const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role,
                        CmpiCpp::CmpiObjectPathResult& result) override;

protected:
    void startWatching(const CmpiCpp::CmpiContext& context) override { _watch.start(context); }
    void stopWatching() override { _watch.stop(); }

private:
    PYL::CmpiManagedInstanceCollection& current();
    std::uint64_t performWork(const CmpiCpp::CmpiContext& context);

    CmpiCpp::CmpiBroker _broker;
    Logger _log;
    ServerInventory _inventory;
    WorkCounter _workCounter;
    ServerWatch _watch;
};

}  // namespace baseserver
