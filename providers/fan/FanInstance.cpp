#include "providers/fan/FanInstance.h"

#include "cmpicpp/CmpiArray.h"
#include "common/PYLUtil.h"

namespace fan {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using PYL::PYLUtil;

namespace {

constexpr const char* fanClass = "PYL_Fan";
constexpr const char* groupClass = "PYL_FanGroup";

CmpiBroker broker() {
    return CmpiBroker(PYLUtil::getBroker());
}

CmpiObjectPath localPath(const char* className) {
    auto path = CmpiCpp::makeCmpiObjectPath(broker(), PYL::BaseServerNameSpace, className);
    path.setHost(CmpiName(PYLUtil::getHostName()));
    return path;
}

CmpiInstance instanceOf(const CmpiObjectPath& path) {
    auto instance = CmpiCpp::makeCmpiInstance(broker(), path);
    for (unsigned int i = 0; i < path.getKeyCount(); ++i) {
        const auto [name, value] = path.getKeyAt(i);
        instance.setProperty(name, value);
    }
    return instance;
}

void setStatus(CmpiInstance& instance, const char* property, PYL::operationalStatus status) {
    auto array = CmpiCpp::makeCmpiArray(broker(), 1, CMPI_uint16);
    array.setElementAt(0, static_cast<unsigned short>(status));
    instance.setProperty(property, array);
    instance.setProperty("HealthState",
                         static_cast<unsigned short>(PYLUtil::opstatusToHealthState(status)));
}

void setKnown(CmpiInstance& instance, const char* property,
              const std::optional<std::uint64_t>& speed) {
    if (speed) instance.setProperty(property, static_cast<unsigned long long>(*speed));
}

}  // namespace

PYL::operationalStatus worstOf(const std::vector<Fan>& fans) noexcept {
    auto worst = PYL::statusUnknown;
    for (const auto& fan : fans) worst = PYL::updateWorst(worst, statusOf(fan));
    return worst;
}

CmpiName FanInstance::getClassName() {
    return fanClass;
}

CmpiObjectPath FanInstance::getPath() {
    auto path = localPath(fanClass);
    path.addKey("CreationClassName", fanClass);
    path.addKey("SystemCreationClassName", PYL::ScopedCentralClassName);
    path.addKey("SystemName", PYLUtil::getHostName());
    path.addKey("DeviceID", std::string("KTQ:") + fanClass + ":" + _fan.id);
    return path;
}

CmpiInstance FanInstance::getInstance() {
    auto instance = instanceOf(getPath());
    instance.setProperty("ElementName", _fan.label);
    instance.setProperty("Caption", "Fan");
    instance.setProperty("ActiveCooling", true);
    instance.setProperty("VariableSpeed", _fan.targetSpeed.has_value());
    setKnown(instance, "DesiredSpeed", _fan.targetSpeed);
    setKnown(instance, "CurrentSpeed", _fan.speed);
    setKnown(instance, "MinimumSpeed", _fan.minimumSpeed);
    setStatus(instance, "OperationalStatus", statusOf(_fan));
    return instance;
}

CmpiName FanGroupInstance::getClassName() {
    return groupClass;
}

CmpiObjectPath FanGroupInstance::getPath() {
    auto path = localPath(groupClass);
    path.addKey("InstanceID", std::string("KTQ:") + groupClass + ":1");
    return path;
}

CmpiInstance FanGroupInstance::getInstance() {
    auto instance = instanceOf(getPath());
    instance.setProperty("ElementName", "Fans of " + PYLUtil::getHostName());
    setStatus(instance, "GroupOperationalStatus", _worst);
    return instance;
}

}  // namespace fan
