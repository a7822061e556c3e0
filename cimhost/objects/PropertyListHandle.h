#pragma once

#include "cimhost/objects/Object.h"

#include <optional>
#include <string>
#include <vector>

namespace cimhost {

/// Property names that can be searched. Made from no list at all it has every property, and its own
/// list is null again.
struct PropertyListObject : ObjectBase<CMPIPropertyList, ObjectKind::propertyList> {
    static const CMPIPropertyListFT table;

    explicit PropertyListObject(std::optional<std::vector<std::string>> list);
    PropertyListObject(const PropertyListObject& other) : PropertyListObject(other.names) {}

    std::optional<std::vector<std::string>> names;
    std::vector<const char*> pointers;  ///< to the names, ended by null
};

}  // namespace cimhost
