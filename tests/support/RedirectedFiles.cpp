#include "tests/support/RedirectedFiles.h"

#include "tests/common/FileCalls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace {

std::string directory;  // empty while nothing is redirected

/// Makes the call, unless the hook of this thread says that it fails.
template <typename Call>
int unlessFailing(const char* name, const std::string& path, Call call,
                  const std::string& target = {}, int flags = 0) {
    if (fileCallHook) {
        if (const Verdict verdict = askFileCallHook({name, path, target, flags, "", 0});
            verdict > 0) {
            errno = verdict;
            return -1;
        }
    }
    return static_cast<int>(call());
}

}  // namespace

RedirectedFiles::RedirectedFiles(const std::filesystem::path& base) {
    std::string name = base / "redirected-XXXXXX";
    if (!mkdtemp(name.data())) throw std::runtime_error("no scratch directory");
    std::filesystem::create_directories(name + "/etc/cim");
    std::filesystem::create_directories(name + "/tmp");
    directory = name;
}

RedirectedFiles::~RedirectedFiles() { std::filesystem::remove_all(std::exchange(directory, {})); }

std::filesystem::path RedirectedFiles::inMemory() {
    const std::filesystem::path memory = "/dev/shm";
    const bool usable = ::access(memory.c_str(), W_OK | X_OK) == 0;
    return usable ? memory : std::filesystem::temp_directory_path();
}

std::string RedirectedFiles::real(const std::string& path) {
    const bool redirected = path.starts_with("/etc/cim/") || path.starts_with("/tmp/PYL");
    return redirected && !directory.empty() ? directory + path : path;
}

#define PYL_INTERPOSE extern "C" __attribute__((visibility("default")))

PYL_INTERPOSE int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const bool creates = (flags & (O_CREAT | O_TMPFILE)) != 0;
    const auto mode = creates ? va_arg(arguments, mode_t) : mode_t{0};
    va_end(arguments);
    const auto real = RedirectedFiles::real(path);
    const auto make = [&] { return syscall(SYS_openat, AT_FDCWD, real.c_str(), flags, mode); };
    return unlessFailing("open", real, make, "", flags);
}

PYL_INTERPOSE int stat(const char* path, struct stat* facts) noexcept {
    const auto real = RedirectedFiles::real(path);
    return unlessFailing("stat", real, [&] { return ::fstatat(AT_FDCWD, real.c_str(), facts, 0); });
}

PYL_INTERPOSE int lstat(const char* path, struct stat* facts) noexcept {
    const auto real = RedirectedFiles::real(path);
    return unlessFailing("lstat", real, [&] {
        return ::fstatat(AT_FDCWD, real.c_str(), facts, AT_SYMLINK_NOFOLLOW);
    });
}

PYL_INTERPOSE int chmod(const char* path, mode_t mode) noexcept {
    const auto real = RedirectedFiles::real(path);
    return unlessFailing("chmod", real,
                         [&] { return ::fchmodat(AT_FDCWD, real.c_str(), mode, 0); });
}

PYL_INTERPOSE int rename(const char* from, const char* to) noexcept {
    const auto source = RedirectedFiles::real(from);
    const auto target = RedirectedFiles::real(to);
    const auto move = [&] {
        return ::renameat(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str());
    };
    return unlessFailing("rename", source, move, target);
}

PYL_INTERPOSE int unlink(const char* path) noexcept {
    const auto real = RedirectedFiles::real(path);
    return unlessFailing("unlink", real, [&] { return ::unlinkat(AT_FDCWD, real.c_str(), 0); });
}
