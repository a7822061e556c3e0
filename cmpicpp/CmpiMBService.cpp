#include "cmpicpp/CmpiMBService.h"

#include "cmpicpp/detail/Calls.h"
#include "cmpicpp/detail/Portable.h"

namespace CmpiCpp {

namespace {

// CMPI has no empty filters: what does not filter is a null.
const char* filter(const CmpiName& name) noexcept { return name.empty() ? nullptr : name.c_str(); }

/// Of a path or an instance that goes up. Hosts read it without a look.
auto* handleOf(const auto& value) {
    if (value.empty()) {
        throw CmpiStatus(CMPI_RC_ERR_INVALID_HANDLE, "An empty value cannot be asked about");
    }
    return value.toCMPI();
}

CmpiInstance wrap(const CMPIBroker* broker, const CMPIInstance* instance) {
    return CmpiInstance(CmpiHandle<CMPIInstance>::borrowed(broker, made(instance, "instance")));
}

CmpiObjectPath wrap(const CMPIBroker* broker, const CMPIObjectPath* path) {
    return CmpiObjectPath(CmpiHandle<CMPIObjectPath>::borrowed(broker, made(path, "object path")));
}

void append(std::vector<CmpiInstance>& all, const CmpiData& item) {
    all.push_back(item.asInstance());
}

void append(std::vector<CmpiObjectPath>& all, const CmpiData& item) {
    all.push_back(item.asObjectPath());
}

// No element of an enumeration is NULL, but some object managers give all of them that state. One
// without a pointer counts as NULL whatever its state.
CMPIData next(const CMPIEnumeration* enumeration) {
    CMPIData data = ask(enumeration->ft->getNext, enumeration);
    data.state = static_cast<CMPIValueState>(data.state & ~CMPI_nullValue);
    return data;
}

template <typename Item>
std::vector<Item> readAll(const CMPIBroker* broker, const CMPIEnumeration* enumeration) {
    std::vector<Item> all;
    made(enumeration, "enumeration");
    while (ask(enumeration->ft->hasNext, enumeration) != 0) {
        append(all, CmpiData(broker, next(enumeration)));
    }
    return all;
}

/// Calls an up-call slot that enumerates. Object managers before CMPI 2.1 may say
/// CMPI_RC_ERR_NOT_FOUND where there is nothing to enumerate.
template <typename Item, typename Slot, typename... Arguments>
std::vector<Item> enumerate(const CMPIBroker* given, Slot CMPIBrokerFT::*slot,
                            const CmpiContext& context, const CmpiObjectPath& path,
                            Arguments... arguments) {
    const CMPIBroker* const broker = required(given);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIEnumeration* const enumeration =
        call(broker->bft->*slot, broker, required(context.toCMPI()), handleOf(path), arguments...,
             &status);
    const bool old = static_cast<int>(broker->bft->brokerVersion) < 210;
    if (old && status.rc == CMPI_RC_ERR_NOT_FOUND) return {};
    check(status);
    return readAll<Item>(broker, enumeration);
}

}  // namespace

CmpiMBService::CmpiMBService(const CMPIBroker* broker, Logger&) noexcept : _broker(broker) {}

CmpiInstance CmpiMBService::getInstance(const CmpiContext& context, const CmpiObjectPath& path,
                                        const char** properties) const {
    const CMPIBroker* const broker = required(_broker);
    return wrap(broker, ask(broker->bft->getInstance, broker, required(context.toCMPI()),
                            handleOf(path), legalNames(properties)));
}

std::vector<CmpiInstance> CmpiMBService::enumInstances(const CmpiContext& context,
                                                       const CmpiObjectPath& classPath,
                                                       const char** properties) const {
    return enumerate<CmpiInstance>(_broker, &CMPIBrokerFT::enumerateInstances, context, classPath,
                                   legalNames(properties));
}

std::vector<CmpiObjectPath> CmpiMBService::enumInstanceNames(
    const CmpiContext& context, const CmpiObjectPath& classPath) const {
    return enumerate<CmpiObjectPath>(_broker, &CMPIBrokerFT::enumerateInstanceNames, context,
                                     classPath);
}

CmpiObjectPath CmpiMBService::createInstance(const CmpiContext& context, const CmpiObjectPath& path,
                                             const CmpiInstance& instance) const {
    const CMPIBroker* const broker = required(_broker);
    return wrap(broker, ask(broker->bft->createInstance, broker, required(context.toCMPI()),
                            handleOf(path), handleOf(instance)));
}

void CmpiMBService::modifyInstance(const CmpiContext& context, const CmpiObjectPath& path,
                                   const CmpiInstance& instance, const char** properties) const {
    const CMPIBroker* const broker = required(_broker);
    tell(broker->bft->modifyInstance, broker, required(context.toCMPI()), handleOf(path),
         handleOf(instance), legalNames(properties));
}

void CmpiMBService::deleteInstance(const CmpiContext& context, const CmpiObjectPath& path) const {
    const CMPIBroker* const broker = required(_broker);
    tell(broker->bft->deleteInstance, broker, required(context.toCMPI()), handleOf(path));
}

std::vector<CmpiInstance> CmpiMBService::execQuery(const CmpiContext& context,
                                                   const CmpiObjectPath& classPath,
                                                   const std::string& query,
                                                   const std::string& language) const {
    return enumerate<CmpiInstance>(_broker, &CMPIBrokerFT::execQuery, context, classPath,
                                   query.c_str(), language.c_str());
}

std::vector<CmpiInstance> CmpiMBService::associators(
    const CmpiContext& context, const CmpiObjectPath& path, const CmpiName& assocClass,
    const CmpiName& resultClass, const CmpiName& role, const CmpiName& resultRole,
    const char** properties) const {
    return enumerate<CmpiInstance>(_broker, &CMPIBrokerFT::associators, context, path,
                                   filter(assocClass), filter(resultClass), filter(role),
                                   filter(resultRole), legalNames(properties));
}

std::vector<CmpiObjectPath> CmpiMBService::associatorNames(
    const CmpiContext& context, const CmpiObjectPath& path, const CmpiName& assocClass,
    const CmpiName& resultClass, const CmpiName& role, const CmpiName& resultRole) const {
    return enumerate<CmpiObjectPath>(_broker, &CMPIBrokerFT::associatorNames, context, path,
                                     filter(assocClass), filter(resultClass), filter(role),
                                     filter(resultRole));
}

std::vector<CmpiInstance> CmpiMBService::references(const CmpiContext& context,
                                                    const CmpiObjectPath& path,
                                                    const CmpiName& resultClass,
                                                    const CmpiName& role,
                                                    const char** properties) const {
    return enumerate<CmpiInstance>(_broker, &CMPIBrokerFT::references, context, path,
                                   filter(resultClass), filter(role), legalNames(properties));
}

std::vector<CmpiObjectPath> CmpiMBService::referenceNames(const CmpiContext& context,
                                                          const CmpiObjectPath& path,
                                                          const CmpiName& resultClass,
                                                          const CmpiName& role) const {
    return enumerate<CmpiObjectPath>(_broker, &CMPIBrokerFT::referenceNames, context, path,
                                     filter(resultClass), filter(role));
}

CmpiData CmpiMBService::invokeMethod(const CmpiContext& context, const CmpiObjectPath& path,
                                     const CmpiName& method, const CmpiArgs& in,
                                     CmpiArgs& out) const {
    const CMPIBroker* const broker = required(_broker);
    const CmpiArgs inputs = in.empty() ? makeCmpiArgs(CmpiBroker(broker)) : in;
    CMPIArgs* const outputs = made(ask(broker->eft->newArgs, broker), "arguments");
    const CMPIData result = ask(broker->bft->invokeMethod, broker, required(context.toCMPI()),
                                handleOf(path), method.c_str(), inputs.toCMPI(), outputs);
    out = CmpiArgs(CmpiHandle<CMPIArgs>::fresh(broker, outputs));
    return {broker, result};
}

// Not every host has the up-calls for single properties; all have those that they stand for.

CmpiData CmpiMBService::getProperty(const CmpiContext& context, const CmpiObjectPath& path,
                                    const CmpiName& property) const {
    const CMPIBroker* const broker = required(_broker);
    const char* const name = property.c_str();
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIData data = call(broker->bft->getProperty, broker, required(context.toCMPI()),
                               handleOf(path), name, &status);
    if (status.rc == CMPI_RC_ERR_NOT_SUPPORTED) return _getPropertyOf(context, path, name);
    check(status);
    return {broker, present(data, name)};
}

CmpiData CmpiMBService::_getPropertyOf(const CmpiContext& context, const CmpiObjectPath& path,
                                       const char* property) const {
    const char* wanted[] = {property, nullptr};
    const CmpiInstance instance = getInstance(context, path, wanted);
    try {
        return instance.getProperty(property);
    } catch (const CmpiStatus& status) {
        if (status.rc() == CMPI_RC_ERR_NOT_FOUND) throwAbsent(property);
        throw;
    }
}

void CmpiMBService::setProperty(const CmpiContext& context, const CmpiObjectPath& path,
                                const CmpiName& property, CmpiValue value) const {
    const CMPIBroker* const broker = required(_broker);
    const CMPIValue* const wanted = value.toCMPI(broker);
    requireNoNullObjects(wanted, value.type());
    const CMPIStatus status = call(broker->bft->setProperty, broker, required(context.toCMPI()),
                                   handleOf(path), property.c_str(), wanted, value.type());
    if (status.rc != CMPI_RC_ERR_NOT_SUPPORTED) return check(status);
    CmpiInstance instance = makeCmpiInstance(CmpiBroker(broker), path);
    instance.setProperty(property, value);
    const char* changed[] = {property.c_str(), nullptr};
    modifyInstance(context, path, instance, changed);
}

void CmpiMBService::deliverIndication(const CmpiContext& context, const CmpiName& nameSpace,
                                      const CmpiInstance& indication) const {
    const CMPIBroker* const broker = required(_broker);
    tell(broker->bft->deliverIndication, broker, required(context.toCMPI()), nameSpace.c_str(),
         handleOf(indication));
}

CmpiThreadContext::CmpiThreadContext(const CMPIBroker* broker, const CmpiContext& context)
    : _broker(required(broker)),
      _prepared(made(call(_broker->bft->prepareAttachThread, _broker, required(context.toCMPI())),
                     "context for a thread")) {}

CmpiThreadContext::Attachment::Attachment(const CmpiThreadContext& context)
    : _broker(context._broker), _prepared(context._prepared) {
    tell(_broker->bft->attachThread, _broker, _prepared);
}

// A thread that cannot be detached is about to end anyhow.
CmpiThreadContext::Attachment::~Attachment() { _broker->bft->detachThread(_broker, _prepared); }

CmpiContext CmpiThreadContext::Attachment::context() const noexcept {
    return CmpiContext(_prepared);
}

}  // namespace CmpiCpp
