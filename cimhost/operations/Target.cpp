#include "cimhost/operations/Target.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/ValueConversion.h"

#include <memory>
#include <utility>

namespace cimhost {

namespace {

const PropertyDefinition* findKey(const Class& definition, std::string_view name) noexcept {
    const PropertyDefinition* const found = definition.findProperty(name);
    return found && found->isKey ? found : nullptr;
}

Value keyValue(const Repository& repository, const Target& target, const KeyBinding& given,
               const PropertyDefinition& key) {
    const std::string subject = "key " + key.name + " of " + target.definition.name;
    if (given.value.isNull()) throwInvalidParameter(subject + " has no value");
    try {
        return declaredValue(repository, target, given.value, key.type, key.isArray);
    } catch (const CimError& error) {
        throwInvalidParameter(subject + ": " + error.what());
    }
}

ObjectPath declaredReference(const Repository& repository, const Target& target, ObjectPath path) {
    path.host.clear();
    if (path.nameSpace.empty()) path.nameSpace = target.nameSpace.name();
    const NameSpace* const home = repository.find(path.nameSpace);
    if (!home) return path;
    try {
        return home->conformPath(std::move(path));
    } catch (const CimError& error) {
        throwInvalidParameter(error.what());
    }
}

Value withDeclaredReferences(const Repository& repository, const Target& target, Value value) {
    if (const auto* const path = value.get<std::shared_ptr<const ObjectPath>>()) {
        return Value::reference(declaredReference(repository, target, **path));
    }
    if (const auto* const elements = value.get<Value::Array>()) {
        Value::Array declared;
        declared.reserve(elements->size());
        for (const Value& element : *elements) {
            declared.push_back(withDeclaredReferences(repository, target, element));
        }
        return Value::array(value.type(), std::move(declared));
    }
    return value;
}

PropertyValue declaredProperty(const Repository& repository, const Target& target,
                               const PropertyValue& property) {
    const std::string& className = target.definition.name;
    const PropertyDefinition& declared = target.definition.requireProperty(property.name);
    try {
        Value value = declaredValue(repository, target, property.value, declared.type,
                                    declared.isArray, declared.arraySize);
        return {declared.name, std::move(value), property.classOrigin};
    } catch (const CimError& error) {
        throw CimError(error.code(),
                       "property " + declared.name + " of " + className + ": " + error.what());
    }
}

}  // namespace

ObjectPath Target::classPath() const { return {{}, nameSpace.name(), definition.name, {}}; }

Target requireTarget(const Repository& repository, const RequestContext& request,
                     const ObjectPath& path) {
    const NameSpace& nameSpace =
        repository.get(path.nameSpace.empty() ? request.nameSpace : path.nameSpace);
    if (path.className.empty()) throwInvalidParameter("the object path names no class");
    const Class* const definition = nameSpace.findClass(path.className);
    if (!definition) {
        throw CimError(CimCode::invalidClass, "namespace " + nameSpace.name() + " has no class '" +
                                                  path.className + "'" +
                                                  repository.meantClass(nameSpace, path.className));
    }
    return {nameSpace, *definition};
}

ObjectPath requireInstancePath(const Repository& repository, const RequestContext& request,
                               const Target& target, const ObjectPath& path) {
    ObjectPath result = target.classPath();
    bool isForeign = false;
    for (const KeyBinding& given : path.keys) {
        const PropertyDefinition* const key = findKey(target.definition, given.name);
        if (!key && !request.isProviders) {
            throwInvalidParameter("class " + target.definition.name + " has no key '" + given.name +
                                  "'" + target.definition.meantKey(given.name));
        }
        if (result.findKey(given.name)) {
            throwInvalidParameter("key " + (key ? key->name : given.name) + " is given twice");
        }
        if (key) {
            result.keys.push_back({key->name, keyValue(repository, target, given, *key)});
        } else {
            result.keys.push_back(given);
            isForeign = true;
        }
    }
    // Its provider knows what to make of it.
    if (isForeign) return result;
    for (const auto& property : target.definition.properties) {
        if (property->isKey && !result.findKey(property->name)) {
            throwInvalidParameter("key " + property->name + " of " + target.definition.name +
                                  " is missing");
        }
    }
    return result;
}

ObjectPath pathForProvider(const Manner& manner, const RequestContext& request,
                           const ObjectPath& written, ObjectPath path) {
    if (manner.has(Habit::passesNamesAsWritten)) {
        path.nameSpace = written.nameSpace.empty() ? request.nameSpace : written.nameSpace;
        path.className = written.className;
    }
    return path;
}

Value declaredValue(const Repository& repository, const Target& target, const Value& value,
                    CimType type, bool isArray, std::optional<std::uint32_t> arraySize) {
    Value converted = convertValue(value, type, isArray, arraySize);
    if (type != CimType::reference) return converted;
    return withDeclaredReferences(repository, target, std::move(converted));
}

Instance declaredProperties(const Repository& repository, const Target& target, Instance instance) {
    Instance result{std::move(instance.path), {}};
    result.properties.reserve(instance.properties.size());
    for (PropertyValue& property : instance.properties) {
        if (result.find(property.name)) {
            throwInvalidParameter("property " + property.name + " is given twice");
        }
        result.properties.push_back(declaredProperty(repository, target, property));
    }
    return result;
}

RequestContext providerContext(const RequestContext& request, const NameSpace& nameSpace,
                               CMPIFlags flags) {
    RequestContext result = request;
    result.nameSpace = nameSpace.name();
    result.flags = flags;
    result.isProviders = true;
    return result;
}

}  // namespace cimhost
