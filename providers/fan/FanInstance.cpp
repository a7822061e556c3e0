#include "providers/fan/FanInstance.h"

#include "common/PYLUtil.h"
#include "toolkit/LocalPaths.h"
#include "toolkit/Properties.h"
#include "toolkit/StatusProperties.h"

namespace fan {

using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using PYL::PYLUtil;
using PYL::setKnown;

namespace {

constexpr const char* fanClass = "PYL_Fan";
constexpr const char* groupClass = "PYL_FanGroup";

}  // namespace

CmpiName FanInstance::getClassName() { return fanClass; }

CmpiObjectPath FanInstance::getPath() {
    return PYL::makeDevicePath(fanClass, std::string("KTQ:") + fanClass + ":" + _fan.id);
}

CmpiInstance FanInstance::getInstance() {
    auto instance = PYL::makeInstanceAt(getPath());
    instance.setProperty("ElementName", _fan.label);
    instance.setProperty("Caption", "Fan");
    instance.setProperty("ActiveCooling", true);
    instance.setProperty("VariableSpeed", _fan.targetSpeed.has_value());
    setKnown(instance, "DesiredSpeed", _fan.targetSpeed);
    setKnown(instance, "CurrentSpeed", _fan.speed);
    setKnown(instance, "MinimumSpeed", _fan.minimumSpeed);
    PYL::setStatus(instance, statusOf(_fan));
    return instance;
}

CmpiName FanGroupInstance::getClassName() { return groupClass; }

CmpiObjectPath FanGroupInstance::getPath() { return PYL::makeInstanceIdPath(groupClass); }

CmpiInstance FanGroupInstance::getInstance() {
    auto instance = PYL::makeInstanceAt(getPath());
    instance.setProperty("ElementName", "Fans of " + PYLUtil::getHostName());
    PYL::setGroupStatus(instance, _worst);
    return instance;
}

}  // namespace fan
