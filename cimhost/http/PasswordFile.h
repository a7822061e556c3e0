#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace cimhost {

/// Users and their password hashes, one `user:hash` a line; empty lines and lines that begin with
/// '#' are skipped. A value: what it holds changes only through it.
class PasswordFile {
public:
    /// No users.
    PasswordFile() = default;

    /// Throws std::runtime_error that names the file, and the line if one is wrong: a user twice,
    /// no hash, a weak hash. A file that others may read or change is refused.
    explicit PasswordFile(const std::filesystem::path& file);

    /// By user name, which is compared exactly.
    const std::map<std::string, std::string, std::less<>>& entries() const noexcept {
        return _entries;
    }

    /// Adds the user, or replaces the hash. Throws std::runtime_error for a name that cannot be
    /// one.
    void set(const std::string& user, const std::string& hash);

    /// Replaces the file as a whole, readable by its owner only; comments are not kept. A failure,
    /// which is a std::system_error that names the file, leaves the file as it was.
    void save(const std::filesystem::path& file) const;

private:
    void _readLine(std::string_view line);

    std::map<std::string, std::string, std::less<>> _entries;
};

/// True for a name that Basic authentication can carry: no colon, no control character, not empty.
bool isUserName(std::string_view name) noexcept;

}  // namespace cimhost
