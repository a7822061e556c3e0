#pragma once

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiProvider.h"
#include "common/LoggedProvider.h"
#include "common/PYLUtil.h"
#include "platform/logger/Logger.h"

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

}  // namespace PYL
