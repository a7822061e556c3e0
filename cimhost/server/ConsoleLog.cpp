#include "cimhost/server/ConsoleLog.h"

#include "cimhost/http/Timestamp.h"

#include <unistd.h>

#include <algorithm>
#include <string>

namespace cimhost {

void ConsoleLog::write(Level level, std::string_view source, std::string_view message) noexcept
    try {
    if (level > _least) return;
    std::string line = formatTimestamp(std::chrono::system_clock::now());
    line.append(" ").append(levelName(level)).append(" ");
    line.append(source).append(": ").append(message);
    std::replace_if(
        line.begin(), line.end(),
        [](char character) {
            return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
        },
        ' ');
    line += '\n';
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
} catch (const std::exception&) {
    // Out of memory: the line is lost.
}

std::string_view levelName(BrokerLog::Level level) noexcept {
    switch (level) {
        case BrokerLog::Level::error: return "error";
        case BrokerLog::Level::warning: return "warning";
        case BrokerLog::Level::information: return "information";
        case BrokerLog::Level::debug: return "debug";
    }
    return "unknown";
}

}  // namespace cimhost
