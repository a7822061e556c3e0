#pragma once

#include "cimhost/objects/Object.h"
#include "cimhost/repository/ModelText.h"

#include <string>
#include <string_view>

/// Objects of the broker as text for a reader, as ModelText.h has it for what they hold.
namespace cimhost {

/// "CMPIInstance" and the like.
std::string_view typeNameOf(ObjectKind kind) noexcept;

/// Any object of ours; those without content worth reading give their type name.
std::string describe(const ObjectHeader& header);

}  // namespace cimhost
