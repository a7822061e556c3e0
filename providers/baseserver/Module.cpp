// The module's entry points. The base-server provider is made by the first request that the worker
// instance cannot answer; each of its requests is logged, and timed where root has asked for it.

#include "cmpicpp/CmpiModule.h"
#include "common/AutostartDecorator.h"
#include "common/LoggedProvider.h"
#include "common/PYLUtil.h"
#include "common/PerfmonDecorator.h"
#include "platform/logger/Logger.h"
#include "providers/baseserver/BaseServerProvider.h"
#include "providers/baseserver/Worker.h"

namespace {

CmpiCpp::CmpiProvider* makeInner(const CmpiCpp::CmpiBroker& broker, Logger& log) {
    return new baseserver::BaseServerProvider(broker, log);
}

CmpiCpp::CmpiProvider* makeTimed(const CmpiCpp::CmpiBroker& broker, Logger& log) {
    return new PYL::PerfmonDecorator(broker, log, makeInner);
}

CmpiCpp::CmpiProvider* makeStarted(const CmpiCpp::CmpiBroker& broker, Logger& log) {
    const bool timed = PYL::PYLUtil::PerfmonEnabled();
    return new PYL::LoggedProvider(broker, log, timed ? makeTimed : makeInner);
}

CmpiCpp::CmpiProvider* makeProvider(const CmpiCpp::CmpiBroker& broker, const CMPIContext*) {
    Logger log = hostedLogger("PYL_BaseServer");
    return new PYL::AutostartDecorator(broker, log, new baseserver::WorkerInstance, makeStarted);
}

}  // namespace

PYL_CMPI_PROVIDER(PYL_BaseServerProvider, makeProvider)
