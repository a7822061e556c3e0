#include "providers/baseserver/ServerInstances.h"

#include "cmpicpp/CmpiArray.h"
#include "common/PYLUtil.h"
#include "providers/baseserver/PciClass.h"

#include <cstdio>
#include <string>

namespace baseserver {

using CmpiCpp::CmpiArray;
using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using PYL::PYLUtil;

namespace {

// Value maps of the CIM schema 2.x.
constexpr unsigned short enabled = 2;         // CIM_EnabledLogicalElement.EnabledState
constexpr unsigned short notApplicable = 12;  // CIM_EnabledLogicalElement.RequestedState
constexpr unsigned short notDedicated = 0;    // CIM_ComputerSystem.Dedicated
constexpr const char* groupClassName = "PYL_PCIDeviceGroup";
constexpr unsigned short unknownChassis = 0;  // CIM_Chassis.ChassisPackageType

CmpiBroker broker() {
    return CmpiBroker(PYLUtil::getBroker());
}

/// An instance with this path whose key properties are set from the path.
CmpiInstance instanceOf(const CmpiObjectPath& path) {
    auto instance = CmpiCpp::makeCmpiInstance(broker(), path);
    for (unsigned int i = 0; i < path.getKeyCount(); ++i) {
        const auto [name, value] = path.getKeyAt(i);
        instance.setProperty(name, value);
    }
    return instance;
}

/// Sets the property when the value is known; it stays NULL otherwise.
template <typename Value>
void setKnown(CmpiInstance& instance, const char* name, const std::optional<Value>& value) {
    if (value) instance.setProperty(name, *value);
}

template <typename Value>
CmpiArray arrayOf(CMPIType type, std::initializer_list<Value> values) {
    auto array = CmpiCpp::makeCmpiArray(broker(), static_cast<unsigned int>(values.size()), type);
    unsigned int index = 0;
    for (const auto& value : values) array.setElementAt(index++, value);
    return array;
}

/// An array of the one status, and the health that goes with it.
void setStatus(CmpiInstance& instance, const char* property, PYL::operationalStatus status) {
    instance.setProperty(property, arrayOf(CMPI_uint16, {static_cast<unsigned short>(status)}));
    instance.setProperty("HealthState",
                         static_cast<unsigned short>(PYLUtil::opstatusToHealthState(status)));
}

/// The identifiers other than the name by which the system is known, with what each one is.
void setIdentifyingInfo(CmpiInstance& instance, const ServerFacts& facts) {
    struct Identifier {
        const char* description;
        const std::optional<std::string>& value;
    };
    const Identifier identifiers[] = {{"System UUID", facts.uuid},
                                      {"Serial number", facts.serialNumber},
                                      {"Server system identifier", facts.serverSystemId}};
    unsigned int known = 0;
    for (const auto& identifier : identifiers) {
        if (identifier.value) ++known;
    }
    if (known == 0) return;
    auto values = CmpiCpp::makeCmpiArray(broker(), known, CMPI_string);
    auto descriptions = CmpiCpp::makeCmpiArray(broker(), known, CMPI_string);
    unsigned int index = 0;
    for (const auto& identifier : identifiers) {
        if (!identifier.value) continue;
        values.setElementAt(index, *identifier.value);
        descriptions.setElementAt(index, identifier.description);
        ++index;
    }
    instance.setProperty("OtherIdentifyingInfo", values);
    instance.setProperty("IdentifyingDescriptions", descriptions);
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

/// "Ethernet controller 8086:1572", from what is known.
std::string describe(const PciFunction& function) {
    std::string text = pciClassName(function.classCode.value_or(0xFF0000));
    if (function.vendorId && function.deviceId) {
        text += " " + hexText(*function.vendorId) + ":" + hexText(*function.deviceId);
    }
    return text;
}

}  // namespace

CmpiObjectPath ComputerSystemInstance::getPath() {
    return PYLUtil::getComputerSystemPath();
}
CmpiName ComputerSystemInstance::getClassName() {
    return PYL::ScopedCentralClassName;
}

CmpiInstance ComputerSystemInstance::getInstance() {
    auto instance = instanceOf(getPath());
    instance.setProperty("ElementName", PYLUtil::getHostName());
    instance.setProperty("Caption", "Host computer system");
    instance.setProperty("EnabledState", enabled);
    instance.setProperty("RequestedState", notApplicable);
    instance.setProperty("Dedicated", arrayOf(CMPI_uint16, {notDedicated}));
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

CmpiObjectPath ChassisInstance::getPath() {
    return PYLUtil::getChassisPath();
}
CmpiName ChassisInstance::getClassName() {
    return PYL::ChassisClassName;
}

CmpiInstance ChassisInstance::getInstance() {
    auto instance = instanceOf(getPath());
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
CmpiName PciDeviceInstance::getClassName() {
    return PYL::PCIDeviceClassName;
}

CmpiInstance PciDeviceInstance::getInstance() {
    auto instance = instanceOf(getPath());
    const auto& at = _function.address;
    const auto description = describe(_function);
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
    setStatus(instance, "OperationalStatus", statusOf(_function));
    return instance;
}

PYL::operationalStatus statusOf(const PciFunction& function) noexcept {
    if (!function.errors) return PYL::statusUnknown;
    if (function.errors->fatal > 0) return PYL::statusError;
    return function.errors->nonFatal > 0 ? PYL::statusDegraded : PYL::statusOK;
}

CmpiObjectPath PciDeviceGroupInstance::path() {
    auto path = CmpiCpp::makeCmpiObjectPath(broker(), PYL::BaseServerNameSpace, groupClassName);
    path.setHost(CmpiName(PYLUtil::getHostName()));
    path.addKey("InstanceID", std::string("KTQ:") + groupClassName + ":1");
    return path;
}
CmpiName PciDeviceGroupInstance::getClassName() {
    return groupClassName;
}

CmpiInstance PciDeviceGroupInstance::getInstance() {
    auto instance = instanceOf(getPath());
    instance.setProperty("ElementName", "PCI devices of " + PYLUtil::getHostName());
    setStatus(instance, "GroupOperationalStatus", _worst);
    return instance;
}

}  // namespace baseserver
