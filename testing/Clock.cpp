#include "testing/cimhost/testing/Clock.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <ctime>

namespace cimtest {
namespace {

constinit std::atomic<bool> isStanding = false;
constinit std::atomic<std::chrono::system_clock::rep> ticks = 0;

bool isDayClock(clockid_t clock) noexcept {
    return clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE;
}

timespec standingTime() noexcept {
    using std::chrono::nanoseconds;
    using std::chrono::seconds;
    const auto all =
        std::chrono::duration_cast<nanoseconds>(std::chrono::system_clock::duration(ticks.load()));
    const auto whole = std::chrono::floor<seconds>(all);
    return {whole.count(), (all - whole).count()};
}

}  // namespace

TimeIs::TimeIs(std::chrono::system_clock::time_point now) {
    ticks = now.time_since_epoch().count();
    isStanding = true;
}

TimeIs::~TimeIs() { isStanding = false; }

void TimeIs::pass(std::chrono::system_clock::duration time) { ticks += time.count(); }

}  // namespace cimtest

// These take the place of the C library's.

extern "C" __attribute__((weak, visibility("default"))) int clock_gettime(clockid_t clock,
                                                                          timespec* now) noexcept {
    if (cimtest::isStanding && cimtest::isDayClock(clock)) {
        *now = cimtest::standingTime();
        return 0;
    }
    return static_cast<int>(syscall(SYS_clock_gettime, clock, now));
}

extern "C" __attribute__((weak, visibility("default"))) time_t time(time_t* result) noexcept {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (result) *result = now.tv_sec;
    return now.tv_sec;
}
