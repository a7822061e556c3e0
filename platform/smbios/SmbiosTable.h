#pragma once

#include "platform/smbios/SmbiosEntryPoint.h"
#include "pylcommon_export.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

/// One structure of an SMBIOS table: its formatted area and its strings.
///
/// A view into its table, good until the table is destroyed. Every read is bounded: a field beyond
/// the formatted area is absent, as it is on firmware that is older than the field.
class PYL_EXPORT SmbiosRecord {
public:
    /// Type, length and handle: the least that a structure is (DSP0134, 6.1.2).
    static constexpr std::size_t headerSize = 4;

    /// `formatted` holds at least the header; `strings` the text set without its last zero.
    SmbiosRecord(std::span<const std::uint8_t> formatted, std::string_view strings) noexcept
        : _formatted(formatted), _strings(strings) {}

    /// Which structure of DSP0134, clause 7, it is; the maker's own are from 128.
    std::uint8_t type() const noexcept { return _formatted[0]; }
    /// The size of the formatted area, header included.
    std::uint8_t length() const noexcept { return _formatted[1]; }
    /// The number by which other structures refer to it.
    std::uint16_t handle() const noexcept { return *word(2); }
    /// The header and the fields behind it, without the strings.
    std::span<const std::uint8_t> formatted() const noexcept { return _formatted; }

    /// @{
    /// The little-endian field at this offset of the formatted area.
    std::optional<std::uint8_t> byte(std::size_t offset) const noexcept;
    std::optional<std::uint16_t> word(std::size_t offset) const noexcept;
    std::optional<std::uint32_t> doubleWord(std::size_t offset) const noexcept;
    std::optional<std::uint64_t> quadWord(std::size_t offset) const noexcept;
    /// @}

    /// The string whose number stands at this offset; empty when the field is absent, is 0 or names
    /// a string that the record does not have.
    std::string_view string(std::size_t offset) const noexcept;

    /// All strings in order; the first has number 1.
    std::vector<std::string_view> strings() const;

private:
    std::span<const std::uint8_t> _formatted;
    std::string_view _strings;
};

/// The structures of one SMBIOS table, in the order of the table.
///
/// Owns the bytes. Safe from several threads at once, once made.
class PYL_EXPORT SmbiosTable {
public:
    /// The type of the structure that ends a table (DSP0134, clause 7).
    static constexpr std::uint8_t endOfTable = 127;

    /// Takes the table apart, up to its end-of-table structure. Throws SmbiosError when a structure
    /// is malformed or runs past the end, or when there is no end-of-table structure and nothing
    /// else that shows the table to be whole: a 32-bit entry point's count that was reached.
    SmbiosTable(const SmbiosEntryPoint& entryPoint, std::vector<std::uint8_t> bytes);

    /// @{
    /// The records point into the bytes, which stay where they are when a table is moved.
    SmbiosTable(SmbiosTable&&) noexcept = default;
    SmbiosTable& operator=(SmbiosTable&&) noexcept = default;
    /// @}
    SmbiosTable(const SmbiosTable&) = delete;
    SmbiosTable& operator=(const SmbiosTable&) = delete;
    ~SmbiosTable() = default;

    /// What the table was made with.
    const SmbiosEntryPoint& entryPoint() const noexcept { return _entryPoint; }

    /// Every structure, an end-of-table structure included.
    std::span<const SmbiosRecord> records() const noexcept { return _records; }

    /// The first structure of this type, or nullptr when the table has none.
    const SmbiosRecord* findType(std::uint8_t type) const noexcept;

private:
    void _readRecords();
    bool _isEnded() const noexcept;
    bool _hasStatedCount() const noexcept;

    SmbiosEntryPoint _entryPoint;
    std::vector<std::uint8_t> _bytes;
    std::vector<SmbiosRecord> _records;
};
