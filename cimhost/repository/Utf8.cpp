#include "cimhost/repository/Utf8.h"

#include <array>

namespace cimhost {
namespace {

unsigned byteAt(std::string_view text, std::size_t place) noexcept {
    return static_cast<unsigned char>(text[place]);
}

std::size_t lengthFrom(unsigned lead) noexcept {
    if (lead < 0x80U) return 1;
    if (lead >= 0xC2U && lead < 0xE0U) return 2;
    if (lead >= 0xE0U && lead < 0xF0U) return 3;
    if (lead >= 0xF0U && lead < 0xF5U) return 4;
    return 0;
}

constexpr std::array<char32_t, 5> lowestOfLength{0, 0, 0x80, 0x800, 0x10000};

}  // namespace

std::optional<CodePoint> firstCodePoint(std::string_view text) noexcept {
    if (text.empty()) return std::nullopt;
    const unsigned lead = byteAt(text, 0);
    const std::size_t length = lengthFrom(lead);
    if (length == 0 || length > text.size()) return std::nullopt;
    if (length == 1) return CodePoint{lead, 1};
    char32_t value = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(text, i) & 0xC0U) != 0x80U) return std::nullopt;
        value = (value << 6U) | (byteAt(text, i) & 0x3FU);
    }
    const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
    if (surrogate || value < lowestOfLength[length] || value > 0x10FFFF) return std::nullopt;
    return CodePoint{value, length};
}

bool isDeceptive(char32_t value) noexcept {
    return (value >= 0x80 && value <= 0x9F) || value == 0x061C || value == 0x200E ||
           value == 0x200F || (value >= 0x2028 && value <= 0x202E) ||
           (value >= 0x2066 && value <= 0x2069);
}

std::size_t findInvalidUtf8(std::string_view text) noexcept {
    std::size_t place = 0;
    while (place < text.size()) {
        if (byteAt(text, place) < 0x80U) {
            ++place;
            continue;
        }
        const auto character = firstCodePoint(text.substr(place));
        if (!character) return place;
        place += character->length;
    }
    return std::string_view::npos;
}

void appendUtf8(std::string& text, char32_t value) {
    const auto append = [&text](char32_t byte) { text += static_cast<char>(byte); };
    if (value < 0x80) {
        append(value);
    } else if (value < 0x800) {
        append(0xC0U | (value >> 6U));
        append(0x80U | (value & 0x3FU));
    } else if (value < 0x10000) {
        append(0xE0U | (value >> 12U));
        append(0x80U | ((value >> 6U) & 0x3FU));
        append(0x80U | (value & 0x3FU));
    } else {
        append(0xF0U | (value >> 18U));
        append(0x80U | ((value >> 12U) & 0x3FU));
        append(0x80U | ((value >> 6U) & 0x3FU));
        append(0x80U | (value & 0x3FU));
    }
}

}  // namespace cimhost
