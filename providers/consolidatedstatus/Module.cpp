// The module's entry points: the consolidated-status provider, with every request logged.

#include "cmpicpp/CmpiModule.h"
#include "providers/consolidatedstatus/ConsolidatedStatusProvider.h"
#include "toolkit/LoggedModule.h"

namespace {

CmpiCpp::CmpiProvider* makeProvider(const CmpiCpp::CmpiBroker& broker, const CMPIContext*) {
    return PYL::makeLoggedProvider<consolidatedstatus::ConsolidatedStatusProvider>(
        broker, "PYL_ConsolidatedStatus");
}

}  // namespace

PYL_CMPI_PROVIDER(PYL_ConsolidatedStatusProvider, makeProvider)
