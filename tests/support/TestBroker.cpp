#include "tests/support/TestBroker.h"

#include "cimhost/repository/CimError.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/PYLUtil.h"

using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiStatus;

namespace {

TestBroker* currentBroker = nullptr;  // C callbacks have no room for a this

cimhost::Class derived(const char* name, const char* superClass) {
    cimhost::Class definition;
    definition.name = name;
    definition.superClass = superClass;
    return definition;
}

CmpiObjectPath borrowed(const CMPIBroker* broker, const CMPIObjectPath* path) {
    return CmpiObjectPath(CmpiCpp::CmpiHandle<CMPIObjectPath>::borrowed(broker, path));
}

/// What a test's function answers; a status that it throws is that of the up-call.
template <typename Result>
Result answer(const CMPIBroker* broker, CMPIStatus* status, const auto& body) {
    try {
        const Result result = body();
        *status = {CMPI_RC_OK, nullptr};
        return result;
    } catch (const CmpiStatus& refusal) {
        *status = {refusal.rc(), broker->eft->newString(broker, refusal.what(), nullptr)};
        return Result{};
    }
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
    return answer<CMPIInstance*>(broker, status, [&] {
        const auto& body = currentBroker->onGetInstance;
        if (!body) throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "nobody serves it");
        return const_cast<CMPIInstance*>(body(borrowed(broker, path)).toCMPI());
    });
}

CMPIEnumeration* TestBroker::_enumCall(const CMPIBroker* broker, const CMPIContext*,
                                       const CMPIObjectPath* path, const char**,
                                       CMPIStatus* status) {
    return answer<CMPIEnumeration*>(broker, status, [&] {
        const auto& body = currentBroker->onEnumInstances;
        if (!body) throw CmpiStatus(CMPI_RC_ERR_NOT_SUPPORTED, "nobody enumerates");
        std::vector<cimhost::Instance> models;
        for (const auto& instance : body(borrowed(broker, path))) {
            models.push_back(cimhost::modelOf(instance.toCMPI()));
        }
        return cimhost::makeEnumeration(currentBroker->_call.realBroker, std::move(models));
    });
}

CMPIData TestBroker::_methodCall(const CMPIBroker* broker, const CMPIContext*,
                                 const CMPIObjectPath* path, const char* method, const CMPIArgs* in,
                                 CMPIArgs*, CMPIStatus* status) {
    return answer<CMPIData>(broker, status, [&] {
        const auto& body = currentBroker->onInvokeMethod;
        if (!body) throw CmpiStatus(CMPI_RC_ERR_METHOD_NOT_FOUND, "no such method");
        body(borrowed(broker, path), method,
             CmpiCpp::CmpiArgs(CmpiCpp::CmpiHandle<CMPIArgs>::borrowed(broker, in)));
        return CMPIData{};
    });
}

CmpiCpp::CmpiInstance TestBroker::instance(const CmpiCpp::CmpiObjectPath& path) const {
    auto made = CmpiCpp::makeCmpiInstance(broker(), path);
    made.setProperty("Id", path.getKey("Id").asString());
    return made;
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

CmpiObjectPath TestBroker::path(const char* className, Keys keys, const char* nameSpace) const {
    auto made = CmpiCpp::makeCmpiObjectPath(broker(), nameSpace, className);
    made.setHost(PYL::PYLUtil::getHostName());
    for (const auto& [name, value] : keys) made.addKey(name, value);
    return made;
}
