#include "cimhost/http/BasicAuth.h"

#include "cimhost/http/HttpRequest.h"
#include "cimhost/http/PasswordHash.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/rand.h>

#include <algorithm>
#include <stdexcept>
#include <thread>
#include <utility>

namespace cimhost {
namespace {

bool isBase64(std::string_view text) noexcept {
    if (text.empty() || text.size() % 4 != 0) return false;
    for (int count = 0; count < 2 && text.ends_with('='); ++count) text.remove_suffix(1);
    return std::ranges::all_of(text, [](char character) {
        return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'z') ||
               (character >= 'A' && character <= 'Z') || character == '+' || character == '/';
    });
}

/// OpenSSL decodes but does not judge: padding comes out as zero bytes.
std::optional<std::string> decodeBase64(std::string_view text) {
    if (!isBase64(text)) return std::nullopt;
    std::string decoded(text.size() / 4 * 3, '\0');
    const int size = EVP_DecodeBlock(reinterpret_cast<unsigned char*>(decoded.data()),
                                     reinterpret_cast<const unsigned char*>(text.data()),
                                     static_cast<int>(text.size()));
    if (size < 0) return std::nullopt;
    const auto padding = static_cast<std::size_t>(std::count(text.end() - 2, text.end(), '='));
    decoded.resize(static_cast<std::size_t>(size) - padding);
    return decoded;
}

/// Is wiped wherever a copy of it ends.
struct Secret {
    std::string text;
    explicit Secret(std::string secret) : text(std::move(secret)) {}
    Secret(const Secret&) = default;
    Secret& operator=(const Secret&) = delete;
    ~Secret() { wipe(text); }
};

bool isControl(char character) noexcept {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7F;
}

}  // namespace

std::optional<Credentials> parseBasic(std::string_view authorization) {
    const std::size_t blank = authorization.find(' ');
    if (blank == authorization.npos || !equalTokens(authorization.substr(0, blank), "Basic")) {
        return std::nullopt;
    }
    authorization.remove_prefix(
        std::min(authorization.find_first_not_of(' ', blank), authorization.size()));
    std::optional<std::string> decoded = decodeBase64(authorization);
    if (!decoded || std::ranges::any_of(*decoded, isControl)) return std::nullopt;
    const std::size_t colon = decoded->find(':');
    if (colon == decoded->npos || colon == 0) return std::nullopt;
    Credentials credentials{decoded->substr(0, colon), decoded->substr(colon + 1)};
    wipe(*decoded);
    return credentials;
}

BasicAuth::BasicAuth(PasswordFile file)
    : _file(std::move(file)),
      _queue({.atOnce = std::clamp<std::size_t>(std::thread::hardware_concurrency() / 2, 1, 4)}) {
    if (RAND_bytes(_key.data(), static_cast<int>(_key.size())) != 1) {
        throw std::runtime_error("the system gives no random bytes");
    }
}

std::optional<std::string_view> BasicAuth::authenticate(std::string_view authorization,
                                                        const std::string& peer) {
    std::optional<Credentials> credentials = parseBasic(authorization);
    const auto entry =
        credentials ? _file.entries().find(credentials->user) : _file.entries().end();
    if (!credentials || _file.entries().empty()) return std::string_view{};
    const Digest digest = _digest(*credentials);
    auto outcome = LoginQueue::Outcome::proven;
    if (!_isRemembered(credentials->user, digest)) {
        outcome = _queue.judge(digest, peer, _proofOf(*credentials));
        if (outcome == LoginQueue::Outcome::proven) _remember(credentials->user, digest);
    }
    wipe(credentials->password);
    if (outcome == LoginQueue::Outcome::refused) return std::nullopt;
    return outcome == LoginQueue::Outcome::proven ? std::string_view(entry->first)
                                                  : std::string_view{};
}

void BasicAuth::_remember(const std::string& user, const Digest& digest) {
    const std::lock_guard lock(_mutex);
    _remembered[user] = digest;
}

BasicAuth::Digest BasicAuth::_digest(const Credentials& credentials) const {
    std::string text = credentials.user + ":" + credentials.password;  // no colon in a user's name
    Digest digest{};
    unsigned size = 0;
    HMAC(EVP_sha256(), _key.data(), static_cast<int>(_key.size()),
         reinterpret_cast<const unsigned char*>(text.data()), text.size(), digest.data(), &size);
    wipe(text);
    if (size != digest.size()) throw std::runtime_error("SHA-256 is not available");
    return digest;
}

bool BasicAuth::_isRemembered(const std::string& user, const Digest& digest) const {
    const std::shared_lock lock(_mutex);
    const auto entry = _remembered.find(user);
    return entry != _remembered.end() &&
           CRYPTO_memcmp(entry->second.data(), digest.data(), digest.size()) == 0;
}

LoginQueue::Proof BasicAuth::_proofOf(Credentials credentials) const {
    const auto& entries = _file.entries();
    const auto entry = entries.find(credentials.user);
    const bool isKnown = entry != entries.end();
    // Somebody's hash stands in for that of a stranger, for the time it takes.
    const std::string& hash = isKnown ? entry->second : entries.begin()->second;
    return [secret = Secret{std::move(credentials.password)}, hash, isKnown] {
        return matchesHash(secret.text, hash) && isKnown;
    };
}

}  // namespace cimhost
