#include "tests/support/TestBroker.h"

#include "cimhost/repository/CimError.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/PYLUtil.h"

using CmpiCpp::CmpiObjectPath;

namespace {

TestBroker* currentBroker = nullptr;  // C callbacks have no room for a this

cimhost::Class derived(const char* name, const char* superClass) {
    cimhost::Class definition;
    definition.name = name;
    definition.superClass = superClass;
    return definition;
}

}  // namespace

TestBroker::TestBroker(const Classes& classes) {
    for (const char* name : {"root/ktq", "root/other", "interop"}) {
        auto& nameSpace = _call.repository.make(name);
        for (const auto& [className, superClass] : classes) {
            nameSpace.addClass(derived(className, superClass));
        }
    }
    cimhost::Broker& host = _call.realBroker;
    host.setIndicationSink(&_indications);
    _functions = *host.handle()->bft;
    _functions.getInstance = _upCall;
    _functions.enumerateInstances = _enumCall;
    _functions.invokeMethod = _methodCall;
    _broker = *host.handle();
    _broker.bft = &_functions;
    cimhost::RequestContext request;
    request.nameSpace = "root/ktq";
    _context = cimhost::makeContext(host, request);
    currentBroker = this;
    use(&_broker);
}

TestBroker::~TestBroker() {
    PYL::PYLUtil::setBroker(CmpiCpp::CmpiBroker(nullptr));
    currentBroker = nullptr;
}

void TestBroker::Indications::deliver(const cimhost::RequestContext&, std::string_view,
                                      const cimhost::Instance& indication) {
    if (!broker.onIndication) {
        throw cimhost::CimError(cimhost::CimCode::notSupported, "nobody takes indications");
    }
    broker.onIndication(indication);
}

void TestBroker::use(const CMPIBroker* broker) {
    _used = broker;
    PYL::PYLUtil::setBroker(CmpiCpp::CmpiBroker(broker));
}

CMPIInstance* TestBroker::_upCall(const CMPIBroker* broker, const CMPIContext*,
                                  const CMPIObjectPath* path, const char**, CMPIStatus* status) {
    const auto refuse = [&](CMPIrc rc, const char* text) -> CMPIInstance* {
        *status = {rc, broker->eft->newString(broker, text, nullptr)};
        return nullptr;
    };
    if (!currentBroker->onGetInstance) return refuse(CMPI_RC_ERR_NOT_FOUND, "nobody serves it");
    try {
        const auto instance = currentBroker->onGetInstance(
            CmpiObjectPath(CmpiCpp::CmpiHandle<CMPIObjectPath>::borrowed(broker, path)));
        *status = {CMPI_RC_OK, nullptr};
        return const_cast<CMPIInstance*>(instance.toCMPI());
    } catch (const CmpiCpp::CmpiStatus& refusal) {
        return refuse(refusal.rc(), refusal.what());
    }
}

CMPIEnumeration* TestBroker::_enumCall(const CMPIBroker* broker, const CMPIContext*,
                                       const CMPIObjectPath* path, const char**,
                                       CMPIStatus* status) {
    try {
        if (!currentBroker->onEnumInstances) {
            throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_NOT_SUPPORTED, "nobody enumerates");
        }
        std::vector<cimhost::Instance> models;
        for (const auto& instance : currentBroker->onEnumInstances(
                 CmpiObjectPath(CmpiCpp::CmpiHandle<CMPIObjectPath>::borrowed(broker, path)))) {
            models.push_back(cimhost::modelOf(instance.toCMPI()));
        }
        *status = {CMPI_RC_OK, nullptr};
        return cimhost::makeEnumeration(currentBroker->_call.realBroker, std::move(models));
    } catch (const CmpiCpp::CmpiStatus& refusal) {
        *status = {refusal.rc(), broker->eft->newString(broker, refusal.what(), nullptr)};
        return nullptr;
    }
}

CMPIData TestBroker::_methodCall(const CMPIBroker* broker, const CMPIContext*,
                                 const CMPIObjectPath* path, const char* method, const CMPIArgs* in,
                                 CMPIArgs*, CMPIStatus* status) {
    using CmpiCpp::CmpiHandle;
    CMPIrc rc = CMPI_RC_ERR_METHOD_NOT_FOUND;
    std::string text = "no such method";
    try {
        if (currentBroker->onInvokeMethod) {
            currentBroker->onInvokeMethod(
                CmpiObjectPath(CmpiHandle<CMPIObjectPath>::borrowed(broker, path)), method,
                CmpiCpp::CmpiArgs(CmpiHandle<CMPIArgs>::borrowed(broker, in)));
            *status = {CMPI_RC_OK, nullptr};
            return {};
        }
    } catch (const CmpiCpp::CmpiStatus& refusal) {
        rc = refusal.rc();
        text = refusal.what();
    }
    *status = {rc, broker->eft->newString(broker, text.c_str(), nullptr)};
    return {};
}

CmpiObjectPath TestBroker::path(const char* className, const std::string& key) const {
    return path(PYL::BaseServerNameSpace, className, key, PYL::PYLUtil::getHostName());
}

CmpiObjectPath TestBroker::path(const char* nameSpace, const char* className,
                                const std::string& key, const std::string& host) const {
    auto made = CmpiCpp::makeCmpiObjectPath(broker(), nameSpace, className);
    if (!host.empty()) made.setHost(host);
    made.addKey("Id", key);
    return made;
}
