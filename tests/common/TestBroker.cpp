#include "tests/common/TestBroker.h"

#include "cimhost/repository/CimError.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/PYLUtil.h"

using CmpiCpp::CmpiObjectPath;

namespace {

TestBroker* current = nullptr;  // C callbacks have no room for a this

cimhost::Class derived(char const* name, char const* superClass) {
    cimhost::Class definition;
    definition.name = name;
    definition.superClass = superClass;
    return definition;
}

}  // namespace

TestBroker::TestBroker(Classes const& classes) {
    for (char const* name : {"root/ktq", "root/other", "interop"}) {
        auto& nameSpace = _repository.make(name);
        for (auto const& [className, superClass] : classes)
            nameSpace.addClass(derived(className, superClass));
    }
    _host = std::make_unique<cimhost::Broker>(_repository, _log);
    _scope = std::make_unique<cimhost::CallScope>();
    _host->setIndicationSink(&_indications);
    _functions = *_host->handle()->bft;
    _functions.getInstance = upCall;
    _functions.enumerateInstances = enumCall;
    _functions.invokeMethod = methodCall;
    _broker = *_host->handle();
    _broker.bft = &_functions;
    cimhost::RequestContext request;
    request.nameSpace = "root/ktq";
    _context = cimhost::makeContext(*_host, request);
    current = this;
    use(&_broker);
}

TestBroker::~TestBroker() {
    PYL::PYLUtil::setBroker(CmpiCpp::CmpiBroker(nullptr));
    current = nullptr;
}

void TestBroker::Indications::deliver(cimhost::RequestContext const&, std::string_view,
                                      cimhost::Instance const& indication) {
    if (!broker.onIndication)
        throw cimhost::CimError(cimhost::CimCode::notSupported, "nobody takes indications");
    broker.onIndication(indication);
}

void TestBroker::use(CMPIBroker const* broker) {
    _used = broker;
    PYL::PYLUtil::setBroker(CmpiCpp::CmpiBroker(broker));
}

CMPIInstance* TestBroker::upCall(CMPIBroker const* broker, CMPIContext const*,
                                 CMPIObjectPath const* path, char const**, CMPIStatus* status) {
    auto const refuse = [&](CMPIrc rc, char const* text) -> CMPIInstance* {
        *status = {rc, broker->eft->newString(broker, text, nullptr)};
        return nullptr;
    };
    if (!current->onGetInstance) return refuse(CMPI_RC_ERR_NOT_FOUND, "nobody serves it");
    try {
        auto const instance = current->onGetInstance(
            CmpiObjectPath(CmpiCpp::CmpiHandle<CMPIObjectPath>::borrowed(broker, path)));
        *status = {CMPI_RC_OK, nullptr};
        return const_cast<CMPIInstance*>(instance.toCMPI());
    } catch (CmpiCpp::CmpiStatus const& refusal) {
        return refuse(refusal.rc(), refusal.what());
    }
}

CMPIEnumeration* TestBroker::enumCall(CMPIBroker const* broker, CMPIContext const*,
                                      CMPIObjectPath const* path, char const**,
                                      CMPIStatus* status) {
    try {
        if (!current->onEnumInstances)
            throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_NOT_SUPPORTED, "nobody enumerates");
        std::vector<cimhost::Instance> models;
        for (auto const& instance : current->onEnumInstances(
                 CmpiObjectPath(CmpiCpp::CmpiHandle<CMPIObjectPath>::borrowed(broker, path))))
            models.push_back(cimhost::modelOf(instance.toCMPI()));
        *status = {CMPI_RC_OK, nullptr};
        return cimhost::makeEnumeration(*current->_host, std::move(models));
    } catch (CmpiCpp::CmpiStatus const& refusal) {
        *status = {refusal.rc(), broker->eft->newString(broker, refusal.what(), nullptr)};
        return nullptr;
    }
}

CMPIData TestBroker::methodCall(CMPIBroker const* broker, CMPIContext const*,
                                CMPIObjectPath const* path, char const* method, CMPIArgs const* in,
                                CMPIArgs*, CMPIStatus* status) {
    using CmpiCpp::CmpiHandle;
    CMPIrc rc = CMPI_RC_ERR_METHOD_NOT_FOUND;
    std::string text = "no such method";
    try {
        if (current->onInvokeMethod) {
            current->onInvokeMethod(
                CmpiObjectPath(CmpiHandle<CMPIObjectPath>::borrowed(broker, path)), method,
                CmpiCpp::CmpiArgs(CmpiHandle<CMPIArgs>::borrowed(broker, in)));
            *status = {CMPI_RC_OK, nullptr};
            return {};
        }
    } catch (CmpiCpp::CmpiStatus const& refusal) {
        rc = refusal.rc();
        text = refusal.what();
    }
    *status = {rc, broker->eft->newString(broker, text.c_str(), nullptr)};
    return {};
}

CmpiObjectPath TestBroker::path(char const* className, std::string const& key) const {
    return path(PYL::BaseServerNameSpace, className, key, PYL::PYLUtil::getHostName());
}

CmpiObjectPath TestBroker::path(char const* nameSpace, char const* className,
                                std::string const& key, std::string const& host) const {
    auto made = CmpiCpp::makeCmpiObjectPath(broker(), nameSpace, className);
    if (!host.empty()) made.setHost(host);
    made.addKey("Id", key);
    return made;
}
