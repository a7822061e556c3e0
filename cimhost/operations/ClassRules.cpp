#include "cimhost/operations/ClassRules.h"

#include "cimhost/repository/Names.h"

#include <bit>

namespace cimhost {

namespace {

bool isText(CimType type) noexcept {
    return type == CimType::string || type == CimType::dateTime || type == CimType::char16;
}

// The property with this name, which mostly is the one that stood in its place in the last result.
const ClassRules::Property* recall(const ClassRules& rules,
                                   std::vector<const ClassRules::Property*>* memory,
                                   std::size_t place, const Text& name) {
    if (!memory) return rules.find(name);
    if (place == memory->size()) memory->push_back(nullptr);
    const ClassRules::Property*& last = (*memory)[place];
    if (!last || last->name != name) last = rules.find(name);
    return last;
}

// Whether the properties are those of the last result, one by one. Nothing stands in place of what
// the class did not declare.
bool areAsBefore(const std::vector<const ClassRules::Property*>& before,
                 const std::vector<PropertyValue>& properties) noexcept {
    if (before.size() != properties.size()) return false;
    const ClassRules::Property* const* last = before.data();
    for (const PropertyValue& property : properties) {
        const ClassRules::Property* const declared = *last++;
        if (!declared || declared->name != property.name ||
            declared->type != property.value.type() ||
            declared->isArray != property.value.isArray()) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool ClassRules::Property::takes(const Value& value) const noexcept {
    if (value.isNull()) return true;
    if (value.isArray() != isArray) return false;
    return value.type() == type || (type == CimType::instance && value.type() == CimType::string);
}

bool ClassRules::Property::takesAsKey(const Value& value) const noexcept {
    if (value.isNull() || value.isArray()) return false;
    const CimType given = value.type();
    return given == type || (isInteger(given) && isInteger(type)) ||
           (isText(given) && isText(type)) || (isReal(given) && isReal(type));
}

ClassRules::ClassRules(const Class& definition) : _definition(definition) {
    _properties.reserve(definition.properties.size());
    _buckets.resize(std::bit_ceil(2 * definition.properties.size() + 1));
    for (const auto& property : definition.properties) {
        _properties.push_back({property->name, property->type, property->isArray, property->isKey});
        if (property->isKey) ++_keys;
        std::size_t bucket = _bucketOf(property->name);
        while (_buckets[bucket] != 0) bucket = (bucket + 1) & (_buckets.size() - 1);
        _buckets[bucket] = static_cast<std::uint32_t>(_properties.size());
    }
}

// Cheap rather than good: a name in another's place costs one comparison, mostly of lengths.
std::size_t ClassRules::_bucketOf(std::string_view name) const noexcept {
    if (name.empty()) return 0;
    const auto folded = [name](std::size_t place) {
        return static_cast<std::size_t>(static_cast<unsigned char>(name[place]) | 0x20U);
    };
    const std::size_t last = name.size() - 1;
    return (name.size() * 7 + folded(0) * 31 + folded(last / 2) * 13 + folded(last)) &
           (_buckets.size() - 1);
}

const ClassRules::Property* ClassRules::find(std::string_view name) const noexcept {
    std::size_t bucket = _bucketOf(name);
    while (_buckets[bucket] != 0) {
        const Property& property = _properties[_buckets[bucket] - 1];
        if (equalNames(property.name, name)) return &property;
        bucket = (bucket + 1) & (_buckets.size() - 1);
    }
    return nullptr;
}

bool ClassRules::areClean(const std::vector<PropertyValue>& properties, Memory* memory) const {
    if (memory && areAsBefore(memory->properties, properties)) return true;
    for (std::size_t place = 0; place < properties.size(); ++place) {
        const Property* const declared =
            recall(*this, memory ? &memory->properties : nullptr, place, properties[place].name);
        if (!declared || !declared->takes(properties[place].value)) return false;
    }
    return true;
}

bool ClassRules::isClean(const ObjectPath& path, Memory* memory) const {
    if (path.keys.size() != _keys) return false;
    for (std::size_t place = 0; place < path.keys.size(); ++place) {
        const Property* const key =
            recall(*this, memory ? &memory->keys : nullptr, place, path.keys[place].name);
        if (!key || !key->isKey || !key->takesAsKey(path.keys[place].value)) return false;
    }
    return true;
}

}  // namespace cimhost
