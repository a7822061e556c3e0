#include "cimhost/repository/InstanceConformer.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/NameSpace.h"
#include "cimhost/repository/Names.h"
#include "cimhost/repository/ValueConversion.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace cimhost {
namespace {

// The given properties by name; each is taken out when the class turns out to have it.
using Given = std::unordered_map<std::string_view, PropertyValue*, NameHash, NameEqual>;

Given givenProperties(Instance& instance) {
    Given given;
    given.reserve(instance.properties.size());
    for (PropertyValue& property : instance.properties) {
        if (!given.emplace(property.name, &property).second) {
            throw CimError(CimCode::invalidParameter,
                           "property '" + property.name + "' of an instance of '" +
                               instance.className() + "' is given twice");
        }
    }
    return given;
}

Value conformScalar(const NameSpace& nameSpace, const Value& value) {
    const auto* const path = value.get<std::shared_ptr<const ObjectPath>>();
    return path ? Value::reference(nameSpace.conformPath(**path)) : value;
}

// Keys that came with the path count as properties that were given.
void takeKeysFromPath(Instance& instance) {
    for (KeyBinding& key : instance.path.keys) {
        if (!instance.find(key.name)) instance.set(key.name, std::move(key.value));
    }
    instance.path.keys.clear();
}

void takeKeysFromProperties(const Class& definition, Instance& instance) {
    for (const auto& property : definition.properties) {
        if (!property->isKey) continue;
        const PropertyValue* const given = instance.find(property->name);
        if (!given || given->value.isNull()) {
            throw CimError(CimCode::invalidParameter, "an instance of '" + definition.name +
                                                          "' has no value for its key '" +
                                                          property->name + "'");
        }
        instance.path.keys.push_back({property->name, given->value});
    }
}

}  // namespace

void conformPath(const NameSpace& nameSpace, ObjectPath& path) {
    const bool isHere =
        path.nameSpace.empty() || equalNames(trimmedSlashes(path.nameSpace), nameSpace.name());
    const Class* const definition = isHere ? nameSpace.findClass(path.className) : nullptr;
    if (!definition) return;
    path.className = definition->name;
    for (KeyBinding& key : path.keys) {
        const PropertyDefinition* const property = definition->findProperty(key.name);
        if (!property || !property->isKey) {
            throw CimError(CimCode::noSuchProperty, "class '" + definition->name +
                                                        "' has no key '" + key.name + "'" +
                                                        definition->meantKey(key.name));
        }
        key.name = property->name;
        key.value = conformPropertyValue(nameSpace, key.value, *property);
    }
}

Value conformPropertyValue(const NameSpace& nameSpace, const Value& value,
                           const PropertyDefinition& property) {
    Value converted = convertValue(value, property.type, property.isArray, property.arraySize);
    return property.type == CimType::reference ? conformScalar(nameSpace, converted) : converted;
}

Instance conformProperties(const NameSpace& nameSpace, MemoryBudget& budget,
                           const Class& definition, Instance instance) {
    Given given = givenProperties(instance);
    Instance conformed;
    conformed.path.className = definition.name;
    for (const auto& property : definition.properties) {
        const auto found = given.find(property->name);
        if (found == given.end() && property->defaultValue.isNull()) continue;
        const Value& value = found == given.end() ? property->defaultValue : found->second->value;
        budget.charge(sizeof(PropertyValue) + valueBytes(value));
        try {
            conformed.properties.push_back({property->name,
                                            conformPropertyValue(nameSpace, value, *property),
                                            property->classOrigin});
        } catch (const CimError& error) {
            throw CimError(error.code(), "property '" + property->name + "' of an instance of '" +
                                             definition.name + "': " + error.what());
        }
        if (found != given.end()) given.erase(found);
    }
    if (!given.empty()) {
        throw CimError(CimCode::noSuchProperty, "class '" + definition.name +
                                                    "' has no property '" +
                                                    std::string(given.begin()->first) + "'" +
                                                    definition.meantProperty(given.begin()->first));
    }
    return conformed;
}

Instance conformInstance(const NameSpace& nameSpace, MemoryBudget& budget, Instance instance) {
    const Class* const definition = nameSpace.findClass(instance.className());
    if (!definition) {
        throw CimError(CimCode::invalidClass, "class '" + instance.className() + "' is not known");
    }
    if (definition->isAbstract) {
        throw CimError(CimCode::invalidClass,
                       "class '" + definition->name + "' is abstract and has no instances");
    }
    budget.charge(sizeof(Instance));
    takeKeysFromPath(instance);
    Instance conformed = conformProperties(nameSpace, budget, *definition, std::move(instance));
    conformed.path.nameSpace = nameSpace.name();
    takeKeysFromProperties(*definition, conformed);
    return conformed;
}

}  // namespace cimhost
