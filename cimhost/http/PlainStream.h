#pragma once

#include "cimhost/http/Stream.h"

namespace cimhost {

/// A stream over a connected socket that does not block. A reply costs one system call, a request
/// two.
class PlainStream final : public Stream {
public:
    /// Borrows the socket; it must stay open for as long as the stream is used.
    explicit PlainStream(int socket) noexcept : _socket(socket) {}

    void establish(Clock::time_point) override {}
    std::size_t receive(std::span<char> buffer, Clock::time_point deadline) override;
    void send(std::span<const std::string_view> pieces, Clock::time_point deadline) override;
    std::size_t trySend(std::span<const std::string_view> pieces) override;
    bool hasPeerEnded() const noexcept override;
    void endSending() noexcept override;

private:
    void _wait(short events, Clock::time_point deadline) const;

    int _socket;
};

}  // namespace cimhost
