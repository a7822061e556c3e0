// The module's entry points: the profiles provider, with every request logged.

#include "cmpicpp/CmpiModule.h"
#include "common/LoggedProvider.h"
#include "common/PYLUtil.h"
#include "platform/logger/Logger.h"
#include "providers/profiles/ProfilesProvider.h"

namespace {

CmpiCpp::CmpiProvider* makeInner(const CmpiCpp::CmpiBroker& broker, Logger& log) {
    return new profiles::ProfilesProvider(broker, log);
}

CmpiCpp::CmpiProvider* makeProvider(const CmpiCpp::CmpiBroker& broker, const CMPIContext*) {
    PYL::PYLUtil::setBroker(broker);
    Logger log = hostedLogger("PYL_Profiles");
    return new PYL::LoggedProvider(broker, log, makeInner);
}

}  // namespace

PYL_CMPI_PROVIDER(PYL_ProfilesProvider, makeProvider)
