#include "cimhost/repository/Instance.h"

#include "cimhost/repository/Names.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace cimhost {
namespace {

bool isText(CimType type) noexcept { return type == CimType::string || type == CimType::dateTime; }

// The mathematical value as one of two ranges, so that uint8 5 and sint64 5 are alike.
struct WholeNumber {
    bool negative = false;
    std::uint64_t bits = 0;
    friend bool operator==(const WholeNumber&, const WholeNumber&) = default;
};

std::optional<WholeNumber> wholeNumber(const Value& value) noexcept {
    if (!isInteger(value.type())) return std::nullopt;
    if (const auto* number = value.get<std::uint64_t>()) return WholeNumber{false, *number};
    if (const auto* number = value.get<std::int64_t>()) {
        return WholeNumber{*number < 0, static_cast<std::uint64_t>(*number)};
    }
    return std::nullopt;
}

bool sameKeyValue(const Value& left, const Value& right) {
    if (const auto number = wholeNumber(left)) return number == wholeNumber(right);
    if (isText(left.type()) && isText(right.type())) return left.data() == right.data();
    if (isReal(left.type()) && isReal(right.type())) return left.data() == right.data();
    const auto* leftPath = left.get<std::shared_ptr<const ObjectPath>>();
    const auto* rightPath = right.get<std::shared_ptr<const ObjectPath>>();
    if (leftPath && rightPath) return sameModelPath(**leftPath, **rightPath);
    return left == right;
}

std::size_t keyValueHash(const Value& value) {
    if (const auto number = wholeNumber(value)) return std::hash<std::uint64_t>{}(number->bits);
    if (const auto* text = value.get<Text>()) return std::hash<std::string_view>{}(*text);
    if (const auto* real = value.get<double>()) return std::hash<double>{}(*real);
    if (const auto* path = value.get<std::shared_ptr<const ObjectPath>>()) {
        return modelPathHash(**path);
    }
    return value.data().index();
}

// Nearly always the order is that of the class on both sides: try the same place first.
const Value* keyAt(const ObjectPath& path, std::size_t place, std::string_view name) noexcept {
    if (place < path.keys.size() && equalNames(path.keys[place].name, name)) {
        return &path.keys[place].value;
    }
    return path.findKey(name);
}

}  // namespace

const Value* ObjectPath::findKey(std::string_view name) const noexcept {
    const KeyBinding* const key = findNamed(keys, name);
    return key ? &key->value : nullptr;
}

void ObjectPath::setKey(std::string_view name, Value value) {
    if (KeyBinding* const key = findNamed(keys, name)) {
        key->value = std::move(value);
    } else {
        keys.push_back({Text(name), std::move(value)});
    }
}

bool sameModelPath(const ObjectPath& left, const ObjectPath& right) {
    if (!equalNames(left.className, right.className)) return false;
    if (left.keys.size() != right.keys.size()) return false;
    for (std::size_t i = 0; i < left.keys.size(); ++i) {
        const Value* const other = keyAt(right, i, left.keys[i].name);
        if (!other || !sameKeyValue(left.keys[i].value, *other)) return false;
    }
    return true;
}

std::size_t modelPathHash(const ObjectPath& path) {
    std::size_t hash = NameHash{}(path.className);
    for (const KeyBinding& key : path.keys) {
        // A sum, because the order of keys does not matter.
        hash += NameHash{}(key.name) * 31 + keyValueHash(key.value) * 0x9e3779b97f4a7c15U;
    }
    return hash;
}

const PropertyValue* Instance::find(std::string_view name) const noexcept {
    return findNamed(properties, name);
}

PropertyValue* Instance::find(std::string_view name) noexcept {
    return findNamed(properties, name);
}

void Instance::set(std::string_view name, Value value) {
    if (PropertyValue* const property = find(name)) {
        property->value = std::move(value);
    } else {
        properties.emplace_back(name, std::move(value), std::string_view{});
    }
}

}  // namespace cimhost
