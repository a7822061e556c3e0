#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <numeric>
#include <string_view>
#include <utility>
#include <vector>

/// @file
/// Firmware tables, built by a test.
namespace cimtest {

/// Of a structure, a table or a dump.
using Bytes = std::vector<std::uint8_t>;

/// One structure: type, handle, what follows the header, and the strings.
inline Bytes structure(std::uint8_t type, std::uint16_t handle, const Bytes& fields = {},
                       std::initializer_list<std::string_view> strings = {}) {
    Bytes bytes{type, static_cast<std::uint8_t>(4 + fields.size()),
                static_cast<std::uint8_t>(handle & 0xff), static_cast<std::uint8_t>(handle >> 8)};
    bytes.insert(bytes.end(), fields.begin(), fields.end());
    for (const std::string_view text : strings) {
        bytes.insert(bytes.end(), text.begin(), text.end());
        bytes.push_back(0);
    }
    if (strings.size() == 0) bytes.push_back(0);
    bytes.push_back(0);
    return bytes;
}

/// The structure that a table ends with.
inline Bytes endOfTable() { return structure(127, 0xfeff); }

/// One behind the other, into a table.
inline Bytes concatenated(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

/// A dump in memory whose every part can be made to lie.
class SmbiosImage {
public:
    /// Where the table begins in a dump, unless addressIs() lies.
    static constexpr std::size_t tableOffset = 32;

    /// A dump of this table; the entry point is right.
    explicit SmbiosImage(Bytes table) : _table(std::move(table)) {
        lengthIs(static_cast<std::uint32_t>(_table.size()));
    }

    /// @{
    /// The 64-bit form, at the lowest version unless told otherwise.
    SmbiosImage& lengthIs(std::uint32_t length) { return set(0x0c, length, 4); }
    SmbiosImage& addressIs(std::uint64_t address) { return set(0x10, address, 8); }
    SmbiosImage& versionIs(std::uint8_t major, std::uint8_t minor) {
        return set(_has32Bits ? 0x06 : 0x07, major, 1).set(_has32Bits ? 0x07 : 0x08, minor, 1);
    }
    /// @}

    /// The 32-bit form with this count of structures.
    SmbiosImage& countIs(std::uint16_t count) {
        _has32Bits = true;
        _entry = {'_', 'S', 'M', '_', 0,   0x1f, 2, 8, 0,  1, 0, 0, 0, 0, 0,    0,
                  '_', 'D', 'M', 'I', '_', 0,    0, 0, 32, 0, 0, 0, 0, 0, 0x28, 0};
        return set(0x16, _table.size(), 2).set(0x1c, count, 2);
    }

    /// Any field of the entry point; the checksums follow.
    SmbiosImage& set(std::size_t offset, std::uint64_t value, std::size_t size) {
        for (std::size_t index = 0; index < size; ++index) {
            _entry[offset + index] = static_cast<std::uint8_t>(value >> 8 * index);
        }
        if (_has32Bits) _fixChecksum(0x10, 0x0f, 0x15);
        _fixChecksum(0, _has32Bits ? 0x1f : 0x18, _has32Bits ? 0x04 : 0x05);
        return *this;
    }

    /// Entry point and table, as `dmidecode --dump-bin` writes them.
    Bytes dump() const { return concatenated({_entry, _table}); }

private:
    void _fixChecksum(std::size_t first, std::size_t size, std::size_t at) {
        _entry[at] = 0;
        const auto begin = _entry.begin() + static_cast<std::ptrdiff_t>(first);
        const unsigned sum = std::accumulate(begin, begin + static_cast<std::ptrdiff_t>(size), 0U);
        _entry[at] = static_cast<std::uint8_t>(0U - sum);
    }

    bool _has32Bits = false;
    Bytes _entry{'_', 'S', 'M', '3', '_', 0, 0x18, 3, 0, 0, 1, 0, 0, 0, 0, 0,
                 32,  0,   0,   0,   0,   0, 0,    0, 0, 0, 0, 0, 0, 0, 0, 0};
    Bytes _table;
};

}  // namespace cimtest
