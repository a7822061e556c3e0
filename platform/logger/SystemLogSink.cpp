#include "platform/logger/SystemLogSink.h"

#include "platform/logger/LogText.h"

#include <syslog.h>

#include <string>

namespace {

int priorityOf(LogLevel level) noexcept {
    switch (level) {
        case LogLevel::error: return LOG_ERR;
        case LogLevel::warning: return LOG_WARNING;
        case LogLevel::information: return LOG_INFO;
    }
    return LOG_NOTICE;
}

}  // namespace

SystemLogSink::~SystemLogSink() = default;

void SystemLogSink::write(LogLevel level, std::string_view source,
                          std::string_view message) noexcept try {
    const std::string line = escapeLogText(source) + ": " + escapeLogText(message);
    ::syslog(LOG_DAEMON | priorityOf(level), "%s", line.c_str());
} catch (...) {
    // Short of memory: the line is lost.
}
