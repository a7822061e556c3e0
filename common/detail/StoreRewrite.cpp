#include "common/detail/StoreRewrite.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace PYL {

namespace {

template <typename Call>
auto uninterrupted(Call call) noexcept {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

/// Closes; true when everything before it and the closing went well. Keeps the first errno.
bool closed(int descriptor, bool good) noexcept {
    const int error = errno;
    // An interrupted close(2) has closed all the same.
    const bool closedWell = ::close(descriptor) == 0 || errno == EINTR;
    if (!good) errno = error;
    return good && closedWell;
}

bool synced(int descriptor) noexcept {
    return uninterrupted([&] { return fsync(descriptor); }) == 0;
}

bool takeOver(int descriptor, int from) noexcept {
    struct stat wanted {};
    struct stat given {};
    if (fstat(from, &wanted) != 0 || fstat(descriptor, &given) != 0) return false;
    const bool sameOwner = wanted.st_uid == given.st_uid && wanted.st_gid == given.st_gid;
    if (!sameOwner && fchown(descriptor, wanted.st_uid, wanted.st_gid) != 0) return false;
    return fchmod(descriptor, wanted.st_mode & 07777U) == 0;
}

}  // namespace

int openFile(const std::string& path, int flags) noexcept {
    constexpr mode_t ownerOnly = 0600;
    return uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, ownerOnly); });
}

bool writeAt(int descriptor, const std::string& text, long offset) noexcept {
    for (std::size_t done = 0; done < text.size();) {
        const auto count = uninterrupted([&] {
            return pwrite(descriptor, text.data() + done, text.size() - done,
                          offset + static_cast<long>(done));
        });
        if (count == 0) errno = ENOSPC;
        if (count <= 0) return false;
        done += static_cast<std::size_t>(count);
    }
    return true;
}

bool writeAndClose(int descriptor, const std::string& text) noexcept {
    return closed(descriptor, writeAt(descriptor, text, 0) && synced(descriptor));
}

bool StoreRewrite::_writeUnfinished(const std::string& content, int openFile) noexcept {
    ::unlink(_unfinished.c_str());
    const int descriptor = PYL::openFile(_unfinished, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW);
    if (descriptor < 0) return false;
    if (!takeOver(descriptor, openFile)) return closed(descriptor, false);
    return writeAndClose(descriptor, content);
}

bool StoreRewrite::_syncDirectory() noexcept {
    const int descriptor = openFile(_directory, O_RDONLY | O_DIRECTORY);
    return descriptor >= 0 && closed(descriptor, synced(descriptor));
}

bool StoreRewrite::keep(const std::string& content, int openFile) noexcept {
    if (_writeUnfinished(content, openFile) &&
        std::rename(_unfinished.c_str(), _copy.c_str()) == 0 && _syncDirectory()) {
        return true;
    }
    const int error = errno;
    ::unlink(_unfinished.c_str());
    drop();
    errno = error;
    return false;
}

bool StoreRewrite::restore() noexcept {
    return std::rename(_copy.c_str(), _file.c_str()) == 0;
}

bool StoreRewrite::drop() noexcept {
    // Left in place it would undo what is stored from now on; under the other name nobody takes it.
    return ::unlink(_copy.c_str()) == 0 || errno == ENOENT ||
           std::rename(_copy.c_str(), _unfinished.c_str()) == 0;
}

}  // namespace PYL
