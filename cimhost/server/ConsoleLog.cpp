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

using Time = std::chrono::system_clock::time_point;

std::string textLine(Time time, BrokerLog::Level level, std::string_view source,
                     std::string_view message) {
    std::string line = formatTimestamp(time);
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

std::string jsonLine(Time time, BrokerLog::Level level, std::string_view source,
                     std::string_view message) {
    std::string line = "{\"time\":";
    appendJson(line, formatTimestamp(time));
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
std::atomic<EventFeed*> feedOfModules = nullptr;

}  // namespace

void ConsoleLog::write(Level level, std::string_view source, std::string_view message) noexcept
    try {
    if (level > _least) return;
    const Time time = std::chrono::system_clock::now();
    const bool isWatched = _feed && _feed->isWatched();
    const bool isJson = _format == LogFormat::json;
    std::string line =
        isJson ? jsonLine(time, level, source, message) : textLine(time, level, source, message);
    if (isWatched) _feed->publish("log", isJson ? line : jsonLine(time, level, source, message));
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
