#include "cimhost/http/ListenSocket.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <memory>
#include <stdexcept>
#include <system_error>

namespace cimhost {
namespace {

constexpr int waitingConnections = 256;

using AddressList = std::unique_ptr<addrinfo, decltype(&freeaddrinfo)>;

/// The address as the system wants it, or null. Never asks a name server.
AddressList resolve(const std::string& address, std::uint16_t port) noexcept {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV | AI_PASSIVE;
    std::array<char, 8> service{};
    std::snprintf(service.data(), service.size(), "%u", static_cast<unsigned>(port));
    addrinfo* result = nullptr;
    const char* host = address == "localhost" ? "127.0.0.1" : address.c_str();
    if (getaddrinfo(host, service.data(), &hints, &result) != 0) result = nullptr;
    return {result, &freeaddrinfo};
}

[[noreturn]] void refuse(const std::string& address, std::uint16_t port,
                         const std::string& reason) {
    throw std::runtime_error("cannot listen at " + address + " port " + std::to_string(port) +
                             ": " + reason);
}

bool setOption(int socket, int level, int name) noexcept {
    const int on = 1;
    return setsockopt(socket, level, name, &on, sizeof on) == 0;
}

/// TCP_NODELAY passes on to the accepted connections, so none of them has to ask for it.
bool prepare(int socket, const addrinfo& address) noexcept {
    const bool isIpv6 = address.ai_family == AF_INET6;
    return setOption(socket, SOL_SOCKET, SO_REUSEADDR) &&
           setOption(socket, IPPROTO_TCP, TCP_NODELAY) &&
           (!isIpv6 || setOption(socket, IPPROTO_IPV6, IPV6_V6ONLY)) &&
           bind(socket, address.ai_addr, address.ai_addrlen) == 0 &&
           listen(socket, waitingConnections) == 0;
}

}  // namespace

ListenSocket::ListenSocket(const std::string& address, std::uint16_t port) {
    const AddressList resolved = resolve(address, port);
    if (!resolved) refuse(address, port, "not a numeric address");
    _socket =
        Descriptor(socket(resolved->ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!_socket || !prepare(_socket.get(), *resolved)) {
        refuse(address, port, std::generic_category().message(errno));
    }

    sockaddr_storage bound{};
    socklen_t size = sizeof bound;
    auto* generic = reinterpret_cast<sockaddr*>(&bound);
    if (getsockname(_socket.get(), generic, &size) != 0) {
        refuse(address, port, std::generic_category().message(errno));
    }
    _name = formatAddress(*generic);
    _port =
        ntohs(reinterpret_cast<sockaddr_in*>(&bound)->sin_port);  // the same place in sockaddr_in6
}

bool isLoopback(const std::string& address) noexcept {
    const AddressList resolved = resolve(address, 0);
    if (!resolved) return false;
    if (resolved->ai_family == AF_INET6) {
        return IN6_IS_ADDR_LOOPBACK(&reinterpret_cast<sockaddr_in6*>(resolved->ai_addr)->sin6_addr);
    }
    const auto* ipv4 = reinterpret_cast<const sockaddr_in*>(resolved->ai_addr);
    return ntohl(ipv4->sin_addr.s_addr) >> 24U == 127;
}

std::string formatAddress(const sockaddr& address) {
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (address.sa_family == AF_INET6) {
        const auto& ipv6 = reinterpret_cast<const sockaddr_in6&>(address);
        inet_ntop(AF_INET6, &ipv6.sin6_addr, text.data(), text.size());
        return "[" + std::string(text.data()) + "]:" + std::to_string(ntohs(ipv6.sin6_port));
    }
    const auto& ipv4 = reinterpret_cast<const sockaddr_in&>(address);
    inet_ntop(AF_INET, &ipv4.sin_addr, text.data(), text.size());
    return std::string(text.data()) + ":" + std::to_string(ntohs(ipv4.sin_port));
}

}  // namespace cimhost
