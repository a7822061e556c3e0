#include "providers/baseserver/ServerInstances.h"

#include "common/PYLUtil.h"
#include "providers/baseserver/PciClass.h"
#include "toolkit/LocalPaths.h"
#include "toolkit/Properties.h"
#include "toolkit/StatusProperties.h"

#include <array>
#include <cstdio>
#include <string>
#include <vector>

namespace baseserver {

using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using PYL::PYLUtil;
using PYL::setKnown;

namespace {

// Value maps of the CIM schema 2.x.
constexpr unsigned short enabled = 2;         // CIM_EnabledLogicalElement.EnabledState
constexpr unsigned short notApplicable = 12;  // CIM_EnabledLogicalElement.RequestedState
constexpr unsigned short notDedicated = 0;    // CIM_ComputerSystem.Dedicated
constexpr const char* groupClassName = "PYL_PCIDeviceGroup";
constexpr unsigned short unknownChassis = 0;  // CIM_Chassis.ChassisPackageType

/// The identifiers other than the name by which the system is known, with what each one is.
void setIdentifyingInfo(CmpiInstance& instance, const ServerFacts& facts) {
    std::vector<std::string> values;
    std::vector<std::string> descriptions;
    const auto tell = [&](const char* description, const std::optional<std::string>& value) {
        if (!value) return;
        values.push_back(*value);
        descriptions.emplace_back(description);
    };
    tell("System UUID", facts.uuid);
    tell("Serial number", facts.serialNumber);
    tell("Server system identifier", facts.serverSystemId);
    PYL::setArray(instance, "OtherIdentifyingInfo", values);
    PYL::setArray(instance, "IdentifyingDescriptions", descriptions);
}

/// "Debian GNU/Linux 12", or without a version where none is known.
std::optional<std::string> operatingSystem(const ServerFacts& facts) {
    if (!facts.osName || !facts.osVersion) return facts.osName;
    return *facts.osName + " " + *facts.osVersion;
}

std::string hexText(std::uint16_t number) {
    char text[5];
    std::snprintf(text, sizeof text, "%04x", static_cast<unsigned int>(number));
    return text;
}

/// "Ethernet controller: Intel Corporation 82574L Gigabit Network Connection" where the device has
/// a name, else "Ethernet controller 8086:10d3", from what is known.
std::string describe(const PciFunction& function, const std::optional<std::string>& name) {
    std::string text = pciClassName(function.classCode.value_or(0xFF0000));
    if (name) return text + ": " + *name;
    if (function.vendorId && function.deviceId) {
        text += " " + hexText(*function.vendorId) + ":" + hexText(*function.deviceId);
    }
    return text;
}

}  // namespace

CmpiObjectPath ComputerSystemInstance::getPath() { return PYLUtil::getComputerSystemPath(); }
CmpiName ComputerSystemInstance::getClassName() { return PYL::ScopedCentralClassName; }

CmpiInstance ComputerSystemInstance::getInstance() {
    auto instance = PYL::makeInstanceAt(getPath());
    instance.setProperty("ElementName", PYLUtil::getHostName());
    instance.setProperty("Caption", "Host computer system");
    instance.setProperty("EnabledState", enabled);
    instance.setProperty("RequestedState", notApplicable);
    PYL::setArray(instance, "Dedicated", std::array{notDedicated});
    setIdentifyingInfo(instance, *_facts);
    setKnown(instance, "Description", _facts->productName);
    setKnown(instance, "Manufacturer", _facts->manufacturer);
    setKnown(instance, "Model", _facts->productName);
    setKnown(instance, "SerialNumber", _facts->serialNumber);
    setKnown(instance, "UUID", _facts->uuid);
    setKnown(instance, "BIOSVendor", _facts->biosVendor);
    setKnown(instance, "BIOSVersion", _facts->biosVersion);
    setKnown(instance, "OperatingSystem", operatingSystem(*_facts));
    setKnown(instance, "ServerSystemID", _facts->serverSystemId);
    instance.setProperty("AgentlessOnly", _facts->agentlessOnly);
    return instance;
}

CmpiObjectPath ChassisInstance::getPath() { return PYLUtil::getChassisPath(); }
CmpiName ChassisInstance::getClassName() { return PYL::ChassisClassName; }

CmpiInstance ChassisInstance::getInstance() {
    auto instance = PYL::makeInstanceAt(getPath());
    instance.setProperty("ElementName", PYLUtil::getHostName() + " chassis");
    instance.setProperty("Caption", "Server chassis");
    setKnown(instance, "Manufacturer",
             _facts->chassisManufacturer ? _facts->chassisManufacturer : _facts->manufacturer);
    setKnown(instance, "Model", _facts->productName);
    setKnown(instance, "PartNumber", _facts->productId);
    setKnown(instance, "SerialNumber",
             _facts->chassisSerialNumber ? _facts->chassisSerialNumber : _facts->serialNumber);
    setKnown(instance, "UserTracking", _facts->chassisAssetTag);
    // Both value maps number the kinds of enclosure as DSP0134 does; its top bit tells of a lock.
    const unsigned short type = _facts->chassisType ? *_facts->chassisType & 0x7FU : unknownChassis;
    instance.setProperty("ChassisPackageType", type);
    return instance;
}

CmpiObjectPath PciDeviceInstance::getPath() {
    const auto& at = _function.address;
    return PYLUtil::getPCIDevicePath(at.domain, at.bus, at.device, at.function);
}
CmpiName PciDeviceInstance::getClassName() { return PYL::PCIDeviceClassName; }

CmpiInstance PciDeviceInstance::getInstance() {
    auto instance = PYL::makeInstanceAt(getPath());
    const auto& at = _function.address;
    const auto description = describe(_function, _name);
    instance.setProperty("ElementName", description);
    instance.setProperty("Description", description);
    instance.setProperty("Caption", "PCI device");
    instance.setProperty("BusNumber", static_cast<unsigned char>(at.bus));
    instance.setProperty("DeviceNumber", static_cast<unsigned char>(at.device));
    instance.setProperty("FunctionNumber", static_cast<unsigned char>(at.function));
    if (_function.classCode) {
        instance.setProperty("ClassCode", static_cast<unsigned char>(*_function.classCode >> 16U));
    }
    setKnown(instance, "VendorID", _function.vendorId);
    setKnown(instance, "PCIDeviceID", _function.deviceId);
    setKnown(instance, "SubsystemVendorID", _function.subsystemVendorId);
    setKnown(instance, "SubsystemID", _function.subsystemId);
    setKnown(instance, "RevisionID", _function.revision);
    setKnown(instance, "PhysicalSlot", _function.slot);
    setKnown(instance, "DriverName", _function.driver);
    PYL::setStatus(instance, statusOf(_function));
    return instance;
}

PYL::operationalStatus statusOf(const PciFunction& function) noexcept {
    if (!function.errors) return PYL::statusUnknown;
    if (function.errors->fatal > 0) return PYL::statusError;
    return function.errors->nonFatal > 0 ? PYL::statusDegraded : PYL::statusOK;
}

CmpiObjectPath PciDeviceGroupInstance::getPath() { return PYL::makeInstanceIdPath(groupClassName); }
CmpiName PciDeviceGroupInstance::getClassName() { return groupClassName; }

CmpiInstance PciDeviceGroupInstance::getInstance() {
    auto instance = PYL::makeInstanceAt(getPath());
    instance.setProperty("ElementName", "PCI devices of " + PYLUtil::getHostName());
    PYL::setGroupStatus(instance, _worst);
    return instance;
}

}  // namespace baseserver
