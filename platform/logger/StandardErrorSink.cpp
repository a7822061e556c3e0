#include "platform/logger/StandardErrorSink.h"

#include "platform/logger/LogText.h"

#include <unistd.h>

#include <cerrno>
#include <string>

StandardErrorSink::~StandardErrorSink() = default;

void StandardErrorSink::write(LogLevel level, std::string_view source,
                              std::string_view message) noexcept try {
    constexpr std::size_t levelSize = 16;  // with what stands around it
    std::string line;
    line.reserve(source.size() + message.size() + levelSize);
    appendLogText(line, source);
    line.append(": ").append(logLevelName(level)).append(": ");
    appendLogText(line, message);
    line += '\n';
    while (::write(_descriptor, line.data(), line.size()) < 0 && errno == EINTR) {
    }
} catch (...) {
    // Short of memory: the line is lost.
}
