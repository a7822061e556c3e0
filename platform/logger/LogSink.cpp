#include "platform/logger/LogSink.h"

LogSink::~LogSink() = default;

std::string_view logLevelName(LogLevel level) noexcept {
    switch (level) {
        case LogLevel::error: return "error";
        case LogLevel::warning: return "warning";
        case LogLevel::information: return "information";
    }
    return "unknown";
}
