#include "cimhost/http/PasswordHash.h"

#include <crypt.h>
#include <openssl/crypto.h>

#include <array>
#include <memory>
#include <stdexcept>

namespace cimhost {
namespace {

/// The hash of the password with this setting, or empty when crypt refuses either.
std::string runCrypt(const std::string& password, const std::string& setting) {
    struct Wiper {
        void operator()(crypt_data* data) const noexcept {
            OPENSSL_cleanse(data, sizeof *data);
            delete data;
        }
    };
    const std::unique_ptr<crypt_data, Wiper> data(new crypt_data{});
    if (password.find('\0') != password.npos) return {};
    const char* hash = crypt_r(password.c_str(), setting.c_str(), data.get());
    return !hash || hash[0] == '*' ? std::string{} : std::string(hash);
}

}  // namespace

std::string hashPassword(const std::string& password) {
    std::array<char, CRYPT_GENSALT_OUTPUT_SIZE> setting{};
    constexpr int size = static_cast<int>(setting.size());
    if (!crypt_gensalt_rn("$y$", 0, nullptr, 0, setting.data(), size)) {
        throw std::runtime_error("the system's crypt does not offer yescrypt");
    }
    std::string hash = runCrypt(password, setting.data());
    if (hash.empty()) throw std::runtime_error("the password is too long or holds a NUL");
    return hash;
}

bool matchesHash(const std::string& password, const std::string& hash) {
    const std::string found = runCrypt(password, hash);
    return !found.empty() && found.size() == hash.size() &&
           CRYPTO_memcmp(found.data(), hash.data(), hash.size()) == 0;
}

bool isUsableHash(const std::string& hash) noexcept {
    return hash.starts_with('$') && crypt_checksalt(hash.c_str()) == CRYPT_SALT_OK;
}

void wipe(std::string& secret) noexcept {
    secret.resize(secret.capacity());
    OPENSSL_cleanse(secret.data(), secret.size());
    secret.clear();
}

}  // namespace cimhost
