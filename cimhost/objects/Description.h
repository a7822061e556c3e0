#pragma once

#include "cimhost/objects/Object.h"
#include "cimhost/repository/Instance.h"

#include <string>
#include <string_view>

/// Data objects as text for a reader. The forms are ours alone: nobody is to parse them.
namespace cimhost {

/// "CMPIInstance" and the like.
std::string_view typeNameOf(ObjectKind kind) noexcept;

/// `//host/namespace:Class.key="text",other=5`, without the parts that are empty (DSP0004, 8.2).
std::string describe(const ObjectPath& path);

/// As MOF writes a value.
std::string describe(const Value& value);

/// As MOF writes an instance, on one line.
std::string describe(const Instance& instance);

/// Any object of ours; those without content worth reading give their type name.
std::string describe(const ObjectHeader& header);

}  // namespace cimhost
