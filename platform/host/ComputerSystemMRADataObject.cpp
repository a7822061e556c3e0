#include "platform/host/ComputerSystemMRADataObject.h"

#include <utility>

namespace {

template <typename Value>
MRAStatusEnum give(const std::optional<Value>& fact, Value& value) {
    if (!fact) return MRA_STATUS_DATA_NOT_AVAILABLE;
    value = *fact;
    return MRA_STATUS_SUCCESS;
}

}  // namespace

ComputerSystemMRADataObject::ComputerSystemMRADataObject(const Logger&) {}

MRAStatusEnum ComputerSystemMRADataObject::getSystemManufacturer(std::string& manufacturer) const {
    return give(_facts.manufacturer, manufacturer);
}

MRAStatusEnum ComputerSystemMRADataObject::getSystemProductName(std::string& productName) const {
    return give(_facts.productName, productName);
}

MRAStatusEnum ComputerSystemMRADataObject::getSystemProductID(std::string& productId) const {
    return give(_facts.productId, productId);
}

MRAStatusEnum ComputerSystemMRADataObject::getSystemSerialNumber(std::string& serialNumber) const {
    return give(_facts.serialNumber, serialNumber);
}

MRAStatusEnum ComputerSystemMRADataObject::getSystemUUID(std::string& uuid) const {
    return give(_facts.uuid, uuid);
}

MRAStatusEnum ComputerSystemMRADataObject::getSystemVirtualSerialNumber(
    std::string& serialNumber) const {
    return give(_facts.virtualSerialNumber, serialNumber);
}

MRAStatusEnum ComputerSystemMRADataObject::getSystemVirtualUUID(std::string& uuid) const {
    return give(_facts.virtualUuid, uuid);
}

MRAStatusEnum ComputerSystemMRADataObject::getSolutionName(std::string& name) const {
    return give(_facts.solutionName, name);
}

MRAStatusEnum ComputerSystemMRADataObject::getBiosVendor(std::string& vendor) const {
    return give(_facts.biosVendor, vendor);
}

MRAStatusEnum ComputerSystemMRADataObject::getBiosVersion(std::string& version) const {
    return give(_facts.biosVersion, version);
}

MRAStatusEnum ComputerSystemMRADataObject::getBiosReleaseDate(std::string& releaseDate) const {
    return give(_facts.biosReleaseDate, releaseDate);
}

MRAStatusEnum ComputerSystemMRADataObject::getOSType(operatingSystemEnum& type) const {
    return give(_facts.osType, type);
}

MRAStatusEnum ComputerSystemMRADataObject::getHostOSName(std::string& name) const {
    return give(_facts.osName, name);
}

MRAStatusEnum ComputerSystemMRADataObject::getHostOSVersion(std::string& version) const {
    return give(_facts.osVersion, version);
}

void ComputerSystemMRADataObject::setFacts(ComputerSystemFacts facts) {
    _facts = std::move(facts);
}
