#include "platform/ipmi/detail/BmcWays.h"

#include "platform/ipmi/Bmc.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <sstream>

namespace ipmi {

namespace {

constexpr const char* configurationFile = "/etc/cim/ipmi.conf";

/// The text of root's configuration, or an errno value; ENOENT when there is none.
int readConfiguration(std::string& text) {
    const int descriptor = ::open(configurationFile, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) return errno;
    struct stat facts {};
    int status = ::fstat(descriptor, &facts) == 0 ? 0 : errno;
    if (status == 0 && (facts.st_uid != 0 || !S_ISREG(facts.st_mode))) status = EINVAL;
    std::array<char, 256> buffer{};
    if (status == 0) {
        const auto count = ::read(descriptor, buffer.data(), buffer.size());
        if (count < 0) status = errno;
        text.assign(buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    ::close(descriptor);
    return status;
}

}  // namespace

int millisecondsUntil(std::chrono::steady_clock::time_point deadline) noexcept {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp<long long>(left.count(), 0, INT_MAX));
}

int waitFor(int descriptor, short events, std::chrono::steady_clock::time_point deadline) noexcept {
    // A peer that always has something to say must not keep its caller for ever.
    while (std::chrono::steady_clock::now() < deadline) {
        std::array<pollfd, 2> waited{pollfd{descriptor, events, 0},
                                     pollfd{BmcInterruption::descriptor(), POLLIN, 0}};
        const int count = ::poll(waited.data(), waited.size(), millisecondsUntil(deadline));
        if (count < 0 && errno != EINTR) return errno;
        if (count > 0) return waited[1].revents != 0 ? ECANCELED : 0;
    }
    return ETIMEDOUT;
}

std::optional<VmAddress> parseWay(const std::string& text) {
    std::istringstream line(text.substr(0, text.find('\n')));
    std::string way;
    VmAddress address;
    std::string more;
    if (!(line >> way >> address.host >> address.port) || way != "vm" || line >> more) {
        return std::nullopt;
    }
    return address;
}

int openUsualWay(int device, std::unique_ptr<BmcTransport>& transport) noexcept try {
    std::string text;
    const int status = readConfiguration(text);
    if (status == ENOENT) return openKernelDevice(device, transport);
    if (status != 0) return status;
    const auto address = parseWay(text);
    return address ? openVmSocket(address->host, address->port, transport) : EINVAL;
} catch (const std::bad_alloc&) {
    return ENOMEM;
}

}  // namespace ipmi
