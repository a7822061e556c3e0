#pragma once

#include "common/IndicationTypes.h"
#include "common/OpstatusUtils.h"

#include <cstdint>
#include <span>
#include <string_view>

/// The built-in definitions of all alert indications, as constant rows.
///
/// Titles and summaries go to consoles as they stand: irregular capitals, blanks at the end and
/// misspellings are kept, since consoles match on them.
namespace PYL {

/// Which machines a row is for: the Valmor line, which uname(2) knows as "ia64", the others, or
/// all.
enum class RecordSet : std::uint8_t { nonValmor = 1, valmor = 2, both = 3 };

/// The values of CIM_AlertIndication.ProbableCause (CIM schema 2.x) that the rows use.
enum ProbableCause : unsigned short {
    causeOther = 1,
    causeAdapterError = 2,
    causeConnectionError = 5,
    causeCommunicationsFailure = 7,
    causeConfigurationError = 8,
    causeDeviceError = 24,
    causePerformanceDegraded = 35,
    causeSoftwareError = 47,
    causeTemperature = 51,
    causeThresholdCrossed = 52,
    causeSecurityBreached = 62,
    causeDiskFailure = 86,
    causeRedundancyLost = 88,
    causePowerSupplyFailure = 89,
    causeBatteryFailure = 92,
    causeFanFailure = 94,
    causeBatteryLow = 99,
    causeTimeout = 111,
};

/// What events of one kind have in common; it stands at the head of their rows.
struct IndicationFamily {
    RecordSet sets = RecordSet::both;
    std::string_view WBEMProviderName;
    unsigned int eventCategory = 1;
    unsigned int eventSubCategory = 0;
    CIMAlertType alertType = alertTypeDevice;
    std::string_view otherEventSubCategory = {};
};

/// One definition. The fields are those of IndDBRec; those that are empty in every record are left
/// out. What a row leaves out too is as in an event that asks for nothing to be done.
struct IndicationRow {
    IndicationFamily family;
    RecordSet sets = family.sets;
    int eventID;
    int WBEMEventID = eventID;  // what consoles know the event by, as text
    indicationSeverity severity;
    ProbableCause probableCause = causeOther;
    std::string_view probableCauseDescription;
    std::string_view summary;
    std::string_view description;
    std::string_view recommendedActions = "No action is recommended";

    constexpr bool isIn(RecordSet set) const noexcept {
        return (static_cast<unsigned>(sets) & static_cast<unsigned>(set)) != 0;
    }
};

// Rows name the sets.
inline constexpr auto nonValmor = RecordSet::nonValmor;
inline constexpr auto valmor = RecordSet::valmor;

/// The fields of a heart beat, which differ in their first words alone. A macro, since nothing else
/// joins literals.
#define PYL_HEART_BEAT(words)                          \
    .eventID = 100, .severity = severityInformational, \
    .probableCauseDescription = words " Heart Beat",   \
    .summary = words " Heart Beat indication Id:",     \
    .description = words " Heart Beat test indication"

/// The same event under the title that it has on Valmor machines.
consteval IndicationRow onValmor(IndicationRow row, std::string_view title) {
    row.sets = valmor;
    row.probableCauseDescription = title;
    return row;
}

inline constexpr std::string_view policyTitle =
    "This group status policy change is caused by activation or deactivation of State Propagation "
    "Filtering for existing managed elements in KT_GroupSystemSpecificCollection";

/// The event that the policy of the consolidated status has changed.
consteval IndicationRow policyChange(int eventID, int WBEMEventID,
                                     std::string_view title = policyTitle) {
    return {
        .family = {.WBEMProviderName = "KT Consolidated Status",
                   .alertType = alertTypeModelChange,
                   .otherEventSubCategory = "Consolidated Status Policy Changed"},
        .eventID = eventID,
        .WBEMEventID = WBEMEventID,
        .severity = severityInformational,
        .probableCauseDescription = title,
        .summary = "Consolidated Status Collection operational status policy has changed.",
        .description =
            "KT_GroupSystemSpecificCollection operational status policy has been modified to "
            "monitor operational status from a different set of managed elements.",
        .recommendedActions =
            "Inspect members of collection to discover whether each managed element status is "
            "included in collection operational status.",
    };
}

/// The rows of one indication provider, those of both record sets in the order of either.
struct IndicationGroup {
    std::string_view providerName;
    std::span<const IndicationRow> rows;
};

/// All groups.
std::span<const IndicationGroup> indicationGroups() noexcept;

/// The rows of the provider with exactly this name; none when there is no such provider.
std::span<const IndicationRow> findIndicationRows(std::string_view providerName) noexcept;

}  // namespace PYL
