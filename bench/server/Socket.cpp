#include "bench/server/Socket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace {

int checked(int outcome, const char* call) {
    if (outcome < 0) throw std::system_error(errno, std::generic_category(), call);
    return outcome;
}

sockaddr_in loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

Socket open() {
    return Socket(checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket"));
}

void sendAtOnce(int descriptor) {
    const int on = 1;
    checked(::setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on), "setsockopt");
}

}  // namespace

Socket Socket::listen() {
    Socket socket = open();
    const sockaddr_in address = loopback(0);
    checked(::bind(socket._descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address),
            "bind");
    checked(::listen(socket._descriptor, SOMAXCONN), "listen");
    return socket;
}

Socket Socket::connect(std::uint16_t port) {
    Socket socket = open();
    const sockaddr_in address = loopback(port);
    checked(
        ::connect(socket._descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address),
        "connect");
    sendAtOnce(socket._descriptor);
    return socket;
}

Socket::Socket(Socket&& other) noexcept : _descriptor(std::exchange(other._descriptor, -1)) {}

Socket::~Socket() {
    if (_descriptor >= 0) ::close(_descriptor);
}

Socket Socket::accept() const {
    Socket socket(checked(::accept4(_descriptor, nullptr, nullptr, SOCK_CLOEXEC), "accept"));
    sendAtOnce(socket._descriptor);
    return socket;
}

std::uint16_t Socket::port() const {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    checked(::getsockname(_descriptor, reinterpret_cast<sockaddr*>(&address), &size),
            "getsockname");
    return ntohs(address.sin_port);
}

void Socket::write(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(_descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) continue;
        if (sent < 0) throw std::system_error(errno, std::generic_category(), "send");
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
}

std::size_t Socket::read(char* to, std::size_t size) const {
    for (;;) {
        const ssize_t got = ::recv(_descriptor, to, size, 0);
        if (got >= 0) return static_cast<std::size_t>(got);
        if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "recv");
    }
}

std::string readFile(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    if (!file) throw std::runtime_error(name + " cannot be read");
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}
