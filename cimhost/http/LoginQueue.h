#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace cimhost {

/// Where passwords wait to be proved, which takes long on purpose.
///
/// A few are proved at once, on threads of their own, so that guessing cannot take every processor
/// from those who are in. What waits is bounded: one too many and the least trusted is refused. An
/// address with wrong guesses in the last minute is trusted less than one without, and of one
/// address a connection with wrong guesses less than another. So guessers keep out guessers first.
/// The addresses of an IPv6 network of 64 bits are one, since a host may have them all.
/// Safe from several threads.
class LoginQueue {
public:
    struct Limits {
        std::size_t atOnce = 1;        ///< proofs at work
        std::size_t waiting = 32;      ///< behind them
        std::size_t ofOneAddress = 8;  ///< of those that wait
    };

    /// Names a user and a password without telling them.
    using Key = std::array<unsigned char, 32>;
    using Proof = std::function<bool()>;
    enum class Outcome { proven, wrong, refused };

    explicit LoginQueue(const Limits& limits);
    /// Ends; proofs at work are left to themselves.
    ~LoginQueue();
    LoginQueue(const LoginQueue&) = delete;
    LoginQueue& operator=(const LoginQueue&) = delete;

    /// Waits for the proof, or joins one with this key that waits or is at work. `peer` is
    /// address:port. The proof may run on when this returns, and owns what it uses.
    Outcome judge(const Key& key, const std::string& peer, Proof proof);

    /// Refuses all who wait, those whose proof is at work included, and all later ones.
    void end() noexcept;

private:
    class Shared;
    std::shared_ptr<Shared> _shared;
};

}  // namespace cimhost
