#pragma once

#include "cmpi/cmpidt.h"
#include "cmpicpp/CmpiBroker.h"
#include "common/ProviderOperations.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

namespace PYL {

/// A provider that logs every request, forwards it unchanged to an inner provider, and logs what
/// came back: how many objects were delivered, or the CmpiStatus that the inner provider threw.
///
/// All lines are information lines of the decorator's own copy of the logger. A CmpiStatus is
/// logged and goes on unchanged; other exceptions pass unlogged. A request of a kind that the inner
/// provider is not fails with CMPI_RC_ERROR_SYSTEM. Adds no state and no locks: as safe from
/// several threads as the inner provider.
class PYL_EXPORT LoggedProvider : public CmpiCpp::CmpiInstanceProvider,
                                  public CmpiCpp::CmpiMethodProvider,
                                  public CmpiCpp::CmpiAssociationProvider,
                                  public CmpiCpp::CmpiIndicationProvider {
public:
    /// @{
    /// Makes the inner provider, which the decorator owns from then on.
    using Factory = CmpiCpp::CmpiProvider* (*)(const CmpiCpp::CmpiBroker&, Logger&);
    using ContextFactory = CmpiCpp::CmpiProvider* (*)(const CmpiCpp::CmpiBroker&, Logger&,
                                                      const CMPIContext*);
    /// @}

    /// Makes the inner provider with the factory and owns it. What the factory throws goes on.
    LoggedProvider(const CmpiCpp::CmpiBroker& broker, Logger& logger, Factory factory);
    /// The same, with the raw context of the load call for the factory.
    LoggedProvider(const CmpiCpp::CmpiBroker& broker, Logger& logger, ContextFactory factory,
                   const CMPIContext* context);
    ~LoggedProvider() override;

    PYL_PROVIDER_OPERATIONS;

private:
    /// Every operation that needs an interface of the inner provider goes through this one.
    template <auto asInterface, auto operation, typename... Arguments>
    PYL_INTERNAL void _forward(const char* name, Arguments&... arguments);

    Logger _log;
    CmpiCpp::CmpiProvider* _p;
};

}  // namespace PYL
