#pragma once

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

/// What other threads note, in order, for a test that waits for a line of it. One that never comes
/// is caught by the test's time-out.
class WaitingLines {
public:
    void note(const std::string& line) {
        {
            const std::lock_guard lock(_mutex);
            _lines.push_back(line);
        }
        _changed.notify_all();
    }

    /// Until the line is among those that nobody has taken.
    void waitFor(const std::string& line) {
        std::unique_lock lock(_mutex);
        _changed.wait(
            lock, [&] { return std::find(_lines.begin(), _lines.end(), line) != _lines.end(); });
    }

    /// The lines since the last call.
    std::vector<std::string> take() {
        const std::lock_guard lock(_mutex);
        return std::exchange(_lines, {});
    }

private:
    std::mutex _mutex;
    std::condition_variable _changed;
    std::vector<std::string> _lines;
};
