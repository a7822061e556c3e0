#pragma once

#include "cimhost/client/ClientTransport.h"
#include "cimhost/server/isolation/Link.h"

#include <sys/types.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace cimhost {

/// A process of this program that serves a link, from its start to its end. What it writes to
/// standard error goes to ours, line by line. It is killed when this ends. Safe from several
/// threads.
class ChildProcess {
public:
    struct Settings {
        std::vector<std::string> command;  ///< with --control, its end of the link is descriptor 3
        HttpPatience patience;             ///< with its answers
        /// Called once with how the process has ended, before awaitEnd() tells it.
        std::function<void(ChildProcess&, const std::string& end)> onEnd;
        /// Called with each line that it writes to standard error.
        std::function<void(std::string_view line)> onLine;
    };

    /// Starts it. The handler answers what it asks. Throws std::system_error.
    ChildProcess(Settings settings, HttpHandler& handler);
    /// Kills it and waits for it, and for what is answered still.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    ClientTransport& transport() noexcept { return _transport; }
    pid_t id() const noexcept { return _id; }
    Clock::time_point started() const noexcept { return _started; }

    /// Writes what the process has said so far: a line that came before an answer is to stand
    /// before whatever the answer leads to.
    void relayLines();

    /// Asks it to end in order.
    void beginEnd() noexcept { _link.endAsking(); }

    /// Ends it at once. `reason` stands for how it ended, unless it has ended already.
    void kill(std::string_view reason);

    /// How it ended: "ended by SIGSEGV", "ended with 1", or the reason for its being killed.
    /// Nothing when it has not by the deadline.
    std::optional<std::string> awaitEnd(Clock::time_point deadline) const;

    /// The line of its crash, or else its last one.
    std::string lastWords() const;

    /// It has ended and nothing of it is answered any more.
    bool isOver() const;

private:
    void _watch();
    void _start();
    void _takeLine(std::string_view line);
    void _noteEnd();

    Settings _settings;
    Descriptor _farControl;  ///< until it is started
    Link _link;
    ClientTransport _transport;
    Descriptor _errors;
    Descriptor _process;  ///< readable once it has ended
    pid_t _id = 0;
    Clock::time_point _started = Clock::now();

    mutable std::mutex _mutex;
    mutable std::condition_variable _changed;
    std::optional<int> _startError;  ///< 0 once it runs
    std::optional<std::string> _reason;
    std::optional<std::string> _end;
    bool _isOver = false;
    std::mutex _reading;     ///< guards the two below; held before the other one
    bool _isSilent = false;  ///< it has closed its standard error
    std::string _line;       ///< not complete yet
    std::string _crashWords;
    std::string _lastLine;
    std::thread _thread;  ///< last: it uses the others
};

}  // namespace cimhost
