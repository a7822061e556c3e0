#include "providers/baseserver/BaseServerProvider.h"

#include "cmpicpp/CmpiStatus.h"
#include "common/PYLUtil.h"
#include "providers/baseserver/ServerInstances.h"
#include "providers/baseserver/Worker.h"

namespace baseserver {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiInstanceResult;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiObjectPathResult;

BaseServerProvider::BaseServerProvider(const CmpiCpp::CmpiBroker& broker, Logger& log,
                                       InventorySources sources)
    : _broker(broker),
      _log(log),
      _inventory(log, std::move(sources)),
      _workCounter("baseserver", log),
      _watch(broker, log) {}

CMPIBroker* BaseServerProvider::getBroker() {
    return _broker.toRawCMPI();
}

PYL::CmpiManagedInstanceCollection& BaseServerProvider::current() {
    _inventory.refresh();
    return _inventory.collection();
}

void BaseServerProvider::enumInstanceNames(const CmpiContext& context, const CmpiObjectPath& path,
                                           CmpiObjectPathResult& result) {
    current().enumInstanceNames(result, context, path);
}

void BaseServerProvider::enumInstances(const CmpiContext& context, const CmpiObjectPath& path,
                                       const char** properties, CmpiInstanceResult& result) {
    current().enumInstances(result, context, path, properties);
}

void BaseServerProvider::getInstance(const CmpiContext& context, const CmpiObjectPath& path,
                                     const char** properties, CmpiInstanceResult& result) {
    if (!current().getInstance(result, context, path, properties)) {
        throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "no such instance: " + path.str());
    }
}

std::uint64_t BaseServerProvider::performWork(const CmpiContext& context) {
    _inventory.refreshNow();
    // The collection's lock is free again here: the post is an up-call that may come back for an
    // instance.
    PYL::PYLUtil::postStatus(_log, context,
                             PciDeviceGroupInstance(_inventory.groupStatus()).getInstance());
    return _workCounter.increment();
}

void BaseServerProvider::invokeMethod(const CmpiContext& context, const CmpiObjectPath& path,
                                      const CmpiName& methodName, const CmpiCpp::CmpiArgs&,
                                      CmpiCpp::CmpiMethodResult& result) {
    const bool isWork = path.getClassName() == CmpiName(WorkerInstance::className) &&
                        methodName == CmpiName(PYL::WorkerMethodName);
    if (!isWork) {
        throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_METHOD_NOT_FOUND,
                                  "no such method: " + methodName.str());
    }
    result.deliver("WorkCount", static_cast<unsigned long long>(performWork(context)));
    result.deliver(0U);
}

void BaseServerProvider::associators(const CmpiContext& context, const CmpiObjectPath& path,
                                     const CmpiName& assocClass, const CmpiName& resultClass,
                                     const CmpiName& role, const CmpiName& resultRole,
                                     const char** properties, CmpiInstanceResult& result) {
    current().associators(result, context, path, assocClass, resultClass, role, resultRole,
                          properties);
}

void BaseServerProvider::associatorNames(const CmpiContext& context, const CmpiObjectPath& path,
                                         const CmpiName& assocClass, const CmpiName& resultClass,
                                         const CmpiName& role, const CmpiName& resultRole,
                                         CmpiObjectPathResult& result) {
    current().associatorNames(result, context, path, assocClass, resultClass, role, resultRole);
}

void BaseServerProvider::references(const CmpiContext& context, const CmpiObjectPath& path,
                                    const CmpiName& resultClass, const CmpiName& role,
                                    const char** properties, CmpiInstanceResult& result) {
    current().references(result, context, path, resultClass, role, properties);
}

void BaseServerProvider::referenceNames(const CmpiContext& context, const CmpiObjectPath& path,
                                        const CmpiName& resultClass, const CmpiName& role,
                                        CmpiObjectPathResult& result) {
    current().referenceNames(result, context, path, resultClass, role);
}

}  // namespace baseserver
