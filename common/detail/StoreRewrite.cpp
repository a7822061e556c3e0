#include "common/detail/StoreRewrite.h"

#include <fcntl.h>
#include <sys/file.h>
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

/// Locks the open file, without waiting, and sees that it is still the one under this path: it may
/// have been renamed or deleted before the lock was ours. False with errno where it is not; it is
/// EWOULDBLOCK where somebody else holds the lock.
bool lockedAs(const std::string& path, int descriptor) noexcept {
    // A file system without locks is used without them.
    if (flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return false;
    struct stat locked {};
    struct stat named {};
    if (fstat(descriptor, &locked) != 0 || stat(path.c_str(), &named) != 0) return false;
    if (locked.st_ino == named.st_ino && locked.st_dev == named.st_dev) return true;
    errno = EWOULDBLOCK;
    return false;
}

/// Opens and locks a file that an earlier rewrite left. Below 0 as lockedAs() says, or when there
/// is none.
int openLocked(const std::string& path) noexcept {
    // Neither a pipe nor a link is ours.
    const int descriptor = openFile(path, O_RDONLY | O_NONBLOCK | O_NOFOLLOW);
    if (descriptor < 0 || lockedAs(path, descriptor)) return descriptor;
    closed(descriptor, false);
    return -1;
}

/// Deletes what an earlier rewrite left under this path. False when one that is running holds it,
/// and when it could not be deleted.
bool cleared(const std::string& path) noexcept {
    const int descriptor = openLocked(path);
    if (descriptor < 0) return errno == ENOENT;
    return closed(descriptor, ::unlink(path.c_str()) == 0);
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

StoreRewrite::~StoreRewrite() {
    if (_locked >= 0) ::close(_locked);
}

bool StoreRewrite::_place(const std::string& content, int openFile) noexcept {
    _locked = PYL::openFile(_unfinished, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW);
    if (_locked < 0 || !lockedAs(_unfinished, _locked)) return false;
    if (takeOver(_locked, openFile) && writeAt(_locked, content, 0) && synced(_locked) &&
        std::rename(_unfinished.c_str(), _copy.c_str()) == 0) {
        return true;
    }
    const int error = errno;
    ::unlink(_unfinished.c_str());
    errno = error;
    return false;
}

bool StoreRewrite::_syncDirectory() noexcept {
    const int descriptor = openFile(_directory, O_RDONLY | O_DIRECTORY);
    return descriptor >= 0 && closed(descriptor, synced(descriptor));
}

bool StoreRewrite::keep(const std::string& content, int openFile) noexcept {
    // A copy that a killed rewrite left would undo this one.
    if (!cleared(_unfinished) || !cleared(_copy) || !_place(content, openFile)) return false;
    if (_syncDirectory()) return true;
    const int error = errno;
    drop();
    errno = error;
    return false;
}

bool StoreRewrite::restore() noexcept {
    if (_locked < 0) _locked = openLocked(_copy);
    return _locked >= 0 && std::rename(_copy.c_str(), _file.c_str()) == 0;
}

bool StoreRewrite::drop() noexcept {
    // Left in place it would undo what is stored from now on; under the other name nobody takes it.
    return ::unlink(_copy.c_str()) == 0 || errno == ENOENT ||
           std::rename(_copy.c_str(), _unfinished.c_str()) == 0;
}

}  // namespace PYL
