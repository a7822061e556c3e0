#include "platform/smbios/SmbiosTable.h"

#include "platform/smbios/SmbiosSource.h"
#include "platform/smbios/detail/LittleEndian.h"

#include <algorithm>
#include <string>
#include <utility>

namespace {

using Bytes = std::span<const std::uint8_t>;

/// The place of the two zeros that end a structure's strings.
std::optional<std::size_t> findEndOfStrings(Bytes bytes) noexcept {
    constexpr std::uint8_t end[] = {0, 0};
    const auto found = std::search(bytes.begin(), bytes.end(), std::begin(end), std::end(end));
    if (found == bytes.end()) return std::nullopt;
    return static_cast<std::size_t>(found - bytes.begin());
}

/// A structure at the start of some bytes, or what is wrong with it.
struct ParsedRecord {
    std::optional<SmbiosRecord> record = std::nullopt;
    std::size_t size = 0;
    std::string problem = {};
};

ParsedRecord parseRecord(Bytes bytes) {
    if (bytes.size() < SmbiosRecord::headerSize) return {.problem = "is cut short in its header"};
    const std::size_t length = bytes[1];
    // The length comes from firmware: a value that does not cover the header would loop for ever.
    if (length < SmbiosRecord::headerSize) {
        return {.problem = "gives its length as " + std::to_string(length)};
    }
    if (length > bytes.size()) return {.problem = "runs past the end of the table"};
    const Bytes afterFormatted = bytes.subspan(length);
    const std::optional<std::size_t> textSize = findEndOfStrings(afterFormatted);
    if (!textSize) return {.problem = "has strings that run past the end of the table"};
    const auto* const text = reinterpret_cast<const char*>(afterFormatted.data());
    return {.record = SmbiosRecord(bytes.first(length), {text, *textSize}),
            .size = length + *textSize + 2};
}

}  // namespace

std::optional<std::uint8_t> SmbiosRecord::byte(std::size_t offset) const noexcept {
    return readLittleEndian<std::uint8_t>(_formatted, offset);
}

std::optional<std::uint16_t> SmbiosRecord::word(std::size_t offset) const noexcept {
    return readLittleEndian<std::uint16_t>(_formatted, offset);
}

std::optional<std::uint32_t> SmbiosRecord::doubleWord(std::size_t offset) const noexcept {
    return readLittleEndian<std::uint32_t>(_formatted, offset);
}

std::optional<std::uint64_t> SmbiosRecord::quadWord(std::size_t offset) const noexcept {
    return readLittleEndian<std::uint64_t>(_formatted, offset);
}

std::string_view SmbiosRecord::string(std::size_t offset) const noexcept {
    unsigned number = byte(offset).value_or(0);
    std::string_view rest = number == 0 ? std::string_view() : _strings;
    while (!rest.empty()) {
        const std::string_view text = rest.substr(0, rest.find('\0'));
        if (--number == 0) return text;
        rest.remove_prefix(std::min(rest.size(), text.size() + 1));
    }
    return {};
}

std::vector<std::string_view> SmbiosRecord::strings() const {
    std::vector<std::string_view> texts;
    for (std::string_view rest = _strings; !rest.empty();) {
        texts.push_back(rest.substr(0, rest.find('\0')));
        rest.remove_prefix(std::min(rest.size(), texts.back().size() + 1));
    }
    return texts;
}

SmbiosTable::SmbiosTable(const SmbiosEntryPoint& entryPoint, std::vector<std::uint8_t> bytes)
    : _entryPoint(entryPoint), _bytes(std::move(bytes)) {
    _readRecords();
}

const SmbiosRecord* SmbiosTable::findType(std::uint8_t type) const noexcept {
    const auto found = std::ranges::find(_records, type, &SmbiosRecord::type);
    return found == _records.end() ? nullptr : &*found;
}

bool SmbiosTable::_isEnded() const noexcept {
    return !_records.empty() && _records.back().type() == endOfTable;
}

bool SmbiosTable::_hasStatedCount() const noexcept {
    return !_records.empty() && _entryPoint.structureCount &&
           _records.size() >= *_entryPoint.structureCount;
}

void SmbiosTable::_readRecords() {
    std::span<const std::uint8_t> rest(_bytes);
    while (!_isEnded() && !rest.empty()) {
        const ParsedRecord parsed = parseRecord(rest);
        if (!parsed.record) {
            // What follows the last structure that the entry point counts may be padding.
            if (_hasStatedCount()) return;
            throw SmbiosError("the structure at offset " +
                              std::to_string(_bytes.size() - rest.size()) + " " + parsed.problem);
        }
        _records.push_back(*parsed.record);
        rest = rest.subspan(parsed.size);
    }
    if (!_isEnded() && !_hasStatedCount()) {
        throw SmbiosError("the table ends after " + std::to_string(_records.size()) +
                          " structures without an end mark");
    }
}
