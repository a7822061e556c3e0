#pragma once

#include <filesystem>

namespace cimhost {

/// A copy of a shared library that can be loaded beside what was loaded from the same file before:
/// the loader would answer that one again, and bind the new code to symbols of the old. In the copy
/// the library's own symbols come first. It stands in the library's own folder, so that a RUNPATH
/// from $ORIGIN holds, or, where nothing can be written there, in a folder of its own among the
/// temporary files, and is gone with this object: once it is loaded, nothing needs its name.
class PrivateCopy {
public:
    /// Throws std::system_error.
    explicit PrivateCopy(const std::filesystem::path& library);
    ~PrivateCopy();
    PrivateCopy(const PrivateCopy&) = delete;
    PrivateCopy& operator=(const PrivateCopy&) = delete;

    const std::filesystem::path& path() const noexcept { return _path; }

private:
    void _remove() noexcept;

    std::filesystem::path _path;
    std::filesystem::path _folder;  ///< empty where the library's own has it
};

}  // namespace cimhost
