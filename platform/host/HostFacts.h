#pragma once

#include "platform/host/HostFiles.h"
#include "platform/smbios/SmBios.h"
#include "pylcommon_export.h"

#include <cstdint>
#include <optional>
#include <string>

/// The kind of operating system that a host runs.
enum operatingSystemEnum { OSunkown = 0, OSvm = 1, OSlinux = 2, OSopenvms = 3 };

/// What a data library answers to a read or a getter.
enum MRAStatusEnum {
    MRA_STATUS_SUCCESS = 0,             ///< the argument is filled
    MRA_STATUS_DATA_NOT_AVAILABLE = 1,  ///< the host does not tell it; the argument is as it was
    MRA_STATUS_NO_NEXT = 2,  ///< there is no further system; not answered by this library
    MRA_STATUS_FAILED = 3,   ///< what was asked for cannot be read at all
    MRA_STATUS_FORCE_NOT_SUPPORTED = 4  ///< nothing can be read anew; not answered by this library
};

/// What firmware, kernel and distribution tell of the host, as they told it at one time; nullopt
/// where none of them does. No text is empty or all blanks. UUIDs have the usual text form, lower
/// case.
struct HostFacts {
    /// @{
    /// The identity that the maker gave the system.
    std::optional<std::string> manufacturer;
    std::optional<std::string> productName;
    std::optional<std::string> productId;  ///< the maker's order number (the SKU number)
    std::optional<std::string> serialNumber;
    std::optional<std::string> uuid;
    std::optional<std::string> serverSystemId;
    /// @}

    /// @{
    /// The identity that a server profile lends to the server; the one above is the maker's.
    std::optional<std::string> virtualSerialNumber;
    std::optional<std::string> virtualUuid;
    std::optional<std::string> solutionName;  ///< the product that the server was sold as a part of
    /// @}

    /// @{
    /// The firmware.
    std::optional<std::string> biosVendor;
    std::optional<std::string> biosVersion;
    std::optional<std::string> biosReleaseDate;  ///< as the firmware writes it: mm/dd/yyyy, mostly
    /// @}

    /// @{
    /// The chassis that the server is in.
    std::optional<std::string> chassisManufacturer;
    std::optional<std::string> chassisSerialNumber;
    std::optional<std::string> chassisAssetTag;
    std::optional<std::uint8_t> chassisType;  ///< DSP0134, "System Enclosure or Chassis Types"
    /// @}

    /// @{
    /// The enclosure of a blade, and the rack that it is in.
    bool isBlade = false;
    bool isSLServer = false;
    std::optional<std::string> enclosureName;
    std::optional<std::string> rackName;
    std::optional<std::string> rackUuid;
    /// @}

    /// @{
    /// The operating system, as kernel and os-release tell.
    std::optional<operatingSystemEnum> osType;
    std::optional<std::string> osName;
    std::optional<std::string> osVersion;
    /// @}

    /// Fact by fact; what is not known on both sides is equal.
    bool operator==(const HostFacts&) const = default;
};

/// What scanned tables tell; nothing when their scan failed.
HostFacts readFirmwareFacts(const SmBios& firmware);

/// What scanned tables tell, and for what they do not (or when their scan failed) the kernel and
/// os-release.
PYL_EXPORT HostFacts readHostFacts(const SmBios& firmware, const HostFiles& files = HostFiles());

/// Fills the argument with a fact, or leaves it alone when the fact is not known.
template <typename Fact>
MRAStatusEnum giveFact(const std::optional<Fact>& fact, Fact& argument) {
    if (!fact) return MRA_STATUS_DATA_NOT_AVAILABLE;
    argument = *fact;
    return MRA_STATUS_SUCCESS;
}
