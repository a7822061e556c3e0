#pragma once

#include "platform/logger/LogSink.h"
#include "platform/logger/Logger.h"

#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

namespace PYL {

/// Passes the lines of alerts on to a logger, but tells what is wrong with the host rather than
/// with one alert once, and again when it comes back: no SMBIOS, no controller. Otherwise each
/// alert would tell it anew for years.
class TroubleSink final : public LogSink {
public:
    /// Keeps a copy of the logger.
    explicit TroubleSink(const Logger& log) : _log(log) {}

    void write(LogLevel level, std::string_view source, std::string_view message) noexcept override;

    /// An alert has been made: errors that it did not meet are over.
    void endAlert() noexcept;

private:
    bool _isNews(LogLevel level, std::string_view message);
    bool _isNewsOfTheController(std::string_view message);

    Logger _log;
    std::mutex _mutex;                           ///< guards all below
    std::set<std::string, std::less<>> _before;  ///< errors that the last alert met
    std::set<std::string, std::less<>> _now;     ///< and this one, so far
    std::string _controller;                     ///< why nothing is forwarded
};

}  // namespace PYL
