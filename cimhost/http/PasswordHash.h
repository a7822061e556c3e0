#pragma once

#include <string>

namespace cimhost {

/// A salted yescrypt hash of the password, as crypt(5) describes. Slow on purpose.
/// Throws std::runtime_error when the password is longer than crypt takes or holds a NUL.
std::string hashPassword(const std::string& password);

/// True when the hash, of any method that crypt(5) does not call weak, is the password's.
bool matchesHash(const std::string& password, const std::string& hash);

/// True when the hash is of a method that the system's crypt supports and does not call weak.
bool isUsableHash(const std::string& hash) noexcept;

/// Leaves nothing of the secret in memory that this string owns.
void wipe(std::string& secret) noexcept;

}  // namespace cimhost
