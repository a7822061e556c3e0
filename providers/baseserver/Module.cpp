// The module's entry points: the base-server provider, with every request logged.

#include "cmpicpp/CmpiModule.h"
#include "common/LoggedProvider.h"
#include "common/PYLUtil.h"
#include "platform/logger/Logger.h"
#include "providers/baseserver/BaseServerProvider.h"

namespace {

CmpiCpp::CmpiProvider* makeInner(CmpiCpp::CmpiBroker const& broker, Logger& log) {
    return new baseserver::BaseServerProvider(broker, log);
}

CmpiCpp::CmpiProvider* makeProvider(CmpiCpp::CmpiBroker const& broker, CMPIContext const*) {
    PYL::PYLUtil::setBroker(broker);
    Logger log = hostedLogger("PYL_BaseServer");
    return new PYL::LoggedProvider(broker, log, makeInner);
}

}  // namespace

PYL_CMPI_PROVIDER(PYL_BaseServerProvider, makeProvider)
