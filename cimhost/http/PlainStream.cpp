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

std::size_t describe(std::span<const std::string_view> pieces,
                     std::array<iovec, maximumPieces>& parts) {
    assert(pieces.size() <= maximumPieces);
    std::size_t count = 0;
    for (const std::string_view piece : pieces) {
        if (!piece.empty()) parts[count++] = {const_cast<char*>(piece.data()), piece.size()};
    }
    return count;
}

/// Takes the bytes that left off the front of the message.
void advance(msghdr& message, std::size_t sent) noexcept {
    while (message.msg_iovlen > 0 && sent >= message.msg_iov->iov_len) {
        sent -= message.msg_iov->iov_len;
        ++message.msg_iov;
        --message.msg_iovlen;
    }
    if (message.msg_iovlen == 0) return;
    message.msg_iov->iov_base = static_cast<char*>(message.msg_iov->iov_base) + sent;
    message.msg_iov->iov_len -= sent;
}

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
    std::array<iovec, maximumPieces> parts;
    msghdr message{};
    message.msg_iov = parts.data();
    message.msg_iovlen = describe(pieces, parts);
    while (message.msg_iovlen > 0) {
        const ssize_t count = sendmsg(_socket, &message, MSG_NOSIGNAL);
        if (count >= 0) {
            advance(message, static_cast<std::size_t>(count));
        } else if (errno == EAGAIN) {
            _wait(POLLOUT, deadline);
        } else if (errno != EINTR) {
            throwLost(errno);
        }
    }
}

void PlainStream::endSending() noexcept { shutdown(_socket, SHUT_WR); }

}  // namespace cimhost
