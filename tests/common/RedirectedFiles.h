#pragma once

#include <filesystem>
#include <string>

/// While it lives, the library's files below "/etc/cim/" and "/tmp/PYL" are others, in a directory
/// of the test's own: the program's open, stat, chmod, rename and unlink take the C library's
/// place. One at a time.
class RedirectedFiles {
public:
    /// In a new directory below the base.
    explicit RedirectedFiles(std::filesystem::path const& base = inMemory());
    ~RedirectedFiles();
    RedirectedFiles(RedirectedFiles const&) = delete;
    RedirectedFiles& operator=(RedirectedFiles const&) = delete;

    /// Where nothing waits for a disk, on hosts that have such a place.
    static std::filesystem::path inMemory();

    /// Where such a file really is; any other path as it is.
    static std::string real(std::string const& path);
};
