#pragma once

#include "pylcommon_export.h"

#include <optional>
#include <string>
#include <string_view>

/// The host's small text files, as the kernel and the distribution provide them.
///
/// A root directory stands before every path, so that a test can set up a host of its own. Safe
/// from several threads at once.
class PYL_EXPORT HostFiles {
public:
    /// An empty root is the host itself.
    explicit HostFiles(std::string root = {});

    /// The file's text, its first 64 KiB at most; nothing when it cannot be read.
    std::optional<std::string> text(std::string_view path) const;

    /// The first line of the file without blanks around it; nothing when it cannot be read or has
    /// nothing else on that line.
    std::optional<std::string> line(std::string_view path) const;

private:
    std::string _root;
};
