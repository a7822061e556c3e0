#include "cimhost/http/HttpDate.h"

#include <array>
#include <cstdio>

namespace cimhost {

std::string formatHttpDate(std::time_t time) {
    constexpr std::array days = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr std::array months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    std::tm parts{};
    gmtime_r(&time, &parts);
    std::array<char, 64> text;
    const int size = std::snprintf(text.data(), text.size(), "%s, %02d %s %04d %02d:%02d:%02d GMT",
                                   days[static_cast<std::size_t>(parts.tm_wday)], parts.tm_mday,
                                   months[static_cast<std::size_t>(parts.tm_mon)],
                                   parts.tm_year + 1900, parts.tm_hour, parts.tm_min, parts.tm_sec);
    return {text.data(), static_cast<std::size_t>(size)};
}

std::string_view httpDate() {
    thread_local std::time_t formattedTime = -1;
    thread_local std::string text;
    const std::time_t now = std::time(nullptr);
    if (now != formattedTime) {
        text = formatHttpDate(now);
        formattedTime = now;
    }
    return text;
}

}  // namespace cimhost
