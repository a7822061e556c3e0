#pragma once

#include "cimhost/http/HttpHandler.h"
#include "cimhost/http/LoginQueue.h"
#include "cimhost/http/PasswordFile.h"

#include <array>
#include <map>
#include <optional>
#include <shared_mutex>
#include <string>
#include <string_view>

namespace cimhost {

struct Credentials {
    std::string user;
    std::string password;
};

/// Reads an Authorization header of the Basic scheme (RFC 7617); nullopt for all that is none,
/// control characters in name or password included.
std::optional<Credentials> parseBasic(std::string_view authorization);

/// Checks Basic credentials against a password file.
///
/// What a slow hash has proved once is remembered by a keyed digest, so that a client's next
/// requests cost microseconds. Slow hashes wait in a LoginQueue, half as many at work as there are
/// processors, 4 at most; what that refuses is not judged. An unknown user costs as much time as a
/// wrong password. Safe from several threads.
class BasicAuth final : public Authenticator {
public:
    explicit BasicAuth(PasswordFile file);
    std::optional<std::string_view> authenticate(std::string_view authorization,
                                                 const std::string& peer) override;

    /// From now on nothing that takes a slow hash is judged; nobody waits for one any more.
    void end() noexcept { _queue.end(); }

private:
    using Digest = std::array<unsigned char, 32>;

    Digest _digest(const Credentials& credentials) const;
    bool _isRemembered(const std::string& user, const Digest& digest) const;
    void _remember(const std::string& user, const Digest& digest);
    LoginQueue::Proof _proofOf(Credentials credentials) const;

    PasswordFile _file;
    Digest _key{};
    mutable std::shared_mutex _mutex;  ///< guards _remembered
    std::map<std::string, Digest, std::less<>> _remembered;
    LoginQueue _queue;
};

}  // namespace cimhost
