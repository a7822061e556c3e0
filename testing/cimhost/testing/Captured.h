#pragma once

#include "cimhost/testing/Values.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace cimtest {

/// How long a test waits for what is to happen; far longer than it takes on any machine.
constexpr std::chrono::milliseconds patience{20'000};

/// The part stands in what the thing prints as.
template <typename Thing>
bool hasPart(const Thing& thing, const std::string& part) {
    std::ostringstream text;
    text << thing;
    return text.str().find(part) != std::string::npos;
}

/// What other threads, or the call of a test, have brought about, in order. Safe from several
/// threads. Things print.
template <typename Thing>
class Captured {
public:
    /// Whether it is the thing that is waited for.
    using Matcher = std::function<bool(const Thing&)>;

    /// Keeps the thing and wakes those that wait.
    void add(Thing thing) {
        {
            const std::lock_guard lock(_mutex);
            _things.push_back(std::move(thing));
        }
        _changed.notify_all();
    }

    /// A copy of all so far.
    std::vector<Thing> all() const {
        const std::lock_guard lock(_mutex);
        return _things;
    }

    /// All since the last call.
    std::vector<Thing> take() {
        const std::lock_guard lock(_mutex);
        return std::exchange(_things, {});
    }

    /// The first that matches, as soon as it is there. Throws Failure with all that came instead
    /// when the time is over.
    Thing waitFor(const Matcher& matches, std::chrono::milliseconds time = patience) const {
        std::unique_lock lock(_mutex);
        const auto found = [&] { return std::ranges::find_if(_things, matches); };
        if (!_changed.wait_for(lock, time, [&] { return found() != _things.end(); })) {
            throw Failure("what is waited for did not come; there came" + _list());
        }
        return *found();
    }

    /// The same for the first with this part in what it prints as.
    Thing waitFor(const std::string& part, std::chrono::milliseconds time = patience) const {
        try {
            return waitFor([&](const Thing& thing) { return hasPart(thing, part); }, time);
        } catch (const Failure& failure) {
            throw Failure("\"" + part + "\": " + failure.what());
        }
    }

    /// Those with this part in what they print as.
    std::size_t countOf(const std::string& part) const {
        const std::lock_guard lock(_mutex);
        return static_cast<std::size_t>(std::ranges::count_if(
            _things, [&](const Thing& thing) { return hasPart(thing, part); }));
    }

private:
    std::string _list() const {
        std::ostringstream text;
        if (_things.empty()) text << " nothing";
        for (const Thing& thing : _things) text << "\n  " << thing;
        return text.str();
    }

    mutable std::mutex _mutex;
    mutable std::condition_variable _changed;
    std::vector<Thing> _things;
};

/// A line that the host, a provider or the library wrote. Prints as "warning source: message".
struct LogLine {
    std::string level;    ///< error, warning, information or debug
    std::string source;   ///< the logger's, or the provider's name
    std::string message;  ///< the text alone

    /// All three parts count.
    bool operator==(const LogLine&) const = default;
    /// Prints as said above.
    friend std::ostream& operator<<(std::ostream& out, const LogLine& line) {
        return out << line.level << ' ' << line.source << ": " << line.message;
    }
};

}  // namespace cimtest
