// The module's entry points: the profiles provider, with every request logged.

#include "cmpicpp/CmpiModule.h"
#include "providers/profiles/ProfilesProvider.h"
#include "toolkit/LoggedModule.h"

namespace {

CmpiCpp::CmpiProvider* makeProvider(const CmpiCpp::CmpiBroker& broker, const CMPIContext*) {
    return PYL::makeLoggedProvider<profiles::ProfilesProvider>(broker, "PYL_Profiles");
}

}  // namespace

PYL_CMPI_PROVIDER(PYL_ProfilesProvider, makeProvider)
