#pragma once

#include <pthread.h>

#include <atomic>
#include <string>

#include "cmpi/cmpidt.h"
#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "common/CmpiManagedInstance.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

namespace PYL {

/// A provider whose inner provider, costly to build, is made by the first request that needs it.
///
/// One worker instance is there from the beginning. Enumerations of its class and requests for its
/// path, whatever host they name, are answered with it, whole, and start nothing; nor do
/// getBroker(), unloadOK() and cleanup(). Every other request, method calls on the worker instance
/// among them, starts the inner provider and goes to it unchanged. A request of a kind that the
/// inner provider is not fails with CMPI_RC_ERROR_SYSTEM.
///
/// A start that fails, because the factory gives null or throws, leaves everything as it was: the
/// request fails, with CMPI_RC_ERROR_SYSTEM "Unable to start provider" or with what was thrown, and
/// the next one tries again. Once started, the inner provider lives as long as the decorator.
///
/// Threads: concurrent first requests call the factory once; the others wait for it, so the factory
/// must not send a request back to this decorator. After the start a request costs one atomic load.
/// The worker instance may be asked from several threads at once.
class PYL_EXPORT AutostartDecorator : public CmpiCpp::CmpiInstanceProvider,
                                      public CmpiCpp::CmpiMethodProvider,
                                      public CmpiCpp::CmpiAssociationProvider,
                                      public CmpiCpp::CmpiIndicationProvider {
public:
    using Factory = CmpiCpp::CmpiProvider* (*)(CmpiCpp::CmpiBroker const&, Logger&);

    /// Owns the worker instance, which must not be null, and records the broker with
    /// PYLUtil::setBroker(). Does not call the factory.
    AutostartDecorator(CmpiCpp::CmpiBroker const& broker, Logger& logger,
                       CmpiManagedInstance* instance, Factory factory);
    ~AutostartDecorator() override;

    void enumInstanceNames(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                           CmpiCpp::CmpiObjectPathResult& result) override;
    void enumInstances(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                       char const** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void getInstance(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                     char const** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void createInstance(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                        CmpiCpp::CmpiInstance const& instance,
                        CmpiCpp::CmpiObjectPathResult& result) override;
    void modifyInstance(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                        CmpiCpp::CmpiInstance const& instance, char const** properties) override;
    void deleteInstance(CmpiCpp::CmpiContext const& ctx,
                        CmpiCpp::CmpiObjectPath const& path) override;
    void execQuery(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                   std::string const& query, std::string const& language,
                   CmpiCpp::CmpiObjectPathResult& result) override;

    CMPIBroker* getBroker() override;
    int unloadOK(CmpiCpp::CmpiContext const& ctx) override;
    void cleanup(CmpiCpp::CmpiContext const& ctx, bool terminating) override;

    void invokeMethod(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                      CmpiCpp::CmpiName const& methodName, CmpiCpp::CmpiArgs const& in,
                      CmpiCpp::CmpiMethodResult& result) override;

    void associators(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                     CmpiCpp::CmpiName const& assocClass, CmpiCpp::CmpiName const& resultClass,
                     CmpiCpp::CmpiName const& role, CmpiCpp::CmpiName const& resultRole,
                     char const** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void associatorNames(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                         CmpiCpp::CmpiName const& assocClass, CmpiCpp::CmpiName const& resultClass,
                         CmpiCpp::CmpiName const& role, CmpiCpp::CmpiName const& resultRole,
                         CmpiCpp::CmpiObjectPathResult& result) override;
    void references(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                    CmpiCpp::CmpiName const& resultClass, CmpiCpp::CmpiName const& role,
                    char const** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void referenceNames(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                        CmpiCpp::CmpiName const& resultClass, CmpiCpp::CmpiName const& role,
                        CmpiCpp::CmpiObjectPathResult& result) override;

    void authorizeFilter(CmpiCpp::CmpiContext const& ctx, CMPISelectExp const* filter,
                         std::string const& className, CmpiCpp::CmpiObjectPath const& path,
                         std::string const& owner) override;
    void mustPoll(CmpiCpp::CmpiContext const& ctx, CMPISelectExp const* filter,
                  std::string const& className, CmpiCpp::CmpiObjectPath const& path) override;
    void activateFilter(CmpiCpp::CmpiContext const& ctx, CMPISelectExp const* filter,
                        std::string const& className, CmpiCpp::CmpiObjectPath const& path,
                        bool last) override;
    void deactivateFilter(CmpiCpp::CmpiContext const& ctx, CMPISelectExp const* filter,
                          std::string const& className, CmpiCpp::CmpiObjectPath const& path,
                          bool last) override;
    void enableIndications(CmpiCpp::CmpiContext const& ctx) override;
    void disableIndications(CmpiCpp::CmpiContext const& ctx) override;

protected:
    /// Makes sure that there is an inner provider.
    void _startProvider();

    /// The inner provider, started if need be, as one of the four kinds.
    CmpiCpp::CmpiInstanceProvider* _asInstanceProvider();
    CmpiCpp::CmpiAssociationProvider* _asAssociationProvider();
    CmpiCpp::CmpiMethodProvider* _asMethodProvider();
    CmpiCpp::CmpiIndicationProvider* _asIndicationProvider();

private:
    CmpiCpp::CmpiBroker _broker;
    Logger _log;
    CmpiManagedInstance* _autostartInstance;
    Factory _fn;
    pthread_mutex_t _initMutex;
    std::atomic<CmpiCpp::CmpiProvider*> _p{nullptr};
};

}  // namespace PYL
