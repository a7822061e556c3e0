#include "cmpicpp/CmpiInstance.h"

#include "cmpicpp/detail/Calls.h"
#include "cmpicpp/detail/TextForm.h"

namespace CmpiCpp {

namespace {

[[noreturn]] void throwNoProperty(const char* name) {
    throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND, std::string("There is no property ") + name);
}

}  // namespace

CmpiObjectPath CmpiInstance::getPath() const {
    const CMPIInstance* const instance = _handle.get();
    if (!instance) return {};
    const CMPIObjectPath* const path =
        made(ask(instance->ft->getObjectPath, instance), "object path");
    return CmpiObjectPath(_handle.part(path));
}

void CmpiInstance::setPath(const CmpiObjectPath& path) {
    if (path.empty()) throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, "The path is empty");
    CMPIInstance* const instance = _handle.writable();
    check(instance->ft->setObjectPath(instance, path.toCMPI()));
}

unsigned int CmpiInstance::getPropertyCount() const {
    const CMPIInstance* const instance = _handle.get();
    return !instance ? 0 : ask(instance->ft->getPropertyCount, instance);
}

CmpiData CmpiInstance::getProperty(const char* name) const {
    const CMPIInstance* const instance = _handle.get();
    CMPIData data;
    if (!instance || !find(data, instance->ft->getProperty, instance, name)) throwNoProperty(name);
    return {broker(), data};
}

std::pair<CmpiName, CmpiData> CmpiInstance::getPropertyAt(unsigned int index) const {
    // Not every object manager can be asked for what is past the end.
    if (index >= getPropertyCount()) throwAbsent(index);
    const CMPIInstance* const instance = _handle.get();
    CMPIString* name = nullptr;
    const CMPIData data = ask(instance->ft->getPropertyAt, instance, index, &name);
    return {CmpiName(textOf(name)), CmpiData(broker(), present(data, index))};
}

void CmpiInstance::setProperty(const char* name, CmpiValue value) {
    CMPIInstance* const instance = _handle.writable();
    const CMPIValue* const property = value.toCMPI(broker());
    check(instance->ft->setProperty(instance, name, property, value.type()));
}

void CmpiInstance::setPropertyFilter(const char** properties) {
    // CMPI 2.1 ignores the list of keys; 2.0 brokers read it, and not all of them expect a null.
    const char* noKeys[] = {nullptr};
    CMPIInstance* const instance = _handle.writable();
    check(instance->ft->setPropertyFilter(instance, properties, noKeys));
}

std::string CmpiInstance::str() const {
    std::string text;
    if (!empty()) appendInstance(text, _handle.get());
    return text;
}

CmpiInstance makeCmpiInstance(const CmpiBroker& broker, const CmpiObjectPath& path) {
    if (path.empty()) throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, "The path is empty");
    const CMPIBroker* const asked = required(broker.toCMPI());
    return CmpiInstance(CmpiHandle<CMPIInstance>::fresh(
        asked, made(ask(asked->eft->newInstance, asked, path.toCMPI()), "instance")));
}

}  // namespace CmpiCpp
