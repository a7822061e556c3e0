#pragma once

#include "common/OpstatusUtils.h"
#include "platform/host/HostFiles.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace fan {

/// One fan as the kernel's hardware monitor reports it. What the kernel does not tell is nullopt.
struct Fan {
    std::string id;  ///< monitor and channel, such as "nct6775.656:fan1"; the same after a restart
    std::string label;                          ///< the board's name for it, or the channel
    std::optional<std::uint64_t> speed;         ///< revolutions per minute
    std::optional<std::uint64_t> minimumSpeed;  ///< below it the monitor raises its alarm
    std::optional<std::uint64_t> targetSpeed;
    std::optional<bool> fault;
    std::optional<bool> alarm;
    std::optional<bool> enabled;

    bool operator==(const Fan&) const = default;
};

/// The fans below /sys/class/hwmon, in order of identifier (kernel documentation,
/// hwmon/sysfs-interface). A directory that is missing gives none. `root` stands before every path,
/// so that a test can set up a host of its own.
std::vector<Fan> readFans(const std::string& root = hostRoot());

/// What the readings say of the fan: stopped when it is switched off or does not turn, an error by
/// its fault, degraded by its alarm or when it turns too slowly, an error when it does not turn at
/// all then, unknown without a reading.
PYL::operationalStatus statusOf(const Fan& fan) noexcept;

}  // namespace fan
