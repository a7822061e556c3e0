#pragma once

#include "common/detail/IndicationCatalogue.h"

#include <array>

/// Rows of the catalogue: the record logs and the software installer.
namespace PYL {

// clang-format off

// The provider replaces every text of these two by the one that it read from the log.
inline constexpr auto machineCheckLogRows = std::to_array<IndicationRow>({
    {valmor, 1, "201", "KT MCA Record Log", severityInformational, 6, 0, alertTypeDevice, 1, "<Probable Cause>", "<Summary>", "<Description>", "<Recommended Action>"},
});

inline constexpr auto systemEventLogRows = std::to_array<IndicationRow>({
    {valmor, 1, "201", "KT SEL Record Log", severityInformational, 6, 0, alertTypeDevice, 1, "<Probable Cause>", "<Summary>", "<Description>", "<Recommended Action>"},
});

inline constexpr auto configurationLogRows = std::to_array<IndicationRow>({
    {both, 100, "100", "KT Configuration Record Log", severityInformational, 1, 0, alertTypeDevice, 1, "Config Record Log Heart Beat", "Config Record Log Heart Beat indication Id:", "Config Record Log Heart Beat test indication", noAction},
    {both, 201, "20", "KT Configuration Record Log", severityInformational, 6, 0, alertTypeDevice, 1, "Record Added", "Record added to the Configuration Record Log.", "A change of the hardware or firmware configuration of the server was recorded in the Configuration Record Log.", noAction},
});

inline constexpr auto installerRows = std::to_array<IndicationRow>({
    {nonValmor, 100, "100", "KT SC Installer", severityInformational, 1, 0, alertTypeDevice, 1, "SC Installer Heart Beat", "SC Installer Heart Beat indication Id:", "SC Installer Heart Beat test indication", noAction},
});

// clang-format on

}  // namespace PYL
