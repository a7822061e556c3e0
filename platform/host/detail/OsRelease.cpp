#include "platform/host/detail/OsRelease.h"

#include <algorithm>

namespace {

/// A value as a shell reads it: 'all as it stands', "with \" escapes" or bare.
std::string unquoted(std::string_view value) {
    const char quote = value.empty() || (value[0] != '"' && value[0] != '\'') ? '\0' : value[0];
    if (quote) value.remove_prefix(1);
    std::string result;
    for (std::size_t at = 0; at < value.size() && !(quote && value[at] == quote); ++at) {
        if (value[at] == '\\' && quote != '\'' && at + 1 < value.size()) ++at;
        result += value[at];
    }
    return result;
}

std::string_view withoutTrailingBlanks(std::string_view line) {
    return line.substr(0, line.find_last_not_of(" \t\r") + 1);
}

}  // namespace

std::optional<std::string> osReleaseValue(std::string_view text, std::string_view name) {
    std::optional<std::string> result;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        if (line.starts_with(name) && line.substr(name.size()).starts_with('=')) {
            result = unquoted(withoutTrailingBlanks(line.substr(name.size() + 1)));
        }
    }
    if (result && result->find_first_not_of(" \t\r") == std::string::npos) result.reset();
    return result;
}
