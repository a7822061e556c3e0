#pragma once

#include "common/detail/IndicationCatalogue.h"

#include <array>

/// Rows of the catalogue: what keeps a server running, its fans, power supplies and temperatures.
namespace PYL {

// clang-format off

inline constexpr auto fanRows = std::to_array<IndicationRow>({
    {nonValmor, 1, "1", "KT Cooling", severityInformational, 23, 0, alertTypeDevice, 1, "Fan Removed", "Fan removed", "A fan has been taken out of its bay. The remaining fans speed up to hold the airflow until it is put back.", "If the fan was not removed for service, reseat it. Do not leave a fan bay empty longer than it takes to exchange the fan."},
    {nonValmor, 2, "2", "KT Cooling", severityInformational, 23, 0, alertTypeDevice, 1, "Fan Inserted", "Fan inserted", "A fan has been put into its bay and was recognized by the server.", noAction},
    {nonValmor, 3, "3", "KT Cooling", severityMajor, 23, 0, alertTypeDevice, 94, "Fan Failed", "Fan failed", "A fan has stopped or no longer reaches the speed that it is told to run at. The remaining fans speed up; without a redundant fan the server may shut down when it becomes too hot.", "Replace the failed fan. Check that nothing blocks its rotor and that its connector is fully seated."},
    {nonValmor, 4, "4", "KT Cooling", severityInformational, 23, 0, alertTypeDevice, 1, "Fan Repaired", "Fan repaired", "A fan that had failed runs at the speed that it is told to run at again.", noAction},
    {nonValmor, 5, "5", "KT Cooling", severityInformational, 23, 0, alertTypeDevice, 88, "Cooling Redundancy has been Reduced", "Cooling redundancy reduced", "A fan of the redundant set is missing or has failed. The set still cools the server and can still bear the loss of another fan.", "Find the fan that was removed or has failed, and replace it to bring the set back to full redundancy."},
    {nonValmor, 6, "6", "KT Cooling", severityMinor, 23, 0, alertTypeDevice, 88, "Cooling Redundancy has been Lost", "Cooling redundancy lost", "The fan set still cools the server, but has no fan to spare. The loss of one more fan can make the server shut down to protect itself from heat.", "Replace the fans that are missing or have failed as soon as possible."},
    {nonValmor, 8, "8", "KT Cooling", severityInformational, 23, 0, alertTypeDevice, 1, "Cooling Redundancy has been Restored", "Cooling redundancy restored", "Every fan of the redundant set is present and running. The server can bear the loss of a fan again.", noAction},
    {nonValmor, 9, "9", "KT Cooling", severityMinor, 23, 0, alertTypeDevice, 1, "Fan Degraded", "Fan degraded.", "A fan still runs, but below the speed that it is told to run at or unevenly. It is likely to fail.", "Clean the fan and its air path from dust and check its seating. Replace the fan if it stays degraded."},
    {nonValmor, 10, "10", "KT Cooling", severityMajor, 23, 0, alertTypeDevice, 88, "Cooling Redundancy Set has Failed", "Cooling redundancy set failed", "Too few fans of the set are running to cool the server. The server may shut down at any moment to protect its components from heat.", "Move the workload away or shut the server down in an orderly way, then replace the failed fans."},
    {both, 100, "100", "KT Cooling", severityInformational, 1, 0, alertTypeDevice, 1, "Fan Heart Beat", "Fan Heart Beat indication Id:", "Fan Heart Beat test indication", noAction},
});

inline constexpr auto powerSupplyRows = std::to_array<IndicationRow>({
    {nonValmor, 1, "1", "KT Power", severityInformational, 16, 0, alertTypeDevice, 1, "Power Supply Removed", "Power supply removed", "A power supply has been taken out of its bay. The remaining power supplies carry the load of the server.", "If the power supply was not removed for service, reseat it and reconnect its power cord."},
    {nonValmor, 2, "2", "KT Power", severityInformational, 16, 0, alertTypeDevice, 1, "Power Supply has been inserted", "Power supply inserted", "A power supply has been put into its bay and was recognized by the server.", noAction},
    {nonValmor, 3, "3", "KT Power", severityMajor, 16, 0, alertTypeDevice, 89, "Power Supply Failed", "Power supply failed", "A power supply no longer delivers power within its limits. The remaining power supplies carry the load; without one to spare the server loses power.", "Replace the failed power supply with one of the same type."},
    {nonValmor, 4, "4", "KT Power", severityInformational, 16, 0, alertTypeDevice, 1, "Power Supply Repaired", "Power supply repaired", "A power supply that had failed delivers power within its limits again.", noAction},
    {nonValmor, 5, "5", "KT Power", severityInformational, 16, 0, alertTypeDevice, 88, "Power Redundancy has been Reduced", "Power redundancy reduced", "A power supply of the redundant set is missing or has failed. The set still carries the load and can still bear the loss of another power supply.", "Find the power supply that was removed or has failed, and replace it to bring the set back to full redundancy."},
    {nonValmor, 6, "6", "KT Power", severityMinor, 16, 0, alertTypeDevice, 88, "Power Redundancy has been Lost", "Power redundancy lost", "The power supplies still carry the load, but none is to spare. The loss of one more power supply, or of its feed, switches the server off.", "Replace the power supplies that are missing or have failed, and check that every power supply has input power."},
    {nonValmor, 8, "8", "KT Power", severityInformational, 16, 0, alertTypeDevice, 1, "Power Redundancy has been Restored", "Power redundancy restored", "Every power supply of the redundant set is present and delivers power. The server can bear the loss of a power supply again.", noAction},
    {nonValmor, 9, "9", "KT Power", severityMajor, 16, 0, alertTypeDevice, 89, "Power Supply failed due to input power loss", "Power supply failed - input power lost", "A power supply has no input power and delivers none. The power supply itself may be in order.", "Check the power cord, the outlet, the circuit breaker and the power distribution unit that feed the power supply."},
    {nonValmor, 20, "20", "KT Power", severityMinor, 16, 0, alertTypeDevice, 1, "Power Supply Degraded", "Power supply degraded.", "A power supply still delivers power, but reports a condition that makes it less reliable, such as a high temperature, an irregular fan or input voltage near its limit.", "Check the airflow and the input voltage of the power supply. Replace it if it stays degraded."},
    {nonValmor, 21, "21", "KT Power", severityMajor, 16, 0, alertTypeDevice, 88, "Power Redundancy Set has Failed", "Power redundancy set failed", "Too few power supplies of the set deliver power for the load of the server. The server may switch off at any moment.", "Move the workload away or shut the server down in an orderly way, then replace the failed power supplies or restore their input power."},
    {both, 100, "100", "KT Power", severityInformational, 1, 0, alertTypeDevice, 1, "Power Supply Heart Beat", "Power Supply Heart Beat indication Id:", "Power Supply Heart Beat test indication", noAction},
    {both, 201, "1", "KT Consolidated Status", severityInformational, 1, 0, alertTypeModelChange, 1, "This group status policy change is caused by one activation or deactivation of State Propagation Filtering for existing managed elements in KT_GroupSystemSpecificCollection", policySummary, policyDescription, policyActions, policySubCategory},
});

inline constexpr auto sensorRows = std::to_array<IndicationRow>({
    {nonValmor, 1, "1", "KT Temperature", severityMajor, 23, 0, alertTypeDevice, 51, "Temperature threshold exceeded detected", "Temperature threshhold exceeded detected", "A temperature sensor reads more than its threshold. If the temperature goes on rising the server shuts down to protect itself.", "Check the temperature of the room, the air path and the fans near the sensor."},
    {nonValmor, 2, "2", "KT Temperature", severityInformational, 23, 0, alertTypeDevice, 52, "Threshold exceeded condition has recovered", "Threshold exceeded condition has recovered", "The temperature is below the threshold again.", noAction},
    {both, 100, "100", "KT Sensor", severityInformational, 1, 0, alertTypeDevice, 1, "Sensor Heart Beat", "Sensor Heart Beat indication Id:", "Sensor Heart Beat test indication", noAction},
});

// clang-format on

}  // namespace PYL
