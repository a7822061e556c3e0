#pragma once

#include "cmpi/cmpidt.h"
#include "cmpicpp/CmpiBroker.h"
#include "common/ProviderOperations.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <sys/time.h>

#include <string>

namespace PYL {

/// A provider that measures the wall-clock time of every operation of an inner provider, of its
/// construction and of its destruction: one information line for each, such as
/// "enumInstances completed in 0.04s", under the source name with ":perfmon" behind it.
///
/// Requests go on unchanged, and so does whatever they throw, after its line. getBroker() is not
/// timed. A request of a kind that the inner provider is not fails with CMPI_RC_ERROR_SYSTEM, timed
/// as well. PYLUtil::PerfmonEnabled() is the switch by which a provider decides whether to wrap
/// itself in this. Adds no state and no locks: as safe from several threads as the inner provider.
class PYL_EXPORT PerfmonDecorator : public CmpiCpp::CmpiInstanceProvider,
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
    PerfmonDecorator(const CmpiCpp::CmpiBroker& broker, Logger& logger, Factory factory);
    /// The same, with the raw context of the load call for the factory.
    PerfmonDecorator(const CmpiCpp::CmpiBroker& broker, Logger& logger, ContextFactory factory,
                     const CMPIContext* context);
    ~PerfmonDecorator() override;

    PYL_PROVIDER_OPERATIONS;

protected:
    /// Writes the line for one operation, in whole seconds and hundredths, cut and not rounded.
    /// The seconds are those of the clock's two readings: they do not go down where the
    /// microseconds borrow, so that 1.9 s to 3.1 s reads 2.20s. Evaluations of these logs reckon
    /// with it.
    void _logTimeTaken(const std::string& name, timeval* start, timeval* end);

private:
    class Timing;

    /// Every operation that needs an interface of the inner provider goes through this one.
    template <auto asInterface, auto operation, typename... Arguments>
    PYL_INTERNAL void _forward(const char* name, Arguments&... arguments);

    CmpiCpp::CmpiBroker _broker;
    Logger _log;
    CmpiCpp::CmpiProvider* _p = nullptr;
};

}  // namespace PYL
