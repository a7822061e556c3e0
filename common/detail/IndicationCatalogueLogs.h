#pragma once

#include "common/detail/IndicationCatalogue.h"

#include <array>

/// Rows of the catalogue: the record logs and the software installer.
namespace PYL {

// clang-format off

// The provider replaces every text of these two by the one that it read from the log.
inline constexpr auto machineCheckLogRows = std::to_array<IndicationRow>({
    {.family = {.sets = valmor, .WBEMProviderName = "KT MCA Record Log", .eventCategory = 6}, .eventID = 1,
     .WBEMEventID = 201, .severity = severityInformational,
     .probableCauseDescription = "<Probable Cause>", .summary = "<Summary>",
     .description = "<Description>",
     .recommendedActions = "<Recommended Action>"},
});

inline constexpr auto systemEventLogRows = std::to_array<IndicationRow>({
    {.family = {.sets = valmor, .WBEMProviderName = "KT SEL Record Log", .eventCategory = 6}, .eventID = 1,
     .WBEMEventID = 201, .severity = severityInformational,
     .probableCauseDescription = "<Probable Cause>", .summary = "<Summary>",
     .description = "<Description>",
     .recommendedActions = "<Recommended Action>"},
});

inline constexpr auto configurationLogRows = std::to_array<IndicationRow>({
    {.family = {.WBEMProviderName = "KT Configuration Record Log"}, PYL_HEART_BEAT("Config Record Log")},
    {.family = {.WBEMProviderName = "KT Configuration Record Log", .eventCategory = 6}, .eventID = 201,
     .WBEMEventID = 20, .severity = severityInformational,
     .probableCauseDescription = "Record Added", .summary = "Record added to the Configuration Record Log.",
     .description = "A change of the hardware or firmware configuration of the server was recorded in the "
                    "Configuration Record Log."},
});

inline constexpr auto installerRows = std::to_array<IndicationRow>({
    {.family = {.sets = nonValmor, .WBEMProviderName = "KT SC Installer"}, PYL_HEART_BEAT("SC Installer")},
});

// clang-format on

}  // namespace PYL
