// The module's entry points: the fan provider, with every request logged.

#include "cmpicpp/CmpiModule.h"
#include "common/LoggedProvider.h"
#include "common/PYLUtil.h"
#include "platform/logger/Logger.h"
#include "providers/fan/FanProvider.h"

namespace {

CmpiCpp::CmpiProvider* makeInner(const CmpiCpp::CmpiBroker& broker, Logger& log) {
    return new fan::FanProvider(broker, log);
}

CmpiCpp::CmpiProvider* makeProvider(const CmpiCpp::CmpiBroker& broker, const CMPIContext*) {
    PYL::PYLUtil::setBroker(broker);
    Logger log = hostedLogger("PYL_Fan");
    return new PYL::LoggedProvider(broker, log, makeInner);
}

}  // namespace

PYL_CMPI_PROVIDER(PYL_FanProvider, makeProvider)
