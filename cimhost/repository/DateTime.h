#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The 25 characters of a CIM datetime (DSP0004, 5.2.4): `yyyymmddhhmmss.mmmmmmsutc` for a point in
/// time, `ddddddddhhmmss.mmmmmm:000` for an interval. Asterisks stand for what is not known: whole
/// fields, or the last digits of the microseconds, from some place to the last digit. As a number
/// such a value is its least one. What is a datetime is judged here alone, for MOF, CIM-XML,
/// queries and providers. Pure functions, safe from several threads.
namespace cimhost {

constexpr std::size_t dateTimeLength = 25;

/// True for a datetime with fields in their ranges, on a day that the calendar has.
bool isDateTime(std::string_view text) noexcept;

/// True when the datetime, which must be one, is an interval.
bool isInterval(std::string_view dateTime) noexcept;

/// Microseconds since 1970 began (UTC), or the length of the interval. None for text that is no
/// datetime and for times before 1970.
std::optional<std::uint64_t> microsecondsOf(std::string_view text) noexcept;

/// In UTC. None for times after the year 9999 and intervals of more than 99999999 days.
std::optional<std::string> dateTimeOf(std::uint64_t microseconds, bool interval);

}  // namespace cimhost
