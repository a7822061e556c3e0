#include "platform/logger/LogText.h"

#include <cstddef>

namespace {

bool isSpecial(char character) noexcept {
    const auto value = static_cast<unsigned char>(character);
    return value < 0x20 || value >= 0x7f || character == '\\';
}

/// Most texts have none. Looks at every byte and branches on none, so that the compiler takes many
/// at a time.
bool hasSpecial(std::string_view text) noexcept {
    unsigned char found = 0;
    for (const char character : text) found |= static_cast<unsigned char>(isSpecial(character));
    return found != 0;
}

struct Character {
    unsigned value = 0;
    std::size_t length = 1;  ///< in bytes
};

/// What a reader of UTF-8 takes the first bytes for; one that is none by itself.
Character firstCharacter(std::string_view text) noexcept {
    const auto byteAt = [text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned lead = byteAt(0);
    const std::size_t length = lead < 0xc2 ? 1 : lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
    if (length == 1 || lead > 0xf4 || text.size() < length) return {lead, 1};
    unsigned value = lead & (0x7fU >> length);
    for (std::size_t at = 1; at < length; ++at) {
        if ((byteAt(at) & 0xc0U) != 0x80) return {lead, 1};
        value = value << 6U | (byteAt(at) & 0x3fU);
    }
    return {value, length};
}

/// C1 control characters, line separators, and what turns the direction of text round.
bool isDeceptive(unsigned value) noexcept {
    return (value >= 0x80 && value <= 0x9f) || value == 0x061c || value == 0x200e ||
           value == 0x200f || (value >= 0x2028 && value <= 0x202e) ||
           (value >= 0x2066 && value <= 0x2069);
}

void appendEscaped(std::string& result, const Character& character) {
    constexpr std::string_view digits = "0123456789abcdef";
    const unsigned value = character.value;
    switch (value) {
        case '\n': result += "\\n"; return;
        case '\r': result += "\\r"; return;
        case '\t': result += "\\t"; return;
        case '\\': result += "\\\\"; return;
        default: break;
    }
    result += character.length == 1 ? "\\x" : "\\u";
    for (unsigned shift = character.length == 1 ? 8 : 16; shift != 0;) {
        shift -= 4;
        result += digits[value >> shift & 0xfU];
    }
}

}  // namespace

std::string escapeLogText(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    appendLogText(result, text);
    return result;
}

void appendLogText(std::string& line, std::string_view text) {
    if (!hasSpecial(text)) {
        line.append(text);
        return;
    }
    while (!text.empty()) {
        const auto character = firstCharacter(text);
        const auto bytes = text.substr(0, character.length);
        const bool isControl = character.value < 0x20 || character.value == 0x7f;
        if (isControl || character.value == '\\' || isDeceptive(character.value)) {
            appendEscaped(line, character);
        } else {
            line.append(bytes);
        }
        text.remove_prefix(bytes.size());
    }
}
