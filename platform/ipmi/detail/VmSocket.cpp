#include "platform/ipmi/detail/BmcWays.h"
#include "platform/ipmi/detail/VmCodec.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <new>

namespace ipmi {

namespace {

constexpr std::size_t longestRequest = 240;
constexpr std::chrono::seconds connectTime{5};
constexpr std::chrono::milliseconds leaveTime{500};

class VmSocket final : public BmcTransport {
public:
    explicit VmSocket(int descriptor) noexcept : _descriptor(descriptor) {}
    ~VmSocket() override {
        _leave();
        ::close(_descriptor);
    }

    int exchange(const IpmiRequest& request, IpmiResponse& response,
                 std::chrono::steady_clock::time_point deadline) noexcept override;
    int send(const std::vector<std::uint8_t>& bytes,
             std::chrono::steady_clock::time_point deadline) noexcept;

private:
    void _leave() noexcept;
    int _receive(std::chrono::steady_clock::time_point deadline) noexcept;

    int _descriptor;
    std::uint8_t _sequence = 0;
    VmFrames _frames;
    std::array<std::uint8_t, 512> _buffer{};
    std::size_t _at = 0;
    std::size_t _size = 0;
};

int VmSocket::send(const std::vector<std::uint8_t>& bytes,
                   std::chrono::steady_clock::time_point deadline) noexcept {
    for (std::size_t sent = 0; sent < bytes.size();) {
        const auto count =
            ::send(_descriptor, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count >= 0) {
            sent += static_cast<std::size_t>(count);
        } else if (errno == EAGAIN) {
            if (const int status = waitFor(_descriptor, POLLOUT, deadline)) return status;
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

/// The simulator serves one client at a time, and turns away the next one that comes before it has
/// noticed that this one has left: so this one waits for it to hang up, too.
void VmSocket::_leave() noexcept {
    using std::chrono::steady_clock;
    ::shutdown(_descriptor, SHUT_WR);
    const auto deadline = steady_clock::now() + leaveTime;
    while (steady_clock::now() < deadline && _receive(deadline) == 0) {
    }
}

/// Fills the empty buffer.
int VmSocket::_receive(std::chrono::steady_clock::time_point deadline) noexcept {
    for (;;) {
        if (const int status = waitFor(_descriptor, POLLIN, deadline)) return status;
        const auto count = ::recv(_descriptor, _buffer.data(), _buffer.size(), 0);
        if (count > 0) {
            _at = 0;
            _size = static_cast<std::size_t>(count);
            return 0;
        }
        if (count == 0) return ECONNRESET;
        if (errno != EINTR && errno != EAGAIN) return errno;
    }
}

int VmSocket::exchange(const IpmiRequest& request, IpmiResponse& response,
                       std::chrono::steady_clock::time_point deadline) noexcept try {
    if (request.data.size() > longestRequest) return EMSGSIZE;
    ++_sequence;
    if (const int status = send(encodeRequest(request, _sequence), deadline)) return status;
    for (;;) {
        for (; _at < _size; ++_at) {
            const auto found = _frames.take(_buffer[_at]);
            if (found == VmFrames::Found::tooLong) return EPROTO;
            if (found != VmFrames::Found::message) continue;
            if (auto decoded = decodeResponse(_frames.frame(), request, _sequence)) {
                ++_at;
                response = std::move(*decoded);
                return 0;
            }
        }
        if (const int status = _receive(deadline)) return status;
    }
} catch (const std::bad_alloc&) {
    return ENOMEM;
}

int connectTo(const addrinfo& address, std::chrono::steady_clock::time_point deadline,
              int& descriptor) noexcept {
    descriptor = ::socket(address.ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0) return errno;
    int status = ::connect(descriptor, address.ai_addr, address.ai_addrlen) == 0 ? 0 : errno;
    if (status == EINPROGRESS) {
        status = waitFor(descriptor, POLLOUT, deadline);
        int result = 0;
        socklen_t size = sizeof result;
        if (status == 0 && ::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &result, &size) != 0) {
            status = errno;
        }
        if (status == 0) status = result;
    }
    if (status != 0) ::close(descriptor);
    return status;
}

int connectToAny(const addrinfo* addresses, std::chrono::steady_clock::time_point deadline,
                 int& descriptor) noexcept {
    int status = EADDRNOTAVAIL;
    for (const auto* address = addresses; address && status != 0; address = address->ai_next) {
        status = connectTo(*address, deadline, descriptor);
    }
    return status;
}

}  // namespace

int openVmSocket(const std::string& host, const std::string& port,
                 std::unique_ptr<BmcTransport>& transport) noexcept try {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* addresses = nullptr;
    if (::getaddrinfo(host.c_str(), port.c_str(), &hints, &addresses) != 0) return EADDRNOTAVAIL;
    const auto deadline = std::chrono::steady_clock::now() + connectTime;
    int descriptor = -1;
    int status = connectToAny(addresses, deadline, descriptor);
    ::freeaddrinfo(addresses);
    if (status != 0) return status;
    const int on = 1;  // short messages to and fro: none may wait for the next one
    ::setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    std::unique_ptr<VmSocket> socket(new (std::nothrow) VmSocket(descriptor));
    if (!socket) {
        ::close(descriptor);
        return ENOMEM;
    }
    status = socket->send(vmGreeting(), deadline);
    if (status == 0) transport = std::move(socket);
    return status;
} catch (const std::bad_alloc&) {
    return ENOMEM;
}

}  // namespace ipmi
