#pragma once

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiProvider.h"
#include "common/AutostartDecorator.h"
#include "common/LoggedProvider.h"
#include "common/PYLUtil.h"
#include "common/PerfmonDecorator.h"
#include "platform/logger/Logger.h"

/// What providers are made of, above the binding of CMPI: managed instances and their collections,
/// decorators, indications, status, and the catalogues that the whole family shares.
namespace PYL {

/// What the entry points of a module make: the provider, with every request logged. `Provider` is
/// made of a broker and a logger.
///
///     CmpiCpp::CmpiProvider* makeProvider(const CmpiCpp::CmpiBroker& broker, const CMPIContext*) {
///         return PYL::makeLoggedProvider<UptimeProvider>(broker, "Uptime");
///     }
///     PYL_CMPI_PROVIDER(UptimeProvider, makeProvider)
///
/// Records the broker in PYLUtil first: every path that the library builds depends on it.
/// `logSource` names the module in the log. The caller owns and deletes the result. What the
/// provider's constructor throws goes on to the caller.
template <typename Provider>
CmpiCpp::CmpiProvider* makeLoggedProvider(const CmpiCpp::CmpiBroker& broker,
                                          const char* logSource) {
    PYLUtil::setBroker(broker);
    Logger log = hostedLogger(logSource);
    return new LoggedProvider(
        broker, log,
        [](const CmpiCpp::CmpiBroker& inner, Logger& logger) -> CmpiCpp::CmpiProvider* {
            return new Provider(inner, logger);
        });
}

/// The same with all decorators. `Worker` is a managed instance, made without arguments, which is
/// there from the beginning; `Provider` is made by the first request that it cannot answer. Each
/// request from then on is logged, and timed where root has asked for that by then.
template <typename Provider, typename Worker>
CmpiCpp::CmpiProvider* makeAutostartedProvider(const CmpiCpp::CmpiBroker& broker,
                                               const char* logSource) {
    using Factory = CmpiCpp::CmpiProvider* (*)(const CmpiCpp::CmpiBroker&, Logger&);
    static constexpr Factory make = [](const CmpiCpp::CmpiBroker& inner, Logger& logger) {
        return static_cast<CmpiCpp::CmpiProvider*>(new Provider(inner, logger));
    };
    static constexpr Factory makeTimed = [](const CmpiCpp::CmpiBroker& inner, Logger& logger) {
        return static_cast<CmpiCpp::CmpiProvider*>(new PerfmonDecorator(inner, logger, make));
    };
    Logger log = hostedLogger(logSource);
    return new AutostartDecorator(
        broker, log, new Worker,
        [](const CmpiCpp::CmpiBroker& inner, Logger& logger) -> CmpiCpp::CmpiProvider* {
            return new LoggedProvider(inner, logger, PYLUtil::PerfmonEnabled() ? makeTimed : make);
        });
}

}  // namespace PYL
