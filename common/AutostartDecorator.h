#pragma once

#include "cmpicpp/CmpiBroker.h"
#include "common/CmpiManagedInstance.h"
#include "common/ProviderOperations.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <pthread.h>

#include <atomic>

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
    /// Makes the inner provider, which the decorator owns from then on.
    using Factory = CmpiCpp::CmpiProvider* (*)(const CmpiCpp::CmpiBroker&, Logger&);

    /// Owns the worker instance, which must not be null, and records the broker with
    /// PYLUtil::setBroker(). Does not call the factory.
    AutostartDecorator(const CmpiCpp::CmpiBroker& broker, Logger& logger,
                       CmpiManagedInstance* instance, Factory factory);
    ~AutostartDecorator() override;

    PYL_PROVIDER_OPERATIONS;

protected:
    /// Makes sure that there is an inner provider.
    void _startProvider();

    /// @{
    /// The inner provider, started if need be, as one of the four kinds.
    CmpiCpp::CmpiInstanceProvider* _asInstanceProvider();
    CmpiCpp::CmpiAssociationProvider* _asAssociationProvider();
    CmpiCpp::CmpiMethodProvider* _asMethodProvider();
    CmpiCpp::CmpiIndicationProvider* _asIndicationProvider();
    /// @}

private:
    /// Every operation that needs an interface of the inner provider goes through this one.
    template <auto asInterface, auto operation, typename... Arguments>
    PYL_INTERNAL void _forward(const char* name, Arguments&... arguments);

    CmpiCpp::CmpiBroker _broker;
    Logger _log;
    CmpiManagedInstance* _autostartInstance;
    Factory _fn;
    pthread_mutex_t _initMutex;
    std::atomic<CmpiCpp::CmpiProvider*> _p{nullptr};
};

}  // namespace PYL
