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

/// What speaks against the use of a file, in a sentence that names what is wrong: somebody whom
/// this process does not trust can read or change it. Trusted are root, the user of the process,
/// the one who became root by sudo, and who owns this program or a folder on the way to it, since
/// such a user can have another program run in its place; for the same reason those folders are not
/// judged themselves. Of a file that is not there, only the way to it is judged.
///
/// Passwords, key and state belong to one of them, and their modes keep all others out. Of
/// registrations, modules and folders a process of root's alone asks, and of every folder and link
/// on the way from the root to any of the files: who can write there can have anything run as root.
/// They belong to somebody trusted, and neither everybody nor a group may write them, but for
/// root's group, and the group of the owner alone, which has the owner's number. A folder with the
/// sticky bit is fine on the way, but not as one where modules are looked for: others could put
/// those there that are missing.
std::optional<std::string> distrustOf(const std::filesystem::path& file, FileUse use);

}  // namespace cimhost
