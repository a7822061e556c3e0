#pragma once

#include "common/detail/IndicationCatalogue.h"

#include <array>

/// Rows of the catalogue: what keeps a server running, its fans, power supplies and temperatures.
namespace PYL {

// clang-format off

inline constexpr IndicationFamily fans{.sets = nonValmor, .WBEMProviderName = "KT Cooling", .eventCategory = 23};

inline constexpr auto fanRows = std::to_array<IndicationRow>({
    {.family = fans, .eventID = 1, .severity = severityInformational,
     .probableCauseDescription = "Fan Removed", .summary = "Fan removed",
     .description = "A fan has been taken out of its bay. The remaining fans run faster to maintain the airflow until "
                    "it is put back.",
     .recommendedActions = "If the fan was not removed for service, reseat it. Do not leave the fan bay empty for "
                           "longer than it takes to replace the fan."},
    {.family = fans, .eventID = 2, .severity = severityInformational,
     .probableCauseDescription = "Fan Inserted", .summary = "Fan inserted",
     .description = "A fan has been inserted into its bay and recognized by the server."},
    {.family = fans, .eventID = 3, .severity = severityMajor, .probableCause = causeFanFailure,
     .probableCauseDescription = "Fan Failed", .summary = "Fan failed",
     .description = "A fan has stopped or no longer reaches its requested speed. The remaining fans run faster; "
                    "without redundant fans the server may become too hot and shut down.",
     .recommendedActions = "Replace the failed fan. Check that nothing blocks its rotor and that its connector is "
                           "fully seated."},
    {.family = fans, .eventID = 4, .severity = severityInformational,
     .probableCauseDescription = "Fan Repaired", .summary = "Fan repaired",
     .description = "A fan that had failed runs at its requested speed again."},
    {.family = fans, .eventID = 5, .severity = severityInformational, .probableCause = causeRedundancyLost,
     .probableCauseDescription = "Cooling Redundancy has been Reduced", .summary = "Cooling redundancy reduced",
     .description = "A fan of the redundant set is missing or has failed. The set still cools the server and can "
                    "tolerate the failure of another fan.",
     .recommendedActions = "Find the fan that was removed or has failed, and replace it to restore full redundancy."},
    {.family = fans, .eventID = 6, .severity = severityMinor, .probableCause = causeRedundancyLost,
     .probableCauseDescription = "Cooling Redundancy has been Lost", .summary = "Cooling redundancy lost",
     .description = "The fan set still cools the server, but is no longer redundant. If another fan fails, the server "
                    "may shut down to protect itself from overheating.",
     .recommendedActions = "Replace the fans that are missing or have failed as soon as possible."},
    {.family = fans, .eventID = 8, .severity = severityInformational,
     .probableCauseDescription = "Cooling Redundancy has been Restored", .summary = "Cooling redundancy restored",
     .description = "Every fan of the redundant set is present and running. The server can tolerate the failure of a "
                    "fan again."},
    {.family = fans, .eventID = 9, .severity = severityMinor,
     .probableCauseDescription = "Fan Degraded", .summary = "Fan degraded.",
     .description = "A fan still runs, but unevenly or below its requested speed. It may fail.",
     .recommendedActions = "Remove dust from the fan and its airflow path, and check that the fan is fully seated. "
                           "Replace the fan if it stays degraded."},
    {.family = fans, .eventID = 10, .severity = severityMajor, .probableCause = causeRedundancyLost,
     .probableCauseDescription = "Cooling Redundancy Set has Failed", .summary = "Cooling redundancy set failed",
     .description = "Too few fans of the set are running to cool the server. The server may shut down at any moment to "
                    "protect its components from overheating.",
     .recommendedActions = "Move the workload away or shut the server down in an orderly way, then replace the failed "
                           "fans."},
    {.family = {.WBEMProviderName = "KT Cooling"}, PYL_HEART_BEAT("Fan")},
});

inline constexpr IndicationFamily powerSupplies{.sets = nonValmor, .WBEMProviderName = "KT Power", .eventCategory = 16};

inline constexpr auto powerSupplyRows = std::to_array<IndicationRow>({
    {.family = powerSupplies, .eventID = 1, .severity = severityInformational,
     .probableCauseDescription = "Power Supply Removed", .summary = "Power supply removed",
     .description = "A power supply has been taken out of its bay. The remaining power supplies carry the load of the "
                    "server.",
     .recommendedActions = "If the power supply was not removed for service, reseat it and reconnect its power cord."},
    {.family = powerSupplies, .eventID = 2, .severity = severityInformational,
     .probableCauseDescription = "Power Supply has been inserted", .summary = "Power supply inserted",
     .description = "A power supply has been inserted into its bay and recognized by the server."},
    {.family = powerSupplies, .eventID = 3, .severity = severityMajor, .probableCause = causePowerSupplyFailure,
     .probableCauseDescription = "Power Supply Failed", .summary = "Power supply failed",
     .description = "A power supply no longer delivers power within its limits. The remaining power supplies carry the "
                    "load; without redundant power supplies the server may lose power.",
     .recommendedActions = "Replace the failed power supply with one of the same type."},
    {.family = powerSupplies, .eventID = 4, .severity = severityInformational,
     .probableCauseDescription = "Power Supply Repaired", .summary = "Power supply repaired",
     .description = "A power supply that had failed delivers power within its limits again."},
    {.family = powerSupplies, .eventID = 5, .severity = severityInformational, .probableCause = causeRedundancyLost,
     .probableCauseDescription = "Power Redundancy has been Reduced", .summary = "Power redundancy reduced",
     .description = "A power supply of the redundant set is missing or has failed. The set still carries the load and "
                    "can tolerate the failure of another power supply.",
     .recommendedActions = "Find the power supply that was removed or has failed, and replace it to restore full "
                           "redundancy."},
    {.family = powerSupplies, .eventID = 6, .severity = severityMinor, .probableCause = causeRedundancyLost,
     .probableCauseDescription = "Power Redundancy has been Lost", .summary = "Power redundancy lost",
     .description = "The power supplies still carry the load, but are no longer redundant. If another power supply or "
                    "its input power fails, the server may lose power.",
     .recommendedActions = "Replace the power supplies that are missing or have failed, and check that every power "
                           "supply has input power."},
    {.family = powerSupplies, .eventID = 8, .severity = severityInformational,
     .probableCauseDescription = "Power Redundancy has been Restored", .summary = "Power redundancy restored",
     .description = "Every power supply of the redundant set is present and delivers power. The server can tolerate "
                    "the failure of a power supply again."},
    {.family = powerSupplies, .eventID = 9, .severity = severityMajor, .probableCause = causePowerSupplyFailure,
     .probableCauseDescription = "Power Supply failed due to input power loss",
     .summary = "Power supply failed - input power lost",
     .description = "A power supply has no input power and delivers none. The power supply itself may not be faulty.",
     .recommendedActions = "Check the power cord, the outlet, the circuit breaker and the power distribution unit that "
                           "feed the power supply."},
    {.family = powerSupplies, .eventID = 20, .severity = severityMinor,
     .probableCauseDescription = "Power Supply Degraded", .summary = "Power supply degraded.",
     .description = "A power supply still delivers power, but reports a condition that makes it less reliable, such as "
                    "a high temperature, a failing fan or an input voltage near its limits.",
     .recommendedActions = "Check the airflow and the input voltage of the power supply. Replace it if it stays "
                           "degraded."},
    {.family = powerSupplies, .eventID = 21, .severity = severityMajor, .probableCause = causeRedundancyLost,
     .probableCauseDescription = "Power Redundancy Set has Failed", .summary = "Power redundancy set failed",
     .description = "Too few power supplies of the set deliver power for the load of the server. The server may lose "
                    "power at any moment.",
     .recommendedActions = "Move the workload away or shut the server down in an orderly way, then replace the failed "
                           "power supplies or restore their input power."},
    {.family = {.WBEMProviderName = "KT Power"}, PYL_HEART_BEAT("Power Supply")},
    policyChange(201, 1,
        "This group status policy change is caused by one activation or deactivation of State Propagation Filtering "
        "for existing managed elements in KT_GroupSystemSpecificCollection"),
});

inline constexpr IndicationFamily temperatures{
    .sets = nonValmor, .WBEMProviderName = "KT Temperature", .eventCategory = 23};

inline constexpr auto sensorRows = std::to_array<IndicationRow>({
    {.family = temperatures, .eventID = 1, .severity = severityMajor, .probableCause = causeTemperature,
     .probableCauseDescription = "Temperature threshold exceeded detected",
     .summary = "Temperature threshhold exceeded detected",
     .description = "A temperature sensor reports a value above its threshold. If the temperature rises further, the "
                    "server may shut down to protect itself.",
     .recommendedActions = "Check the room temperature, and the airflow and the fans near the sensor."},
    {.family = temperatures, .eventID = 2, .severity = severityInformational, .probableCause = causeThresholdCrossed,
     .probableCauseDescription = "Threshold exceeded condition has recovered",
     .summary = "Threshold exceeded condition has recovered",
     .description = "The temperature has returned below its threshold."},
    {.family = {.WBEMProviderName = "KT Sensor"}, PYL_HEART_BEAT("Sensor")},
});

// clang-format on

}  // namespace PYL
