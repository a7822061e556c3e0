#include "cimhost/modules/CrashWords.h"

#include "cimhost/modules/RunningCall.h"

#include <execinfo.h>
#include <sys/mman.h>
#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <system_error>

// What the handlers call is async-signal-safe: no allocation, and no lock but the loader's, which
// naming the frames takes. A thread that hangs in there keeps it, so there is an alarm.

namespace cimhost {

namespace {

struct CrashSignal {
    int number;
    std::string_view name;
    bool hasAddress;  ///< when the kernel sends it
    struct sigaction before {};
};

constinit std::array<CrashSignal, 5> crashSignals{{
    {SIGSEGV, "SIGSEGV", true},
    {SIGBUS, "SIGBUS", true},
    {SIGFPE, "SIGFPE", true},
    {SIGILL, "SIGILL", true},
    {SIGABRT, "SIGABRT", false},
}};

constexpr std::size_t stackSize = std::size_t{128} << 10U;  // the unwinder alone takes ten or more
constexpr int deepest = 64;
constexpr int mostShown = 16;
constexpr unsigned longestTelling = 3;  // seconds

constinit std::atomic<bool> isInstalled = false;
constinit std::atomic<pid_t> crashingThread = 0;
constinit std::atomic<int> crashingSignal = 0;

void writeOut(std::string_view text) noexcept {
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text.data(), text.size());
}

std::uintptr_t faultingInstruction([[maybe_unused]] const void* context) noexcept {
#if defined(__x86_64__)
    const auto* const state = static_cast<const ucontext_t*>(context);
    return static_cast<std::uintptr_t>(state->uc_mcontext.gregs[REG_RIP]);
#elif defined(__aarch64__)
    return static_cast<const ucontext_t*>(context)->uc_mcontext.pc;
#else
    return 0;
#endif
}

void tellSignal(RunningCall::Words& words, const CrashSignal& signal,
                const siginfo_t& information) noexcept {
    words.append(": ");
    words.append(signal.name);
    if (!signal.hasAddress || information.si_code <= 0) return;
    std::array<char, 16> digits;
    const auto address = reinterpret_cast<std::uintptr_t>(information.si_addr);
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), address, 16).ptr;
    words.append(" at 0x");
    words.append({digits.data(), end});
}

void tellCrash(const CrashSignal& signal, const siginfo_t& information) noexcept {
    RunningCall::Words words;
    words.append("cimhost: crash: ");
    if (const RunningCall* const call = RunningCall::current()) {
        call->describe(words);
    } else {
        words.append("outside of any provider's call");
    }
    tellSignal(words, signal, information);
    words.blankControls();
    writeOut(words.view());
    writeOut("\n");
}

void tellFrames(const void* context) noexcept {
    std::array<void*, deepest> frames;
    const int count = ::backtrace(frames.data(), deepest);
    // Those of this handler come first.
    const auto end = frames.begin() + count;
    const std::uintptr_t fault = faultingInstruction(context);
    const auto found = std::find_if(frames.begin(), end, [fault](void* frame) {
        return reinterpret_cast<std::uintptr_t>(frame) == fault;
    });
    const auto first = found == end ? frames.begin() : found;
    ::backtrace_symbols_fd(
        &*first, static_cast<int>(std::min<std::ptrdiff_t>(end - first, mostShown)), STDERR_FILENO);
}

void unblock(int number) noexcept {
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, number);
    ::pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

// On the thread that crashes, which a core file is to show.
void endUntold(int alarm) noexcept {
    if (::gettid() != crashingThread) {
        ::tgkill(::getpid(), crashingThread, alarm);
        return;
    }
    const int number = crashingSignal;
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    ::sigaction(number, &action, nullptr);
    unblock(number);
    ::raise(number);
}

/// Tells what SIGALRM did before.
struct sigaction limitTelling(int number) noexcept {
    crashingSignal = number;
    struct sigaction before {};
    struct sigaction action {};
    action.sa_handler = endUntold;
    action.sa_flags = SA_ONSTACK;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(SIGALRM, &action, &before);
    unblock(SIGALRM);
    ::alarm(longestTelling);
    return before;
}

void handleCrash(int number, siginfo_t* information, void* context) noexcept {
    const int error = errno;
    const auto signal = std::ranges::find(crashSignals, number, &CrashSignal::number);
    pid_t none = 0;
    const pid_t self = ::gettid();
    const bool isFirst = crashingThread.compare_exchange_strong(none, self);
    // The words of one crash are enough: the process ends with that thread's.
    if (!isFirst && none != self) {
        for (;;) ::pause();
    }
    if (isFirst) {
        const struct sigaction before = limitTelling(number);
        tellCrash(*signal, *information);
        tellFrames(context);
        ::alarm(0);
        ::sigaction(SIGALRM, &before, nullptr);
    }
    // Not before: the same signal of another thread would end the process in the midst of this.
    ::sigaction(number, &signal->before, nullptr);
    // An instruction that failed fails again on return; what somebody sent is sent again.
    if (information->si_code <= 0) ::raise(number);
    errno = error;
}

}  // namespace

void installCrashWords() {
    // The first call loads a library, which a handler must not.
    std::array<void*, 1> frame;
    ::backtrace(frame.data(), 1);
    struct sigaction action {};
    action.sa_sigaction = handleCrash;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    ::sigemptyset(&action.sa_mask);
    for (CrashSignal& signal : crashSignals) {
        if (::sigaction(signal.number, &action, &signal.before) != 0) {
            throw std::system_error(errno, std::generic_category(), "signals");
        }
    }
    isInstalled = true;
}

CrashStack::CrashStack() noexcept {
    stack_t before{};
    if (!isInstalled || ::sigaltstack(nullptr, &before) != 0) return;
    if (!(before.ss_flags & SS_DISABLE)) return;
    void* const memory = ::mmap(nullptr, stackSize, PROT_READ | PROT_WRITE,
                                MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
    if (memory == MAP_FAILED) return;
    stack_t stack{};
    stack.ss_sp = memory;
    stack.ss_size = stackSize;
    if (::sigaltstack(&stack, nullptr) == 0) {
        _memory = memory;
    } else {
        ::munmap(memory, stackSize);
    }
}

CrashStack::~CrashStack() {
    if (!_memory) return;
    stack_t now{};
    // A module that took another stack for this thread keeps it.
    if (::sigaltstack(nullptr, &now) == 0 && now.ss_sp == _memory) {
        stack_t none{};
        none.ss_flags = SS_DISABLE;
        ::sigaltstack(&none, nullptr);
    }
    ::munmap(_memory, stackSize);
}

}  // namespace cimhost
