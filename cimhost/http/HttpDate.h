#pragma once

#include <ctime>
#include <string>
#include <string_view>

namespace cimhost {

/// A time as HTTP writes it (RFC 9110, 5.6.7), whatever the locale.
std::string formatHttpDate(std::time_t time);

/// The time now. The view is good until the same thread asks again.
std::string_view httpDate();

}  // namespace cimhost
