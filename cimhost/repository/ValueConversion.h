#pragma once

#include "cimhost/repository/Value.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

/// Values made to fit a declared type. Pure functions, safe from several threads.
namespace cimhost {

/// The integer, which is not NULL, in another width or sign; nothing when it does not fit.
std::optional<Value> integerAs(const Value& value, CimType type) noexcept;

/// The scalar as this type. NULL stays NULL; an integer may change its width and sign when the
/// number fits, and become a real; a string becomes a datetime when it reads as one, or a reference
/// when it reads as a model path. Throws CimError typeMismatch that says what does not fit.
Value convertScalar(const Value& value, CimType type);

/// As convertScalar, for scalars and arrays alike; the size bounds an array.
Value convertValue(const Value& value, CimType type, bool isArray,
                   std::optional<std::uint32_t> arraySize = std::nullopt);

/// What the value's copy takes in memory, roughly, with the objects it leads to.
std::size_t valueBytes(const Value& value) noexcept;

/// The type in words for messages: "uint8", "string[]", "string[4]".
std::string typeText(CimType type, bool isArray,
                     std::optional<std::uint32_t> arraySize = std::nullopt);

}  // namespace cimhost
