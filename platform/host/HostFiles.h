#pragma once

#include "pylcommon_export.h"

#include <optional>
#include <string>
#include <string_view>

/// @{
/// The directory that stands before every path of the host where no other is given: empty, the host
/// itself, unless a test has set one up. Not to be set while another thread reads.
PYL_EXPORT const std::string& hostRoot() noexcept;
PYL_EXPORT void setHostRoot(std::string root);
/// @}

/// The host's small text files, as the kernel and the distribution provide them.
///
/// A root directory stands before every path, so that a test can set up a host of its own. Safe
/// from several threads at once.
class PYL_EXPORT HostFiles {
public:
    /// Reads below this directory.
    explicit HostFiles(std::string root = hostRoot());

    /// The file's text, its first 64 KiB at most; nothing when it cannot be read.
    std::optional<std::string> text(std::string_view path) const;

    /// The first line of the file without blanks around it; nothing when it cannot be read or has
    /// nothing else on that line.
    std::optional<std::string> line(std::string_view path) const;

private:
    std::string _root;
};
