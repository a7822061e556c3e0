#include "cimhost/server/events/RelayedLine.h"

#include "cimhost/http/Timestamp.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/repository/Utf8.h"
#include "cimhost/server/ConsoleLog.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>

namespace cimhost {
namespace {

constexpr std::string_view digits = "0123456789";
constexpr std::string_view timePattern = "0000-00-00T00:00:00.000Z";

/// Takes pieces off the front of a line.
class LineCursor {
public:
    explicit LineCursor(std::string_view line) noexcept : _rest(line) {}

    bool take(std::string_view text) noexcept {
        if (!_rest.starts_with(text)) return false;
        _rest.remove_prefix(text.size());
        return true;
    }

    /// What stands before the text, which goes too.
    std::optional<std::string_view> takeUpTo(std::string_view text) noexcept {
        const std::size_t end = _rest.find(text);
        if (end == std::string_view::npos) return std::nullopt;
        const std::string_view taken = _rest.substr(0, end);
        _rest.remove_prefix(end + text.size());
        return taken;
    }

    std::string_view takeDigits() noexcept {
        const std::string_view taken = _rest.substr(0, _rest.find_first_not_of(digits));
        _rest.remove_prefix(taken.size());
        return taken;
    }

    /// A JSON string as appendJson writes one.
    bool takeString() noexcept {
        if (!take("\"")) return false;
        while (!_rest.empty() && static_cast<unsigned char>(_rest.front()) >= 0x20) {
            if (take("\"")) return true;
            if (_rest.front() == '\\' ? !_takeEscape() : !take(_rest.substr(0, 1))) return false;
        }
        return false;
    }

    std::string_view rest() const noexcept { return _rest; }

private:
    bool _takeEscape() noexcept {
        if (take("\\\"") || take("\\\\")) return true;
        const std::string_view number = _rest.substr(0, 6);
        if (number.size() < 6 || !take("\\u")) return false;
        _rest.remove_prefix(4);
        return number.find_first_not_of("0123456789abcdef", 2) == std::string_view::npos;
    }

    std::string_view _rest;
};

bool isLogObject(std::string_view line) noexcept {
    LineCursor cursor(line);
    if (!cursor.take("{\"time\":") || !cursor.takeString()) return false;
    if (!cursor.take(",\"level\":") || !cursor.takeString()) return false;
    if (cursor.take(",\"request\":")) {
        if (cursor.takeDigits().empty()) return false;
        if (!cursor.take(",\"operation\":") || !cursor.takeString()) return false;
    }
    if (!cursor.take(",\"component\":") || !cursor.takeString()) return false;
    if (!cursor.take(",\"text\":") || !cursor.takeString()) return false;
    return cursor.rest() == "}" && findInvalidUtf8(line) == std::string_view::npos;
}

bool isTime(std::string_view text) noexcept {
    return std::ranges::equal(text, timePattern, [](char character, char pattern) {
        return pattern == '0' ? digits.find(character) != std::string_view::npos
                              : character == pattern;
    });
}

bool isLevel(std::string_view word) noexcept {
    using Level = BrokerLog::Level;
    constexpr auto levels =
        std::to_array({Level::error, Level::warning, Level::information, Level::debug});
    return std::ranges::any_of(levels, [word](Level level) { return levelName(level) == word; });
}

/// The parts of a line of text; views into it.
std::optional<LogLine> partsOf(std::string_view line) noexcept {
    LineCursor cursor(line);
    LogLine parts;
    parts.time = line.substr(0, timePattern.size());
    if (!isTime(parts.time) || !cursor.take(parts.time) || !cursor.take(" ")) return std::nullopt;
    if (cursor.take("[")) {
        parts.request = cursor.takeDigits();
        if (parts.request.empty() || !cursor.take(" ")) return std::nullopt;
        const auto operation = cursor.takeUpTo("] ");
        if (!operation) return std::nullopt;
        parts.operation = *operation;
    }
    const auto level = cursor.takeUpTo(" ");
    if (!level || !isLevel(*level)) return std::nullopt;
    const auto component = cursor.takeUpTo(": ");
    if (!component) return std::nullopt;
    parts.level = *level;
    parts.component = *component;
    parts.text = cursor.rest();
    return parts;
}

}  // namespace

std::string relayedLine(std::string_view module, std::string_view line) {
    if (isLogObject(line)) return std::string(line);
    if (const auto parts = partsOf(line)) return asJson(*parts);
    const std::string now = formatTimestamp(std::chrono::system_clock::now());
    return asJson({now, levelName(BrokerLog::Level::information), {}, {}, module, line});
}

}  // namespace cimhost
