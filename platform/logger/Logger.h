#pragma once

#include "platform/logger/LogArgument.h"
#include "platform/logger/LogSink.h"
#include "pylcommon_export.h"

#include <array>
#include <atomic>
#include <memory>
#include <span>
#include <string>
#include <string_view>

/// Writes log lines of one named source.
///
/// Copies are cheap (two reference counts) and share a sink and a level: setLevel() on one of them
/// holds for all. The source name belongs to each copy alone. A class that logs keeps its own copy.
///
/// info(), warn() and error() take a printf-style format and check every argument against its
/// conversion:
///
///   - d i o u x X c s p and e E f F g G a A, with the flags - + blank # 0, width, precision and *,
///     print as the C standard says. Integers print at the full width of their argument whatever
///     the length modifier, except that h and hh cut them as they do in C.
///   - %s takes zero-terminated text, std::string or std::string_view; a null prints "(null)".
///   - %% prints a per cent sign; %n prints nothing and stores nothing.
///   - A conversion that is unknown, lacks its argument or finds one of the wrong type prints its
///     own text as it stands and touches no memory. An argument of the wrong type is used up.
///   - A width above 1024 counts as 1024, and so does the precision of a number.
///
/// So a text with stray per cent signs cannot do harm, even where it stands as the format. A line
/// that the level drops costs one relaxed load and a branch: no text is built, nothing is
/// allocated. Where an argument is itself costly to make, ask infoEnabled() and its like first.
///
/// Logging throws nothing and leaves errno alone: a line that cannot be built or written is lost.
///
/// Threads: different copies may be used at once, and so may one copy, as long as nobody assigns to
/// it or calls appendLogSource() on it meanwhile.
class PYL_EXPORT Logger {
public:
    /// A logger that writes to the system log, at level information.
    explicit Logger(std::string source);

    /// A logger that writes to this sink, which must not be null.
    Logger(std::string source, std::shared_ptr<LogSink> sink,
           LogLevel level = LogLevel::information);

    /// @{
    /// Moving copies, so that a logger that was moved from can still log.
    Logger(const Logger&) noexcept = default;
    Logger& operator=(const Logger&) noexcept = default;
    /// @}
    ~Logger() = default;

    /// Adds a suffix to the source name of this copy; copies made before keep theirs.
    void appendLogSource(std::string_view suffix);

    /// The name that stands before each line. Good until the next appendLogSource() or assignment.
    const std::string& logSource() const noexcept { return *_source; }

    /// Sets the level of this logger and of everything it was copied from or to.
    void setLevel(LogLevel level) noexcept {
        _family->level.store(level, std::memory_order_relaxed);
    }
    /// The level that this logger shares with its copies.
    LogLevel level() const noexcept { return _family->level.load(std::memory_order_relaxed); }

    /// @{
    /// Whether a line of this level would be written.
    bool infoEnabled() const noexcept { return _isEnabled(LogLevel::information); }
    bool warnEnabled() const noexcept { return _isEnabled(LogLevel::warning); }
    bool errorEnabled() const noexcept { return _isEnabled(LogLevel::error); }
    /// @}

    /// @{
    /// Writes a line of this level, where it is enabled. Arguments that do not fit the format do no
    /// harm: see above.
    template <typename... Arguments>
    void info(const char* format, const Arguments&... arguments) const noexcept {
        _log(LogLevel::information, format, arguments...);
    }
    template <typename... Arguments>
    void warn(const char* format, const Arguments&... arguments) const noexcept {
        _log(LogLevel::warning, format, arguments...);
    }
    template <typename... Arguments>
    void error(const char* format, const Arguments&... arguments) const noexcept {
        _log(LogLevel::error, format, arguments...);
    }
    /// @}

private:
    struct Family {
        std::shared_ptr<LogSink> sink;
        std::atomic<LogLevel> level;
    };

    bool _isEnabled(LogLevel wanted) const noexcept { return wanted <= level(); }

    template <typename... Arguments>
    void _log(LogLevel lineLevel, const char* format,
              const Arguments&... arguments) const noexcept {
        if (_isEnabled(lineLevel)) {
            const std::array<LogArgument, sizeof...(Arguments)> captured{LogArgument(arguments)...};
            _write(lineLevel, format, captured);
        }
    }
    void _write(LogLevel lineLevel, const char* format,
                std::span<const LogArgument> arguments) const noexcept;

    std::shared_ptr<Family> _family;
    std::shared_ptr<const std::string> _source;
};

/// A logger for code that an object manager hosts: it writes to the system log. An object manager
/// that runs in the foreground, with standard error on a terminal, a pipe or a file, gets the lines
/// there; so does one on a host without a system log (no /dev/log when this is called). cimhost
/// takes them into its own log.
PYL_EXPORT Logger hostedLogger(std::string source);

/// From now on the loggers that hostedLogger() makes write to this sink, for tests of hosted code;
/// null is the usual again. Safe from several threads.
PYL_EXPORT void setHostedLogSink(std::shared_ptr<LogSink> sink);
