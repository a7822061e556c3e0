#pragma once

#include "platform/logger/LogSink.h"
#include "platform/logger/Logger.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using Lines = std::vector<std::string>;

/// What happened, in order: log lines with their levels, deliveries, and calls where a test wants
/// them. What happened under the watched lock begins with "locked ".
class Journal : public LogSink {
public:
    std::function<bool()> isLocked = [] { return false; };

    void write(LogLevel level, std::string_view, std::string_view message) noexcept override {
        note(std::string(logLevelName(level)) + ": " + std::string(message));
    }

    void note(const std::string& event) {
        const std::string prefix = isLocked() ? "locked " : "";
        const std::lock_guard lock(_mutex);
        _events.push_back(prefix + event);
    }

    /// The events since the last call.
    Lines take() {
        const std::lock_guard lock(_mutex);
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
