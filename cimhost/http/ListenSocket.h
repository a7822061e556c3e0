#pragma once

#include "cimhost/http/Descriptor.h"

#include <cstdint>
#include <string>

struct sockaddr;

namespace cimhost {

/// A TCP socket that listens. Its address is taken from its start until its end.
class ListenSocket {
public:
    /// Listens at a numeric IPv4 or IPv6 address or "localhost"; port 0 takes any free one.
    /// Throws std::runtime_error that names the address and the cause.
    ListenSocket(const std::string& address, std::uint16_t port);

    /// Connections that nobody accepted yet are turned away; name and port stay known.
    void close() noexcept { _socket.reset(); }

    int handle() const noexcept { return _socket.get(); }
    std::uint16_t port() const noexcept { return _port; }
    /// address:port as in a URL, so an IPv6 address stands in brackets.
    const std::string& name() const noexcept { return _name; }

private:
    Descriptor _socket;
    std::string _name;
    std::uint16_t _port = 0;
};

/// True when only this machine can reach the address: 127.0.0.0/8, ::1, "localhost".
bool isLoopback(const std::string& address) noexcept;

/// address:port as in a URL.
std::string formatAddress(const sockaddr& address);

}  // namespace cimhost
