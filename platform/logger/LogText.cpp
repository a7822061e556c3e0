#include "platform/logger/LogText.h"

namespace {

void appendEscaped(std::string& result, char character) {
    constexpr std::string_view digits = "0123456789abcdef";
    auto const value = static_cast<unsigned char>(character);
    switch (character) {
        case '\n':
            result += "\\n";
            break;
        case '\r':
            result += "\\r";
            break;
        case '\t':
            result += "\\t";
            break;
        case '\\':
            result += "\\\\";
            break;
        default:
            result.append({'\\', 'x', digits[value >> 4], digits[value & 0xf]});
    }
}

}  // namespace

std::string escapeLogText(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (char const character : text) {
        auto const value = static_cast<unsigned char>(character);
        if (value < 0x20 || value == 0x7f || character == '\\') {
            appendEscaped(result, character);
        } else {
            result += character;
        }
    }
    return result;
}
