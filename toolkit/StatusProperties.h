#pragma once

#include "cmpicpp/CmpiInstance.h"
#include "common/OpstatusUtils.h"
#include "pylcommon_export.h"

#include <functional>
#include <ranges>

/// @file
/// The status of a provider's objects, in the properties by which clients know it.
///
/// What the broker refuses is thrown as CmpiStatus. Each function works on what it is given alone:
/// several threads may use them on instances of their own.
namespace PYL {

/// Sets OperationalStatus, an array of the one status, and the HealthState that goes with it.
PYL_EXPORT void setStatus(CmpiCpp::CmpiInstance& instance, operationalStatus status);

/// The same, and StatusDescriptions, an array of the status in words.
PYL_EXPORT void setDescribedStatus(CmpiCpp::CmpiInstance& instance, operationalStatus status);

/// Sets GroupOperationalStatus, from which PYLUtil::postStatus() reads what it posts, and the
/// HealthState that goes with it.
PYL_EXPORT void setGroupStatus(CmpiCpp::CmpiInstance& instance, operationalStatus status);

/// The worst status of the parts, as updateWorst() has it; statusUnknown without any. `statusOf`
/// gives the status of one part.
template <std::ranges::input_range Parts, typename StatusOf = std::identity>
operationalStatus worstStatus(const Parts& parts, StatusOf statusOf = {}) {
    auto worst = statusUnknown;
    for (const auto& part : parts) worst = updateWorst(worst, std::invoke(statusOf, part));
    return worst;
}

}  // namespace PYL
