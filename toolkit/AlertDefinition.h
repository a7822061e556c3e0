#pragma once

#include "common/IndicationTypes.h"
#include "common/OpstatusUtils.h"

#include <string_view>

namespace PYL {

/// The definition of an alert of a provider's own: what does not depend on the device that raises
/// it. Written as rows of a constant table, in which unnamed fields keep what stands here:
///
///     constexpr AlertDefinition alerts[] = {
///         {.number = 1,
///          .eventID = "1",
///          .providerName = "Example Uptime",
///          .severity = PYL::severityInformational,
///          .summary = "Server is up for a day"},
///     };
struct AlertDefinition {
    int number;                         ///< by which AlertSource::raise() knows it; from 1
    std::string_view eventID;           ///< by which management consoles know it
    std::string_view providerName;      ///< the provider's name for display, such as "KT Cooling"
    indicationSeverity severity;        ///< CIM_AlertIndication.PerceivedSeverity
    std::string_view summary;           ///< one line, which raise() may add a detail to
    std::string_view description = {};  ///< sentences
    unsigned int eventCategory = 0;     ///< KT_AlertIndication.EventCategory
    unsigned int eventSubCategory = 0;  ///< KT_AlertIndication.EventSubCategory; 0 leaves it out
    CIMAlertType alertType = alertTypeDevice;  ///< CIM_AlertIndication.AlertType
    unsigned short probableCause = 0;          ///< CIM_AlertIndication.ProbableCause; 0: unknown
    std::string_view probableCauseDescription = {};  ///< the event's title
    std::string_view recommendedActions = {};        ///< what an administrator is to do
};

}  // namespace PYL
