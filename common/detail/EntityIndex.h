#pragma once

#include "common/detail/NamedEntities.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// The named references by a number made of their names, found with one multiplication and one
/// comparison where a binary search takes eight calls of strncmp.
class EntityIndex {
public:
    static constexpr std::size_t longestName = 8;  ///< "thetasym"

    struct Row {
        std::uint64_t name = 0;  ///< without the semicolon, see wordOf()
        std::array<char, 4> utf8{};
        std::uint8_t size = 0;  ///< of the UTF-8, 1 to 3
    };

    /// Throws, and so does not compile, when the multiplier gives two names the same slot.
    consteval EntityIndex() {
        for (std::size_t i = 0; i < NAMED_ENTITIES.size(); ++i) {
            _rows[i] = _makeRow(NAMED_ENTITIES[i]);
            _slots[_slotOf(_rows[i].name)] = static_cast<std::uint8_t>(i);
        }
        for (const Row& row : _rows) {
            if (find(row.name) != &row) throw "two names in one slot: another multiplier is needed";
        }
    }

    /// The row with this name, or nullptr.
    constexpr const Row* find(std::uint64_t name) const noexcept {
        const Row& row = _rows[_slots[_slotOf(name)]];
        return row.name == name ? &row : nullptr;
    }

    /// A name of at most eight characters as a number, its first character lowest.
    static constexpr std::uint64_t wordOf(std::string_view name) noexcept {
        std::uint64_t word = 0;
        for (std::size_t i = 0; i < name.size(); ++i) {
            word |= std::uint64_t{static_cast<unsigned char>(name[i])} << (8 * i);
        }
        return word;
    }

private:
    // Found by trying random numbers until no two names met.
    static constexpr std::uint64_t multiplier = 0x65b50d20736d97c1;
    static constexpr int slotBits = 11;

    static constexpr std::size_t _slotOf(std::uint64_t name) noexcept {
        return static_cast<std::size_t>((name * multiplier) >> (64 - slotBits));
    }

    static consteval Row _makeRow(const NamedEntity& entity) {
        std::string_view name = entity.name;
        name.remove_suffix(1);
        const std::string_view utf8 = entity.replacement;
        if (name.size() > longestName) throw "a name that does not fit into a number";
        Row row{.name = wordOf(name), .size = static_cast<std::uint8_t>(utf8.size())};
        utf8.copy(row.utf8.data(), row.utf8.size());
        return row;
    }

    std::array<std::uint8_t, std::size_t{1} << slotBits> _slots{};  // unused ones lead to row 0
    std::array<Row, NAMED_ENTITIES.size()> _rows{};
};
