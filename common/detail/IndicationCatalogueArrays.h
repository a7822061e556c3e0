#pragma once

#include "common/detail/IndicationCatalogue.h"

#include <array>

/// Rows of the catalogue: the array controllers and what is behind them.
namespace PYL {

// clang-format off

inline constexpr IndicationFamily arrays{.WBEMProviderName = "KT Vela Array", .eventCategory = 6};

inline constexpr auto arrayRows = std::to_array<IndicationRow>({
    {
        .family = arrays,
        .eventID = 6, .WBEMEventID = "6",
        .severity = severityInformational,
        .probableCauseDescription = "Controller Battery Status Changed to OK",
        .summary = "Controller battery status OK",
        .description =
            "The battery of the array controller's write cache is charged and in order. The write cache is protected "
            "from a loss of power.",
    },
    {
        .family = arrays,
        .eventID = 7, .WBEMEventID = "7",
        .severity = severityWarning, .probableCause = causeBatteryLow,
        .probableCauseDescription = "Controller Battery Status Changed to Not Fully Charged",
        .summary = "Controller Battery Status set to Not Fully Charged",
        .description =
            "The battery of the array controller's write cache is not fully charged. Until it is, the controller may "
            "write through to the drives, which is slower.",
        .recommendedActions =
            "Let the battery charge, which takes a few hours after a long time without power. Replace the battery if "
            "it does not become fully charged.",
    },
    {
        .family = arrays,
        .eventID = 8, .WBEMEventID = "8",
        .severity = severityMajor, .probableCause = causeBatteryFailure,
        .probableCauseDescription = "Controller Battery Status Changed to Failed",
        .summary = "Controller Battery status Failed",
        .description =
            "The battery of the array controller's write cache has failed. The controller no longer keeps written "
            "data in the cache, and writing is slower.",
        .recommendedActions = "Replace the battery of the array controller.",
    },
    {
        .family = arrays,
        .eventID = 9, .WBEMEventID = "9",
        .severity = severityInformational,
        .probableCauseDescription = "Controller Cache Status Changed to OK",
        .summary = "Controller cache status OK",
        .description = "The cache of the array controller is enabled and works as configured.",
    },
    {
        .family = arrays,
        .eventID = 10, .WBEMEventID = "10",
        .severity = severityInformational, .probableCause = causePerformanceDegraded,
        .probableCauseDescription = "Array Controller Cache Status Changed to Temporarily Disabled",
        .summary = "Controller cache status temporarily disabled",
        .description =
            "The array controller has disabled its cache for now, for example while the battery charges or a capacity "
            "expansion runs. Data are safe; writing is slower.",
        .recommendedActions =
            "Wait until the condition is over. If the cache stays disabled, check the battery and the cache module of "
            "the array controller.",
    },
    {
        .family = arrays,
        .eventID = 11, .WBEMEventID = "11",
        .severity = severityWarning, .probableCause = causePerformanceDegraded,
        .probableCauseDescription = "Array Controller Cache Status Changed to Temporarily Disabled",
        .summary = "Array controller cache status permanently disabled",
        .description =
            "The array controller has disabled its cache until it is serviced, because the cache module or its "
            "battery is faulty. Data that were still in the cache may be lost.",
        .recommendedActions =
            "Check the data of the logical drives, and replace the cache module or the battery that the controller's "
            "diagnostic report names.",
    },
    {
        .family = arrays,
        .eventID = 12, .WBEMEventID = "12",
        .severity = severityWarning, .probableCause = causePerformanceDegraded,
        .probableCauseDescription = "Array Controller Cache Status Changed to not configured",
        .summary = "Array controller cache status not configured",
        .description =
            "The cache of the array controller is not configured. The controller reads and writes without it, which "
            "is slower.",
        .recommendedActions =
            "Configure the cache and its ratio of reading to writing with the array configuration utility.",
    },
    {
        .family = arrays,
        .eventID = 13, .WBEMEventID = "13",
        .severity = severityInformational, .probableCause = causePerformanceDegraded,
        .probableCauseDescription = "Array Controller ASIC Encryption Self Test Status Changed to OK",
        .summary = "Array controller ASIC encryption self test status OK",
        .description =
            "The self test of the encryption circuit (ASIC) of the array controller has passed. The controller can "
            "encrypt and decrypt data.",
    },
    {
        .family = arrays,
        .eventID = 14, .WBEMEventID = "14",
        .severity = severityMajor, .probableCause = causePerformanceDegraded,
        .probableCauseDescription = "Array Controller ASIC encryption self test status changed to Failed",
        .summary = "Array controller ASIC encryption self test status failed",
        .description =
            "The self test of the encryption circuit (ASIC) of the array controller has failed. The controller cannot "
            "encrypt or decrypt, and encrypted logical drives are out of reach.",
        .recommendedActions =
            "Restart the server to repeat the self test. Replace the array controller if the test fails again, and "
            "restore its encryption keys.",
    },
    {
        .family = arrays,
        .eventID = 15, .WBEMEventID = "15",
        .severity = severityInformational, .probableCause = causePerformanceDegraded,
        .probableCauseDescription = "Array Controller Encryption CSP NVRAM Status Changed to OK",
        .summary = "Array controller encryption CSP NVRAM status OK",
        .description =
            "The memory in which the array controller keeps the critical security parameters (CSP) of its encryption "
            "is in order.",
    },
    {
        .family = arrays,
        .eventID = 16, .WBEMEventID = "16",
        .severity = severityMajor, .probableCause = causePerformanceDegraded,
        .probableCauseDescription = "Array Controller encryption CSP NVRAM status changed to Failed",
        .summary = "Array controller encryption CSP NVRAM status failed",
        .description =
            "The memory in which the array controller keeps the critical security parameters (CSP) of its encryption "
            "has failed. The controller may not be able to unlock encrypted logical drives.",
        .recommendedActions =
            "Keep a backup of the encryption keys at hand. Replace the array controller and import the keys into the "
            "new one.",
    },
    {.family = {.WBEMProviderName = "KT Vela Array"}, PYL_HEART_BEAT("Vela Array")},
});

inline constexpr auto arrayControllerRows = std::to_array<IndicationRow>({
    {
        .family = arrays,
        .eventID = 1, .WBEMEventID = "1",
        .severity = severityInformational,
        .probableCauseDescription = "Array Controller Status Changed to OK",
        .summary = "Controller status OK",
        .description = "The array controller works normally.",
    },
    {
        .family = arrays,
        .eventID = 2, .WBEMEventID = "2",
        .severity = severityMajor, .probableCause = causeDeviceError,
        .probableCauseDescription = "Array Controller Status Changed to Error",
        .summary = "Controller status Error",
        .description =
            "The array controller reports an error, or does not answer any more. Its logical drives may be out of "
            "reach.",
        .recommendedActions =
            "Check that the controller is seated properly and read its diagnostic report. Update its firmware or "
            "replace the controller if the error stays.",
    },
});

inline constexpr auto storageVolumeRows = std::to_array<IndicationRow>({
    {
        .family = arrays,
        .eventID = 1, .WBEMEventID = "101",
        .severity = severityInformational,
        .probableCauseDescription = "Logical Drive Status Changed to OK",
        .summary = "Logical drive status OK",
        .description = "The logical drive is in order and all its physical drives take part in it.",
    },
    {
        .family = arrays,
        .eventID = 2, .WBEMEventID = "102",
        .severity = severityMajor, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Logical Drive Status Changed to Error",
        .summary = "Logical drive status error",
        .description =
            "The logical drive has failed: more of its physical drives are lost than its fault tolerance can bear. "
            "Its data cannot be reached.",
        .recommendedActions =
            "Do not replace several drives at once. Check power and cabling of the drives first; then replace the "
            "failed ones and restore the data from a backup.",
    },
    {
        .family = arrays,
        .eventID = 3, .WBEMEventID = "103",
        .severity = severityWarning, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Logical Drive Status Changed to Degraded",
        .summary = "Logical drive in degraded state",
        .description =
            "The logical drive has lost a physical drive. Its data are complete, but its fault tolerance is reduced "
            "or used up.",
        .recommendedActions = "Replace the failed physical drive. The logical drive is rebuilt without further help.",
    },
    {
        .family = arrays,
        .eventID = 4, .WBEMEventID = "104",
        .severity = severityWarning, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Logical State Changed to Degraded",
        .summary = "Logical drive in degraded state - multipath failure",
        .description =
            "The logical drive is reached by one path only. Its data are complete, but the failure of the remaining "
            "cable, port or controller makes it unreachable.",
        .recommendedActions =
            "Check the cables and the input/output modules between the array controller and the storage enclosure, "
            "and restore the second path.",
    },
    {
        .family = arrays,
        .eventID = 5, .WBEMEventID = "105",
        .severity = severityWarning, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Logical State Changed to expanding",
        .summary = "Logical drive in expanding state.",
        .description =
            "The logical drive is being expanded onto more capacity. Its data stay in reach, and access to them is "
            "slower meanwhile.",
        .recommendedActions = "Let the expansion complete. Do not switch the server off or remove drives meanwhile.",
    },
    {
        .family = arrays,
        .eventID = 6, .WBEMEventID = "106",
        .severity = severityWarning, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Logical State Changed to queued for expansion",
        .summary = "Logical drive in queued for expansion state.",
        .description =
            "The logical drive waits for its expansion, because the array controller is still at work on another one. "
            "Its data stay in reach.",
        .recommendedActions = "Let the operations that are under way complete. Do not remove drives meanwhile.",
    },
    {
        .family = arrays,
        .eventID = 7, .WBEMEventID = "107",
        .severity = severityWarning, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Logical State Changed to not yet available",
        .summary = "Logical drive in not yet available state.",
        .description =
            "The logical drive is not yet available, because the array controller is still preparing it. It cannot be "
            "read or written.",
        .recommendedActions =
            "Wait until the preparation is complete. If the state lasts, check the physical drives and the "
            "configuration of the array.",
    },
    {
        .family = arrays,
        .eventID = 8, .WBEMEventID = "108",
        .severity = severityMajor, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Logical State Changed to No Access- Encrypted with No Controller Key state",
        .summary = "Logical drive in No Access- Encrypted with No Controller Key.",
        .description =
            "The logical drive is encrypted and the array controller has no key for it. Its data are intact, but "
            "cannot be read or written.",
        .recommendedActions = "Import or enter the controller key that the logical drive was encrypted with.",
    },
    {
        .family = arrays,
        .eventID = 9, .WBEMEventID = "109",
        .severity = severityWarning, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Logical State Changed to transforming from Unencrypted to Encrypted",
        .summary = "Logical drive in transforming from Unencrypted to Encrypted state.",
        .description =
            "The plain data of the logical drive are being encrypted. They stay in reach, and access to them is "
            "slower meanwhile.",
        .recommendedActions =
            "Let the transformation complete. Do not move the drives to another controller meanwhile, and keep the "
            "encryption keys safe.",
    },
    {
        .family = arrays,
        .eventID = 10, .WBEMEventID = "110",
        .severity = severityMajor, .probableCause = causeDiskFailure,
        .probableCauseDescription =
            "Logical State Changed to No Access - Encrypted with Controller Encryption Not Enabled",
        .summary = "Logical drive in No Access - Encrypted with Controller Encryption Not Enabled state.",
        .description =
            "The logical drive is encrypted, but encryption is not enabled on the array controller. Its data are "
            "intact, but cannot be read or written.",
        .recommendedActions = "Enable encryption on the array controller and provide the key of the logical drive.",
    },
    {
        .family = arrays,
        .eventID = 11, .WBEMEventID = "111",
        .severity = severityWarning, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Logical State Changed to Rapid Parity Initialization in progress",
        .summary = "Logical drive in Rapid Parity Initialization in progress state.",
        .description =
            "The parity of the logical drive is being computed for all of its capacity at once. Until it is complete "
            "the logical drive is not available.",
        .recommendedActions = "Wait until the initialization is complete. Do not remove drives meanwhile.",
    },
    {
        .family = arrays,
        .eventID = 12, .WBEMEventID = "112",
        .severity = severityWarning, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Logical State Changed to Rapid Parity Initialization Queued",
        .summary = "Logical drive in Rapid Parity Initialization Queued state.",
        .description =
            "The logical drive waits for the initialization of its parity, because the array controller is still at "
            "work on another one. Until then it is not available.",
        .recommendedActions = "Let the operations that are under way complete.",
    },
    {
        .family = arrays,
        .eventID = 13, .WBEMEventID = "113",
        .severity = severityWarning, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Logical State Changed to New Logical Drive Key Rekey In Progress",
        .summary = "Logical drive in New Logical Drive Key Rekey In Progress.",
        .description =
            "The logical drive is being encrypted anew with another drive key. Its data stay in reach, and access to "
            "them is slower meanwhile.",
        .recommendedActions = "Let the operation complete. Do not switch the server off or move the drives meanwhile.",
    },
});

inline constexpr IndicationRow wornOutDrive{
    .family = arrays, .sets = nonValmor,
    .eventID = 6, .WBEMEventID = "206",
    .severity = severityMajor, .probableCause = causeDiskFailure,
    .probableCauseDescription =
        "Physical drive status has changed to Predictive Failure due to Solid State wear out.",
    .summary = "Physical drive in Predictive Failure  state",
    .description =
        "The solid state drive has used up most of the writes that its flash memory endures. It is likely to stop "
        "accepting data soon.",
    .recommendedActions = "Replace the solid state drive before its life is used up.",
};

inline constexpr IndicationRow foreignDrive{
    .family = arrays, .sets = nonValmor,
    .eventID = 7, .WBEMEventID = "207",
    .severity = severityWarning, .probableCause = causeDiskFailure,
    .probableCauseDescription =
        "Indicates that the physical drive was not able to be authenticated and could not be validated to be a "
        "genuine KT hard drive.",
    .summary = "Physical drive status Degraded",
    .description =
        "The array controller could not verify that the physical drive is one of the maker's. Its firmware, its "
        "indicators and its failure prediction cannot be relied on.",
    .recommendedActions =
        "Reseat the drive and try again. Replace it with a genuine KT drive if it still cannot be authenticated.",
};

// There is no event 12, and the numbers for consoles go on without a gap.
inline constexpr auto diskDriveRows = std::to_array<IndicationRow>({
    {
        .family = arrays,
        .eventID = 1, .WBEMEventID = "201",
        .severity = severityInformational,
        .probableCauseDescription = "Physical Drive Status Changed to OK",
        .summary = "Physical drive status OK",
        .description = "The physical drive is online and works normally.",
    },
    {
        .family = arrays,
        .eventID = 2, .WBEMEventID = "202",
        .severity = severityMajor, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Physical Drive Status Changed to Error",
        .summary = "Physical drive status error",
        .description =
            "The physical drive has failed and was taken out of use. Logical drives on it have lost fault tolerance, "
            "or their data.",
        .recommendedActions = "Replace the physical drive with one of the same kind and of at least the same capacity.",
    },
    {
        .family = arrays,
        .eventID = 3, .WBEMEventID = "203",
        .severity = severityInformational,
        .probableCauseDescription = "Physical Drive Status Changed to Rebuilding",
        .summary = "Physical drive is now rebuilding.",
        .description =
            "The data of the logical drives are being rebuilt on the physical drive. Their fault tolerance is reduced "
            "until that is done.",
    },
    {
        .family = arrays,
        .eventID = 4, .WBEMEventID = "204",
        .severity = severityMajor, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Physical Drive Status Changed to Predictive Failure",
        .summary = "Physical drive status Predictive Failure.",
        .description =
            "The physical drive foresees its own failure (S.M.A.R.T.). It still works, but is likely to fail soon.",
        .recommendedActions =
            "Back up the data, and replace the physical drive while its logical drives are fault tolerant.",
    },
    {
        .family = arrays,
        .eventID = 5, .WBEMEventID = "205",
        .severity = severityInformational, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Physical Drive Status Changed to Degraded",
        .summary = "Physical drive in degraded state",
        .description = "The physical drive still works, but not to its full extent, or by one of its two ports only.",
        .recommendedActions =
            "Check the drive's connection and the paths to it. Replace the drive if it stays degraded.",
    },
    wornOutDrive,
    onValmor(wornOutDrive,
        "Physical drive status has changed to Predictive Failure  due to Solid State wear out."),
    foreignDrive,
    onValmor(foreignDrive,
        "Indicates that the physical drive was notable to be authenticated and could not be validated to be a genuine "
        "KT hard drive."),
    {
        .family = arrays,
        .eventID = 8, .WBEMEventID = "208",
        .severity = severityInformational,
        .probableCauseDescription = "Physical Drive Status Changed to OK",
        .summary = "Physical drive SSD status OK",
        .description = "The solid state drive is online and has enough of its write endurance left.",
    },
    {
        .family = arrays,
        .eventID = 9, .WBEMEventID = "209",
        .severity = severityInformational, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Physical drive status has changed to Predictive Failure ",
        .summary = "Physical drive in Predictive Failure  state",
        .description =
            "The solid state drive foresees, from the way it is being written to, that its flash memory will wear out "
            "in the near future.",
        .recommendedActions = "Plan the replacement of the solid state drive.",
    },
    {
        .family = arrays,
        .eventID = 10, .WBEMEventID = "210",
        .severity = severityInformational, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Physical drive status has changed to Predictive Failure ",
        .summary = "Physical drive in Predictive Failure  state",
        .description = "The solid state drive has little left of the writes that its flash memory endures.",
        .recommendedActions = "Order a replacement, and exchange the solid state drive at the next maintenance window.",
    },
    {
        .family = arrays,
        .eventID = 11, .WBEMEventID = "211",
        .severity = severityInformational, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Physical drive status has changed to Predictive Failure ",
        .summary = "Physical drive in Predictive Failure  state",
        .description = "The solid state drive has almost nothing left of the writes that its flash memory endures.",
        .recommendedActions = "Replace the solid state drive without delay.",
    },
    {
        .family = arrays,
        .eventID = 13, .WBEMEventID = "212",
        .severity = severityWarning, .probableCause = causeDiskFailure,
        .probableCauseDescription = "Physical Drive is in Secure Erase State.",
        .summary = "Physical drive status Secure Erase.",
        .description =
            "The physical drive is being erased securely. It takes no part in the array, and its former data cannot "
            "be recovered.",
        .recommendedActions = "Let the erasure complete. Do not remove the drive or switch it off meanwhile.",
    },
    {
        .family = arrays,
        .eventID = 14, .WBEMEventID = "213",
        .severity = severityInformational,
        .probableCauseDescription = "Physical Drive is Online and operational, Secure Erase operation is completed",
        .summary = "Physical Drive status Online",
        .description =
            "The secure erasure of the physical drive is complete. The drive is online and can be configured again.",
    },
});

inline constexpr IndicationFamily enclosurePower{.WBEMProviderName = "KT Vela Array", .eventCategory = 17};
inline constexpr IndicationFamily enclosureClimate{.WBEMProviderName = "KT Vela Array", .eventCategory = 24};

inline constexpr auto storageEnclosureRows = std::to_array<IndicationRow>({
    {
        .family = enclosurePower,
        .eventID = 1, .WBEMEventID = "301",
        .severity = severityWarning, .probableCause = causePowerSupplyFailure,
        .probableCauseDescription = "Redundant Power Supply Status Changed to Non-Redundant",
        .summary = "Power Supply status Non-Redundant",
        .description =
            "The storage enclosure runs on its last working power supply. If that fails too, its drives lose power.",
        .recommendedActions = "Replace the failed power supply of the storage enclosure, or restore its input power.",
    },
    {
        .family = enclosurePower,
        .eventID = 2, .WBEMEventID = "302",
        .severity = severityInformational,
        .probableCauseDescription = "Redundant Power Supply Status Changed to OK",
        .summary = "Redundant Power Supply status OK",
        .description = "The power supplies of the storage enclosure work normally and are redundant.",
    },
    {
        .family = enclosurePower,
        .eventID = 3, .WBEMEventID = "303",
        .severity = severityWarning, .probableCause = causePowerSupplyFailure,
        .probableCauseDescription = "Redundant Power Supply Degraded",
        .summary = "Redundant Power Supply status Redundant Degraded",
        .description =
            "One of the redundant power supplies of the storage enclosure is degraded or has failed. The others carry "
            "the load.",
        .recommendedActions =
            "Check the power supplies of the storage enclosure and their input power, and replace the one that is at "
            "fault.",
    },
    {
        .family = enclosureClimate,
        .eventID = 4, .WBEMEventID = "304",
        .severity = severityInformational,
        .probableCauseDescription = "Fan Status Changed to OK",
        .summary = "Fan Status OK",
        .description = "The fans of the storage enclosure work normally.",
    },
    {
        .family = enclosureClimate,
        .eventID = 5, .WBEMEventID = "305",
        .severity = severityWarning, .probableCause = causeFanFailure,
        .probableCauseDescription = "Fan Degraded",
        .summary = "Fan status Degraded",
        .description =
            "A fan of the storage enclosure runs outside its limits or has failed, and the others take over its part. "
            "The enclosure is still cooled.",
        .recommendedActions =
            "Check the fans of the storage enclosure for dust and blocked air, and replace the one that is degraded.",
    },
    {
        .family = enclosureClimate,
        .eventID = 6, .WBEMEventID = "306",
        .severity = severityMajor, .probableCause = causeFanFailure,
        .probableCauseDescription = "Fan Failure",
        .summary = "Fan status Error",
        .description = "The fans of the storage enclosure no longer cool it well enough. Its drives may overheat.",
        .recommendedActions =
            "Replace the failed fan of the storage enclosure at once. Stop access to its drives if the temperature "
            "goes on rising.",
    },
});

inline constexpr auto enclosureTemperatureRows = std::to_array<IndicationRow>({
    {
        .family = enclosureClimate,
        .eventID = 7, .WBEMEventID = "307",
        .severity = severityInformational,
        .probableCauseDescription = "Temperature Status Changed to OK",
        .summary = "Temperature sensor status OK",
        .description = "The temperature of the storage enclosure is within its normal range.",
    },
    {
        .family = enclosureClimate,
        .eventID = 8, .WBEMEventID = "308",
        .severity = severityWarning, .probableCause = causeTemperature,
        .probableCauseDescription = "Temperature Status Changed to Warning Condition",
        .summary = "Temperature sensor status Warning Condition",
        .description =
            "The temperature of the storage enclosure has passed its warning threshold. The drives in it age faster.",
        .recommendedActions =
            "Check the fans and the air path of the storage enclosure and the temperature of the room.",
    },
    {
        .family = enclosureClimate,
        .eventID = 9, .WBEMEventID = "309",
        .severity = severityMajor, .probableCause = causeTemperature,
        .probableCauseDescription = "Temperature Status Changed to Critical",
        .summary = "Temperature sensor status Critical",
        .description =
            "The temperature of the storage enclosure has passed its critical threshold. Drives may fail or switch "
            "themselves off.",
        .recommendedActions =
            "Stop access to the drives and shut the storage enclosure down until it is cooled properly again.",
    },
});

// clang-format on

}  // namespace PYL
