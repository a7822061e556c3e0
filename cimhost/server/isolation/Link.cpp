#include "cimhost/server/isolation/Link.h"

#include "cimhost/http/PlainStream.h"

#include <fcntl.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <thread>

namespace cimhost {
namespace {

constexpr std::chrono::hours noLimit{24 * 365};

/// The other side is this program: what it takes is for it to say.
HttpLimits linkLimits() {
    HttpLimits limits;
    limits.lineBytes = std::size_t{1} << 20U;
    limits.headBytes = std::size_t{4} << 20U;
    limits.bodyBytes = std::uint64_t{256} << 20U;
    limits.bodyMemoryBytes = 4 * limits.bodyBytes;
    limits.idleTime = noLimit;
    limits.requestTime = noLimit;
    limits.replyTime = noLimit;
    return limits;
}

std::pair<Descriptor, Descriptor> makeSockets(int type) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, type | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "socketpair");
    }
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

constexpr std::size_t rightsBytes = CMSG_SPACE(sizeof(int));

/// A message of one byte that carries a descriptor.
struct Parcel {
    char byte = 'c';
    iovec content{&byte, 1};
    alignas(cmsghdr) std::array<char, rightsBytes> room{};
    msghdr header{};

    Parcel() {
        header.msg_iov = &content;
        header.msg_iovlen = 1;
        header.msg_control = room.data();
        header.msg_controllen = room.size();
    }
    Parcel(const Parcel&) = delete;
    Parcel& operator=(const Parcel&) = delete;

    void put(int descriptor) {
        cmsghdr* const rights = CMSG_FIRSTHDR(&header);
        rights->cmsg_level = SOL_SOCKET;
        rights->cmsg_type = SCM_RIGHTS;
        rights->cmsg_len = CMSG_LEN(sizeof descriptor);
        std::memcpy(CMSG_DATA(rights), &descriptor, sizeof descriptor);
    }

    Descriptor take() {
        const cmsghdr* const rights = CMSG_FIRSTHDR(&header);
        if (!rights || rights->cmsg_type != SCM_RIGHTS) return {};
        int descriptor = -1;
        std::memcpy(&descriptor, CMSG_DATA(rights), sizeof descriptor);
        return Descriptor(descriptor);
    }
};

}  // namespace

std::pair<Descriptor, Descriptor> Link::makePair() { return makeSockets(SOCK_SEQPACKET); }

Link::Link(Descriptor control, HttpHandler& handler)
    : _control(std::move(control)), _handler(handler), _limits(linkLimits()) {}

void Link::end() noexcept {
    std::unique_lock lock(_mutex);
    for (const int socket : _open) shutdown(socket, SHUT_RDWR);
    _ended.wait(lock, [this] { return _open.empty(); });
}

Descriptor Link::connect() try {
    std::pair<Descriptor, Descriptor> ends = makeSockets(SOCK_STREAM | SOCK_NONBLOCK);
    Parcel parcel;
    parcel.put(ends.second.get());
    ssize_t sent = -1;
    do {
        sent = sendmsg(_control.get(), &parcel.header, MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    if (sent < 0) throw std::system_error(errno, std::generic_category(), "sendmsg");
    return std::move(ends.first);
} catch (const std::system_error& error) {
    throw StreamError(StreamError::Kind::lost, error.what());
}

bool Link::serveOne() {
    Parcel parcel;
    const ssize_t count = recvmsg(_control.get(), &parcel.header, MSG_CMSG_CLOEXEC);
    if (count < 0) return errno == EINTR || errno == EAGAIN;
    if (count == 0) return false;
    Descriptor socket = parcel.take();
    if (socket) _begin(std::move(socket));
    return true;
}

void Link::_begin(Descriptor socket) {
    fcntl(socket.get(), F_SETFL, O_NONBLOCK);
    const auto shared = std::make_shared<Descriptor>(std::move(socket));
    const std::lock_guard lock(_mutex);
    if (_open.size() == _connectionLimit) return;
    _open.insert(shared->get());
    try {
        std::thread([this, shared] { _serve(shared); }).detach();
    } catch (const std::system_error&) {
        _open.erase(shared->get());  // no thread for it: the other side sees the connection end
    }
}

void Link::_serve(const std::shared_ptr<Descriptor>& socket) noexcept {
    {
        PlainStream stream(socket->get());
        HttpPresence presence;
        const HttpAddresses addresses;
        const HttpServices services{_handler, _limits};
        HttpConnection(stream, services, _budgets, addresses, presence).serve();
    }
    const std::lock_guard lock(_mutex);
    _open.erase(socket->get());
    socket->reset();
    _ended.notify_all();
}

void Link::endAsking() noexcept { shutdown(_control.get(), SHUT_WR); }

bool Link::isIdle() const {
    const std::lock_guard lock(_mutex);
    return _open.empty();
}

}  // namespace cimhost
