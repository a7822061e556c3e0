#include "tests/common/FileCalls.h"

#include <dlfcn.h>
#include <fcntl.h>
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
    auto const link = "/proc/self/fd/" + std::to_string(descriptor);
    auto const length = readlink(link.c_str(), path.data(), path.size());
    return length < 0 ? "" : std::string(path.data(), static_cast<std::size_t>(length));
}

Verdict ask(char const* name, int descriptor, std::string_view data = {}, long offset = 0) {
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
Function* next(char const* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

#define PYL_INTERPOSE extern "C" __attribute__((visibility("default")))

PYL_INTERPOSE ssize_t pread(int descriptor, void* bytes, size_t size, off_t offset) {
    Verdict const verdict = ask("pread", descriptor);
    if (verdict > 0) return failed(verdict);
    return syscall(SYS_pread64, descriptor, bytes, transferred(verdict, size), offset);
}

PYL_INTERPOSE ssize_t pwrite(int descriptor, void const* bytes, size_t size, off_t offset) {
    Verdict const verdict =
        ask("pwrite", descriptor, {static_cast<char const*>(bytes), size}, offset);
    if (verdict > 0) return failed(verdict);
    return syscall(SYS_pwrite64, descriptor, bytes, transferred(verdict, size), offset);
}

PYL_INTERPOSE off_t lseek(int descriptor, off_t offset, int from) noexcept {
    Verdict const verdict = ask("lseek", descriptor);
    return verdict > 0 ? failed(verdict) : syscall(SYS_lseek, descriptor, offset, from);
}

PYL_INTERPOSE int fstat(int descriptor, struct stat* facts) noexcept {
    Verdict const verdict = ask("fstat", descriptor);
    return verdict > 0 ? failed(verdict) : ::fstatat(descriptor, "", facts, AT_EMPTY_PATH);
}

PYL_INTERPOSE int fchmod(int descriptor, mode_t mode) noexcept {
    Verdict const verdict = ask("fchmod", descriptor);
    return verdict > 0 ? failed(verdict) : static_cast<int>(syscall(SYS_fchmod, descriptor, mode));
}

PYL_INTERPOSE int fchown(int descriptor, uid_t owner, gid_t group) noexcept {
    Verdict const verdict = ask("fchown", descriptor);
    return verdict > 0 ? failed(verdict)
                       : static_cast<int>(syscall(SYS_fchown, descriptor, owner, group));
}

/// Waits for no disk: the tests read files only.
PYL_INTERPOSE int fsync(int descriptor) {
    Verdict const verdict = ask("fsync", descriptor);
    return verdict > 0 ? failed(verdict) : 0;
}

PYL_INTERPOSE int close(int descriptor) {
    Verdict const verdict = ask("close", descriptor);
    auto const result = static_cast<int>(syscall(SYS_close, descriptor));
    return verdict > 0 ? failed(verdict) : result;
}

PYL_INTERPOSE int fcntl(int descriptor, int command, ...) {
    va_list arguments;
    va_start(arguments, command);
    auto* const argument = va_arg(arguments, void*);
    va_end(arguments);
    Verdict const verdict = ask("fcntl", descriptor);
    return verdict > 0 ? failed(verdict)
                       : static_cast<int>(syscall(SYS_fcntl, descriptor, command, argument));
}

PYL_INTERPOSE int dup3(int from, int to, int flags) noexcept {
    Verdict const verdict = ask("dup3", from);
    return verdict > 0 ? failed(verdict) : static_cast<int>(syscall(SYS_dup3, from, to, flags));
}

PYL_INTERPOSE FILE* fdopen(int descriptor, char const* mode) noexcept {
    static auto* const real = next<FILE*(int, char const*)>("fdopen");
    if (Verdict const verdict = ask("fdopen", descriptor); verdict > 0) {
        errno = verdict;
        return nullptr;
    }
    return real(descriptor, mode);
}

PYL_INTERPOSE int fclose(FILE* file) {
    static auto* const real = next<int(FILE*)>("fclose");
    Verdict const verdict = ask("fclose", fileno(file));
    int const result = real(file);
    return verdict > 0 ? failed(verdict) : result;
}
