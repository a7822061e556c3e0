#pragma once

#include "common/detail/IndicationCatalogue.h"

#include <array>

/// Rows of the catalogue: the SAS host bus adapters and what is behind them.
namespace PYL {

// clang-format off

inline constexpr IndicationFamily sasAdapters{.sets = nonValmor, .WBEMProviderName = "KT SAS HBA", .eventCategory = 11};
inline constexpr IndicationFamily sasDrives{.sets = nonValmor, .WBEMProviderName = "KT SAS", .eventCategory = 6};
inline constexpr IndicationFamily sasEnclosurePower{
    .sets = nonValmor, .WBEMProviderName = "KT SAS", .eventCategory = 17};
inline constexpr IndicationFamily sasEnclosureClimate{
    .sets = nonValmor, .WBEMProviderName = "KT SAS", .eventCategory = 24};

inline constexpr auto sasRows = std::to_array<IndicationRow>({
    {.family = sasAdapters, .eventID = 1, .severity = severityInformational,
     .probableCauseDescription = "HBA Status Changed to OK", .summary = "HBA status OK",
     .description = "The SAS host bus adapter (HBA) works normally."},
    {.family = sasAdapters, .eventID = 2, .severity = severityMajor, .probableCause = causeAdapterError,
     .probableCauseDescription = "HBA Status Changed to Error", .summary = "HBA status Error",
     .description = "The SAS host bus adapter (HBA) reports an error or no longer responds. The drives attached to it "
                    "may not be accessible.",
     .recommendedActions = "Check that the adapter is seated properly, and update its firmware and driver. Replace the "
                           "adapter if the error persists."},
    {.family = sasDrives, .eventID = 101, .severity = severityInformational,
     .probableCauseDescription = "Logical Drive Status Changed to OK", .summary = "Logical Drive status OK",
     .description = "The logical drive of the SAS host bus adapter works normally and all of its physical drives are "
                    "in use."},
    {.family = sasDrives, .eventID = 102, .severity = severityMajor, .probableCause = causeDiskFailure,
     .probableCauseDescription = "Logical Drive Status Changed to Error", .summary = "Logical drive status Error",
     .description = "The logical drive of the SAS host bus adapter has failed: more of its physical drives have failed "
                    "than its fault tolerance allows. Its data is not accessible.",
     .recommendedActions = "Check power and cabling of the drives first; then replace the failed ones and restore the "
                           "data from a backup."},
    {.family = sasDrives, .eventID = 103, .severity = severityWarning, .probableCause = causeDiskFailure,
     .probableCauseDescription = "Logical Drive State Changed to Degraded", .summary = "Logical drive degraded state",
     .description = "A physical drive in a logical drive of the SAS host bus adapter has failed. The data is complete, "
                    "but the fault tolerance of the logical drive is reduced or lost.",
     .recommendedActions = "Replace the failed physical drive and let the logical drive rebuild."},
    {.family = sasDrives, .eventID = 201, .severity = severityInformational,
     .probableCauseDescription = "Physical Drive Status Changed to OK", .summary = "Physical Drive Status is now OK",
     .description = "The physical drive of the SAS host bus adapter is online and works normally."},
    {.family = sasDrives, .eventID = 202, .severity = severityMajor, .probableCause = causeDiskFailure,
     .probableCauseDescription = "Physical Drive Status Changed to Error", .summary = "Physical drive status Error",
     .description = "The physical drive of the SAS host bus adapter has failed. Its data remains accessible only if "
                    "the drive belongs to a fault-tolerant logical drive.",
     .recommendedActions = "Replace the physical drive."},
    {.family = sasDrives, .eventID = 203, .severity = severityInformational,
     .probableCauseDescription = "Physical Drive Rebuilding", .summary = "Physical drive rebuilding",
     .description = "The data of a logical drive of the SAS host bus adapter is being rebuilt on the physical drive. "
                    "The fault tolerance of the logical drive is reduced until the rebuild is complete."},
    {.family = sasDrives, .eventID = 204, .severity = severityMajor, .probableCause = causeDiskFailure,
     .probableCauseDescription = "Physical Drive Predictive Failure", .summary = "Physical drive predictive failure",
     .description = "The self-monitoring of the physical drive of the SAS host bus adapter (S.M.A.R.T.) predicts a "
                    "failure. The drive still works, but is likely to fail soon.",
     .recommendedActions = "Back up the data and replace the physical drive before it fails."},
    {.family = sasEnclosurePower, .eventID = 301, .severity = severityWarning, .probableCause = causePowerSupplyFailure,
     .probableCauseDescription = "Redundant Power Supply Status Changed to Non-Redundant",
     .summary = "Power Supply status Non-Redundant",
     .description = "The power supplies of the storage enclosure attached to the SAS host bus adapter are no longer "
                    "redundant. If another one fails, its drives may lose power.",
     .recommendedActions = "Replace the failed power supply of the enclosure, or restore its input power."},
    {.family = sasEnclosurePower, .eventID = 302, .severity = severityInformational,
     .probableCauseDescription = "Redundant Power Supply Status Changed to OK",
     .summary = "Redundant power supply status OK",
     .description = "The power supplies of the storage enclosure attached to the SAS host bus adapter work normally "
                    "and are redundant."},
    {.family = sasEnclosurePower, .eventID = 303, .severity = severityWarning, .probableCause = causePowerSupplyFailure,
     .probableCauseDescription = "Redundant Power Supply Degraded", .summary = "Power supply status Redundant Degraded",
     .description = "A redundant power supply of the storage enclosure attached to the SAS host bus adapter is "
                    "degraded. The enclosure still has sufficient power.",
     .recommendedActions = "Check the power supplies of the enclosure and their input power, and replace the one that "
                           "is degraded."},
    {.family = sasEnclosureClimate, .eventID = 304, .severity = severityInformational,
     .probableCauseDescription = "Fan Status Changed to OK", .summary = "Fan status OK",
     .description = "The fans of the storage enclosure attached to the SAS host bus adapter work normally."},
    {.family = sasEnclosureClimate, .eventID = 305, .severity = severityWarning, .probableCause = causeFanFailure,
     .probableCauseDescription = "Fan Degraded", .summary = "Fan status Degraded",
     .description = "A fan of the storage enclosure attached to the SAS host bus adapter runs outside its normal "
                    "limits. The enclosure is still cooled sufficiently.",
     .recommendedActions = "Check the fans of the enclosure for dust and blocked airflow, and replace the one that is "
                           "degraded."},
    {.family = sasEnclosureClimate, .eventID = 306, .severity = severityMajor, .probableCause = causeFanFailure,
     .probableCauseDescription = "Fan Failure", .summary = "Fan status Error",
     .description = "A fan of the storage enclosure attached to the SAS host bus adapter has failed, and the enclosure "
                    "may no longer be cooled sufficiently. Its drives may overheat.",
     .recommendedActions = "Replace the failed fan of the enclosure at once."},
    {.family = sasEnclosureClimate, .eventID = 307, .severity = severityInformational,
     .probableCauseDescription = "Temperature Status Changed to OK", .summary = "Temperature sensor status OK",
     .description = "The temperature of the storage enclosure attached to the SAS host bus adapter is within its "
                    "normal range."},
    {.family = sasEnclosureClimate, .eventID = 308, .severity = severityWarning, .probableCause = causeTemperature,
     .probableCauseDescription = "Temperature Status Changed to Warning Condition",
     .summary = "Temperature sensor status Warning Condition",
     .description = "The temperature of the storage enclosure attached to the SAS host bus adapter has exceeded its "
                    "warning threshold. If it rises further, drives may fail.",
     .recommendedActions = "Check the fans and the airflow of the enclosure and the room temperature."},
    {.family = sasEnclosureClimate, .eventID = 309, .severity = severityMajor, .probableCause = causeTemperature,
     .probableCauseDescription = "Temperature Status Changed to Critical",
     .summary = "Temperature sensor status Critical",
     .description = "The temperature of the storage enclosure attached to the SAS host bus adapter has exceeded its "
                    "critical threshold. Drives may fail or shut themselves down.",
     .recommendedActions = "Stop access to the drives and shut the enclosure down until its cooling is restored."},
    {.family = sasEnclosureClimate, .eventID = 401, .severity = severityMajor, .probableCause = causeTemperature,
     .probableCauseDescription = "Physical drive status has changed to Predictive Failure ",
     .summary = "Physical drive in Predictive Failure  state",
     .description = "The physical drive of the SAS host bus adapter predicts a failure because of its temperature. It "
                    "still works, but is likely to fail soon.",
     .recommendedActions = "Check the fans and the airflow of the enclosure and the room temperature. Back up the data "
                           "and replace the physical drive before it fails."},
    {.family = {.sets = nonValmor, .WBEMProviderName = "KT SAS", .eventCategory = 29}, .eventID = 402,
     .severity = severityWarning, .probableCause = causeSecurityBreached,
     .probableCauseDescription = "Physical drive status has changed to authentication failure ",
     .summary = "Physical drive status authentication failure",
     .description = "The SAS host bus adapter could not verify that the physical drive is a genuine KT drive. Its "
                    "firmware, its indicators and its failure prediction cannot be relied on.",
     .recommendedActions = "Reseat the drive. If it still cannot be authenticated, replace it with a genuine KT "
                           "drive."},
});

// clang-format on

}  // namespace PYL
