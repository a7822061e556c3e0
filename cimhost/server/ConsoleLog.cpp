#include "cimhost/server/ConsoleLog.h"

#include "cimhost/http/Timestamp.h"
#include "cimhost/server/LoggedRequest.h"
#include "cimhost/server/ShownText.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <string>

namespace cimhost {
namespace {

std::string asText(const LogLine& line) {
    std::string text(line.time);
    if (!line.request.empty()) {
        text.append(" [").append(line.request).append(" ");
        appendVisibly(text, line.operation);
        text += ']';
    }
    text.append(" ").append(line.level).append(" ");
    appendVisibly(text, line.component);
    text.append(": ");
    appendVisibly(text, line.text);
    return text;
}

std::atomic<BrokerLog::Level> levelOfModules = BrokerLog::Level::information;
std::atomic<LogFormat> formatOfModules = LogFormat::text;
std::atomic<EventFeed*> feedOfModules = nullptr;

}  // namespace

void ConsoleLog::write(Level level, std::string_view source, std::string_view message) noexcept
    try {
    if (level > _least) return;
    const std::string time = formatTimestamp(std::chrono::system_clock::now());
    LogLine parts{time, levelName(level), {}, {}, source, message};
    std::string number;
    if (const LoggedRequest* const request = LoggedRequest::current()) {
        parts.request = number = std::to_string(request->number);
        parts.operation = request->operation;
    }
    std::string line = _format == LogFormat::json ? asJson(parts) : asText(parts);
    if (_feed && _feed->isWatched()) {
        _feed->publish("log", _format == LogFormat::json ? line : asJson(parts));
    }
    line += '\n';
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
} catch (const std::exception&) {
    // Out of memory: the line is lost.
}

void ConsoleLog::takeLinesOfModules() const noexcept {
    levelOfModules = _least;
    formatOfModules = _format;
    feedOfModules = _feed;
}

std::string asJson(const LogLine& line) {
    std::string text = "{\"time\":";
    appendJson(text, line.time);
    appendMember(text, "level", line.level);
    if (!line.request.empty()) {
        text.append(",\"request\":").append(line.request);
        appendMember(text, "operation", line.operation);
    }
    appendMember(text, "component", line.component);
    appendMember(text, "text", line.text);
    text += '}';
    return text;
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
    cimhost::ConsoleLog(cimhost::levelOfModules, cimhost::formatOfModules, cimhost::feedOfModules)
        .write(isKnown ? levels[static_cast<std::size_t>(level)] : BrokerLog::Level::error,
               {source, sourceSize}, {text, textSize});
}
