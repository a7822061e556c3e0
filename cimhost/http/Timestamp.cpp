#include "cimhost/http/Timestamp.h"

#include <array>
#include <cstdio>
#include <ctime>

namespace cimhost {

std::string formatTimestamp(std::chrono::system_clock::time_point time) {
    const auto sinceEpoch = time.time_since_epoch();
    const auto seconds = std::chrono::floor<std::chrono::seconds>(sinceEpoch);
    const auto rest = std::chrono::floor<std::chrono::milliseconds>(sinceEpoch - seconds).count();
    const std::time_t whole = seconds.count();
    std::tm parts{};
    gmtime_r(&whole, &parts);
    std::array<char, 80> text;
    const int size =
        std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ",
                      parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
                      parts.tm_min, parts.tm_sec, static_cast<int>(rest));
    return {text.data(), static_cast<std::size_t>(size)};
}

}  // namespace cimhost
