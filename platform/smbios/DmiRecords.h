#pragma once

#include <cstdint>
#include <string>

/// @file
/// The structures that the stack uses, decoded. A text or number that the firmware does not give is
/// empty or 0, and so is a text of nothing but blanks. The layouts are those of DSP0134, clause 7;
/// the maker's own are in docs/smbios-records.md.

/// BIOS information (type 0).
struct DmiBios {
    /// @{
    /// As the firmware words them; the date is mm/dd/yyyy, mostly.
    std::string vendor;
    std::string version;
    std::string releaseDate;
    /// @}
    std::uint64_t characteristics = 0;  ///< the bits of DSP0134, 7.1.1
    /// The maker's marker word; 0 on a machine of another maker.
    std::uint16_t biosMarker = 0;
    /// Not 0 on the maker's newer generation of servers.
    std::uint8_t newerGeneration = 0;
};

/// System information (type 1).
struct DmiSystem {
    /// @{
    /// The fields of these names in DSP0134, 7.2.
    std::string manufacturer;
    std::string productName;
    std::string version;
    std::string serialNumber;
    /// In the usual text form, lower case; empty when the firmware says that there is none.
    std::string uuid;
    std::uint8_t wakeUpType = 0;
    std::string skuNumber;
    std::string family;
    /// @}
};

/// Baseboard information (type 2).
struct DmiBaseboard {
    /// @{
    /// The fields of these names in DSP0134, 7.3.
    std::string manufacturer;
    std::string product;
    std::string version;
    std::string serialNumber;
    std::string assetTag;
    /// @}
};

/// Chassis information (type 3).
struct DmiChassis {
    /// @{
    /// The fields of these names in DSP0134, 7.4.
    std::string manufacturer;
    /// The kind of enclosure (DSP0134, table "System Enclosure or Chassis Types").
    std::uint8_t type = 0;
    std::string version;
    std::string serialNumber;
    std::string assetTag;
    /// @}
};

/// The maker's server system identifier.
struct KTQServerSystemId {
    std::string identifier;  ///< see PYLUtil::getServerSystemId()
};

/// The enclosure that the server stands in, as its management module told the firmware.
struct KTQEnclosure {
    bool isBlade = false;  ///< whether the server is a blade in an enclosure
    /// A server of the SL line.
    bool isSLServer = false;
    /// @{
    /// The names by which the management module knows them.
    std::string enclosureName;
    std::string rackName;
    /// @}
    /// In the form of DmiSystem::uuid.
    std::string rackUuid;
};

/// The identity that a server profile lends to the server, beside the one that it was made with.
struct KTQServerProfile {
    std::string virtualSerialNumber;  ///< stands for that of DmiSystem
    /// In the form of DmiSystem::uuid.
    std::string virtualUuid;
    /// The product that the server was sold as a part of.
    std::string solutionName;
};
