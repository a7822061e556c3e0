#include "cimhost/server/ConsoleLog.h"

#include "cimhost/http/Timestamp.h"
#include "cimhost/repository/Utf8.h"
#include "cimhost/server/LoggedRequest.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <optional>
#include <string>

namespace cimhost {
namespace {

/// C1 control characters, line separators, and what turns the direction of text round.
bool isDeceptive(char32_t value) noexcept {
    return (value >= 0x80 && value <= 0x9F) || value == 0x061C || value == 0x200E ||
           value == 0x200F || (value >= 0x2028 && value <= 0x202E) ||
           (value >= 0x2066 && value <= 0x2069);
}

void appendEscape(std::string& line, const char* format, unsigned value) {
    std::array<char, 8> text;
    const int size = std::snprintf(text.data(), text.size(), format, value);
    line.append(text.data(), static_cast<std::size_t>(size));
}

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

std::string textLine(BrokerLog::Level level, std::string_view source, std::string_view message) {
    std::string line = formatTimestamp(std::chrono::system_clock::now());
    if (const LoggedRequest* const request = LoggedRequest::current()) {
        line.append(" [").append(std::to_string(request->number)).append(" ");
        appendVisibly(line, request->operation);
        line += ']';
    }
    line.append(" ").append(levelName(level)).append(" ");
    appendVisibly(line, source);
    line.append(": ");
    appendVisibly(line, message);
    return line;
}

std::string jsonLine(BrokerLog::Level level, std::string_view source, std::string_view message) {
    std::string line = "{\"time\":";
    appendJson(line, formatTimestamp(std::chrono::system_clock::now()));
    line += ",\"level\":";
    appendJson(line, levelName(level));
    if (const LoggedRequest* const request = LoggedRequest::current()) {
        line.append(",\"request\":").append(std::to_string(request->number));
        line += ",\"operation\":";
        appendJson(line, request->operation);
    }
    line += ",\"component\":";
    appendJson(line, source);
    line += ",\"text\":";
    appendJson(line, message);
    line += '}';
    return line;
}

std::atomic<BrokerLog::Level> levelOfModules = BrokerLog::Level::information;
std::atomic<LogFormat> formatOfModules = LogFormat::text;

}  // namespace

void ConsoleLog::write(Level level, std::string_view source, std::string_view message) noexcept
    try {
    if (level > _least) return;
    std::string line = _format == LogFormat::json ? jsonLine(level, source, message)
                                                  : textLine(level, source, message);
    line += '\n';
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
} catch (const std::exception&) {
    // Out of memory: the line is lost.
}

void ConsoleLog::takeLinesOfModules() const noexcept {
    levelOfModules = _least;
    formatOfModules = _format;
}

std::string_view levelName(BrokerLog::Level level) noexcept {
    switch (level) {
        case BrokerLog::Level::error: return "error";
        case BrokerLog::Level::warning: return "warning";
        case BrokerLog::Level::information: return "information";
        case BrokerLog::Level::debug: return "debug";
    }
    return "unknown";
}

}  // namespace cimhost

void cimhost_write_log(int level, const char* source, std::size_t sourceSize, const char* text,
                       std::size_t textSize) noexcept {
    using cimhost::BrokerLog;
    constexpr auto levels = std::to_array({BrokerLog::Level::error, BrokerLog::Level::warning,
                                           BrokerLog::Level::information, BrokerLog::Level::debug});
    const bool isKnown = level >= 0 && static_cast<std::size_t>(level) < levels.size();
    cimhost::ConsoleLog(cimhost::levelOfModules, cimhost::formatOfModules)
        .write(isKnown ? levels[static_cast<std::size_t>(level)] : BrokerLog::Level::error,
               {source, sourceSize}, {text, textSize});
}
