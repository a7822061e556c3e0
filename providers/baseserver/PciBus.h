#pragma once

#include "platform/host/HostFiles.h"

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace baseserver {

/// Where a PCI function sits.
struct PciAddress {
    int domain = 0;
    int bus = 0;
    int device = 0;
    int function = 0;

    bool operator==(const PciAddress&) const = default;
    friend bool operator<(const PciAddress& left, const PciAddress& right) {
        return std::tie(left.domain, left.bus, left.device, left.function) <
               std::tie(right.domain, right.bus, right.device, right.function);
    }
};

/// Errors that a PCI Express function has reported since the kernel started, by their class.
struct PciErrors {
    std::uint64_t fatal = 0;
    std::uint64_t nonFatal = 0;

    bool operator==(const PciErrors&) const = default;
};

/// One PCI function as the kernel reports it. What the kernel does not tell is nullopt.
struct PciFunction {
    PciAddress address;
    std::optional<std::uint32_t> classCode;  ///< base class, sub-class and interface: 0xBBSSII
    std::optional<std::uint16_t> vendorId;
    std::optional<std::uint16_t> deviceId;
    std::optional<std::uint16_t> subsystemVendorId;
    std::optional<std::uint16_t> subsystemId;
    std::optional<std::uint8_t> revision;
    std::optional<std::string> slot;  ///< the physical slot's name, for functions that sit in one
    std::optional<std::string> driver;
    std::optional<PciErrors> errors;  ///< of functions with Advanced Error Reporting

    bool operator==(const PciFunction&) const = default;
};

/// The functions below /sys/bus/pci, in order of address (kernel documentation,
/// ABI/testing/sysfs-bus-pci and sysfs-bus-pci-devices-aer_stats). A directory that is missing
/// gives none; entries whose names are no PCI address are passed over. `root` stands before every
/// path, so that a test can set up a host of its own.
std::vector<PciFunction> readPciFunctions(const std::string& root = hostRoot());

/// The address in the kernel's notation, such as "0000:1a:03.1", or nullopt for any other text.
std::optional<PciAddress> parsePciAddress(const std::string& text);

}  // namespace baseserver
