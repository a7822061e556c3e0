#pragma once

#include <functional>
#include <string>
#include <utility>

/// A call that works on files, as it is about to be made.
struct FileCall {
    std::string name;    ///< of the function, as "pwrite"
    std::string path;    ///< of the file, where the call takes a descriptor too
    std::string target;  ///< the new path of a rename()
    int flags = 0;       ///< of an open()
    std::string data;    ///< of a pwrite()
    long offset = 0;     ///< of the data
};

/// What becomes of a call: it is made, or half of its bytes are transferred, or it fails with this
/// errno.
using Verdict = int;
constexpr Verdict made = 0;
constexpr Verdict halved = -1;

using FileCallHook = std::function<Verdict(const FileCall&)>;

/// The hook that is asked on this thread, or null.
inline thread_local const FileCallHook* fileCallHook = nullptr;

/// While it lives, the hook is asked before each file call of the library on this thread: open,
/// stat, lstat, chmod, rename and unlink (RedirectedFiles.cpp), pread, pwrite, lseek, fstat,
/// fchmod, fchown, fsync, close, fcntl, flock, dup3, fdopen and fclose (FileCalls.cpp). A close()
/// and an fclose() that are to fail close all the same, and fsync() does nothing in the whole
/// program.
class HookedFileCalls {
public:
    explicit HookedFileCalls(FileCallHook hook) : _hook(std::move(hook)) { fileCallHook = &_hook; }
    ~HookedFileCalls() { fileCallHook = nullptr; }
    HookedFileCalls(const HookedFileCalls&) = delete;
    HookedFileCalls& operator=(const HookedFileCalls&) = delete;

private:
    FileCallHook _hook;
};

/// For the functions that stand in for the C library's.
inline Verdict askFileCallHook(const FileCall& call) {
    const auto* const hook = std::exchange(fileCallHook, nullptr);
    if (!hook) return made;
    const Verdict verdict = (*hook)(call);
    fileCallHook = hook;
    return verdict;
}
