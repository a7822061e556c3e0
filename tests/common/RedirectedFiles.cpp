#include "tests/common/RedirectedFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace {

std::string directory;  // empty while nothing is redirected

}  // namespace

RedirectedFiles::RedirectedFiles() {
    std::string name = std::filesystem::temp_directory_path() / "redirected-XXXXXX";
    if (!mkdtemp(name.data())) throw std::runtime_error("no scratch directory");
    std::filesystem::create_directories(name + "/etc/cim");
    std::filesystem::create_directories(name + "/tmp");
    directory = name;
}

RedirectedFiles::~RedirectedFiles() {
    std::filesystem::remove_all(std::exchange(directory, {}));
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
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, real.c_str(), flags, mode));
}

PYL_INTERPOSE int stat(char const* path, struct stat* facts) noexcept {
    return ::fstatat(AT_FDCWD, RedirectedFiles::real(path).c_str(), facts, 0);
}

PYL_INTERPOSE int chmod(char const* path, mode_t mode) noexcept {
    return ::fchmodat(AT_FDCWD, RedirectedFiles::real(path).c_str(), mode, 0);
}

PYL_INTERPOSE int rename(char const* from, char const* to) noexcept {
    return ::renameat(AT_FDCWD, RedirectedFiles::real(from).c_str(), AT_FDCWD,
                      RedirectedFiles::real(to).c_str());
}

PYL_INTERPOSE int unlink(char const* path) noexcept {
    return ::unlinkat(AT_FDCWD, RedirectedFiles::real(path).c_str(), 0);
}
