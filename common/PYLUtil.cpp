#include "common/PYLUtil.h"

#include "platform/host/ComputerSystemMRA.h"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <memory>

namespace PYL {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;

namespace {

constexpr int hostNameLength = 255;

CmpiObjectPath localPath(const char* className) {
    auto path = CmpiCpp::makeCmpiObjectPath(CmpiBroker(PYLUtil::getBroker()), BaseServerNameSpace,
                                            className);
    path.setHost(CmpiName(PYLUtil::getHostName()));
    path.addKey("CreationClassName", className);
    return path;
}

std::string pciLocation(int domain, int bus, int device, int function) {
    constexpr const char* format = "%04x:%02x:%02d.%d";
    const auto [ubus, udomain] =
        std::pair{static_cast<unsigned>(bus), static_cast<unsigned>(domain)};
    // A bus, device or function outside the ranges of PCI needs more than the usual 12 characters.
    const auto length = std::snprintf(nullptr, 0, format, udomain, ubus, device, function);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::snprintf(text.data(), text.size(), format, udomain, ubus, device, function);
    text.pop_back();
    return text;
}

CmpiObjectPath chassisPath(const std::string& tag) {
    auto path = localPath(ChassisClassName);
    path.addKey("Tag", tag);
    return path;
}

}  // namespace

constinit std::atomic<const CMPIBroker*> PYLUtil::_broker{nullptr};

std::string PYLUtil::getHostName() {
    // gethostname need not terminate a name that it cuts: the last byte is ours.
    std::array<char, hostNameLength + 1> name{};
    if (gethostname(name.data(), hostNameLength) != 0) return "Host Name Not Defined!";
    return name.data();
}

std::string PYLUtil::getScopedConformingProfileName() { return "Base Server"; }

void PYLUtil::setBroker(const CmpiBroker& broker) {
    _broker.store(broker.toCMPI(), std::memory_order_relaxed);
}

const CMPIBroker* PYLUtil::getBroker() { return _broker.load(std::memory_order_relaxed); }

std::string PYLUtil::getSystemUUID(Logger& log) {
    ComputerSystemMRADataObject data(log);
    std::string uuid;
    const std::unique_ptr<ComputerSystemMRA> source(computerSystemMRAFactory(log));
    if (source && source->getFirstData(ComputerSystemMRA::systemData, data) == MRA_STATUS_SUCCESS) {
        data.getSystemUUID(uuid);
    }
    return uuid;
}

CmpiObjectPath PYLUtil::getComputerSystemPath() {
    auto path = localPath(ScopedCentralClassName);
    path.addKey("Name", getHostName());
    return path;
}

CmpiObjectPath PYLUtil::getPCIDevicePath(int domain, int bus, int device, int function) {
    domain = 0;  // see the header: the identifiers in use know one domain
    auto path = localPath(PCIDeviceClassName);
    path.addKey("SystemCreationClassName", ScopedCentralClassName);
    path.addKey("SystemName", getHostName());
    path.addKey("DeviceID", std::string("KTQ:") + PCIDeviceClassName + ":" +
                                pciLocation(domain, bus, device, function));
    return path;
}

CmpiObjectPath PYLUtil::getChassisPath() { return chassisPath("1"); }

CmpiObjectPath PYLUtil::getChassisPath(unsigned int bladeNum) {
    constexpr std::size_t tagLength = 3;
    return chassisPath(std::to_string(static_cast<int>(bladeNum)).substr(0, tagLength));
}

}  // namespace PYL
