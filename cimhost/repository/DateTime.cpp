#include "cimhost/repository/DateTime.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>

namespace cimhost {

namespace {

constexpr std::int64_t secondsADay = 86400;
constexpr std::int64_t million = 1'000'000;
constexpr std::size_t pointPlace = 14;
constexpr std::size_t signPlace = 21;

struct Field {
    std::size_t begin;
    std::size_t length;
    int least;
    int most;
};

constexpr auto timestampFields = std::to_array<Field>({
    {0, 4, 0, 9999},
    {4, 2, 1, 12},
    {6, 2, 1, 31},
    {8, 2, 0, 23},
    {10, 2, 0, 59},
    {12, 2, 0, 59},
    {15, 6, 0, 999999},
});

constexpr auto intervalFields = std::to_array<Field>({
    {0, 8, 0, 99999999},
    {8, 2, 0, 23},
    {10, 2, 0, 59},
    {12, 2, 0, 59},
    {15, 6, 0, 999999},
});

std::optional<int> number(std::string_view digits) noexcept {
    const bool pure = std::ranges::all_of(digits, [](char c) { return c >= '0' && c <= '9'; });
    int result = 0;
    if (!pure) return std::nullopt;
    std::from_chars(digits.data(), digits.data() + digits.size(), result);
    return result;
}

// Where the asterisks begin, or the end of the fields; none when one is followed by a digit.
std::optional<std::size_t> knownLength(std::string_view text) noexcept {
    const std::size_t first = std::min(text.find('*'), signPlace);
    for (std::size_t i = first; i < signPlace; ++i) {
        if (i != pointPlace && text[i] != '*') return std::nullopt;
    }
    return first;
}

std::optional<int> fieldValue(std::string_view text, const Field& field,
                              std::size_t known) noexcept {
    const std::size_t end = field.begin + field.length;
    if (known <= field.begin) return field.least;
    if (known < end && field.length != 6) return std::nullopt;
    std::array<char, 8> digits{};
    for (std::size_t i = 0; i < field.length; ++i) {
        digits[i] = field.begin + i < known ? text[field.begin + i] : '0';
    }
    const auto value = number({digits.data(), field.length});
    if (!value || *value < field.least || *value > field.most) return std::nullopt;
    return value;
}

template <std::size_t count>
std::optional<std::array<int, count>> fieldValues(std::string_view text,
                                                  const std::array<Field, count>& fields) noexcept {
    const auto known = knownLength(text);
    if (!known) return std::nullopt;
    std::array<int, count> values{};
    for (std::size_t i = 0; i < count; ++i) {
        const auto value = fieldValue(text, fields[i], *known);
        if (!value) return std::nullopt;
        values[i] = *value;
    }
    return values;
}

std::int64_t secondsOf(int hours, int minutes, int seconds) noexcept {
    return (std::int64_t{hours} * 60 + minutes) * 60 + seconds;
}

std::optional<std::int64_t> timestampValue(std::string_view text) noexcept {
    const auto fields = fieldValues(text, timestampFields);
    const auto offset = number(text.substr(signPlace + 1));
    if (!fields || !offset) return std::nullopt;
    const auto& [year, month, day, hour, minute, second, micro] = *fields;
    const std::chrono::year_month_day date{std::chrono::year(year),
                                           std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day))};
    if (!date.ok()) return std::nullopt;
    const std::int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
    const std::int64_t east = (text[signPlace] == '-' ? -60 : 60) * std::int64_t{*offset};
    return (days * secondsADay + secondsOf(hour, minute, second) - east) * million + micro;
}

std::optional<std::int64_t> intervalValue(std::string_view text) noexcept {
    const auto fields = fieldValues(text, intervalFields);
    if (!fields || text.substr(signPlace) != ":000") return std::nullopt;
    const auto& [days, hours, minutes, seconds, micro] = *fields;
    return (days * secondsADay + secondsOf(hours, minutes, seconds)) * million + micro;
}

std::optional<std::int64_t> valueOfText(std::string_view text) noexcept {
    if (text.size() != dateTimeLength || text[pointPlace] != '.') return std::nullopt;
    switch (text[signPlace]) {
        case '+':
        case '-': return timestampValue(text);
        case ':': return intervalValue(text);
        default: return std::nullopt;
    }
}

struct Clock {
    unsigned hours;
    unsigned minutes;
    unsigned seconds;
    unsigned micro;
};

Clock clockOf(std::uint64_t microseconds) noexcept {
    const auto second = static_cast<unsigned>(microseconds / million % secondsADay);
    return {second / 3600, second / 60 % 60, second % 60,
            static_cast<unsigned>(microseconds % million)};
}

std::string intervalText(std::uint64_t days, const Clock& clock) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%08llu%02u%02u%02u.%06u:000",
                  static_cast<unsigned long long>(days), clock.hours, clock.minutes, clock.seconds,
                  clock.micro);
    return text.data();
}

std::string timestampText(std::uint64_t days, const Clock& clock) {
    const std::chrono::year_month_day date{
        std::chrono::sys_days(std::chrono::days(static_cast<std::int64_t>(days)))};
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d%02u%02u%02u%02u%02u.%06u+000",
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), clock.hours, clock.minutes, clock.seconds,
                  clock.micro);
    return text.data();
}

}  // namespace

bool isDateTime(std::string_view text) noexcept { return valueOfText(text).has_value(); }

bool isInterval(std::string_view dateTime) noexcept { return dateTime[signPlace] == ':'; }

std::optional<std::uint64_t> microsecondsOf(std::string_view text) noexcept {
    const auto value = valueOfText(text);
    if (!value || *value < 0) return std::nullopt;
    return static_cast<std::uint64_t>(*value);
}

std::optional<std::string> dateTimeOf(std::uint64_t microseconds, bool interval) {
    constexpr std::uint64_t mostDays = 99999999;
    constexpr std::uint64_t daysTo10000 = 2932897;  // from 1970-01-01 to 10000-01-01
    const std::uint64_t days = microseconds / million / secondsADay;
    const Clock clock = clockOf(microseconds);
    if (interval && days <= mostDays) return intervalText(days, clock);
    if (!interval && days < daysTo10000) return timestampText(days, clock);
    return std::nullopt;
}

}  // namespace cimhost
