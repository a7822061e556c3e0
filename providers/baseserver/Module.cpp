// The module's entry points. The base-server provider is made by the first request that the worker
// instance cannot answer; each of its requests is logged, and timed where root has asked for it.

#include "cmpicpp/CmpiModule.h"
#include "providers/baseserver/BaseServerProvider.h"
#include "providers/baseserver/Worker.h"
#include "toolkit/LoggedModule.h"

namespace {

CmpiCpp::CmpiProvider* makeProvider(const CmpiCpp::CmpiBroker& broker, const CMPIContext*) {
    return PYL::makeAutostartedProvider<baseserver::BaseServerProvider, baseserver::WorkerInstance>(
        broker, "PYL_BaseServer");
}

}  // namespace

PYL_CMPI_PROVIDER(PYL_BaseServerProvider, makeProvider)
