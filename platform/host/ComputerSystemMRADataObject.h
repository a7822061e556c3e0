#pragma once

#include "platform/host/MRAStatus.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <optional>
#include <string>

/// The kind of operating system that a host runs.
enum operatingSystemEnum { OSunkown = 0, OSvm = 1, OSlinux = 2, OSopenvms = 3 };

/// What is known of a computer system; nullopt where neither firmware nor host tells.
struct ComputerSystemFacts {
    std::optional<std::string> manufacturer;
    std::optional<std::string> productName;
    std::optional<std::string> productId;
    std::optional<std::string> serialNumber;
    std::optional<std::string> uuid;
    std::optional<std::string> virtualSerialNumber;
    std::optional<std::string> virtualUuid;
    std::optional<std::string> solutionName;
    std::optional<std::string> biosVendor;
    std::optional<std::string> biosVersion;
    std::optional<std::string> biosReleaseDate;
    std::optional<operatingSystemEnum> osType;
    std::optional<std::string> osName;
    std::optional<std::string> osVersion;
};

/// The identity of one computer system, as its data source read it.
///
/// Each getter fills its argument and answers MRA_STATUS_SUCCESS, or leaves the argument alone and
/// answers MRA_STATUS_DATA_NOT_AVAILABLE; before the first fill all data are absent. The getters
/// may be called from several threads at once, but not beside setFacts().
class PYL_EXPORT ComputerSystemMRADataObject {
public:
    /// Data objects of every kind are made with a logger; this one has nothing to log.
    explicit ComputerSystemMRADataObject(const Logger& log);

    MRAStatusEnum getSystemManufacturer(std::string& manufacturer) const;
    MRAStatusEnum getSystemProductName(std::string& productName) const;
    /// The maker's order number of the product (the SKU number).
    MRAStatusEnum getSystemProductID(std::string& productId) const;
    MRAStatusEnum getSystemSerialNumber(std::string& serialNumber) const;
    /// In the usual text form, lower case.
    MRAStatusEnum getSystemUUID(std::string& uuid) const;
    /// The identity that a server profile lends to the server; the one above is the maker's.
    MRAStatusEnum getSystemVirtualSerialNumber(std::string& serialNumber) const;
    MRAStatusEnum getSystemVirtualUUID(std::string& uuid) const;
    /// The product that the server was sold as a part of.
    MRAStatusEnum getSolutionName(std::string& name) const;
    MRAStatusEnum getBiosVendor(std::string& vendor) const;
    MRAStatusEnum getBiosVersion(std::string& version) const;
    /// As the firmware writes it, usually mm/dd/yyyy.
    MRAStatusEnum getBiosReleaseDate(std::string& releaseDate) const;
    MRAStatusEnum getOSType(operatingSystemEnum& type) const;
    MRAStatusEnum getHostOSName(std::string& name) const;
    MRAStatusEnum getHostOSVersion(std::string& version) const;

    /// For data sources: replaces everything that is known.
    void setFacts(ComputerSystemFacts facts);

private:
    ComputerSystemFacts _facts;
};
