#include "cmpicpp/CmpiInstance.h"

#include "cmpicpp/detail/Calls.h"
#include "cmpicpp/detail/DataKind.h"
#include "cmpicpp/detail/Enumeration.h"
#include "cmpicpp/detail/Equality.h"
#include "cmpicpp/detail/Portable.h"
#include "cmpicpp/detail/TextForm.h"

#include <vector>

namespace CmpiCpp {

namespace {

[[noreturn]] void throwNoProperty(const char* name) {
    throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND, std::string("There is no property ") + name);
}

/// The type of a property as far as the instance knows it.
CMPIType typeOf(const CMPIInstance* instance, const char* name) {
    CMPIData property;
    const bool isThere = find(property, instance->ft->getProperty, instance, name);
    return isThere ? property.type : CMPI_null;
}

std::vector<CmpiName> keyNames(const CmpiObjectPath& path) {
    std::vector<CmpiName> names;
    forEachKey(path.toCMPI(), [&](const CMPIString* name, const CMPIData&) {
        names.emplace_back(textOf(name));
        return true;
    });
    return names;
}

bool isWhole(CMPIType type) noexcept {
    return type == CMPI_char16 || (type & (CMPI_UINT | CMPI_ARRAY)) == CMPI_UINT;
}

/// The key as a value of this type, which is one of whole numbers. Some brokers read all of those
/// back as sint64.
CMPIValue wholeOf(CMPIType type, const CMPIData& key) noexcept {
    CMPIValue value{};
    const unsigned long long bits =
        key.type == CMPI_char16 ? key.value.char16 : integerOf(key).bits;
    switch (type) {
        case CMPI_char16: value.char16 = static_cast<CMPIChar16>(bits); break;
        case CMPI_uint8:
        case CMPI_sint8: value.uint8 = static_cast<CMPIUint8>(bits); break;
        case CMPI_uint16:
        case CMPI_sint16: value.uint16 = static_cast<CMPIUint16>(bits); break;
        case CMPI_uint32:
        case CMPI_sint32: value.uint32 = static_cast<CMPIUint32>(bits); break;
        default: value.uint64 = bits; break;
    }
    return value;
}

/// Sets the property of a key unless the broker has, and then says true: as the property that the
/// instance declares, or as the key is. Not where the class declares none, or one that holds no
/// such value.
bool fillIn(const CMPIInstance* instance, const char* name, const CMPIData& key) {
    CMPIData declared;
    const bool isListed = find(declared, instance->ft->getProperty, instance, name);
    if (isListed && equalData(declared, key)) return true;
    CMPIType type = key.type;
    CMPIValue value = key.value;
    if (isListed && declared.type != key.type) {
        if (!isWhole(declared.type) || !isWhole(key.type)) return false;
        type = declared.type;
        value = wholeOf(type, key);
    }
    const CMPIStatus status = call(instance->ft->setProperty, instance, name, &value, type);
    if (status.rc != CMPI_RC_ERR_NO_SUCH_PROPERTY && status.rc != CMPI_RC_ERR_NOT_FOUND) {
        check(status);
    }
    return false;
}

/// Sets the properties of the path's keys that the broker has not. From the last key on, which is
/// the name of the thing and has no default in its class: a broker that has set this one has set
/// all, and to read every key would cost a third of making and delivering an instance.
void fillInKeys(const CMPIInstance* instance, const CMPIObjectPath* path) {
    if (Enumeration::brokerFillsKeys()) return;
    const CMPICount count = ask(path->ft->getKeyCount, path);
    for (CMPICount index = count; index-- > 0;) {
        CMPIString* name = nullptr;
        CMPIData key;
        if (!find(key, path->ft->getKeyAt, path, index, &name)) continue;
        const bool wasThere = fillIn(instance, charsOf(name), key);
        if (wasThere && index + 1 == count) {
            Enumeration::rememberFilledKeys();
            return;
        }
    }
}

}  // namespace

CmpiObjectPath CmpiInstance::getPath() const {
    const CMPIInstance* const instance = _handle.get();
    if (!instance) return {};
    const CMPIObjectPath* const path =
        made(ask(instance->ft->getObjectPath, instance), "object path");
    // The path of a clone may end with the call all the same.
    const auto handle = CmpiHandle<CMPIObjectPath>::borrowed(broker(), path);
    return CmpiObjectPath(_handle.isOwned() ? handle.clone() : handle);
}

void CmpiInstance::setPath(const CmpiObjectPath& path) {
    if (path.empty()) throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, "The path is empty");
    CMPIInstance* const instance = _handle.writable();
    tell(instance->ft->setObjectPath, instance, path.toCMPI());
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
    const bool isUntyped = !property && value.type() == CMPI_null;
    const CMPIType type = isUntyped ? typeOf(instance, name) : value.type();
    const CMPIStatus status = call(instance->ft->setProperty, instance, name, property, type);
    // Such a broker has no type for it either: what it does not list is NULL.
    const bool isNull =
        isUntyped && type == CMPI_null && status.rc == CMPI_RC_ERR_INVALID_DATA_TYPE;
    if (!isNull) check(status);
}

void CmpiInstance::setPropertyFilter(const char** properties) {
    // CMPI 2.1 ignores the list of keys. Older brokers drop the keys that it does not name, and not
    // all of them expect a null.
    CMPIInstance* const instance = _handle.writable();
    std::vector<CmpiName> keys;
    if (properties != nullptr) keys = keyNames(getPath());
    std::vector<const char*> names;
    names.reserve(keys.size() + 1);
    for (const CmpiName& key : keys) names.push_back(key.c_str());
    names.push_back(nullptr);
    tell(instance->ft->setPropertyFilter, instance, legalNames(properties), names.data());
}

std::string CmpiInstance::str() const {
    std::string text;
    if (!empty()) appendInstance(text, _handle.get());
    return text;
}

CmpiInstance makeCmpiInstance(const CmpiBroker& broker, const CmpiObjectPath& path) {
    if (path.empty()) throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, "The path is empty");
    const CMPIBroker* const asked = required(broker.toCMPI());
    CMPIInstance* const instance =
        made(ask(asked->eft->newInstance, asked, path.toCMPI()), "instance");
    fillInKeys(instance, path.toCMPI());
    return CmpiInstance(CmpiHandle<CMPIInstance>::fresh(asked, instance));
}

}  // namespace CmpiCpp
