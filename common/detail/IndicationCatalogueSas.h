#pragma once

#include "common/detail/IndicationCatalogue.h"

#include <array>

/// Rows of the catalogue: the SAS host bus adapters and what is behind them.
namespace PYL {

// clang-format off

inline constexpr auto sasRows = std::to_array<IndicationRow>({
    {nonValmor, 1, "1", "KT SAS HBA", severityInformational, 11, 0, alertTypeDevice, 1, "HBA Status Changed to OK", "HBA status OK", "The SAS host bus adapter (HBA) works normally.", noAction},
    {nonValmor, 2, "2", "KT SAS HBA", severityMajor, 11, 0, alertTypeDevice, 2, "HBA Status Changed to Error", "HBA status Error", "The SAS host bus adapter (HBA) reports an error, or does not answer any more. The drives behind it may be out of reach.", "Check that the adapter is seated properly, and update its firmware and driver. Replace the adapter if the error stays."},
    {nonValmor, 101, "101", "KT SAS", severityInformational, 6, 0, alertTypeDevice, 1, "Logical Drive Status Changed to OK", "Logical Drive status OK", "The logical drive of the SAS host bus adapter is in order and all its physical drives take part in it.", noAction},
    {nonValmor, 102, "102", "KT SAS", severityMajor, 6, 0, alertTypeDevice, 86, "Logical Drive Status Changed to Error", "Logical drive status Error", "The logical drive of the SAS host bus adapter has failed: more of its physical drives are lost than it can bear. Its data cannot be reached.", "Check power and cabling of the drives first; then replace the failed ones and restore the data from a backup."},
    {nonValmor, 103, "103", "KT SAS", severityWarning, 6, 0, alertTypeDevice, 86, "Logical Drive State Changed to Degraded", "Logical drive degraded state", "The logical drive of the SAS host bus adapter has lost a physical drive. Its data are complete, but another failure would lose them.", "Replace the failed physical drive and let the logical drive be rebuilt."},
    {nonValmor, 201, "201", "KT SAS", severityInformational, 6, 0, alertTypeDevice, 1, "Physical Drive Status Changed to OK", "Physical Drive Status is now OK", "The physical drive of the SAS host bus adapter is online and works normally.", noAction},
    {nonValmor, 202, "202", "KT SAS", severityMajor, 6, 0, alertTypeDevice, 86, "Physical Drive Status Changed to Error", "Physical drive status Error", "The physical drive of the SAS host bus adapter has failed. Its data can be reached only if it is a part of a fault-tolerant logical drive.", "Replace the physical drive."},
    {nonValmor, 203, "203", "KT SAS", severityInformational, 6, 0, alertTypeDevice, 1, "Physical Drive Rebuilding", "Physical drive rebuilding", "The data of the logical drive are being rebuilt on the physical drive. Another failure may lose them until that is done.", noAction},
    {nonValmor, 204, "204", "KT SAS", severityMajor, 6, 0, alertTypeDevice, 86, "Physical Drive Predictive Failure", "Physical drive predictive failure", "The physical drive of the SAS host bus adapter foresees its own failure (S.M.A.R.T.). It still works, but is likely to fail soon.", "Back up the data and replace the physical drive."},
    {nonValmor, 301, "301", "KT SAS", severityWarning, 17, 0, alertTypeDevice, 89, "Redundant Power Supply Status Changed to Non-Redundant", "Power Supply status Non-Redundant", "The storage enclosure behind the SAS host bus adapter runs on its last working power supply. If that fails too, its drives lose power.", "Replace the failed power supply of the enclosure, or restore its input power."},
    {nonValmor, 302, "302", "KT SAS", severityInformational, 17, 0, alertTypeDevice, 1, "Redundant Power Supply Status Changed to OK", "Redundant power supply status OK", "The power supplies of the storage enclosure behind the SAS host bus adapter work normally and are redundant.", noAction},
    {nonValmor, 303, "303", "KT SAS", severityWarning, 17, 0, alertTypeDevice, 89, "Redundant Power Supply Degraded", "Power supply status Redundant Degraded", "A redundant power supply of the storage enclosure behind the SAS host bus adapter is degraded or has failed. The others carry the load.", "Check the power supplies of the enclosure and their input power, and replace the one that is at fault."},
    {nonValmor, 304, "304", "KT SAS", severityInformational, 24, 0, alertTypeDevice, 1, "Fan Status Changed to OK", "Fan status OK", "The fans of the storage enclosure behind the SAS host bus adapter work normally.", noAction},
    {nonValmor, 305, "305", "KT SAS", severityWarning, 24, 0, alertTypeDevice, 94, "Fan Degraded", "Fan status Degraded", "A fan of the storage enclosure behind the SAS host bus adapter runs outside its limits or has failed. The others still cool the enclosure.", "Check the fans of the enclosure for dust and blocked air, and replace the one that is degraded."},
    {nonValmor, 306, "306", "KT SAS", severityMajor, 24, 0, alertTypeDevice, 94, "Fan Failure", "Fan status Error", "The fans of the storage enclosure behind the SAS host bus adapter no longer cool it well enough. Its drives may overheat.", "Replace the failed fan of the enclosure at once."},
    {nonValmor, 307, "307", "KT SAS", severityInformational, 24, 0, alertTypeDevice, 1, "Temperature Status Changed to OK", "Temperature sensor status OK", "The temperature of the storage enclosure behind the SAS host bus adapter is within its normal range.", noAction},
    {nonValmor, 308, "308", "KT SAS", severityWarning, 24, 0, alertTypeDevice, 51, "Temperature Status Changed to Warning Condition", "Temperature sensor status Warning Condition", "The temperature of the storage enclosure behind the SAS host bus adapter has passed its warning threshold. The drives in it age faster.", "Check the fans and the air path of the enclosure and the temperature of the room."},
    {nonValmor, 309, "309", "KT SAS", severityMajor, 24, 0, alertTypeDevice, 51, "Temperature Status Changed to Critical", "Temperature sensor status Critical", "The temperature of the storage enclosure behind the SAS host bus adapter has passed its critical threshold. Drives may fail or switch themselves off.", "Stop access to the drives and shut the enclosure down until it is cooled properly again."},
    {nonValmor, 401, "401", "KT SAS", severityMajor, 24, 0, alertTypeDevice, 51, "Physical drive status has changed to Predictive Failure ", "Physical drive in Predictive Failure  state", "The solid state drive of the SAS host bus adapter has used up most of the writes that its flash memory endures. It is likely to fail soon.", "Back up the data and replace the solid state drive."},
    {nonValmor, 402, "402", "KT SAS", severityWarning, 29, 0, alertTypeDevice, 62, "Physical drive status has changed to authentication failure ", "Physical drive status authentication failure", "The SAS host bus adapter could not verify that the physical drive is one of the maker's. Its firmware, its indicators and its failure prediction cannot be relied on.", "Reseat the drive and try again. Replace it with a genuine KT drive if it still cannot be authenticated."},
});

// clang-format on

}  // namespace PYL
