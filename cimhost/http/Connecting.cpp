#include "cimhost/http/Connecting.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace cimhost {
namespace {

/// Waits for a connection that is being made. The system's error, or 0.
int awaitConnection(int socket, Clock::time_point deadline) {
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) return ETIMEDOUT;
        pollfd entry{socket, POLLOUT, 0};
        const int ready = poll(&entry, 1, static_cast<int>(std::min<long long>(left, 1'000'000)));
        if (ready > 0) break;
        if (ready < 0 && errno != EINTR) return errno;
    }
    int error = 0;
    socklen_t size = sizeof error;
    if (getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) != 0) return errno;
    return error;
}

}  // namespace

Descriptor makeSocket(const SocketAddress& address) {
    Descriptor fresh(
        socket(address.storage.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!fresh) throw StreamError(StreamError::Kind::lost, std::generic_category().message(errno));
    const int on = 1;
    setsockopt(fresh.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return fresh;
}

int connectSocket(int socket, const SocketAddress& address, Clock::time_point deadline) {
    const auto* const generic = reinterpret_cast<const sockaddr*>(&address.storage);
    const int error = connect(socket, generic, address.size) == 0 ? 0 : errno;
    const bool isUnderWay = error == EINPROGRESS || error == EINTR;
    return isUnderWay ? awaitConnection(socket, deadline) : error;
}

}  // namespace cimhost
