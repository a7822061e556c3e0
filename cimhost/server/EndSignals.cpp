#include "cimhost/server/EndSignals.h"

#include <cerrno>
#include <system_error>

namespace cimhost {

EndSignals::EndSignals() {
    sigemptyset(&_signals);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&_signals, signal);
    const int error = pthread_sigmask(SIG_BLOCK, &_signals, nullptr);
    if (error != 0 || std::signal(SIGPIPE, SIG_IGN) == SIG_ERR) {
        throw std::system_error(error != 0 ? error : errno, std::generic_category(), "signals");
    }
}

void EndSignals::wait(std::optional<std::chrono::seconds> time) const {
    if (!time) {
        while (sigwaitinfo(&_signals, nullptr) < 0 && errno == EINTR) {
        }
        return;
    }
    using std::chrono::nanoseconds;
    const auto end = std::chrono::steady_clock::now() + *time;
    for (;;) {
        const nanoseconds left = end - std::chrono::steady_clock::now();
        if (left.count() <= 0) return;
        const timespec patience{left / std::chrono::seconds(1),
                                (left % std::chrono::seconds(1)).count()};
        if (sigtimedwait(&_signals, nullptr, &patience) > 0 || errno != EINTR) return;
    }
}

}  // namespace cimhost
