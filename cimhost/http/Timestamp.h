#pragma once

#include <chrono>
#include <string>

namespace cimhost {

/// The time in UTC as log lines begin with it: "2024-05-01T12:00:00.123Z".
std::string formatTimestamp(std::chrono::system_clock::time_point time);

}  // namespace cimhost
