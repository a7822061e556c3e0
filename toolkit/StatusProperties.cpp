#include "toolkit/StatusProperties.h"

#include "common/PYLUtil.h"
#include "toolkit/Properties.h"

#include <array>

namespace PYL {

using CmpiCpp::CmpiInstance;

namespace {

void setStatusArray(CmpiInstance& instance, const char* name, operationalStatus status) {
    setArray(instance, name, std::array{static_cast<unsigned short>(status)});
}

void setHealth(CmpiInstance& instance, operationalStatus status) {
    instance.setProperty("HealthState",
                         static_cast<unsigned short>(PYLUtil::opstatusToHealthState(status)));
}

}  // namespace

void setStatus(CmpiInstance& instance, operationalStatus status) {
    setStatusArray(instance, "OperationalStatus", status);
    setHealth(instance, status);
}

void setDescribedStatus(CmpiInstance& instance, operationalStatus status) {
    setStatusArray(instance, "OperationalStatus", status);
    setArray(instance, "StatusDescriptions", std::array{opstatusToString(status)});
    setHealth(instance, status);
}

void setGroupStatus(CmpiInstance& instance, operationalStatus status) {
    setStatusArray(instance, "GroupOperationalStatus", status);
    setHealth(instance, status);
}

}  // namespace PYL
