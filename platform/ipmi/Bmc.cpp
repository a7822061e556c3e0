#include "platform/ipmi/Bmc.h"

#include "platform/ipmi/detail/BmcWays.h"
#include "platform/ipmi/detail/IpmiCodes.h"

#include <cerrno>
#include <cstring>

BmcTransport::~BmcTransport() = default;

const std::uint32_t bmcManufacturerId = PYL_BMC_MANUFACTURER_ID;

namespace {

BmcTransportFactory replacedFactory = nullptr;

constexpr std::chrono::seconds answerTime{5};

constexpr int noDescriptor = -1;  // which poll(2) passes over
thread_local int interruption = noDescriptor;

int ask(BmcHandle& handle, std::uint8_t command, IpmiResponse& response) noexcept {
    const IpmiRequest request{ipmi::application, command, {}};
    const auto deadline = std::chrono::steady_clock::now() + answerTime;
    const int status = handle.transport->exchange(request, response, deadline);
    if (status != 0) return status;
    return response.completionCode == 0 ? 0 : ipmi::completionStatus(response.completionCode);
}

int readDeviceId(BmcHandle& handle) noexcept {
    constexpr std::size_t leastSize = 11;
    constexpr std::uint32_t manufacturerBits = 0xFFFFF;
    IpmiResponse response;
    const int status = ask(handle, ipmi::getDeviceId, response);
    if (status != 0) return status;
    const auto& data = response.data;
    if (data.size() < leastSize) return EPROTO;
    auto& identity = handle.deviceId;
    identity.deviceId = data[0];
    identity.deviceRevision = data[1] & 0x0FU;
    identity.firmwareMajor = data[2] & 0x7FU;
    identity.firmwareMinor = data[3];
    identity.ipmiVersion = data[4];
    identity.manufacturerId = (data[6] | static_cast<std::uint32_t>(data[7]) << 8U |
                               static_cast<std::uint32_t>(data[8]) << 16U) &
                              manufacturerBits;
    identity.productId = static_cast<std::uint16_t>(data[9] | data[10] << 8U);
    return 0;
}

/// The controller sends the bytes of a UUID from the last to the first (IPMI 2.0, 20.8).
std::string guidText(const std::vector<std::uint8_t>& bytes) {
    constexpr const char* digits = "0123456789abcdef";
    std::string text;
    for (std::size_t i = bytes.size(); i-- > 0;) {
        text += digits[bytes[i] >> 4U];
        text += digits[bytes[i] & 0x0FU];
        if (i == 12 || i == 10 || i == 8 || i == 6) text += '-';
    }
    return text;
}

/// Not every controller has one, so that its absence is no failure.
int readSystemGuid(BmcHandle& handle) {
    constexpr std::size_t guidSize = 16;
    IpmiResponse response;
    const int status = ask(handle, ipmi::getSystemGuid, response);
    if (status != 0) return ipmi::isCompletionStatus(status) ? 0 : status;
    if (response.data.size() != guidSize) return EPROTO;
    handle.systemGuid = guidText(response.data);
    handle.hasSystemGuid = true;
    return 0;
}

}  // namespace

void setBmcTransportFactory(BmcTransportFactory factory) noexcept { replacedFactory = factory; }

int BMC_open(BmcHandle& handle, int device, int identify) {
    handle = {};
    int status = (replacedFactory ? replacedFactory : ipmi::openUsualWay)(device, handle.transport);
    if (status == 0 && identify != 0) status = readDeviceId(handle);
    if (status == 0 && identify != 0) status = readSystemGuid(handle);
    if (status != 0) BMC_close(handle);
    return status;
}

BmcInterruption::BmcInterruption(int descriptor) noexcept { interruption = descriptor; }

BmcInterruption::~BmcInterruption() { interruption = noDescriptor; }

int BmcInterruption::descriptor() noexcept { return interruption; }

std::string BMC_strerror(int status) {
    if (ipmi::isCompletionStatus(status)) return ipmi::completionText(status);
    return std::strerror(status);
}

void BMC_close(BmcHandle& handle) noexcept { handle.transport.reset(); }
