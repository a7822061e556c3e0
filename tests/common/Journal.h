#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/logger/LogSink.h"
#include "platform/logger/Logger.h"

using Lines = std::vector<std::string>;

/// What happened, in order: log lines with their levels, deliveries, and calls where a test wants
/// them. What happened under the watched lock begins with "locked ".
class Journal : public LogSink {
public:
    std::function<bool()> isLocked = [] { return false; };

    void write(LogLevel level, std::string_view, std::string_view message) noexcept override {
        note(std::string(logLevelName(level)) + ": " + std::string(message));
    }

    void note(std::string const& event) {
        std::string const prefix = isLocked() ? "locked " : "";
        std::lock_guard const lock(_mutex);
        _events.push_back(prefix + event);
    }

    /// The events since the last call.
    Lines take() {
        std::lock_guard const lock(_mutex);
        return std::exchange(_events, {});
    }

private:
    std::mutex _mutex;
    Lines _events;
};

/// A journal and a logger that writes into it.
struct JournalLog {
    std::shared_ptr<Journal> journal = std::make_shared<Journal>();
    Logger logger{"test", journal};
};
