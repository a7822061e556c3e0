#include "cimhost/server/isolation/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <system_error>
#include <utility>

namespace cimhost {
namespace {

constexpr int childControl = 3;
constexpr std::size_t longestLine = 16 * 1024;
constexpr std::size_t pipeBytes = 64 * 1024;
constexpr std::string_view crashMark = "cimhost: crash: ";

/// Undone by its end.
struct SpawnActions {
    posix_spawn_file_actions_t actions{};
    SpawnActions() { posix_spawn_file_actions_init(&actions); }
    ~SpawnActions() { posix_spawn_file_actions_destroy(&actions); }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;
};

std::string describeStatus(int status) {
    if (WIFEXITED(status)) return "ended with " + std::to_string(WEXITSTATUS(status));
    const char* const name = sigabbrev_np(WTERMSIG(status));
    return "ended by " +
           (name ? "SIG" + std::string(name) : "signal " + std::to_string(WTERMSIG(status)));
}

}  // namespace

ChildProcess::ChildProcess(Settings settings, HttpHandler& handler)
    : _settings(std::move(settings)),
      _link(
          [this] {
              std::pair<Descriptor, Descriptor> ends = Link::makePair();
              _farControl = std::move(ends.second);
              return std::move(ends.first);
          }(),
          handler),
      _transport([this] { return _link.connect(); }, {"localhost", _settings.patience}),
      _thread([this] { _watch(); }) {
    std::unique_lock lock(_mutex);
    _changed.wait(lock, [this] { return _startError.has_value(); });
    const int error = *_startError;
    lock.unlock();
    if (error == 0) return;
    _thread.join();
    throw std::system_error(error, std::generic_category(), _settings.command.front());
}

ChildProcess::~ChildProcess() {
    kill("ended with the server");
    _thread.join();
}

// The process dies with the thread that started it: so that is the one that watches over it.
void ChildProcess::_watch() {
    int error = 0;
    try {
        _start();
    } catch (const std::system_error& failure) {
        error = failure.code().value();
    }
    {
        const std::lock_guard lock(_mutex);
        _startError = error;
        _changed.notify_all();
    }
    if (error != 0) return;
    std::array<pollfd, 3> entries{pollfd{_process.get(), POLLIN, 0},
                                  pollfd{_errors.get(), POLLIN, 0},
                                  pollfd{_link.control(), POLLIN, 0}};
    for (;;) {
        if (poll(entries.data(), entries.size(), -1) < 0) continue;
        if (entries[1].revents != 0) relayLines();
        // Closed, or held by a process of the module's that outlives its own.
        if ((entries[1].revents & POLLHUP) != 0) entries[1].fd = -1;
        if (entries[2].revents != 0 && !_link.serveOne()) entries[2].fd = -1;
        if (entries[0].revents != 0) break;
    }
    relayLines();
    _noteEnd();
}

void ChildProcess::_start() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    _errors = Descriptor(ends[0]);
    const Descriptor far(ends[1]);
    fcntl(_errors.get(), F_SETFL, O_NONBLOCK);
    SpawnActions spawn;
    posix_spawn_file_actions_addopen(&spawn.actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&spawn.actions, far.get(), STDERR_FILENO);
    posix_spawn_file_actions_adddup2(&spawn.actions, _farControl.get(), childControl);
    posix_spawn_file_actions_addclosefrom_np(&spawn.actions, childControl + 1);
    std::vector<char*> words;
    for (std::string& word : _settings.command) words.push_back(word.data());
    words.push_back(nullptr);
    const int error =
        posix_spawn(&_id, words.front(), &spawn.actions, nullptr, words.data(), environ);
    if (error != 0) throw std::system_error(error, std::generic_category(), "posix_spawn");
    _farControl.reset();
    _process = Descriptor(static_cast<int>(syscall(SYS_pidfd_open, _id, 0)));
    if (_process) return;
    const int reason = errno;
    ::kill(_id, SIGKILL);
    waitpid(_id, nullptr, 0);
    throw std::system_error(reason, std::generic_category(), "pidfd_open");
}

void ChildProcess::relayLines() {
    const std::lock_guard lock(_reading);
    std::array<char, 4096> block;
    // What a pipe holds: one that writes all the time is not waited for.
    for (std::size_t left = pipeBytes / block.size(); left > 0 && !_isSilent; --left) {
        const ssize_t count = read(_errors.get(), block.data(), block.size());
        if (count < 0 && errno != EINTR) return;
        if (count < 0) continue;
        _isSilent = count == 0;
        for (std::string_view text(block.data(), static_cast<std::size_t>(count)); !text.empty();) {
            const std::size_t end = text.find('\n');
            _line += text.substr(0, end);
            if (end != std::string_view::npos || _line.size() > longestLine) {
                _takeLine(std::exchange(_line, {}));
            }
            text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        }
    }
}

void ChildProcess::_takeLine(std::string_view line) {
    const std::string whole = std::string(line) + '\n';
    [[maybe_unused]] const auto written = write(STDERR_FILENO, whole.data(), whole.size());
    _settings.onLine(line);
    const std::lock_guard lock(_mutex);
    if (line.starts_with(crashMark)) _crashWords = line.substr(crashMark.size());
    if (!line.empty()) _lastLine = line;
}

void ChildProcess::_noteEnd() {
    int status = 0;
    while (waitpid(_id, &status, 0) < 0 && errno == EINTR) {
    }
    {
        const std::lock_guard lock(_reading);
        if (!_line.empty()) _takeLine(std::exchange(_line, {}));
    }
    std::string end;
    {
        const std::lock_guard lock(_mutex);
        end = _reason.value_or(describeStatus(status));
    }
    // Whoever learns of the end may ask for another process at once.
    _settings.onEnd(*this, end);
    const std::lock_guard lock(_mutex);
    _end = std::move(end);
    _isOver = true;
    _changed.notify_all();
}

void ChildProcess::kill(std::string_view reason) {
    const std::lock_guard lock(_mutex);
    if (_end) return;
    if (!_reason) _reason = reason;
    // By the descriptor: its number may be another's by now.
    syscall(SYS_pidfd_send_signal, _process.get(), SIGKILL, nullptr, 0);
}

std::optional<std::string> ChildProcess::awaitEnd(Clock::time_point deadline) const {
    std::unique_lock lock(_mutex);
    _changed.wait_until(lock, deadline, [this] { return _end.has_value(); });
    return _end;
}

std::string ChildProcess::lastWords() const {
    const std::lock_guard lock(_mutex);
    return _crashWords.empty() ? _lastLine : _crashWords;
}

bool ChildProcess::isOver() const {
    const std::lock_guard lock(_mutex);
    return _isOver && _link.isIdle();
}

}  // namespace cimhost
