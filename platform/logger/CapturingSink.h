#pragma once

#include "platform/logger/LogSink.h"
#include "pylcommon_export.h"

#include <mutex>
#include <string>
#include <vector>

/// Keeps log lines in memory, for tests. Safe from several threads at once.
class PYL_EXPORT CapturingSink : public LogSink {
public:
    /// One line, as write() was given it.
    struct Line {
        /// @{
        /// The line's parts, unescaped.
        LogLevel level;
        std::string source;
        std::string message;
        /// @}

        /// All three parts count.
        bool operator==(const Line&) const = default;
    };

    ~CapturingSink() override;

    void write(LogLevel level, std::string_view source, std::string_view message) noexcept override;

    /// A copy of the lines so far, in the order in which they came.
    std::vector<Line> lines() const;

    /// @{
    /// The texts alone, of all lines or of those of one level.
    std::vector<std::string> messages() const;
    std::vector<std::string> messages(LogLevel level) const;
    /// @}

    /// Forgets the lines so far.
    void clear();

private:
    mutable std::mutex _mutex;
    std::vector<Line> _lines;
};
