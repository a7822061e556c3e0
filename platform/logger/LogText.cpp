#include "platform/logger/LogText.h"

#include <algorithm>

namespace {

bool isSpecial(char character) noexcept {
    const auto value = static_cast<unsigned char>(character);
    return value < 0x20 || value == 0x7f || character == '\\';
}

/// Most texts have none. Looks at every byte and branches on none, so that the compiler takes many
/// at a time.
bool hasSpecial(std::string_view text) noexcept {
    unsigned char found = 0;
    for (const char character : text) found |= static_cast<unsigned char>(isSpecial(character));
    return found != 0;
}

void appendEscaped(std::string& result, char character) {
    constexpr std::string_view digits = "0123456789abcdef";
    const auto value = static_cast<unsigned char>(character);
    switch (character) {
        case '\n': result += "\\n"; break;
        case '\r': result += "\\r"; break;
        case '\t': result += "\\t"; break;
        case '\\': result += "\\\\"; break;
        default: result.append({'\\', 'x', digits[value >> 4], digits[value & 0xf]});
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
    for (auto from = text.begin(); from != text.end();) {
        const auto special = std::find_if(from, text.end(), isSpecial);
        line.append(from, special);
        if (special == text.end()) return;
        appendEscaped(line, *special);
        from = special + 1;
    }
}
