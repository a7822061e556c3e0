#pragma once

#include <optional>
#include <string>

/// A text of the firmware; nothing when it says nothing. Firmware fills a field that it has no
/// value for with no text at all or with blanks.
inline std::optional<std::string> nonBlank(const std::string& text) {
    if (text.find_first_not_of(' ') == std::string::npos) return std::nullopt;
    return text;
}
