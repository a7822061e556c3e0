#include "cimhost/http/PlainStream.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <cerrno>
#include <system_error>

namespace cimhost {
namespace {

constexpr std::size_t maximumPieces = 8;

[[noreturn]] void throwLost(int error) {
    throw StreamError(StreamError::Kind::lost, std::generic_category().message(error));
}

/// The milliseconds left, rounded up so that a poll does not end before the deadline.
int remaining(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) throw StreamError(StreamError::Kind::timeout, "the peer took too long");
    return static_cast<int>(std::min<long long>(left, 1'000'000));
}

/// Pieces on their way into a socket.
class Outgoing {
public:
    explicit Outgoing(std::span<const std::string_view> pieces) {
        assert(pieces.size() <= maximumPieces);
        _header.msg_iov = _parts.data();
        for (const std::string_view piece : pieces) {
            if (piece.empty()) continue;
            _parts[_header.msg_iovlen++] = {const_cast<char*>(piece.data()), piece.size()};
        }
    }
    Outgoing(const Outgoing&) = delete;
    Outgoing& operator=(const Outgoing&) = delete;

    bool isEmpty() const noexcept { return _header.msg_iovlen == 0; }

    /// How many bytes the socket took; 0 when it is full. Of a message that is not empty.
    std::size_t send(int socket) {
        for (;;) {
            const ssize_t count = sendmsg(socket, &_header, MSG_NOSIGNAL);
            if (count >= 0) {
                _advance(static_cast<std::size_t>(count));
                return static_cast<std::size_t>(count);
            }
            if (errno == EAGAIN) return 0;
            if (errno != EINTR) throwLost(errno);
        }
    }

private:
    /// Takes the bytes that left off the front.
    void _advance(std::size_t sent) noexcept {
        while (_header.msg_iovlen > 0 && sent >= _header.msg_iov->iov_len) {
            sent -= _header.msg_iov->iov_len;
            ++_header.msg_iov;
            --_header.msg_iovlen;
        }
        if (isEmpty()) return;
        _header.msg_iov->iov_base = static_cast<char*>(_header.msg_iov->iov_base) + sent;
        _header.msg_iov->iov_len -= sent;
    }

    std::array<iovec, maximumPieces> _parts;
    msghdr _header{};
};

}  // namespace

void PlainStream::_wait(short events, Clock::time_point deadline) const {
    pollfd entry{_socket, events, 0};
    for (;;) {
        const int ready = poll(&entry, 1, remaining(deadline));
        if (ready > 0) return;
        if (ready < 0 && errno != EINTR) throwLost(errno);
    }
}

std::size_t PlainStream::receive(std::span<char> buffer, Clock::time_point deadline) {
    for (;;) {
        _wait(POLLIN, deadline);
        const ssize_t count = recv(_socket, buffer.data(), buffer.size(), 0);
        if (count >= 0) return static_cast<std::size_t>(count);
        if (errno != EINTR && errno != EAGAIN) throwLost(errno);
    }
}

void PlainStream::send(std::span<const std::string_view> pieces, Clock::time_point deadline) {
    Outgoing message(pieces);
    while (!message.isEmpty()) {
        if (message.send(_socket) == 0) _wait(POLLOUT, deadline);
    }
}

std::size_t PlainStream::trySend(std::span<const std::string_view> pieces) {
    Outgoing message(pieces);
    std::size_t sent = 0;
    while (!message.isEmpty()) {
        const std::size_t count = message.send(_socket);
        if (count == 0) break;
        sent += count;
    }
    return sent;
}

bool PlainStream::hasPeerEnded() const noexcept {
    pollfd entry{_socket, POLLRDHUP, 0};
    return poll(&entry, 1, 0) > 0;
}

void PlainStream::endSending() noexcept { shutdown(_socket, SHUT_WR); }

}  // namespace cimhost
