#pragma once

#include <chrono>

namespace cimtest {

/// While it lives the day clock of the program stands still: clock_gettime(2), and so
/// std::chrono::system_clock, and time(2). Other clocks go on, by which waits end. One at a time.
class TimeIs {
public:
    /// The clock stands at `now`.
    explicit TimeIs(std::chrono::system_clock::time_point now);
    ~TimeIs();
    TimeIs(const TimeIs&) = delete;
    TimeIs& operator=(const TimeIs&) = delete;

    /// Puts the clock forward by this time; it stands again.
    void pass(std::chrono::system_clock::duration time);
};

}  // namespace cimtest
