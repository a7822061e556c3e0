#pragma once

#include "cimhost/repository/Value.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cimhost {

struct KeyBinding {
    Text name;
    Value value;
};

/// The path of a class (no keys) or of an instance. A plain value.
struct ObjectPath {
    std::string host;
    std::string nameSpace;
    std::string className;
    std::vector<KeyBinding> keys;

    const Value* findKey(std::string_view name) const noexcept;
    /// Adds the key, or replaces the value of the key with this name.
    void setKey(std::string_view name, Value value);
};

/// Class and keys alike, in any order; host and namespace are not looked at.
/// Integer keys compare by value whatever their width, since brokers and clients often know only
/// "numeric". Text compares alike as string and as datetime for the same reason.
bool sameModelPath(const ObjectPath& left, const ObjectPath& right);

/// Equal for paths that are the same by sameModelPath.
std::size_t modelPathHash(const ObjectPath& path);

struct PropertyValue {
    PropertyValue() = default;
    // A constructor rather than an aggregate, so that lists make their elements in place.
    PropertyValue(std::string_view itsName, Value&& itsValue, std::string_view itsOrigin)
        : name(itsName), value(std::move(itsValue)), classOrigin(itsOrigin) {}

    Text name;
    Value value;
    Text classOrigin;  ///< empty when not known
};

/// An instance as a provider or a client gives it: only the properties that were set. A plain
/// value.
struct Instance {
    ObjectPath path;  ///< its class is the instance's class
    std::vector<PropertyValue> properties;

    const std::string& className() const noexcept { return path.className; }
    const PropertyValue* find(std::string_view name) const noexcept;
    PropertyValue* find(std::string_view name) noexcept;
    void set(std::string_view name, Value value);
};

}  // namespace cimhost
