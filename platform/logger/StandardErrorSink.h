#pragma once

#include "platform/logger/LogSink.h"
#include "pylcommon_export.h"

/// Writes "source: level: message" lines to standard error, control bytes escaped.
///
/// Each line is handed over in one write(2), so lines of several threads do not mix. What the
/// descriptor does not take is lost; the caller never waits for a second attempt on a full pipe.
class PYL_EXPORT StandardErrorSink : public LogSink {
public:
    /// Writes to standard error, or to another descriptor, which stays the caller's to close.
    explicit StandardErrorSink(int descriptor = 2) noexcept : _descriptor(descriptor) {}
    ~StandardErrorSink() override;

    void write(LogLevel level, std::string_view source, std::string_view message) noexcept override;

private:
    int _descriptor;
};
