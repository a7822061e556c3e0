#include "cimhost/objects/InstanceHandle.h"

#include "cimhost/objects/Entry.h"
#include "cimhost/objects/ObjectPathHandle.h"
#include "cimhost/objects/StringHandle.h"
#include "cimhost/objects/Values.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/NearestName.h"

#include <algorithm>

namespace cimhost {

namespace {

// What room a new instance gets: providers mostly make many of one class in a row, so it is as many
// properties as the thread's last complete one had. Growing one by one would move each repeatedly.
constinit thread_local std::size_t expectedProperties = 16;
constexpr std::size_t mostExpected = 64;

CMPIData dataOf(InstanceObject& object, const PropertyValue& property) {
    const CMPIData data = toCmpi(partOf(object), property.value);
    return object.read().path.findKey(property.name) ? asKey(data) : data;
}

CMPIData getProperty(const CMPIInstance* instance, const char* name, CMPIStatus* status) noexcept {
    return enter<InstanceObject>(instance, status, [&](InstanceObject& object) {
        const Instance& model = object.read();
        const PropertyValue* const property = model.find(required(name));
        if (property) return dataOf(object, *property);
        throw CimError(CimCode::noSuchProperty,
                       "the instance of " + model.className() + " has no property '" + name + "'" +
                           didYouMean(name, model.properties, &PropertyValue::name));
    });
}

CMPIData getPropertyAt(const CMPIInstance* instance, CMPICount index, CMPIString** name,
                       CMPIStatus* status) noexcept {
    return enter<InstanceObject>(instance, status, [&](InstanceObject& object, CMPIrc& code) {
        const std::vector<PropertyValue>& properties = object.read().properties;
        if (index >= properties.size()) {
            code = CMPI_RC_ERR_NO_SUCH_PROPERTY;
            return CMPIData{};
        }
        if (name) *name = &makeText(partOf(object), properties[index].name);
        return dataOf(object, properties[index]);
    });
}

CMPICount getPropertyCount(const CMPIInstance* instance, CMPIStatus* status) noexcept {
    return enter<InstanceObject>(instance, status, [](InstanceObject& object) {
        return static_cast<CMPICount>(object.read().properties.size());
    });
}

CMPIStatus setPropertyWithOrigin(const CMPIInstance* instance, const char* name,
                                 const CMPIValue* value, CMPIType type,
                                 const char* origin) noexcept {
    return enter<InstanceObject>(instance, [&](InstanceObject& object) {
        object.set(required(name), valueOf(value, type), origin ? origin : "");
    });
}

CMPIStatus setProperty(const CMPIInstance* instance, const char* name, const CMPIValue* value,
                       CMPIType type) noexcept {
    return setPropertyWithOrigin(instance, name, value, type, nullptr);
}

CMPIObjectPath* getObjectPath(const CMPIInstance* instance, CMPIStatus* status) noexcept {
    return enter<InstanceObject>(instance, status, [](InstanceObject& object) {
        return &make<ObjectPathObject>(partOf(object), ObjectPath(object.complete().path));
    });
}

CMPIStatus setPropertyFilter(const CMPIInstance* instance, const char** properties,
                             const char**) noexcept {
    return enter<InstanceObject>(
        instance, [&](InstanceObject& object) { object.setFilter(namesOf(properties)); });
}

CMPIStatus setObjectPath(const CMPIInstance* instance, const CMPIObjectPath* path) noexcept {
    return enter<InstanceObject>(instance, [&](InstanceObject& object) {
        object.setPath(requiredObject<ObjectPathObject>(path).model.read());
    });
}

// The keys that the class has and the instance gives as properties.
std::vector<KeyBinding> keysFromProperties(const Instance& instance, const Class& definition) {
    std::vector<KeyBinding> keys;
    for (const auto& property : definition.properties) {
        if (!property->isKey) continue;
        const PropertyValue* const given = instance.find(property->name);
        if (given && !given->value.isNull()) keys.push_back({property->name, given->value});
    }
    return keys;
}

}  // namespace

const CMPIInstanceFT InstanceObject::table = {
    CMPICurrentVersion,
    releaseObject<InstanceObject>,
    cloneObject<InstanceObject>,
    getProperty,
    getPropertyAt,
    getPropertyCount,
    setProperty,
    getObjectPath,
    setPropertyFilter,
    setObjectPath,
    setPropertyWithOrigin,
};

const Instance& InstanceObject::complete() {
    const Instance& instance = read();
    expectedProperties = std::min(instance.properties.size(), mostExpected);
    if (!instance.path.keys.empty() || instance.properties.empty()) return instance;
    const NameSpace* const nameSpace = broker->repository().find(instance.path.nameSpace);
    const Class* const definition =
        nameSpace ? nameSpace->findClass(instance.path.className) : nullptr;
    if (!definition || !definition->hasKeys()) return instance;
    std::vector<KeyBinding> keys = keysFromProperties(instance, *definition);
    if (!keys.empty()) _model.write().path.keys = std::move(keys);
    return read();
}

std::shared_ptr<const Instance> InstanceObject::share() {
    complete();
    return _model.share();
}

void InstanceObject::set(std::string_view name, Value value, std::string_view classOrigin) {
    Instance& instance = _model.write();
    KeyBinding* const key = broker->manner().has(Habit::keepsPathOfNewInstance)
                                ? nullptr
                                : findNamed(instance.path.keys, name);
    if (key && !value.isNull()) key->value = value;
    if (_isFiltered(name)) return;
    PropertyValue* const property = findNamed(instance.properties, name);
    if (!property) {
        instance.properties.emplace_back(name, std::move(value), classOrigin);
        return;
    }
    property->value = std::move(value);
    if (!classOrigin.empty()) property->classOrigin = classOrigin;
}

void InstanceObject::setPath(ObjectPath path) {
    Instance& instance = _model.write();
    instance.path = std::move(path);
    _setKeyProperties(instance);
}

void InstanceObject::setFilter(std::optional<std::vector<std::string>> names) {
    Instance& instance = _model.write();
    _filter = std::move(names);
    if (!_filter) return;
    std::erase_if(instance.properties,
                  [this](const PropertyValue& property) { return _isFiltered(property.name); });
}

bool InstanceObject::_isListed(std::string_view name) const noexcept {
    return containsName(*_filter, name);
}

void InstanceObject::_setKeyProperties(Instance& instance) {
    for (const KeyBinding& key : instance.path.keys) {
        if (!_isFiltered(key.name)) instance.set(key.name, key.value);
    }
}

Instance instanceFor(const ObjectPath& path) {
    Instance instance{path, {}};
    instance.properties.reserve(std::max(expectedProperties, path.keys.size()));
    for (const KeyBinding& key : path.keys) {
        instance.properties.emplace_back(key.name, Value(key.value), std::string_view{});
    }
    return instance;
}

CMPIInstance* makeInstance(const Broker& broker, Instance instance) {
    return &make<InstanceObject>(Home{broker}, std::move(instance));
}

const Instance& modelOf(const CMPIInstance* instance) {
    if (auto* const object = findObject<InstanceObject>(instance)) return object->complete();
    throw CimError(CimCode::failed, "an instance of this broker was expected");
}

}  // namespace cimhost
