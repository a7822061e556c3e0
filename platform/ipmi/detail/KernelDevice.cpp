#include "platform/ipmi/detail/BmcWays.h"

#include <fcntl.h>
#include <linux/ipmi.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <new>
#include <string>

namespace ipmi {

namespace {

class KernelDevice final : public BmcTransport {
public:
    explicit KernelDevice(int descriptor) noexcept : _descriptor(descriptor) {}
    ~KernelDevice() override { ::close(_descriptor); }

    int exchange(const IpmiRequest& request, IpmiResponse& response,
                 std::chrono::steady_clock::time_point deadline) noexcept override;

private:
    int _send(const IpmiRequest& request, long number) noexcept;
    int _receive(long number, IpmiResponse& response);

    int _descriptor;
    long _number = 0;
};

int KernelDevice::_send(const IpmiRequest& request, long number) noexcept {
    ipmi_system_interface_addr address{};
    address.addr_type = IPMI_SYSTEM_INTERFACE_ADDR_TYPE;
    address.channel = IPMI_BMC_CHANNEL;
    ipmi_req message{};
    message.addr = reinterpret_cast<unsigned char*>(&address);
    message.addr_len = sizeof address;
    message.msgid = number;
    message.msg.netfn = request.networkFunction;
    message.msg.cmd = request.command;
    message.msg.data = const_cast<unsigned char*>(request.data.data());  // the kernel only reads it
    message.msg.data_len = static_cast<unsigned short>(request.data.size());
    return ::ioctl(_descriptor, IPMICTL_SEND_COMMAND, &message) == 0 ? 0 : errno;
}

/// 0, EAGAIN for a message that is not the awaited response, or an errno value.
int KernelDevice::_receive(long number, IpmiResponse& response) {
    std::array<unsigned char, IPMI_MAX_MSG_LENGTH> data{};
    ipmi_addr address{};
    ipmi_recv message{};
    message.addr = reinterpret_cast<unsigned char*>(&address);
    message.addr_len = sizeof address;
    message.msg.data = data.data();
    message.msg.data_len = data.size();
    if (::ioctl(_descriptor, IPMICTL_RECEIVE_MSG_TRUNC, &message) != 0) return errno;
    if (message.recv_type != IPMI_RESPONSE_RECV_TYPE || message.msgid != number) return EAGAIN;
    if (message.msg.data_len < 1) return EPROTO;
    response.completionCode = data[0];
    response.data.assign(data.begin() + 1, data.begin() + message.msg.data_len);
    return 0;
}

int KernelDevice::exchange(const IpmiRequest& request, IpmiResponse& response,
                           std::chrono::steady_clock::time_point deadline) noexcept try {
    int status = _send(request, ++_number);
    while (status == 0 || status == EAGAIN) {
        status = waitFor(_descriptor, POLLIN, deadline);
        if (status != 0) break;
        status = _receive(_number, response);
        if (status == 0) break;
    }
    return status;
} catch (const std::bad_alloc&) {
    return ENOMEM;
}

}  // namespace

int openKernelDevice(int device, std::unique_ptr<BmcTransport>& transport) noexcept try {
    const auto path = "/dev/ipmi" + std::to_string(device);
    const int descriptor = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) return errno;
    transport.reset(new (std::nothrow) KernelDevice(descriptor));
    if (transport) return 0;
    ::close(descriptor);
    return ENOMEM;
} catch (const std::bad_alloc&) {
    return ENOMEM;
}

}  // namespace ipmi
