#pragma once

#include "common/IndicationTypes.h"
#include "common/OpstatusUtils.h"

#include <cstdint>
#include <span>
#include <string_view>

/// The built-in definitions of all alert indications, as constant rows.
///
/// The texts go to management consoles as they stand: irregular capitals, blanks at the end and
/// misspellings are kept, since consoles match on them.
namespace PYL {

/// Which machines a row is for: the Valmor line, which uname(2) knows as "ia64", the others, or
/// all.
enum class RecordSet : std::uint8_t { nonValmor = 1, valmor = 2, both = 3 };

/// One definition. The fields are those of IndDBRec, with what its users read first in front; those
/// that are empty in every record are left out.
struct IndicationRow {
    RecordSet sets;
    int eventID;
    std::string_view WBEMEventID;
    std::string_view WBEMProviderName;
    indicationSeverity severity;
    unsigned int eventCategory;
    unsigned int eventSubCategory;
    CIMAlertType alertType;
    unsigned short probableCause;
    std::string_view probableCauseDescription;
    std::string_view summary;
    std::string_view description;
    std::string_view recommendedActions;
    std::string_view otherEventSubCategory = {};

    constexpr bool isIn(RecordSet set) const noexcept {
        return (static_cast<unsigned>(sets) & static_cast<unsigned>(set)) != 0;
    }
};

// Rows name the sets, and share these texts.
inline constexpr auto nonValmor = RecordSet::nonValmor;
inline constexpr auto valmor = RecordSet::valmor;
inline constexpr auto both = RecordSet::both;

inline constexpr std::string_view noAction = "No action is recommended";
inline constexpr std::string_view policySubCategory = "Consolidated Status Policy Changed";
inline constexpr std::string_view policySummary =
    "Consolidated Status Collection operational status policy has changed.";
inline constexpr std::string_view policyDescription =
    "KT_GroupSystemSpecificCollection operational status policy has been modified to monitor "
    "operational status from a different set of managed elements.";
inline constexpr std::string_view policyActions =
    "Inspect members of collection to discover whether each managed element status is included in "
    "collection operational status.";

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
