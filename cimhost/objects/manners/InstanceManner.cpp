#include "cimhost/objects/InstanceHandle.h"
#include "cimhost/objects/ObjectPathHandle.h"
#include "cimhost/objects/Values.h"
#include "cimhost/objects/manners/Habits.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

namespace {

const CMPIInstanceFT& standardInstance = InstanceObject::table;

bool instanceHas(const InstanceObject& object, Habit habit) noexcept {
    return object.broker->manner().has(habit);
}

CMPIData getPropertyAs(const CMPIInstance* instance, const char* name,
                       CMPIStatus* status) noexcept {
    CMPIStatus outcome{CMPI_RC_OK, nullptr};
    const CMPIData data = standardInstance.getProperty(instance, name, &outcome);
    if (outcome.rc == CMPI_RC_ERR_NO_SUCH_PROPERTY) outcome = {CMPI_RC_ERR_NOT_FOUND, nullptr};
    answer(status, outcome);
    return data;
}

/// What the class says against a property of this name and type.
CMPIrc codeOfClass(const InstanceObject& object, const Class& known, std::string_view name,
                   const Value& value) noexcept {
    const PropertyDefinition* const declared = known.findProperty(name);
    if (!declared) {
        return instanceHas(object, Habit::refusesUnknownProperties) ? CMPI_RC_ERR_NO_SUCH_PROPERTY
                                                                    : CMPI_RC_OK;
    }
    const bool fits = value.type() == CimType::none ||
                      (declared->type == value.type() && declared->isArray == value.isArray());
    return !fits && instanceHas(object, Habit::checksTypesOfProperties)
               ? CMPI_RC_ERR_INVALID_DATA_TYPE
               : CMPI_RC_OK;
}

Value zeroOf(CimType type) {
    if (type == CimType::boolean) return Value::boolean(false);
    if (isReal(type)) return Value(type, 0.0);
    if (isSigned(type)) return Value::signedInteger(type, 0);
    return Value::unsignedInteger(type, 0);
}

bool isNumber(CimType type) noexcept {
    return isInteger(type) || isReal(type) || type == CimType::boolean || type == CimType::char16;
}

/// The array as it reads back; values of other shapes are left alone.
void readBack(const InstanceObject& object, Value& value) {
    const auto* const elements = value.get<Value::Array>();
    if (!elements) return;
    if (elements->empty() && instanceHas(object, Habit::returnsEmptyArraysAsNull)) {
        value = Value::nullArray(value.type());
    } else if (instanceHas(object, Habit::returnsNullNumbersAsZero) && isNumber(value.type())) {
        Value::Array numbers = *elements;
        for (Value& number : numbers) {
            if (number.isNull()) number = zeroOf(value.type());
        }
        value = Value::array(value.type(), std::move(numbers));
    }
}

CMPIStatus setPropertyAs(const CMPIInstance* instance, const char* name, const CMPIValue* value,
                         CMPIType type, const char* origin) noexcept {
    return enter<InstanceObject>(instance, [&](InstanceObject& object, CMPIrc& code) {
        const std::string_view wanted = required(name);
        if (type == CMPI_null && instanceHas(object, Habit::refusesUntypedNulls)) {
            code = CMPI_RC_ERR_INVALID_DATA_TYPE;
            return;
        }
        Value property = valueOf(value, type);
        const Class* const known = knownClass(*object.broker, object.read().path);
        // A class without properties is a name that nobody has declared yet.
        if (known && !known->properties.empty()) {
            code = codeOfClass(object, *known, wanted, property);
            const bool drops = !known->findProperty(wanted) &&
                               instanceHas(object, Habit::ignoresUnknownProperties);
            if (code != CMPI_RC_OK || drops) return;
        }
        readBack(object, property);
        object.set(wanted, std::move(property), origin ? origin : "");
    });
}

CMPIStatus setPlainProperty(const CMPIInstance* instance, const char* name, const CMPIValue* value,
                            CMPIType type) noexcept {
    return setPropertyAs(instance, name, value, type, nullptr);
}

CMPIObjectPath* getObjectPathAs(const CMPIInstance* instance, CMPIStatus* status) noexcept {
    return enter<InstanceObject>(
        instance, status, [](InstanceObject& object, CMPIrc& code) -> CMPIObjectPath* {
            if (instanceHas(object, Habit::makesPathlessInstances) &&
                !knownClass(*object.broker, object.read().path)) {
                code = CMPI_RC_ERR_INVALID_CLASS;
                return nullptr;
            }
            const Home home = instanceHas(object, Habit::endsPathsWithTheCall)
                                  ? Home{*object.broker, Origin::part}
                                  : partOf(object);
            return &make<ObjectPathObject>(home, ObjectPath(object.complete().path));
        });
}

CMPIStatus ignoreFilter(const CMPIInstance*, const char**, const char**) noexcept {
    return {CMPI_RC_OK, nullptr};
}

// What the lists do not name goes, keys of the path included.
CMPIStatus filterKeys(const CMPIInstance* instance, const char** properties,
                      const char** keys) noexcept {
    return enter<InstanceObject>(instance, [&](InstanceObject& object) {
        if (!properties) return object.setFilter(std::nullopt);
        std::vector<std::string> names = *namesOf(properties);
        for (const char** name = keys; name && *name; ++name) names.emplace_back(*name);
        ObjectPath path = object.read().path;
        std::erase_if(path.keys,
                      [&](const KeyBinding& key) { return !containsName(names, key.name); });
        object.setFilter(std::move(names));
        object.setPath(std::move(path));
    });
}

CMPIStatus setObjectPathAs(const CMPIInstance* instance, const CMPIObjectPath* path) noexcept {
    return enter<InstanceObject>(instance, [&](InstanceObject& object, CMPIrc& code) {
        const ObjectPath& wanted = requiredObject<ObjectPathObject>(path).model.read();
        if (equalNames(wanted.className, object.read().path.className)) {
            object.setPath(wanted);
        } else {
            code = CMPI_RC_ERR_FAILED;
        }
    });
}

}  // namespace

void adapt(CMPIInstanceFT& table, const Manner& manner) noexcept {
    table.setProperty = setPlainProperty;
    table.setPropertyWithOrigin =
        manner.has(Habit::lacksErrorsAndMessages) ? nullptr : setPropertyAs;
    if (manner.has(Habit::missingPropertiesAreNotFound)) table.getProperty = getPropertyAs;
    table.getObjectPath = getObjectPathAs;
    if (manner.has(Habit::filtersDropKeys)) table.setPropertyFilter = filterKeys;
    if (manner.has(Habit::ignoresPropertyFilters)) table.setPropertyFilter = ignoreFilter;
    if (manner.has(Habit::refusesPathsOfOtherClasses)) table.setObjectPath = setObjectPathAs;
    if (manner.has(Habit::leavesStatusesAlone)) table.clone = quietClone<InstanceObject>;
}

Instance instanceAs(const Manner& manner, const ObjectPath& path, const Class* definition) {
    Instance instance{path, {}};
    if (definition && manner.has(Habit::holdsAllProperties)) {
        for (const auto& property : definition->properties) {
            const Value& value = property->defaultValue;
            instance.set(property->name, manner.has(Habit::fillsInDefaults) && !value.isNull()
                                             ? value
                                             : Value::nullOf(property->type, property->isArray));
        }
    }
    if (!manner.has(Habit::keepsKeyPropertiesNull)) {
        for (const KeyBinding& key : path.keys) instance.set(key.name, key.value);
    }
    return instance;
}

}  // namespace cimhost
