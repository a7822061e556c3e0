#include "cimhost/objects/Codepage.h"

#include "cimhost/objects/Entry.h"
#include "cimhost/repository/Utf8.h"

#include <algorithm>
#include <cstring>

namespace cimhost {

namespace {

constexpr char32_t firstSurrogate = 0xd800;
constexpr char32_t firstLowSurrogate = 0xdc00;
constexpr char32_t afterSurrogates = 0xe000;
constexpr char32_t firstSupplementary = 0x10000;

[[noreturn]] void notInCodepage() { throw Failure{CMPI_RC_ERR_NOT_IN_CODEPAGE}; }

bool isSurrogate(char32_t unit) noexcept {
    return unit >= firstSurrogate && unit < afterSurrogates;
}

// One character, removed from the front.
char32_t takeUtf8(std::string_view& text) {
    const auto character = firstCodePoint(text);
    if (!character) notInCodepage();
    text.remove_prefix(character->length);
    return character->value;
}

void requireUtf8(std::string_view text) {
    if (findInvalidUtf8(text) != std::string_view::npos) notInCodepage();
}

void requireAscii(std::string_view text) {
    const bool pure =
        std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (!pure) notInCodepage();
}

std::u16string unitsOf(const char* text) {
    constexpr char16_t swappedMark = 0xfffe;
    std::u16string units;
    // Copied unit by unit: the caller's pointer is to char and may not be aligned after all.
    for (char16_t unit = 0;; units += unit) {
        std::memcpy(&unit, text + units.size() * sizeof unit, sizeof unit);
        if (unit == 0) break;
    }
    if (!units.empty() && units.front() == swappedMark) {
        for (char16_t& unit : units) unit = static_cast<char16_t>((unit << 8U) | (unit >> 8U));
    }
    if (!units.empty() && units.front() == 0xfeff) units.erase(0, 1);
    return units;
}

std::string utf16ToUtf8(const char* text) {
    const std::u16string units = unitsOf(text);
    std::string result;
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t character = units[i];
        if (isSurrogate(character)) {
            const bool paired = character < firstLowSurrogate && i + 1 < units.size() &&
                                units[i + 1] >= firstLowSurrogate && units[i + 1] < afterSurrogates;
            if (!paired) notInCodepage();
            ++i;
            character = firstSupplementary + ((character - firstSurrogate) << 10U) +
                        (units[i] - firstLowSurrogate);
        }
        appendUtf8(result, character);
    }
    return result;
}

std::string utf8ToUtf16(std::string_view text) {
    std::string result;
    const auto add = [&result](char32_t character) {
        const auto unit = static_cast<char16_t>(character);
        char bytes[sizeof unit];
        std::memcpy(bytes, &unit, sizeof unit);
        result.append(bytes, sizeof unit);
    };
    while (!text.empty()) {
        const char32_t character = takeUtf8(text);
        if (character < firstSupplementary) {
            add(character);
        } else {
            add(firstSurrogate + ((character - firstSupplementary) >> 10U));
            add(firstLowSurrogate + ((character - firstSupplementary) & 0x3ffU));
        }
    }
    return result;
}

}  // namespace

std::string toUtf8(const char* text, CMPICodepageID codepage) {
    const std::string_view narrow = required(text);
    switch (codepage) {
        case CMPI_CPID_SYSTEM: requireUtf8(narrow); return std::string(narrow);
        case CMPI_CPID_USASCII: requireAscii(narrow); return std::string(narrow);
        case CMPI_CPID_UTF16: return utf16ToUtf8(text);
    }
    throw Failure{CMPI_RC_ERR_INVALID_PARAMETER};
}

std::string fromUtf8(std::string_view text, CMPICodepageID codepage) {
    switch (codepage) {
        case CMPI_CPID_SYSTEM: requireUtf8(text); return std::string(text);
        case CMPI_CPID_USASCII: requireAscii(text); return std::string(text);
        case CMPI_CPID_UTF16: return utf8ToUtf16(text);
    }
    throw Failure{CMPI_RC_ERR_INVALID_PARAMETER};
}

}  // namespace cimhost
