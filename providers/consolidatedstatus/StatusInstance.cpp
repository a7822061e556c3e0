#include "providers/consolidatedstatus/StatusInstance.h"

#include "cmpicpp/CmpiDateTime.h"
#include "common/PYLUtil.h"
#include "toolkit/LocalPaths.h"
#include "toolkit/Properties.h"
#include "toolkit/StatusProperties.h"

namespace consolidatedstatus {

using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiObjectPath;
using PYL::PYLUtil;

namespace {

CmpiCpp::CmpiDateTime dateTime(std::chrono::system_clock::time_point when) {
    using std::chrono::microseconds;
    const auto sinceEpoch = std::chrono::duration_cast<microseconds>(when.time_since_epoch());
    return CmpiCpp::makeCmpiDateTime(PYL::localBroker(), sinceEpoch, false);
}

}  // namespace

CmpiObjectPath StatusInstance::getPath() {
    return PYL::makeInstanceIdPath(className, _reportingClass);
}

CmpiInstance StatusInstance::getInstance() {
    auto instance = PYL::makeInstanceAt(getPath());
    const bool isOverall = _reportingClass.empty();
    instance.setProperty("ElementName", isOverall
                                            ? "Consolidated status of " + PYLUtil::getHostName()
                                            : "Status of " + _reportingClass);
    PYL::setKnown(instance, "ReportingClass", _reportingClass);
    const auto posted = isOverall ? _board->overall() : _board->find(_reportingClass);
    PYL::setDescribedStatus(instance, posted ? posted->status : PYL::statusUnknown);
    instance.setProperty("PostCount", static_cast<unsigned long long>(posted ? posted->posts : 0));
    if (posted) instance.setProperty("LastPosted", dateTime(posted->when));
    return instance;
}

}  // namespace consolidatedstatus
