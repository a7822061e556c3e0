#pragma once

#include "platform/host/HostFacts.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <string>
#include <utility>

/// The identity of one computer system, as its data source read it.
///
/// Each getter fills its argument and answers MRA_STATUS_SUCCESS, or leaves the argument alone and
/// answers MRA_STATUS_DATA_NOT_AVAILABLE; before the first fill all data are absent. HostFacts says
/// what each one is. The getters may be called from several threads at once, but not beside
/// setFacts().
class PYL_EXPORT ComputerSystemMRADataObject {
public:
    /// Data objects of every kind are made with a logger; this one has nothing to log.
    explicit ComputerSystemMRADataObject(const Logger&) {}

    /// @{
    /// The fact of that name in HostFacts.
    MRAStatusEnum getSystemManufacturer(std::string& manufacturer) const {
        return giveFact(_facts.manufacturer, manufacturer);
    }
    MRAStatusEnum getSystemProductName(std::string& productName) const {
        return giveFact(_facts.productName, productName);
    }
    MRAStatusEnum getSystemProductID(std::string& productId) const {
        return giveFact(_facts.productId, productId);
    }
    MRAStatusEnum getSystemSerialNumber(std::string& serialNumber) const {
        return giveFact(_facts.serialNumber, serialNumber);
    }
    MRAStatusEnum getSystemUUID(std::string& uuid) const { return giveFact(_facts.uuid, uuid); }
    MRAStatusEnum getSystemVirtualSerialNumber(std::string& serialNumber) const {
        return giveFact(_facts.virtualSerialNumber, serialNumber);
    }
    MRAStatusEnum getSystemVirtualUUID(std::string& uuid) const {
        return giveFact(_facts.virtualUuid, uuid);
    }
    MRAStatusEnum getSolutionName(std::string& name) const {
        return giveFact(_facts.solutionName, name);
    }
    MRAStatusEnum getBiosVendor(std::string& vendor) const {
        return giveFact(_facts.biosVendor, vendor);
    }
    MRAStatusEnum getBiosVersion(std::string& version) const {
        return giveFact(_facts.biosVersion, version);
    }
    MRAStatusEnum getBiosReleaseDate(std::string& releaseDate) const {
        return giveFact(_facts.biosReleaseDate, releaseDate);
    }
    MRAStatusEnum getOSType(operatingSystemEnum& type) const {
        return giveFact(_facts.osType, type);
    }
    MRAStatusEnum getHostOSName(std::string& name) const { return giveFact(_facts.osName, name); }
    MRAStatusEnum getHostOSVersion(std::string& version) const {
        return giveFact(_facts.osVersion, version);
    }
    /// @}

    /// For data sources: replaces everything that is known.
    void setFacts(HostFacts facts) { _facts = std::move(facts); }

private:
    HostFacts _facts;
};

/// A source of computer-system data. A source belongs to one thread at a time.
class PYL_EXPORT ComputerSystemMRA {
public:
    /// The selector of the system's own data.
    static constexpr unsigned systemData = 1;

    ComputerSystemMRA() = default;
    ComputerSystemMRA(const ComputerSystemMRA&) = delete;
    ComputerSystemMRA& operator=(const ComputerSystemMRA&) = delete;
    virtual ~ComputerSystemMRA();

    /// Reads the selected data afresh and fills the object with them. The one selector is
    /// systemData. MRA_STATUS_FAILED for another, or when not a single fact can be read; the object
    /// then stays as it was. Facts that are missing are told by the getters of the object.
    virtual MRAStatusEnum getFirstData(unsigned selector,
                                       ComputerSystemMRADataObject& object) noexcept = 0;
};

/// The data source of this host, or nullptr when memory is short. The caller owns and deletes it.
/// It keeps its own copy of the logger.
PYL_EXPORT ComputerSystemMRA* computerSystemMRAFactory(Logger& log) noexcept;
