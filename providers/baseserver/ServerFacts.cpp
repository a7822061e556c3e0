#include "providers/baseserver/ServerFacts.h"

#include "common/PYLUtil.h"
#include "platform/host/ComputerSystemMRA.h"
#include "platform/smbios/SmBios.h"

#include <memory>

namespace baseserver {

namespace {

using Getter = MRAStatusEnum (ComputerSystemMRADataObject::*)(std::string&) const;

std::optional<std::string> fact(const ComputerSystemMRADataObject& data, Getter getter) {
    std::string text;
    if ((data.*getter)(text) != MRA_STATUS_SUCCESS) return std::nullopt;
    return text;
}

std::optional<std::string> given(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional(text);
}

void readSystem(ServerFacts& facts, Logger& log) {
    ComputerSystemMRADataObject data(log);
    const std::unique_ptr<ComputerSystemMRA> source(computerSystemMRAFactory(log));
    if (!source ||
        source->getFirstData(ComputerSystemMRA::systemData, data) != MRA_STATUS_SUCCESS) {
        return;
    }
    facts.manufacturer = fact(data, &ComputerSystemMRADataObject::getSystemManufacturer);
    facts.model = fact(data, &ComputerSystemMRADataObject::getSystemProductName);
    facts.productId = fact(data, &ComputerSystemMRADataObject::getSystemProductID);
    facts.serialNumber = fact(data, &ComputerSystemMRADataObject::getSystemSerialNumber);
    facts.uuid = fact(data, &ComputerSystemMRADataObject::getSystemUUID);
    facts.biosVendor = fact(data, &ComputerSystemMRADataObject::getBiosVendor);
    facts.biosVersion = fact(data, &ComputerSystemMRADataObject::getBiosVersion);
    const auto name = fact(data, &ComputerSystemMRADataObject::getHostOSName);
    const auto version = fact(data, &ComputerSystemMRADataObject::getHostOSVersion);
    if (name) facts.operatingSystem = version ? *name + " " + *version : *name;
}

void readChassis(ServerFacts& facts, Logger& log) {
    SmBios smbios(log);
    if (smbios.scan() != 0) return;
    const auto* chassis = smbios.getDmiChassis();
    if (!chassis) return;
    facts.chassisManufacturer = given(chassis->manufacturer);
    facts.chassisSerialNumber = given(chassis->serialNumber);
    facts.chassisAssetTag = given(chassis->assetTag);
    facts.chassisType = chassis->type;
}

}  // namespace

ServerFacts readServerFacts(Logger& log) {
    ServerFacts facts;
    readSystem(facts, log);
    readChassis(facts, log);
    facts.serverSystemId = given(PYL::PYLUtil::getServerSystemId(log));
    facts.agentlessOnly = PYL::PYLUtil::isAgentlessOnlyServer(log);
    return facts;
}

}  // namespace baseserver
