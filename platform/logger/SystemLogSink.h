#pragma once

#include "platform/logger/LogSink.h"
#include "pylcommon_export.h"

/// Hands lines to syslog(3), facility "daemon", as "source: message" with control bytes escaped.
///
/// Leaves openlog(3) alone: the identity and the options belong to the program that hosts us.
class PYL_EXPORT SystemLogSink : public LogSink {
public:
    ~SystemLogSink() override;

    void write(LogLevel level, std::string_view source, std::string_view message) noexcept override;
};
