#include "tests/common/FileCalls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>

namespace {

std::string pathOf(int descriptor) {
    std::array<char, PATH_MAX> path;
    const auto link = "/proc/self/fd/" + std::to_string(descriptor);
    const auto length = readlink(link.c_str(), path.data(), path.size());
    return length < 0 ? "" : std::string(path.data(), static_cast<std::size_t>(length));
}

Verdict ask(const char* name, int descriptor, std::string_view data = {}, long offset = 0) {
    if (!fileCallHook) return made;
    return askFileCallHook({name, pathOf(descriptor), "", 0, std::string(data), offset});
}

int failed(Verdict error) {
    errno = error;
    return -1;
}

std::size_t transferred(Verdict verdict, std::size_t size) {
    return verdict == halved && size > 1 ? size / 2 : size;
}

template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

#define PYL_INTERPOSE extern "C" __attribute__((visibility("default")))

PYL_INTERPOSE ssize_t pread(int descriptor, void* bytes, size_t size, off_t offset) {
    const Verdict verdict = ask("pread", descriptor);
    if (verdict > 0) return failed(verdict);
    return syscall(SYS_pread64, descriptor, bytes, transferred(verdict, size), offset);
}

PYL_INTERPOSE ssize_t pwrite(int descriptor, const void* bytes, size_t size, off_t offset) {
    const Verdict verdict =
        ask("pwrite", descriptor, {static_cast<const char*>(bytes), size}, offset);
    if (verdict > 0) return failed(verdict);
    return syscall(SYS_pwrite64, descriptor, bytes, transferred(verdict, size), offset);
}

PYL_INTERPOSE off_t lseek(int descriptor, off_t offset, int from) noexcept {
    const Verdict verdict = ask("lseek", descriptor);
    return verdict > 0 ? failed(verdict) : syscall(SYS_lseek, descriptor, offset, from);
}

PYL_INTERPOSE int fstat(int descriptor, struct stat* facts) noexcept {
    const Verdict verdict = ask("fstat", descriptor);
    return verdict > 0 ? failed(verdict) : ::fstatat(descriptor, "", facts, AT_EMPTY_PATH);
}

PYL_INTERPOSE int fchmod(int descriptor, mode_t mode) noexcept {
    const Verdict verdict = ask("fchmod", descriptor);
    return verdict > 0 ? failed(verdict) : static_cast<int>(syscall(SYS_fchmod, descriptor, mode));
}

PYL_INTERPOSE int fchown(int descriptor, uid_t owner, gid_t group) noexcept {
    const Verdict verdict = ask("fchown", descriptor);
    return verdict > 0 ? failed(verdict)
                       : static_cast<int>(syscall(SYS_fchown, descriptor, owner, group));
}

/// Waits for no disk: the tests read files only.
PYL_INTERPOSE int fsync(int descriptor) {
    const Verdict verdict = ask("fsync", descriptor);
    return verdict > 0 ? failed(verdict) : 0;
}

PYL_INTERPOSE int close(int descriptor) {
    const Verdict verdict = ask("close", descriptor);
    const auto result = static_cast<int>(syscall(SYS_close, descriptor));
    return verdict > 0 ? failed(verdict) : result;
}

PYL_INTERPOSE int fcntl(int descriptor, int command, ...) {
    va_list arguments;
    va_start(arguments, command);
    auto* const argument = va_arg(arguments, void*);
    va_end(arguments);
    const Verdict verdict = ask("fcntl", descriptor);
    return verdict > 0 ? failed(verdict)
                       : static_cast<int>(syscall(SYS_fcntl, descriptor, command, argument));
}

PYL_INTERPOSE int flock(int descriptor, int operation) noexcept {
    const Verdict verdict = ask("flock", descriptor);
    return verdict > 0 ? failed(verdict)
                       : static_cast<int>(syscall(SYS_flock, descriptor, operation));
}

PYL_INTERPOSE int dup3(int from, int to, int flags) noexcept {
    const Verdict verdict = ask("dup3", from);
    return verdict > 0 ? failed(verdict) : static_cast<int>(syscall(SYS_dup3, from, to, flags));
}

PYL_INTERPOSE FILE* fdopen(int descriptor, const char* mode) noexcept {
    static auto* const real = next<FILE*(int, const char*)>("fdopen");
    if (const Verdict verdict = ask("fdopen", descriptor); verdict > 0) {
        errno = verdict;
        return nullptr;
    }
    return real(descriptor, mode);
}

PYL_INTERPOSE int fclose(FILE* file) {
    static auto* const real = next<int(FILE*)>("fclose");
    const Verdict verdict = ask("fclose", fileno(file));
    const int result = real(file);
    return verdict > 0 ? failed(verdict) : result;
}
