#include "platform/logger/Logger.h"

#include "platform/logger/StandardErrorSink.h"
#include "platform/logger/SystemLogSink.h"
#include "platform/logger/detail/HostSink.h"
#include "platform/logger/detail/LogFormat.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cassert>
#include <cerrno>
#include <mutex>
#include <utility>

Logger::Logger(std::string source) : Logger(std::move(source), std::make_shared<SystemLogSink>()) {}

Logger::Logger(std::string source, std::shared_ptr<LogSink> sink, LogLevel level)
    : _family(new Family{std::move(sink), level}),
      _source(std::make_shared<const std::string>(std::move(source))) {
    assert(_family->sink);
}

void Logger::appendLogSource(std::string_view suffix) {
    std::string source = *_source;
    source += suffix;
    _source = std::make_shared<const std::string>(std::move(source));
}

void Logger::_write(LogLevel lineLevel, const char* format,
                    std::span<const LogArgument> arguments) const noexcept {
    // A caller may log between a failing system call and its look at errno.
    const int savedErrno = errno;
    try {
        _family->sink->write(lineLevel, *_source, formatLogText(format, arguments));
    } catch (...) {
        // Short of memory: the line is lost.
    }
    errno = savedErrno;
}

namespace {

/// Daemons send standard error to /dev/null or to the journal's socket.
bool isStandardErrorRead() noexcept {
    struct stat status {};
    if (::fstat(STDERR_FILENO, &status) != 0) return false;
    return S_ISFIFO(status.st_mode) || S_ISREG(status.st_mode) || ::isatty(STDERR_FILENO) == 1;
}

std::mutex hostedMutex;
std::shared_ptr<LogSink> hostedSink;  // of a test; guarded by hostedMutex

std::shared_ptr<LogSink> currentHostedSink() {
    const std::lock_guard lock(hostedMutex);
    return hostedSink;
}

}  // namespace

void setHostedLogSink(std::shared_ptr<LogSink> sink) {
    const std::lock_guard lock(hostedMutex);
    hostedSink = std::move(sink);
}

Logger hostedLogger(std::string source) {
    if (const HostSink::Write write = HostSink::find()) {
        return Logger(std::move(source), std::make_shared<HostSink>(write));
    }
    if (auto sink = currentHostedSink()) return Logger(std::move(source), std::move(sink));
    if (isStandardErrorRead() || ::access("/dev/log", F_OK) != 0) {
        return Logger(std::move(source), std::make_shared<StandardErrorSink>());
    }
    return Logger(std::move(source));
}
