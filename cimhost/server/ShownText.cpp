#include "cimhost/server/ShownText.h"

#include "cimhost/repository/Utf8.h"

#include <array>
#include <cstdio>
#include <optional>

namespace cimhost {
namespace {

void appendEscape(std::string& line, const char* format, unsigned value) {
    std::array<char, 8> text;
    const int size = std::snprintf(text.data(), text.size(), format, value);
    line.append(text.data(), static_cast<std::size_t>(size));
}

}  // namespace

void appendVisibly(std::string& line, std::string_view text) {
    while (!text.empty()) {
        const auto byte = static_cast<unsigned char>(text.front());
        const std::optional<CodePoint> point = firstCodePoint(text);
        const std::size_t length = point ? point->length : 1;
        if (byte < 0x20 || byte == 0x7F) {
            line += ' ';
        } else if (point && isDeceptive(point->value)) {
            appendEscape(line, "\\u%04x", point->value);
        } else if (!point && byte <= 0x9F) {
            appendEscape(line, "\\x%02x", byte);
        } else {
            line.append(text.substr(0, length));
        }
        text.remove_prefix(length);
    }
}

void appendJson(std::string& line, std::string_view text) {
    line += '"';
    while (!text.empty()) {
        const auto byte = static_cast<unsigned char>(text.front());
        const std::optional<CodePoint> point = firstCodePoint(text);
        const std::size_t length = point ? point->length : 1;
        if (byte == '"' || byte == '\\') {
            (line += '\\') += text.front();
        } else if (byte < 0x20 || byte == 0x7F || (point && isDeceptive(point->value))) {
            appendEscape(line, "\\u%04x", point ? point->value : byte);
        } else if (!point) {
            line += "\\ufffd";
        } else {
            line.append(text.substr(0, length));
        }
        text.remove_prefix(length);
    }
    line += '"';
}

void appendMember(std::string& object, std::string_view name, std::string_view text) {
    object.append(",\"").append(name).append("\":");
    appendJson(object, text);
}

}  // namespace cimhost
