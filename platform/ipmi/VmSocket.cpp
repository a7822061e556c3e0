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

#include "platform/ipmi/BmcWays.h"
#include "platform/ipmi/VmCodec.h"

namespace ipmi {

namespace {

constexpr std::size_t longestRequest = 240;
constexpr std::chrono::seconds connectTime{5};
constexpr std::chrono::milliseconds leaveTime{500};

class VmSocket final : public BmcTransport {
public:
    explicit VmSocket(int descriptor) noexcept : _descriptor(descriptor) {}
    ~VmSocket() override {
        leave();
        ::close(_descriptor);
    }

    int exchange(IpmiRequest const& request, IpmiResponse& response,
                 std::chrono::steady_clock::time_point deadline) noexcept override;
    int send(std::vector<std::uint8_t> const& bytes,
             std::chrono::steady_clock::time_point deadline) noexcept;

private:
    void leave() noexcept;
    int receive(std::chrono::steady_clock::time_point deadline) noexcept;

    int _descriptor;
    std::uint8_t _sequence = 0;
    VmFrames _frames;
    std::array<std::uint8_t, 512> _buffer{};
    std::size_t _at = 0;
    std::size_t _size = 0;
};

int VmSocket::send(std::vector<std::uint8_t> const& bytes,
                   std::chrono::steady_clock::time_point deadline) noexcept {
    for (std::size_t sent = 0; sent < bytes.size();) {
        auto const count =
            ::send(_descriptor, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count >= 0) {
            sent += static_cast<std::size_t>(count);
        } else if (errno == EAGAIN) {
            if (int const status = waitFor(_descriptor, POLLOUT, deadline)) return status;
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

/// The simulator serves one client at a time, and turns away the next one that comes before it has
/// noticed that this one has left: so this one waits for it to hang up, too.
void VmSocket::leave() noexcept {
    using std::chrono::steady_clock;
    ::shutdown(_descriptor, SHUT_WR);
    auto const deadline = steady_clock::now() + leaveTime;
    while (steady_clock::now() < deadline && receive(deadline) == 0) {
    }
}

/// Fills the empty buffer.
int VmSocket::receive(std::chrono::steady_clock::time_point deadline) noexcept {
    for (;;) {
        if (int const status = waitFor(_descriptor, POLLIN, deadline)) return status;
        auto const count = ::recv(_descriptor, _buffer.data(), _buffer.size(), 0);
        if (count > 0) {
            _at = 0;
            _size = static_cast<std::size_t>(count);
            return 0;
        }
        if (count == 0) return ECONNRESET;
        if (errno != EINTR && errno != EAGAIN) return errno;
    }
}

int VmSocket::exchange(IpmiRequest const& request, IpmiResponse& response,
                       std::chrono::steady_clock::time_point deadline) noexcept try {
    if (request.data.size() > longestRequest) return EMSGSIZE;
    ++_sequence;
    if (int const status = send(encodeRequest(request, _sequence), deadline)) return status;
    for (;;) {
        for (; _at < _size; ++_at) {
            auto const found = _frames.take(_buffer[_at]);
            if (found == VmFrames::Found::tooLong) return EPROTO;
            if (found != VmFrames::Found::message) continue;
            if (auto decoded = decodeResponse(_frames.frame(), request, _sequence)) {
                ++_at;
                response = std::move(*decoded);
                return 0;
            }
        }
        if (int const status = receive(deadline)) return status;
    }
} catch (std::bad_alloc const&) {
    return ENOMEM;
}

int connectTo(addrinfo const& address, std::chrono::steady_clock::time_point deadline,
              int& descriptor) noexcept {
    descriptor = ::socket(address.ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0) return errno;
    int status = ::connect(descriptor, address.ai_addr, address.ai_addrlen) == 0 ? 0 : errno;
    if (status == EINPROGRESS) {
        status = waitFor(descriptor, POLLOUT, deadline);
        int result = 0;
        socklen_t size = sizeof result;
        if (status == 0 && ::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &result, &size) != 0)
            status = errno;
        if (status == 0) status = result;
    }
    if (status != 0) ::close(descriptor);
    return status;
}

int connectToAny(addrinfo const* addresses, std::chrono::steady_clock::time_point deadline,
                 int& descriptor) noexcept {
    int status = EADDRNOTAVAIL;
    for (auto const* address = addresses; address && status != 0; address = address->ai_next)
        status = connectTo(*address, deadline, descriptor);
    return status;
}

}  // namespace

int openVmSocket(std::string const& host, std::string const& port,
                 std::unique_ptr<BmcTransport>& transport) noexcept try {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* addresses = nullptr;
    if (::getaddrinfo(host.c_str(), port.c_str(), &hints, &addresses) != 0) return EADDRNOTAVAIL;
    auto const deadline = std::chrono::steady_clock::now() + connectTime;
    int descriptor = -1;
    int status = connectToAny(addresses, deadline, descriptor);
    ::freeaddrinfo(addresses);
    if (status != 0) return status;
    int const on = 1;  // short messages to and fro: none may wait for the next one
    ::setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    std::unique_ptr<VmSocket> socket(new (std::nothrow) VmSocket(descriptor));
    if (!socket) {
        ::close(descriptor);
        return ENOMEM;
    }
    status = socket->send(vmGreeting(), deadline);
    if (status == 0) transport = std::move(socket);
    return status;
} catch (std::bad_alloc const&) {
    return ENOMEM;
}

}  // namespace ipmi
