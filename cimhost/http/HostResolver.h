#pragma once

#include "cimhost/http/Stream.h"

#include <sys/socket.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace cimhost {

/// An address to connect to.
struct SocketAddress {
    sockaddr_storage storage{};
    socklen_t size = 0;
};

/// Finds the addresses of one host. The system's look-up cannot be interrupted: it runs on a thread
/// of its own, which is left to itself when it takes too long; there is never more than one.
class HostResolver {
public:
    HostResolver(std::string host, std::uint16_t port);

    /// Addresses in the order to try, at least one. Throws StreamError: timeout at the deadline,
    /// lost when there is no such host or abort was called. Used by one thread.
    std::vector<SocketAddress> resolve(Clock::time_point deadline);

    /// Ends a look-up that is waited for, and later ones. From any thread.
    void abort() noexcept;

    /// What the system's look-up gave.
    struct Found;

private:
    struct Shared;

    void _beginLookUp();

    std::string _host;
    std::string _port;
    std::shared_ptr<Shared> _shared;  ///< with the thread of the look-up, which may outlive us
};

}  // namespace cimhost
