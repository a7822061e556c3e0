#pragma once

#include "cimhost/objects/Broker.h"
#include "cimhost/server/events/EventFeed.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace cimhost {

enum class LogFormat { text, json };

/// Writes log lines of cimhost and of the modules in it to standard error, each in one piece:
///
///     2024-05-01T12:00:00.123Z warning Fans: fan 3 does not answer
///     2024-05-01T12:00:00.123Z [12 GetInstance] warning Fans: fan 3 does not answer
///
/// the second from within a request (see LoggedRequest.h), or as a JSON object:
///
///     {"time":"2024-05-01T12:00:00.123Z","level":"warning","request":12,"operation":"GetInstance",
///      "component":"Fans","text":"fan 3 does not answer"}                  (all of it in one line)
///
/// The words are those of ShownText.h. Where there is a feed that somebody looks at, that object is
/// an event `log` of it, too.
class ConsoleLog final : public BrokerLog {
public:
    /// Lines less urgent than `least` are dropped. The feed outlives this.
    explicit ConsoleLog(Level least, LogFormat format = LogFormat::text,
                        EventFeed* feed = nullptr) noexcept
        : _least(least), _format(format), _feed(feed) {}
    void write(Level level, std::string_view source, std::string_view message) noexcept override;

    /// From now on cimhost_write_log writes as this does, even when this is gone; the feed stays.
    void takeLinesOfModules() const noexcept;

private:
    Level _least;
    LogFormat _format;
    EventFeed* _feed;
};

/// The parts of a line, as they are shown.
struct LogLine {
    std::string_view time;
    std::string_view level;
    std::string_view request;  ///< its number, or empty with the operation
    std::string_view operation;
    std::string_view component;
    std::string_view text;
};

/// The line as an object.
std::string asJson(const LogLine& line);

std::string_view levelName(BrokerLog::Level level) noexcept;

}  // namespace cimhost

/// The log for libraries of modules that have no broker at hand: they find it by this name. The
/// level is 0 for an error, 1 a warning, 2 information, 3 debugging. From any thread.
extern "C" [[gnu::visibility("default")]] void cimhost_write_log(int level, const char* source,
                                                                 std::size_t sourceSize,
                                                                 const char* text,
                                                                 std::size_t textSize) noexcept;
