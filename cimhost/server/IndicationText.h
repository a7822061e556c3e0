#pragma once

#include "cimhost/repository/Instance.h"

#include <chrono>
#include <string>

namespace cimhost {

/// An indication as a person reads it:
///
///     2026-05-01 12:00:00  PYL_AlertIndication  Critical
///         Fan 3 has failed
///         AlertType = 5
///         ...
///
/// The time is the indication's own or, where it has none, that of its arrival, in UTC. The line
/// below is its Summary, Message or Description. NULL properties are left out. Control characters
/// go out as \\x1b, what turns text round as \\u202e, so that no sender can play with the reader's
/// terminal. Safe from several threads.
std::string describeIndication(const Instance& indication,
                               std::chrono::system_clock::time_point arrival);

}  // namespace cimhost
