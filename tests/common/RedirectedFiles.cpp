#include "tests/common/RedirectedFiles.h"

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

#include "tests/common/FileCalls.h"

namespace {

std::string directory;  // empty while nothing is redirected

/// Makes the call, unless the hook of this thread says that it fails.
template <typename Call>
int unlessFailing(char const* name, std::string const& path, Call call,
                  std::string const& target = {}, int flags = 0) {
    if (fileCallHook) {
        if (Verdict const verdict = askFileCallHook({name, path, target, flags, "", 0});
            verdict > 0) {
            errno = verdict;
            return -1;
        }
    }
    return static_cast<int>(call());
}

}  // namespace

RedirectedFiles::RedirectedFiles(std::filesystem::path const& base) {
    std::string name = base / "redirected-XXXXXX";
    if (!mkdtemp(name.data())) throw std::runtime_error("no scratch directory");
    std::filesystem::create_directories(name + "/etc/cim");
    std::filesystem::create_directories(name + "/tmp");
    directory = name;
}

RedirectedFiles::~RedirectedFiles() {
    std::filesystem::remove_all(std::exchange(directory, {}));
}

std::filesystem::path RedirectedFiles::inMemory() {
    std::filesystem::path const memory = "/dev/shm";
    bool const usable = ::access(memory.c_str(), W_OK | X_OK) == 0;
    return usable ? memory : std::filesystem::temp_directory_path();
}

std::string RedirectedFiles::real(std::string const& path) {
    bool const redirected = path.starts_with("/etc/cim/") || path.starts_with("/tmp/PYL");
    return redirected && !directory.empty() ? directory + path : path;
}

#define PYL_INTERPOSE extern "C" __attribute__((visibility("default")))

PYL_INTERPOSE int open(char const* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    bool const creates = (flags & (O_CREAT | O_TMPFILE)) != 0;
    auto const mode = creates ? va_arg(arguments, mode_t) : mode_t{0};
    va_end(arguments);
    auto const real = RedirectedFiles::real(path);
    auto const make = [&] { return syscall(SYS_openat, AT_FDCWD, real.c_str(), flags, mode); };
    return unlessFailing("open", real, make, "", flags);
}

PYL_INTERPOSE int stat(char const* path, struct stat* facts) noexcept {
    auto const real = RedirectedFiles::real(path);
    return unlessFailing("stat", real, [&] { return ::fstatat(AT_FDCWD, real.c_str(), facts, 0); });
}

PYL_INTERPOSE int chmod(char const* path, mode_t mode) noexcept {
    auto const real = RedirectedFiles::real(path);
    return unlessFailing("chmod", real,
                         [&] { return ::fchmodat(AT_FDCWD, real.c_str(), mode, 0); });
}

PYL_INTERPOSE int rename(char const* from, char const* to) noexcept {
    auto const source = RedirectedFiles::real(from);
    auto const target = RedirectedFiles::real(to);
    auto const move = [&] {
        return ::renameat(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str());
    };
    return unlessFailing("rename", source, move, target);
}

PYL_INTERPOSE int unlink(char const* path) noexcept {
    auto const real = RedirectedFiles::real(path);
    return unlessFailing("unlink", real, [&] { return ::unlinkat(AT_FDCWD, real.c_str(), 0); });
}
