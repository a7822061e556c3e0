#include "cimhost/server/EndSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace cimhost {
namespace {

/// Sent by this process itself. That it was sent to one thread, the C library does not tell.
bool isInterruption(const siginfo_t& info) noexcept {
    return info.si_code != SI_KERNEL && info.si_pid == getpid();
}

bool hasTerminal() noexcept {
    const int terminal = ::open("/dev/tty", O_RDONLY | O_NOCTTY | O_CLOEXEC);
    if (terminal >= 0) ::close(terminal);
    return terminal >= 0;
}

}  // namespace

EndSignals::EndSignals() : _hadTerminal(hasTerminal()) {
    sigemptyset(&_signals);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&_signals, signal);
    const int error = pthread_sigmask(SIG_BLOCK, &_signals, nullptr);
    if (error != 0 || std::signal(SIGPIPE, SIG_IGN) == SIG_ERR ||
        std::signal(SIGXFSZ, SIG_IGN) == SIG_ERR) {
        throw std::system_error(error != 0 ? error : errno, std::generic_category(), "signals");
    }
}

EndSignals::Reason EndSignals::wait(std::optional<std::chrono::seconds> time) const {
    using std::chrono::nanoseconds;
    const auto end = std::chrono::steady_clock::now() + time.value_or(std::chrono::seconds(0));
    for (;;) {
        siginfo_t info{};
        int signal = -1;
        if (time) {
            const nanoseconds left = end - std::chrono::steady_clock::now();
            if (left.count() <= 0) return Reason::timePassed;
            const timespec patience{left / std::chrono::seconds(1),
                                    (left % std::chrono::seconds(1)).count()};
            signal = sigtimedwait(&_signals, &info, &patience);
        } else {
            signal = sigwaitinfo(&_signals, &info);
        }
        if (signal > 0 && isInterruption(info)) return Reason::interrupted;
        const bool isHangUp = info.si_code == SI_KERNEL || (_hadTerminal && !hasTerminal());
        if (signal == SIGHUP && !isHangUp) return Reason::reload;
        if (signal > 0) return Reason::asked;
        if (errno == EAGAIN) return Reason::timePassed;
    }
}

void EndSignals::interrupt(std::thread& waiting) noexcept {
    pthread_kill(waiting.native_handle(), SIGHUP);
}

}  // namespace cimhost
