// The switches of PYLUtil that root sets by marker files.

#include "common/PYLUtil.h"

#include <sys/stat.h>
#include <unistd.h>

namespace PYL {

namespace {

bool isThere(const char* path) noexcept {
    struct stat facts {};
    return ::lstat(path, &facts) == 0;
}

/// A trigger for one time: the marker goes, whoever put it there, and however the check came out.
/// One that comes after the check is none that was checked, and stays for the next time.
bool takeMarker(const char* path) noexcept {
    bool isSet = PYLUtil::FileExistsAsRootPerms(path);
    if (!isSet) {
        if (!isThere(path)) return false;
        isSet = PYLUtil::FileExistsAsRootPerms(path);  // it may have come in between
    }
    ::unlink(path);
    return isSet;
}

}  // namespace

bool PYLUtil::FileExistsAsRootPerms(const char* path) noexcept {
    struct stat facts {};
    return path && ::stat(path, &facts) == 0 && facts.st_uid == 0;
}

bool PYLUtil::HeartBeatIndicationsEnabled() noexcept {
    return FileExistsAsRootPerms("/tmp/PYL.heartbeats");
}

bool PYLUtil::TestIndicationsEnabled() noexcept { return takeMarker("/tmp/PYL.test"); }

bool PYLUtil::TimeIntervalConfigured() noexcept { return takeMarker("/tmp/PYL.EVConf"); }

// Without the dot of the others: administrators' scripts know it by this name.
bool PYLUtil::PerfmonEnabled() noexcept { return FileExistsAsRootPerms("/tmp/PYLPerfmon"); }

}  // namespace PYL
