#include "providers/baseserver/BaseServerProvider.h"

#include "cmpicpp/CmpiMBService.h"
#include "common/PYLUtil.h"
#include "providers/baseserver/ServerInstances.h"
#include "providers/baseserver/Worker.h"
#include "toolkit/Methods.h"

namespace baseserver {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;

namespace {

constexpr const char* postStatusName = "PostStatus";

}  // namespace

BaseServerProvider::BaseServerProvider(const CmpiCpp::CmpiBroker& broker, Logger& log,
                                       InventorySources sources)
    : CollectionProvider(broker, log),
      _inventory(_instances, log, std::move(sources)),
      _workCounter("baseserver", log),
      _watch(broker, log) {}

void BaseServerProvider::refresh(const CmpiContext&) { _inventory.refresh(); }

std::uint64_t BaseServerProvider::_performWork(const CmpiContext& context) {
    _inventory.refreshNow();
    // The collection's lock is free again here: the post is an up-call that may come back for an
    // instance.
    PYL::PYLUtil::postStatus(_log, context,
                             PciDeviceGroupInstance(_inventory.groupStatus()).getInstance());
    return _workCounter.increment();
}

void BaseServerProvider::_handOnStatus(const CmpiContext& context, const CmpiCpp::CmpiArgs& in) {
    const auto board =
        CmpiCpp::makeCmpiObjectPath(_broker, PYL::BaseServerNameSpace, "PYL_ConsolidatedStatus");
    CmpiCpp::CmpiArgs none;
    CmpiCpp::CmpiMBService(_broker.toCMPI(), _log)
        .invokeMethod(context, board, postStatusName, in, none);
}

void BaseServerProvider::invokeMethod(const CmpiContext& context, const CmpiObjectPath& path,
                                      const CmpiName& methodName, const CmpiCpp::CmpiArgs& in,
                                      CmpiCpp::CmpiMethodResult& result) {
    if (methodName == CmpiName(postStatusName)) {
        PYL::requireMethod(path, methodName, PYL::ScopedCentralClassName, postStatusName);
        _handOnStatus(context, in);
        return result.deliver(0U);
    }
    PYL::requireMethod(path, methodName, WorkerInstance::className, PYL::WorkerMethodName);
    result.deliver("WorkCount", static_cast<unsigned long long>(_performWork(context)));
    result.deliver(0U);
}

}  // namespace baseserver
