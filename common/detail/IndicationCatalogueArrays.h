#pragma once

#include "common/detail/IndicationCatalogue.h"

#include <array>

/// Rows of the catalogue: the array controllers and what is behind them.
namespace PYL {

// clang-format off

inline constexpr IndicationFamily arrays{.WBEMProviderName = "KT Vela Array", .eventCategory = 6};

inline constexpr auto arrayRows = std::to_array<IndicationRow>({
    {.family = arrays, .eventID = 6, .severity = severityInformational,
     .probableCauseDescription = "Controller Battery Status Changed to OK", .summary = "Controller battery status OK",
     .description = "The battery of the array controller's write cache is charged and works normally. The write cache "
                    "is protected against a loss of power."},
    {.family = arrays, .eventID = 7, .severity = severityWarning, .probableCause = causeBatteryLow,
     .probableCauseDescription = "Controller Battery Status Changed to Not Fully Charged",
     .summary = "Controller Battery Status set to Not Fully Charged",
     .description = "The battery of the array controller's write cache is not fully charged. Until it is, the "
                    "controller may bypass the cache, which makes writing slower.",
     .recommendedActions = "Let the battery charge, which takes a few hours after the server has been without power. "
                           "Replace the battery if it does not become fully charged."},
    {.family = arrays, .eventID = 8, .severity = severityMajor, .probableCause = causeBatteryFailure,
     .probableCauseDescription = "Controller Battery Status Changed to Failed",
     .summary = "Controller Battery status Failed",
     .description = "The battery of the array controller's write cache has failed. The controller no longer keeps "
                    "written data in the cache, and writing is slower.",
     .recommendedActions = "Replace the battery of the array controller."},
    {.family = arrays, .eventID = 9, .severity = severityInformational,
     .probableCauseDescription = "Controller Cache Status Changed to OK", .summary = "Controller cache status OK",
     .description = "The cache of the array controller is enabled and works as configured."},
    {.family = arrays, .eventID = 10, .severity = severityInformational, .probableCause = causePerformanceDegraded,
     .probableCauseDescription = "Array Controller Cache Status Changed to Temporarily Disabled",
     .summary = "Controller cache status temporarily disabled",
     .description = "The array controller has temporarily disabled its cache, for example while the battery charges or "
                    "a capacity expansion runs. No data is lost; writing is slower.",
     .recommendedActions = "Wait until the cause has passed. If the cache stays disabled, check the battery and the "
                           "cache module of the array controller."},
    // Consoles know it by the title of event 10; the summary tells them apart.
    {.family = arrays, .eventID = 11, .severity = severityWarning, .probableCause = causePerformanceDegraded,
     .probableCauseDescription = "Array Controller Cache Status Changed to Temporarily Disabled",
     .summary = "Array controller cache status permanently disabled",
     .description = "The array controller has disabled its cache until it is serviced, because the cache module or its "
                    "battery is faulty. The controller works without the cache, which is slower.",
     .recommendedActions = "Replace the cache module or the battery, whichever the controller's diagnostic report "
                           "names as faulty."},
    {.family = arrays, .eventID = 12, .severity = severityWarning, .probableCause = causePerformanceDegraded,
     .probableCauseDescription = "Array Controller Cache Status Changed to not configured",
     .summary = "Array controller cache status not configured",
     .description = "The cache of the array controller is not configured. The controller works without the cache, "
                    "which is slower.",
     .recommendedActions = "Configure the cache and its ratio of read to write cache with the array configuration "
                           "utility."},
    {.family = arrays, .eventID = 13, .severity = severityInformational, .probableCause = causePerformanceDegraded,
     .probableCauseDescription = "Array Controller ASIC Encryption Self Test Status Changed to OK",
     .summary = "Array controller ASIC encryption self test status OK",
     .description = "The self test of the encryption circuit (ASIC) of the array controller has passed. The controller "
                    "can encrypt and decrypt data."},
    {.family = arrays, .eventID = 14, .severity = severityMajor, .probableCause = causePerformanceDegraded,
     .probableCauseDescription = "Array Controller ASIC encryption self test status changed to Failed",
     .summary = "Array controller ASIC encryption self test status failed",
     .description = "The self test of the encryption circuit (ASIC) of the array controller has failed. The controller "
                    "cannot encrypt or decrypt data, and encrypted logical drives are not accessible.",
     .recommendedActions = "Restart the server to repeat the self test. If the test fails again, replace the array "
                           "controller and import the encryption keys into the new one."},
    {.family = arrays, .eventID = 15, .severity = severityInformational, .probableCause = causePerformanceDegraded,
     .probableCauseDescription = "Array Controller Encryption CSP NVRAM Status Changed to OK",
     .summary = "Array controller encryption CSP NVRAM status OK",
     .description = "The memory in which the array controller keeps the critical security parameters (CSP) of its "
                    "encryption works normally."},
    {.family = arrays, .eventID = 16, .severity = severityMajor, .probableCause = causePerformanceDegraded,
     .probableCauseDescription = "Array Controller encryption CSP NVRAM status changed to Failed",
     .summary = "Array controller encryption CSP NVRAM status failed",
     .description = "The memory in which the array controller keeps the critical security parameters (CSP) of its "
                    "encryption has failed. The controller may not be able to unlock encrypted logical drives.",
     .recommendedActions = "Make sure that there is a backup of the encryption keys. Then replace the array controller "
                           "and import the keys into the new one."},
    {.family = {.WBEMProviderName = "KT Vela Array"}, PYL_HEART_BEAT("Vela Array")},
});

inline constexpr auto arrayControllerRows = std::to_array<IndicationRow>({
    {.family = arrays, .eventID = 1, .severity = severityInformational,
     .probableCauseDescription = "Array Controller Status Changed to OK", .summary = "Controller status OK",
     .description = "The array controller works normally."},
    {.family = arrays, .eventID = 2, .severity = severityMajor, .probableCause = causeDeviceError,
     .probableCauseDescription = "Array Controller Status Changed to Error", .summary = "Controller status Error",
     .description = "The array controller reports an error or no longer responds. Its logical drives may not be "
                    "accessible.",
     .recommendedActions = "Check that the controller is seated properly and read its diagnostic report. If the error "
                           "persists, update its firmware or replace the controller."},
});

inline constexpr auto storageVolumeRows = std::to_array<IndicationRow>({
    {.family = arrays, .eventID = 1, .WBEMEventID = 101, .severity = severityInformational,
     .probableCauseDescription = "Logical Drive Status Changed to OK", .summary = "Logical drive status OK",
     .description = "The logical drive works normally and all of its physical drives are in use."},
    {.family = arrays, .eventID = 2, .WBEMEventID = 102, .severity = severityMajor, .probableCause = causeDiskFailure,
     .probableCauseDescription = "Logical Drive Status Changed to Error", .summary = "Logical drive status error",
     .description = "The logical drive has failed: more of its physical drives have failed than its fault tolerance "
                    "allows. Its data is not accessible.",
     .recommendedActions = "Do not replace several drives at once. Check power and cabling of the drives first; then "
                           "replace the failed ones and restore the data from a backup."},
    {.family = arrays, .eventID = 3, .WBEMEventID = 103, .severity = severityWarning, .probableCause = causeDiskFailure,
     .probableCauseDescription = "Logical Drive Status Changed to Degraded",
     .summary = "Logical drive in degraded state",
     .description = "A physical drive of the logical drive has failed. The data is complete, but the fault tolerance "
                    "of the logical drive is reduced or lost.",
     .recommendedActions = "Replace the failed physical drive. The logical drive is then rebuilt automatically."},
    {.family = arrays, .eventID = 4, .WBEMEventID = 104, .severity = severityWarning, .probableCause = causeDiskFailure,
     .probableCauseDescription = "Logical State Changed to Degraded",
     .summary = "Logical drive in degraded state - multipath failure",
     .description = "Only one path to the logical drive is left. Its data is accessible, but will not be if the cable, "
                    "port or controller on that path fails too.",
     .recommendedActions = "Check the cables and the input/output modules between the array controller and the storage "
                           "enclosure, and restore the second path."},
    {.family = arrays, .eventID = 5, .WBEMEventID = 105, .severity = severityWarning, .probableCause = causeDiskFailure,
     .probableCauseDescription = "Logical State Changed to expanding", .summary = "Logical drive in expanding state.",
     .description = "The capacity of the logical drive is being expanded. Its data remains accessible, but access is "
                    "slower until the expansion is complete.",
     .recommendedActions = "Let the expansion complete. Until then, do not switch the server off or remove drives."},
    {.family = arrays, .eventID = 6, .WBEMEventID = 106, .severity = severityWarning, .probableCause = causeDiskFailure,
     .probableCauseDescription = "Logical State Changed to queued for expansion",
     .summary = "Logical drive in queued for expansion state.",
     .description = "The logical drive waits for its expansion until the array controller has finished another "
                    "operation. Its data remains accessible.",
     .recommendedActions = "Let the operations in progress complete. Until then, do not remove drives."},
    {.family = arrays, .eventID = 7, .WBEMEventID = 107, .severity = severityWarning, .probableCause = causeDiskFailure,
     .probableCauseDescription = "Logical State Changed to not yet available",
     .summary = "Logical drive in not yet available state.",
     .description = "The logical drive is not yet available, because the array controller is still preparing it. It "
                    "cannot be read or written.",
     .recommendedActions = "Wait until the preparation is complete. If the state persists, check the physical drives "
                           "and the configuration of the array."},
    {.family = arrays, .eventID = 8, .WBEMEventID = 108, .severity = severityMajor, .probableCause = causeDiskFailure,
     .probableCauseDescription = "Logical State Changed to No Access- Encrypted with No Controller Key state",
     .summary = "Logical drive in No Access- Encrypted with No Controller Key.",
     .description = "The logical drive is encrypted and the array controller has no key for it. Its data is intact, "
                    "but cannot be read or written.",
     .recommendedActions = "Import or enter the controller key with which the logical drive was encrypted."},
    {.family = arrays, .eventID = 9, .WBEMEventID = 109, .severity = severityWarning, .probableCause = causeDiskFailure,
     .probableCauseDescription = "Logical State Changed to transforming from Unencrypted to Encrypted",
     .summary = "Logical drive in transforming from Unencrypted to Encrypted state.",
     .description = "The unencrypted data of the logical drive is being encrypted. It remains accessible, but access "
                    "is slower until the transformation is complete.",
     .recommendedActions = "Let the transformation complete. Until then, do not move the drives to another controller. "
                           "Make sure that there is a backup of the encryption keys."},
    {.family = arrays, .eventID = 10, .WBEMEventID = 110, .severity = severityMajor, .probableCause = causeDiskFailure,
     .probableCauseDescription = "Logical State Changed to No Access - Encrypted with Controller Encryption Not "
                                 "Enabled",
     .summary = "Logical drive in No Access - Encrypted with Controller Encryption Not Enabled state.",
     .description = "The logical drive is encrypted, but encryption is not enabled on the array controller. Its data "
                    "is intact, but cannot be read or written.",
     .recommendedActions = "Enable encryption on the array controller and provide the key of the logical drive."},
    {.family = arrays, .eventID = 11, .WBEMEventID = 111, .severity = severityWarning,
     .probableCause = causeDiskFailure,
     .probableCauseDescription = "Logical State Changed to Rapid Parity Initialization in progress",
     .summary = "Logical drive in Rapid Parity Initialization in progress state.",
     .description = "The parity of the logical drive is being initialized by the rapid method. The logical drive is "
                    "not available until the initialization is complete.",
     .recommendedActions = "Let the initialization complete. Until then, do not remove drives."},
    {.family = arrays, .eventID = 12, .WBEMEventID = 112, .severity = severityWarning,
     .probableCause = causeDiskFailure,
     .probableCauseDescription = "Logical State Changed to Rapid Parity Initialization Queued",
     .summary = "Logical drive in Rapid Parity Initialization Queued state.",
     .description = "The logical drive waits for the initialization of its parity until the array controller has "
                    "finished another operation. It is not available until the initialization is complete.",
     .recommendedActions = "Let the operations in progress complete."},
    {.family = arrays, .eventID = 13, .WBEMEventID = 113, .severity = severityWarning,
     .probableCause = causeDiskFailure,
     .probableCauseDescription = "Logical State Changed to New Logical Drive Key Rekey In Progress",
     .summary = "Logical drive in New Logical Drive Key Rekey In Progress.",
     .description = "The logical drive is being re-encrypted with a new drive key. Its data remains accessible, but "
                    "access is slower until the operation is complete.",
     .recommendedActions = "Let the operation complete. Until then, do not switch the server off or move the drives."},
});

inline constexpr IndicationRow wornOutDrive{
    .family = arrays, .sets = nonValmor, .eventID = 6, .WBEMEventID = 206, .severity = severityMajor,
    .probableCause = causeDiskFailure,
    .probableCauseDescription = "Physical drive status has changed to Predictive Failure due to Solid State wear out.",
    .summary = "Physical drive in Predictive Failure  state",
    .description = "The solid state drive has reached the end of its rated write endurance. It still works, but is "
                   "likely to fail soon.",
    .recommendedActions = "Back up the data and replace the solid state drive as soon as possible.",
};

inline constexpr IndicationRow foreignDrive{
    .family = arrays, .sets = nonValmor, .eventID = 7, .WBEMEventID = 207, .severity = severityWarning,
    .probableCause = causeDiskFailure,
    .probableCauseDescription = "Indicates that the physical drive was not able to be authenticated and could not be "
                                "validated to be a genuine KT hard drive.",
    .summary = "Physical drive status Degraded",
    .description = "The array controller could not verify that the physical drive is a genuine KT drive. Its firmware, "
                   "its indicators and its failure prediction cannot be relied on.",
    .recommendedActions = "Reseat the drive. If it still cannot be authenticated, replace it with a genuine KT drive.",
};

// Three events that nothing but their numbers tells apart: notices, unlike the failure that event 4
// predicts.
consteval IndicationRow earlySign(int eventID, int WBEMEventID) {
    return {
        .family = arrays, .eventID = eventID, .WBEMEventID = WBEMEventID, .severity = severityInformational,
        .probableCause = causeDiskFailure,
        .probableCauseDescription = "Physical drive status has changed to Predictive Failure ",
        .summary = "Physical drive in Predictive Failure  state",
        .description = "The physical drive reports an early sign of a failure to come. It still works normally.",
        .recommendedActions = "Plan the replacement of the physical drive for a maintenance window.",
    };
}

// There is no event 12, and the numbers for consoles go on without a gap.
inline constexpr auto diskDriveRows = std::to_array<IndicationRow>({
    {.family = arrays, .eventID = 1, .WBEMEventID = 201, .severity = severityInformational,
     .probableCauseDescription = "Physical Drive Status Changed to OK", .summary = "Physical drive status OK",
     .description = "The physical drive is online and works normally."},
    {.family = arrays, .eventID = 2, .WBEMEventID = 202, .severity = severityMajor, .probableCause = causeDiskFailure,
     .probableCauseDescription = "Physical Drive Status Changed to Error", .summary = "Physical drive status error",
     .description = "The physical drive has failed and was taken out of use. Logical drives that use it have lost "
                    "fault tolerance or have failed.",
     .recommendedActions = "Replace the physical drive with one of the same kind and of at least the same capacity."},
    {.family = arrays, .eventID = 3, .WBEMEventID = 203, .severity = severityInformational,
     .probableCauseDescription = "Physical Drive Status Changed to Rebuilding",
     .summary = "Physical drive is now rebuilding.",
     .description = "The data of the logical drives is being rebuilt on the physical drive. Their fault tolerance is "
                    "reduced until the rebuild is complete."},
    {.family = arrays, .eventID = 4, .WBEMEventID = 204, .severity = severityMajor, .probableCause = causeDiskFailure,
     .probableCauseDescription = "Physical Drive Status Changed to Predictive Failure",
     .summary = "Physical drive status Predictive Failure.",
     .description = "The self-monitoring of the physical drive (S.M.A.R.T.) predicts a failure. The drive still works, "
                    "but is likely to fail soon.",
     .recommendedActions = "Back up the data and replace the physical drive before it fails."},
    {.family = arrays, .eventID = 5, .WBEMEventID = 205, .severity = severityInformational,
     .probableCause = causeDiskFailure, .probableCauseDescription = "Physical Drive Status Changed to Degraded",
     .summary = "Physical drive in degraded state",
     .description = "The physical drive works with reduced performance or redundancy, for example through only one of "
                    "its two ports.",
     .recommendedActions = "Check the connection of the drive and the paths to it. Replace the drive if it stays "
                           "degraded."},
    wornOutDrive,
    onValmor(wornOutDrive,
        "Physical drive status has changed to Predictive Failure  due to Solid State wear out."),
    foreignDrive,
    onValmor(foreignDrive,
        "Indicates that the physical drive was notable to be authenticated and could not be validated to be a genuine "
        "KT hard drive."),
    {.family = arrays, .eventID = 8, .WBEMEventID = 208, .severity = severityInformational,
     .probableCauseDescription = "Physical Drive Status Changed to OK", .summary = "Physical drive SSD status OK",
     .description = "The solid state drive works normally and is within its rated write endurance."},
    earlySign(9, 209),
    earlySign(10, 210),
    earlySign(11, 211),
    {.family = arrays, .eventID = 13, .WBEMEventID = 212, .severity = severityWarning,
     .probableCause = causeDiskFailure, .probableCauseDescription = "Physical Drive is in Secure Erase State.",
     .summary = "Physical drive status Secure Erase.",
     .description = "The physical drive is being securely erased. It is not available to the array, and its data "
                    "cannot be recovered.",
     .recommendedActions = "Let the erase operation complete. Until then, do not remove the drive or switch it off."},
    {.family = arrays, .eventID = 14, .WBEMEventID = 213, .severity = severityInformational,
     .probableCauseDescription = "Physical Drive is Online and operational, Secure Erase operation is completed",
     .summary = "Physical Drive status Online",
     .description = "The secure erase operation of the physical drive is complete. The drive is online and can be "
                    "configured again."},
});

inline constexpr IndicationFamily enclosurePower{.WBEMProviderName = "KT Vela Array", .eventCategory = 17};
inline constexpr IndicationFamily enclosureClimate{.WBEMProviderName = "KT Vela Array", .eventCategory = 24};

inline constexpr auto storageEnclosureRows = std::to_array<IndicationRow>({
    {.family = enclosurePower, .eventID = 1, .WBEMEventID = 301, .severity = severityWarning,
     .probableCause = causePowerSupplyFailure,
     .probableCauseDescription = "Redundant Power Supply Status Changed to Non-Redundant",
     .summary = "Power Supply status Non-Redundant",
     .description = "The power supplies of the storage enclosure are no longer redundant. If another one fails, its "
                    "drives may lose power.",
     .recommendedActions = "Replace the failed power supply of the storage enclosure, or restore its input power."},
    {.family = enclosurePower, .eventID = 2, .WBEMEventID = 302, .severity = severityInformational,
     .probableCauseDescription = "Redundant Power Supply Status Changed to OK",
     .summary = "Redundant Power Supply status OK",
     .description = "The power supplies of the storage enclosure work normally and are redundant."},
    {.family = enclosurePower, .eventID = 3, .WBEMEventID = 303, .severity = severityWarning,
     .probableCause = causePowerSupplyFailure, .probableCauseDescription = "Redundant Power Supply Degraded",
     .summary = "Redundant Power Supply status Redundant Degraded",
     .description = "One of the redundant power supplies of the storage enclosure is degraded. The enclosure still has "
                    "sufficient power.",
     .recommendedActions = "Check the power supplies of the storage enclosure and their input power, and replace the "
                           "one that is degraded."},
    {.family = enclosureClimate, .eventID = 4, .WBEMEventID = 304, .severity = severityInformational,
     .probableCauseDescription = "Fan Status Changed to OK", .summary = "Fan Status OK",
     .description = "The fans of the storage enclosure work normally."},
    {.family = enclosureClimate, .eventID = 5, .WBEMEventID = 305, .severity = severityWarning,
     .probableCause = causeFanFailure, .probableCauseDescription = "Fan Degraded", .summary = "Fan status Degraded",
     .description = "A fan of the storage enclosure runs outside its normal limits. The enclosure is still cooled "
                    "sufficiently.",
     .recommendedActions = "Check the fans of the storage enclosure for dust and blocked airflow, and replace the one "
                           "that is degraded."},
    {.family = enclosureClimate, .eventID = 6, .WBEMEventID = 306, .severity = severityMajor,
     .probableCause = causeFanFailure, .probableCauseDescription = "Fan Failure", .summary = "Fan status Error",
     .description = "A fan of the storage enclosure has failed, and the enclosure may no longer be cooled "
                    "sufficiently. Its drives may overheat.",
     .recommendedActions = "Replace the failed fan of the storage enclosure at once. If the temperature rises, stop "
                           "access to its drives."},
});

inline constexpr auto enclosureTemperatureRows = std::to_array<IndicationRow>({
    {.family = enclosureClimate, .eventID = 7, .WBEMEventID = 307, .severity = severityInformational,
     .probableCauseDescription = "Temperature Status Changed to OK", .summary = "Temperature sensor status OK",
     .description = "The temperature of the storage enclosure is within its normal range."},
    {.family = enclosureClimate, .eventID = 8, .WBEMEventID = 308, .severity = severityWarning,
     .probableCause = causeTemperature, .probableCauseDescription = "Temperature Status Changed to Warning Condition",
     .summary = "Temperature sensor status Warning Condition",
     .description = "The temperature of the storage enclosure has exceeded its warning threshold. If it rises further, "
                    "drives may fail.",
     .recommendedActions = "Check the fans and the airflow of the storage enclosure and the room temperature."},
    {.family = enclosureClimate, .eventID = 9, .WBEMEventID = 309, .severity = severityMajor,
     .probableCause = causeTemperature, .probableCauseDescription = "Temperature Status Changed to Critical",
     .summary = "Temperature sensor status Critical",
     .description = "The temperature of the storage enclosure has exceeded its critical threshold. Drives may fail or "
                    "shut themselves down.",
     .recommendedActions = "Stop access to the drives and shut the storage enclosure down until its cooling is "
                           "restored."},
});

// clang-format on

}  // namespace PYL
