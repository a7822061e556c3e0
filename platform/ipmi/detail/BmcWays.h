#pragma once

#include "platform/ipmi/BmcTransport.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace ipmi {

/// The kernel's device "/dev/ipmi<device>" (linux/ipmi.h).
int openKernelDevice(int device, std::unique_ptr<BmcTransport>& transport) noexcept;

/// A simulated controller behind a TCP socket that speaks the VM codec of the OpenIPMI simulator.
int openVmSocket(const std::string& host, const std::string& port,
                 std::unique_ptr<BmcTransport>& transport) noexcept;

/// Where the simulated controller is.
struct VmAddress {
    std::string host;
    std::string port;
};

/// "vm HOST PORT" on the first line; none for any other text.
std::optional<VmAddress> parseWay(const std::string& text);

/// The kernel's device, unless root's file "/etc/cim/ipmi.conf" names a simulated controller. A
/// file of somebody else, or with anything else in it, is EINVAL: who put it there meant something
/// by it.
int openUsualWay(int device, std::unique_ptr<BmcTransport>& transport) noexcept;

/// Milliseconds until then for poll(2), never negative.
int millisecondsUntil(std::chrono::steady_clock::time_point deadline) noexcept;

/// Waits until the descriptor is ready for `events`. 0, an errno value, or ETIMEDOUT, which a
/// deadline that has passed always is, however ready the descriptor may be; ECANCELED when the
/// thread's BmcInterruption came.
int waitFor(int descriptor, short events, std::chrono::steady_clock::time_point deadline) noexcept;

}  // namespace ipmi
