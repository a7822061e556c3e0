#include "providers/consolidatedstatus/StatusInstance.h"

#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiDateTime.h"
#include "common/PYLUtil.h"

namespace consolidatedstatus {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using PYL::PYLUtil;

namespace {

constexpr const char* className = "PYL_ConsolidatedStatus";

CmpiBroker broker() {
    return CmpiBroker(PYLUtil::getBroker());
}

template <typename Value>
CmpiCpp::CmpiArray arrayOfOne(CMPIType type, const Value& value) {
    auto array = CmpiCpp::makeCmpiArray(broker(), 1, type);
    array.setElementAt(0, value);
    return array;
}

void setStatus(CmpiInstance& instance, PYL::operationalStatus status) {
    instance.setProperty("OperationalStatus",
                         arrayOfOne(CMPI_uint16, static_cast<unsigned short>(status)));
    instance.setProperty("StatusDescriptions",
                         arrayOfOne(CMPI_string, PYL::opstatusToString(status)));
    instance.setProperty("HealthState",
                         static_cast<unsigned short>(PYLUtil::opstatusToHealthState(status)));
}

CmpiCpp::CmpiDateTime dateTime(std::chrono::system_clock::time_point when) {
    using std::chrono::microseconds;
    const auto sinceEpoch = std::chrono::duration_cast<microseconds>(when.time_since_epoch());
    return CmpiCpp::makeCmpiDateTime(broker(), sinceEpoch, false);
}

}  // namespace

CmpiName StatusInstance::getClassName() {
    return className;
}

CmpiObjectPath StatusInstance::getPath() {
    auto path = CmpiCpp::makeCmpiObjectPath(broker(), PYL::BaseServerNameSpace, className);
    path.setHost(CmpiName(PYLUtil::getHostName()));
    const auto suffix = _reportingClass.empty() ? "" : ":" + _reportingClass;
    path.addKey("InstanceID", std::string("KTQ:") + className + suffix);
    return path;
}

CmpiInstance StatusInstance::getInstance() {
    const auto path = getPath();
    auto instance = CmpiCpp::makeCmpiInstance(broker(), path);
    instance.setProperty("InstanceID", path.getKey("InstanceID"));
    const bool isOverall = _reportingClass.empty();
    instance.setProperty("ElementName", isOverall
                                            ? "Consolidated status of " + PYLUtil::getHostName()
                                            : "Status of " + _reportingClass);
    if (!isOverall) instance.setProperty("ReportingClass", _reportingClass);
    const auto posted = isOverall ? _board->overall() : _board->find(_reportingClass);
    setStatus(instance, posted ? posted->status : PYL::statusUnknown);
    instance.setProperty("PostCount", static_cast<unsigned long long>(posted ? posted->posts : 0));
    if (posted) instance.setProperty("LastPosted", dateTime(posted->when));
    return instance;
}

}  // namespace consolidatedstatus
