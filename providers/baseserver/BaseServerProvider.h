#pragma once

#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "platform/logger/Logger.h"
#include "providers/alerts/WatchingProvider.h"
#include "providers/baseserver/ServerInventory.h"
#include "providers/baseserver/ServerWatch.h"
#include "providers/baseserver/WorkCounter.h"

namespace baseserver {

/// Answers for the host's computer system, its chassis, its PCI devices with their group, and the
/// links between them, does the worker instance's work, and raises the server's alerts. Read-only.
/// Every answer comes from the inventory, refreshed first.
class BaseServerProvider : public CmpiCpp::CmpiInstanceProvider,
                           public CmpiCpp::CmpiMethodProvider,
                           public CmpiCpp::CmpiAssociationProvider,
                           public alerts::WatchingProvider {
public:
    BaseServerProvider(CmpiCpp::CmpiBroker const& broker, Logger& log,
                       InventorySources sources = {});

    CMPIBroker* getBroker() override;

    void enumInstanceNames(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                           CmpiCpp::CmpiObjectPathResult& result) override;
    void enumInstances(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                       char const** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void getInstance(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                     char const** properties, CmpiCpp::CmpiInstanceResult& result) override;

    /// PerformWork: reads the hardware again, posts the devices' status, and counts.
    void invokeMethod(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                      CmpiCpp::CmpiName const& methodName, CmpiCpp::CmpiArgs const& in,
                      CmpiCpp::CmpiMethodResult& result) override;

    void associators(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                     CmpiCpp::CmpiName const& assocClass, CmpiCpp::CmpiName const& resultClass,
                     CmpiCpp::CmpiName const& role, CmpiCpp::CmpiName const& resultRole,
                     char const** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void associatorNames(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                         CmpiCpp::CmpiName const& assocClass, CmpiCpp::CmpiName const& resultClass,
                         CmpiCpp::CmpiName const& role, CmpiCpp::CmpiName const& resultRole,
                         CmpiCpp::CmpiObjectPathResult& result) override;
    void references(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                    CmpiCpp::CmpiName const& resultClass, CmpiCpp::CmpiName const& role,
                    char const** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void referenceNames(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                        CmpiCpp::CmpiName const& resultClass, CmpiCpp::CmpiName const& role,
                        CmpiCpp::CmpiObjectPathResult& result) override;

protected:
    void startWatching(CmpiCpp::CmpiContext const& context) override { _watch.start(context); }
    void stopWatching() override { _watch.stop(); }

private:
    PYL::CmpiManagedInstanceCollection& current();
    std::uint64_t performWork(CmpiCpp::CmpiContext const& context);

    CmpiCpp::CmpiBroker _broker;
    Logger _log;
    ServerInventory _inventory;
    WorkCounter _workCounter;
    ServerWatch _watch;
};

}  // namespace baseserver
