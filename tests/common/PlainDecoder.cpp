#include "tests/common/PlainDecoder.h"

#include "tests/common/HtmlEntities.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <map>
#include <optional>

namespace {

std::map<std::string, std::string> makeReplacements() {
    std::map<std::string, std::string> replacements;
    for (const HtmlEntity& entity : htmlEntities) {
        replacements[entity.name] = plainUtf8(entity.codePoint);
    }
    return replacements;
}

/// What stands for the number between "&#" and ";".
std::optional<std::string> decodeNumber(std::string digits) {
    int base = 10;
    if (digits.starts_with('x') || digits.starts_with('X')) {
        digits.erase(0, 1);
        base = 16;
    }
    digits += ';';
    char* end = nullptr;
    errno = 0;
    const unsigned long number = std::strtoul(digits.c_str(), &end, base);
    if (errno != 0 || *end != ';' || number > 0x10FFFF) return std::nullopt;
    return plainUtf8(number);
}

/// What stands for the text between "&" and ";".
std::optional<std::string> decodeReference(const std::string& inner) {
    static const std::map<std::string, std::string> replacements = makeReplacements();
    if (inner.starts_with('#')) return decodeNumber(inner.substr(1));
    const auto found = replacements.find(inner);
    if (found == replacements.end()) return std::nullopt;
    return found->second;
}

}  // namespace

std::string plainUtf8(unsigned long codePoint) {
    std::string bytes;
    unsigned long firstByte = codePoint;
    if (codePoint >= 0x80) {
        unsigned long room = 0x3F;  // the most that the first byte can hold, and its mark
        do {
            bytes.insert(bytes.begin(), static_cast<char>(0x80 + firstByte % 64));
            firstByte /= 64;
            room /= 2;
        } while (firstByte > room);
        firstByte += 0xFF - 2 * room - 1;
    }
    bytes.insert(bytes.begin(), static_cast<char>(firstByte));
    return bytes;
}

std::string decodePlainly(std::string_view text) {
    std::string result;
    for (std::size_t place = 0; place < text.size();) {
        if (text[place] == '&') {
            const std::size_t semicolon = text.find(';', place);
            if (semicolon != std::string_view::npos) {
                const auto replacement =
                    decodeReference(std::string(text.substr(place + 1, semicolon - place - 1)));
                if (replacement) {
                    result += *replacement;
                    place = semicolon + 1;
                    continue;
                }
            }
        }
        result += text[place++];
    }
    return result;
}
