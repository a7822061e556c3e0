// The module's entry points: the fan provider, with every request logged.

#include "cmpicpp/CmpiModule.h"
#include "providers/fan/FanProvider.h"
#include "toolkit/LoggedModule.h"

namespace {

CmpiCpp::CmpiProvider* makeProvider(const CmpiCpp::CmpiBroker& broker, const CMPIContext*) {
    return PYL::makeLoggedProvider<fan::FanProvider>(broker, "PYL_Fan");
}

}  // namespace

PYL_CMPI_PROVIDER(PYL_FanProvider, makeProvider)
