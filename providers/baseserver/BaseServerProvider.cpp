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

BaseServerProvider::BaseServerProvider(CmpiCpp::CmpiBroker const& broker, Logger& log,
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

void BaseServerProvider::enumInstanceNames(CmpiContext const& context, CmpiObjectPath const& path,
                                           CmpiObjectPathResult& result) {
    current().enumInstanceNames(result, context, path);
}

void BaseServerProvider::enumInstances(CmpiContext const& context, CmpiObjectPath const& path,
                                       char const** properties, CmpiInstanceResult& result) {
    current().enumInstances(result, context, path, properties);
}

void BaseServerProvider::getInstance(CmpiContext const& context, CmpiObjectPath const& path,
                                     char const** properties, CmpiInstanceResult& result) {
    if (!current().getInstance(result, context, path, properties))
        throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "no such instance: " + path.str());
}

std::uint64_t BaseServerProvider::performWork(CmpiContext const& context) {
    _inventory.refreshNow();
    // The collection's lock is free again here: the post is an up-call that may come back for an
    // instance.
    PYL::PYLUtil::postStatus(_log, context,
                             PciDeviceGroupInstance(_inventory.groupStatus()).getInstance());
    return _workCounter.increment();
}

void BaseServerProvider::invokeMethod(CmpiContext const& context, CmpiObjectPath const& path,
                                      CmpiName const& methodName, CmpiCpp::CmpiArgs const&,
                                      CmpiCpp::CmpiMethodResult& result) {
    bool const isWork = path.getClassName() == CmpiName(WorkerInstance::className) &&
                        methodName == CmpiName(PYL::WorkerMethodName);
    if (!isWork)
        throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_METHOD_NOT_FOUND,
                                  "no such method: " + methodName.str());
    result.deliver("WorkCount", static_cast<unsigned long long>(performWork(context)));
    result.deliver(0U);
}

void BaseServerProvider::associators(CmpiContext const& context, CmpiObjectPath const& path,
                                     CmpiName const& assocClass, CmpiName const& resultClass,
                                     CmpiName const& role, CmpiName const& resultRole,
                                     char const** properties, CmpiInstanceResult& result) {
    current().associators(result, context, path, assocClass, resultClass, role, resultRole,
                          properties);
}

void BaseServerProvider::associatorNames(CmpiContext const& context, CmpiObjectPath const& path,
                                         CmpiName const& assocClass, CmpiName const& resultClass,
                                         CmpiName const& role, CmpiName const& resultRole,
                                         CmpiObjectPathResult& result) {
    current().associatorNames(result, context, path, assocClass, resultClass, role, resultRole);
}

void BaseServerProvider::references(CmpiContext const& context, CmpiObjectPath const& path,
                                    CmpiName const& resultClass, CmpiName const& role,
                                    char const** properties, CmpiInstanceResult& result) {
    current().references(result, context, path, resultClass, role, properties);
}

void BaseServerProvider::referenceNames(CmpiContext const& context, CmpiObjectPath const& path,
                                        CmpiName const& resultClass, CmpiName const& role,
                                        CmpiObjectPathResult& result) {
    current().referenceNames(result, context, path, resultClass, role);
}

}  // namespace baseserver
