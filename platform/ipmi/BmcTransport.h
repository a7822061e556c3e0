#pragma once

#include "pylcommon_export.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

/// A request to the management controller (IPMI 2.0, 5.1). LUN 0.
struct IpmiRequest {
    std::uint8_t networkFunction = 0;  ///< even
    std::uint8_t command = 0;          ///< of that network function
    std::vector<std::uint8_t> data;    ///< 240 bytes at most
};

/// What the controller answers.
struct IpmiResponse {
    std::uint8_t completionCode = 0;  ///< 0 for success (IPMI 2.0, 5.2)
    std::vector<std::uint8_t> data;   ///< behind the completion code
};

/// A way to the management controller. One thread at a time.
class PYL_EXPORT BmcTransport {
public:
    BmcTransport() = default;
    BmcTransport(const BmcTransport&) = delete;
    BmcTransport& operator=(const BmcTransport&) = delete;
    virtual ~BmcTransport();

    /// Sends the request and waits for its own response, until the deadline. 0, or an errno value:
    /// ETIMEDOUT when none came, ECANCELED when the thread's BmcInterruption came first, EPROTO
    /// when what came is no response, EMSGSIZE for a request that is too long, and whatever the
    /// system says.
    virtual int exchange(const IpmiRequest& request, IpmiResponse& response,
                         std::chrono::steady_clock::time_point deadline) noexcept = 0;
};

/// Opens a way to the controller: 0 and the way, or an errno value and none.
using BmcTransportFactory = int (*)(int device, std::unique_ptr<BmcTransport>& transport) noexcept;

/// Replaces the way that BMC_open() takes, for tests; null is the usual one again (see
/// docs/ipmi.md). Not to be called while another thread opens.
PYL_EXPORT void setBmcTransportFactory(BmcTransportFactory factory) noexcept;
