#pragma once

#include "pylcommon_export.h"

#include <cstdint>
#include <string_view>

/// How much a log line matters. A logger set to a level writes that level and all before it.
enum class LogLevel : std::uint8_t { error, warning, information };

/// "error", "warning" or "information".
PYL_EXPORT std::string_view logLevelName(LogLevel level) noexcept;

/// Where log lines go.
///
/// One sink serves every copy of a logger, so an implementation takes calls from several threads at
/// once. It outlives the loggers that share it.
class PYL_EXPORT LogSink {
public:
    LogSink() = default;
    LogSink(const LogSink&) = delete;
    LogSink& operator=(const LogSink&) = delete;
    virtual ~LogSink();

    /// Takes one line: the name of its source and its finished text. The views are good during the
    /// call only. The text may hold any byte; a sink whose reader trusts lines must escape it (see
    /// platform/logger/LogText.h).
    virtual void write(LogLevel level, std::string_view source,
                       std::string_view message) noexcept = 0;
};
