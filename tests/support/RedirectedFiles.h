#pragma once

#include <filesystem>
#include <string>

/// While it lives, the library's files below "/etc/cim/" and "/tmp/PYL" are others, in a directory
/// of the test's own: the program's open, stat, lstat, chmod, rename and unlink take the C
/// library's place. One at a time.
class RedirectedFiles {
public:
    /// In a new directory below the base.
    explicit RedirectedFiles(const std::filesystem::path& base = inMemory());
    ~RedirectedFiles();
    RedirectedFiles(const RedirectedFiles&) = delete;
    RedirectedFiles& operator=(const RedirectedFiles&) = delete;

    /// Where nothing waits for a disk, on hosts that have such a place.
    static std::filesystem::path inMemory();

    /// Where such a file really is; any other path as it is.
    static std::string real(const std::string& path);
};
