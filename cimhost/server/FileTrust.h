#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace cimhost {

/// What a file is used as.
enum class FileUse {
    passwords,     ///< hashes, which others must neither know nor change
    privateKey,    ///< which others must not know; its group may
    state,         ///< what the server itself keeps
    project,       ///< names registrations and modules
    registration,  ///< names the code that is loaded
    module,        ///< is the code
    moduleFolder,  ///< where code is looked for
};

/// What speaks against a file, in a sentence that names it.
struct Distrust {
    bool isRefusal;  ///< else a warning
    std::string reason;
};

/// Whether somebody whom this process does not trust can read or change the file. Trusted are root,
/// the user of the process, and the one who became root by sudo. Nothing for a file that is not
/// there.
///
/// Passwords, key and state belong to one of them, and their modes keep all others out. Of
/// registrations, modules and folders a process of root's alone asks, and of the folders that the
/// others are in: who can write there can have anything run as root. Everybody and a group are
/// refused, but for the group of its owner alone, which has the owner's number; another owner is a
/// warning, for a tree that root builds for somebody. A folder with the sticky bit is fine.
std::optional<Distrust> distrustOf(const std::filesystem::path& file, FileUse use);

}  // namespace cimhost
