#pragma once

#include <csignal>
#include <cstddef>

/// The last words of a process that code of a module brings down.
namespace cimhost {

/// From now on, before SIGSEGV, SIGBUS, SIGFPE, SIGILL or SIGABRT ends the process, standard error
/// gets a line that tells the call and the signal, and the innermost frames:
///
///     cimhost: crash: module Fans, provider FanProvider, operation getInstance, path
///     root/test:TST_Fan.Name="a": SIGSEGV at 0x0                       (all of it in one line)
///     /usr/lib/x86_64-linux-gnu/cmpi/libFans.so(+0x11c9)[0x7f0e5c0e11c9]
///
/// Then the signal takes the course it had before: the handler that was there, or the default,
/// which may leave a core file. Where these words hang for three seconds, as they do while another
/// thread hangs in dlopen, the default ends the process without the rest. Handlers that modules set
/// replace this one. Once, before the first thread; lasts until the process ends. Throws
/// std::system_error.
void installCrashWords();

/// Memory on which this thread's handler runs, so that it can run when the stack is used up. None
/// where the thread has such memory already, or nothing is installed. As a thread-local object.
class CrashStack {
public:
    CrashStack() noexcept;
    ~CrashStack();
    CrashStack(const CrashStack&) = delete;
    CrashStack& operator=(const CrashStack&) = delete;

private:
    void* _memory = nullptr;
};

}  // namespace cimhost
