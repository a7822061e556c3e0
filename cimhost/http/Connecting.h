#pragma once

#include "cimhost/http/Descriptor.h"
#include "cimhost/http/HostResolver.h"

namespace cimhost {

/// A socket for connections to the address, which does not block. Throws StreamError lost.
Descriptor makeSocket(const SocketAddress& address);

/// Connects it. The system's error, ETIMEDOUT at the deadline, or 0.
int connectSocket(int socket, const SocketAddress& address, Clock::time_point deadline);

}  // namespace cimhost
