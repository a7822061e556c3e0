#include "cimhost/objects/ObjectPathHandle.h"
#include "cimhost/objects/StringHandle.h"
#include "cimhost/objects/Values.h"
#include "cimhost/objects/manners/Habits.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace cimhost {

namespace {

const CMPIObjectPathFT& standardPath = ObjectPathObject::table;

bool pathHas(const ObjectPathObject& object, Habit habit) noexcept {
    return object.broker->manner().has(habit);
}

struct CountedKey {
    std::string_view name;
    const Value* value;  ///< null for a key of the class that the path lacks
};

bool isKeyOf(const Class& definition, std::string_view name) noexcept {
    const PropertyDefinition* const property = definition.findProperty(name);
    return property && property->isKey;
}

/// The keys of the class, in its order and spelling, then the others, the last added first.
std::vector<CountedKey> keysByClass(const ObjectPath& path, const Class& definition) {
    std::vector<CountedKey> keys;
    for (const auto& property : definition.properties) {
        if (property->isKey) keys.push_back({property->name, path.findKey(property->name)});
    }
    std::for_each(path.keys.rbegin(), path.keys.rend(), [&](const KeyBinding& key) {
        if (!isKeyOf(definition, key.name)) keys.push_back({key.name, &key.value});
    });
    return keys;
}

std::vector<CountedKey> countedKeys(const ObjectPathObject& object) {
    const ObjectPath& path = object.model.read();
    if (pathHas(object, Habit::countsKeysOfTheClass)) {
        if (const Class* const known = knownClass(*object.broker, path)) {
            return keysByClass(path, *known);
        }
    }
    std::vector<CountedKey> keys;
    for (const KeyBinding& key : path.keys) keys.push_back({key.name, &key.value});
    return keys;
}

CMPIData dataOfKey(ObjectPathObject& object, const Value& key) {
    const bool isWhole = isInteger(key.type()) || key.type() == CimType::char16;
    if (!isWhole || !pathHas(object, Habit::returnsIntegerKeysAsSint64)) {
        return asKey(toCmpi(partOf(object), key));
    }
    CMPIData data{CMPI_sint64, CMPI_keyValue, {}};
    const auto* const number = key.get<std::uint64_t>();
    data.value.sint64 = number ? static_cast<CMPISint64>(*number) : *key.get<std::int64_t>();
    return data;
}

CMPIData missingKey() noexcept {
    return {CMPI_null, static_cast<CMPIValueState>(CMPI_notFound | CMPI_nullValue), {}};
}

CMPIData getKeyAs(const CMPIObjectPath* path, const char* name, CMPIStatus* status) noexcept {
    return enter<ObjectPathObject>(path, status, [&](ObjectPathObject& object, CMPIrc& code) {
        const Value* const key = object.model.read().findKey(required(name));
        if (key) return dataOfKey(object, *key);
        code = pathHas(object, Habit::missingKeysAreNotFound) ? CMPI_RC_ERR_NOT_FOUND
                                                              : CMPI_RC_ERR_NO_SUCH_PROPERTY;
        return missingKey();
    });
}

CMPIData getKeyAtAs(const CMPIObjectPath* path, CMPICount index, CMPIString** name,
                    CMPIStatus* status) noexcept {
    return enter<ObjectPathObject>(path, status, [&](ObjectPathObject& object, CMPIrc& code) {
        const std::vector<CountedKey> keys = countedKeys(object);
        if (index >= keys.size()) {
            if (name && pathHas(object, Habit::crashesPastTheLastKey)) {
                endAs(*object.broker, Habit::crashesPastTheLastKey);
            }
            code = CMPI_RC_ERR_NO_SUCH_PROPERTY;
            return missingKey();
        }
        if (name) *name = &makeText(partOf(object), keys[index].name);
        if (keys[index].value) return dataOfKey(object, *keys[index].value);
        code = CMPI_RC_ERR_NO_SUCH_PROPERTY;
        return missingKey();
    });
}

CMPICount getKeyCountAs(const CMPIObjectPath* path, CMPIStatus* status) noexcept {
    return enter<ObjectPathObject>(path, status, [](ObjectPathObject& object) {
        return static_cast<CMPICount>(countedKeys(object).size());
    });
}

// An integer of another width is not another type: integer keys read back as sint64, so that none
// could be copied.
bool fitsClass(const ObjectPathObject& object, std::string_view key, const Value& value) noexcept {
    const Class* const known = knownClass(*object.broker, object.model.read());
    const PropertyDefinition* const declared = known ? known->findProperty(key) : nullptr;
    return !declared || declared->type == value.type() ||
           (isInteger(declared->type) && isInteger(value.type()));
}

/// What the habits say to a NULL key, and OK where they keep it.
CMPIrc codeOfNullKey(const ObjectPathObject& object) noexcept {
    if (pathHas(object, Habit::keepsNullKeys)) return CMPI_RC_OK;
    return pathHas(object, Habit::refusesNullKeysAsFailed) ? CMPI_RC_ERR_FAILED
                                                           : CMPI_RC_ERR_INVALID_PARAMETER;
}

CMPIStatus addKeyAs(const CMPIObjectPath* path, const char* name, const CMPIValue* value,
                    CMPIType type) noexcept {
    return enter<ObjectPathObject>(path, [&](ObjectPathObject& object, CMPIrc& code) {
        const std::string_view key = required(name);
        Value keyValue = valueOf(value, type);
        if (keyValue.isNull()) {
            code = codeOfNullKey(object);
            if (code == CMPI_RC_OK) object.model.write().setKey(key, std::move(keyValue));
        } else if (pathHas(object, Habit::checksTypesOfKeys) && !fitsClass(object, key, keyValue)) {
            code = CMPI_RC_ERR_INVALID_DATA_TYPE;
        } else {
            code = standardPath.addKey(path, name, value, type).rc;
        }
    });
}

CMPIStatus setNameSpaceAs(const CMPIObjectPath* path, const char* nameSpace) noexcept {
    const auto* const object = findObject<ObjectPathObject>(path);
    if (object && !nameSpace) endAs(*object->broker, Habit::crashesOnNullNameSpace);
    return standardPath.setNameSpace(path, nameSpace);
}

CMPIString* getNameSpaceAs(const CMPIObjectPath* path, CMPIStatus* status) noexcept {
    return nullIfEmpty(standardPath.getNameSpace(path, status));
}

CMPIString* getHostnameAs(const CMPIObjectPath* path, CMPIStatus* status) noexcept {
    return nullIfEmpty(standardPath.getHostname(path, status));
}

}  // namespace

void adapt(CMPIObjectPathFT& table, const Manner& manner) noexcept {
    if (manner.has(Habit::lacksQualifierGetters)) {
        table.getClassQualifier = nullptr;
        table.getPropertyQualifier = nullptr;
        table.getMethodQualifier = nullptr;
        table.getParameterQualifier = nullptr;
    }
    table.addKey = addKeyAs;
    table.getKey = getKeyAs;
    table.getKeyAt = getKeyAtAs;
    table.getKeyCount = getKeyCountAs;
    if (manner.has(Habit::crashesOnNullNameSpace)) table.setNameSpace = setNameSpaceAs;
    if (manner.has(Habit::answersAbsentTextsAsNull)) {
        table.getNameSpace = getNameSpaceAs;
        table.getHostname = getHostnameAs;
    }
    if (manner.has(Habit::leavesStatusesAlone)) table.clone = quietClone<ObjectPathObject>;
}

}  // namespace cimhost
