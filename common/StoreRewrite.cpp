#include "common/StoreRewrite.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace PYL {

namespace {

/// Closes; true when everything before it and the closing went well. Keeps the first errno.
bool closed(int descriptor, bool good) noexcept {
    int const error = errno;
    bool const closedWell = ::close(descriptor) == 0;
    if (!good) errno = error;
    return good && closedWell;
}

bool takeOver(int descriptor, int from) noexcept {
    struct stat wanted {};
    struct stat given {};
    if (fstat(from, &wanted) != 0 || fstat(descriptor, &given) != 0) return false;
    bool const sameOwner = wanted.st_uid == given.st_uid && wanted.st_gid == given.st_gid;
    if (!sameOwner && fchown(descriptor, wanted.st_uid, wanted.st_gid) != 0) return false;
    return fchmod(descriptor, wanted.st_mode & 07777U) == 0;
}

}  // namespace

bool writeAt(int descriptor, std::string const& text, long offset) noexcept {
    for (std::size_t done = 0; done < text.size();) {
        auto const count = pwrite(descriptor, text.data() + done, text.size() - done,
                                  offset + static_cast<long>(done));
        if (count > 0) {
            done += static_cast<std::size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            if (count == 0) errno = ENOSPC;
            return false;
        }
    }
    return true;
}

bool StoreRewrite::_writeUnfinished(std::string const& content, int openFile) noexcept {
    ::unlink(_unfinished.c_str());
    constexpr mode_t ownerOnly = 0600;
    int const descriptor = ::open(_unfinished.c_str(),
                                  O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, ownerOnly);
    if (descriptor < 0) return false;
    bool const written =
        takeOver(descriptor, openFile) && writeAt(descriptor, content, 0) && fsync(descriptor) == 0;
    return closed(descriptor, written);
}

bool StoreRewrite::_syncDirectory() noexcept {
    auto const directory = _file.substr(0, _file.rfind('/') + 1);
    int const descriptor = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return false;
    return closed(descriptor, fsync(descriptor) == 0);
}

bool StoreRewrite::keep(std::string const& content, int openFile) noexcept {
    if (_writeUnfinished(content, openFile) &&
        std::rename(_unfinished.c_str(), _copy.c_str()) == 0 && _syncDirectory())
        return true;
    int const error = errno;
    ::unlink(_unfinished.c_str());
    drop();
    errno = error;
    return false;
}

bool StoreRewrite::restore() noexcept {
    return std::rename(_copy.c_str(), _file.c_str()) == 0;
}

void StoreRewrite::drop() noexcept {
    ::unlink(_copy.c_str());
}

}  // namespace PYL
