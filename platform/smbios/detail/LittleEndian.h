#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

/// The little-endian number at this offset, or nothing when the bytes end before it does.
template <std::unsigned_integral Number>
constexpr std::optional<Number> readLittleEndian(std::span<const std::uint8_t> bytes,
                                                 std::size_t offset) noexcept {
    if (offset > bytes.size() || bytes.size() - offset < sizeof(Number)) return std::nullopt;
    std::uint64_t number = 0;
    for (std::size_t index = sizeof(Number); index > 0; --index) {
        number = number << 8 | bytes[offset + index - 1];
    }
    return static_cast<Number>(number);
}
