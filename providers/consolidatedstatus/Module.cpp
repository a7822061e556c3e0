// The module's entry points: the consolidated-status provider, with every request logged.

#include "cmpicpp/CmpiModule.h"
#include "common/LoggedProvider.h"
#include "common/PYLUtil.h"
#include "platform/logger/Logger.h"
#include "providers/consolidatedstatus/ConsolidatedStatusProvider.h"

namespace {

CmpiCpp::CmpiProvider* makeInner(const CmpiCpp::CmpiBroker& broker, Logger& log) {
    return new consolidatedstatus::ConsolidatedStatusProvider(broker, log);
}

CmpiCpp::CmpiProvider* makeProvider(const CmpiCpp::CmpiBroker& broker, const CMPIContext*) {
    PYL::PYLUtil::setBroker(broker);
    Logger log = hostedLogger("PYL_ConsolidatedStatus");
    return new PYL::LoggedProvider(broker, log, makeInner);
}

}  // namespace

PYL_CMPI_PROVIDER(PYL_ConsolidatedStatusProvider, makeProvider)
