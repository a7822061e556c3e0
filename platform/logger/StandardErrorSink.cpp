#include "platform/logger/StandardErrorSink.h"

#include <unistd.h>

#include <cerrno>
#include <string>

#include "platform/logger/LogText.h"

StandardErrorSink::~StandardErrorSink() = default;

void StandardErrorSink::write(LogLevel level, std::string_view source,
                              std::string_view message) noexcept try {
    std::string line = escapeLogText(source);
    line.append(": ").append(logLevelName(level)).append(": ");
    line.append(escapeLogText(message)).append("\n");
    while (::write(_descriptor, line.data(), line.size()) < 0 && errno == EINTR) {
    }
} catch (...) {
    // Short of memory: the line is lost.
}
