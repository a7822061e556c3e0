#pragma once

#include "common/detail/IndicationCatalogue.h"

#include <array>

/// Rows of the catalogue: the server as a whole, its processors, memory and management processor.
namespace PYL {

// clang-format off

inline constexpr IndicationFamily providersThemselves{.WBEMProviderName = "KT WBEM"};
inline constexpr IndicationFamily tests{.WBEMProviderName = "KT Test"};
inline constexpr IndicationFamily recoveryFromPower{
    .sets = nonValmor, .WBEMProviderName = "KT Recovery", .eventCategory = 16};
inline constexpr IndicationFamily recoveryFromHeat{
    .sets = nonValmor, .WBEMProviderName = "KT Recovery", .eventCategory = 23};

inline constexpr auto baseServerRows = std::to_array<IndicationRow>({
    {.family = providersThemselves, .eventID = 1, .severity = severityInformational,
     .probableCauseDescription = "WBEM Providers Started", .summary = "WBEM Providers started ",
     .description = "KT Management WBEM Providers have started."},
    {.family = providersThemselves, .sets = nonValmor, .eventID = 4, .severity = severityInformational,
     .probableCauseDescription = "This event indicates the operating system has completed its initialization and ready "
                                 "for use.  This is an informational message.  No action is needed.",
     .summary = "OS boot completed",
     .description = "The operating system has completed its initialization and the server is ready for use."},
    {.family = {.WBEMProviderName = "KT Server"}, PYL_HEART_BEAT("Base Server")},
    {.family = tests, .eventID = 101, .WBEMEventID = 1, .severity = severityInformational,
     .probableCauseDescription = "Test Indication", .summary = "Test Event Id: ",
     .description = "This is an Informational Test Event. "},
    {.family = tests, .eventID = 102, .WBEMEventID = 2, .severity = severityWarning,
     .probableCauseDescription = "Test Indication", .summary = "Test Event Id: ",
     .description = "This is a Warning Test Event. "},
    {.family = tests, .eventID = 103, .WBEMEventID = 3, .severity = severityCritical,
     .probableCauseDescription = "Test Indication", .summary = "Test Event Id: ",
     .description = "This is a Critical Test Event. "},
    {.family = recoveryFromPower, .eventID = 200, .WBEMEventID = 1, .severity = severityMajor,
     .probableCause = causeTimeout, .probableCauseDescription = "ASR Reboot Occurred", .summary = "ASR reboot occurred",
     .description = "Automatic Server Recovery (ASR) has restarted the server, because the operating system did not "
                    "reset the watchdog timer in time. It had stopped responding or was too busy.",
     .recommendedActions = "Look for the cause in the operating system's logs and crash dump, and in the management "
                           "log for the time before the restart. If it was not a hardware fault, update firmware and "
                           "drivers."},
    {.family = recoveryFromHeat, .eventID = 201, .WBEMEventID = 2, .severity = severityMajor,
     .probableCause = causeTemperature,
     .probableCauseDescription = "Thermal Reboot Occurred", .summary = "Thermal reboot occurred",
     .description = "The server was restarted because a temperature exceeded its critical threshold. Continued "
                    "operation could have damaged components.",
     .recommendedActions = "Check the room temperature, the air filters, the blanking panels and all fans. The "
                           "management log names the sensor that exceeded its threshold."},
    {.family = {.sets = nonValmor, .WBEMProviderName = "KT POST", .eventCategory = 4}, .eventID = 202, .WBEMEventID = 1,
     .severity = severityMajor, .probableCause = causeConfigurationError,
     .probableCauseDescription = "POST Errors Occurred", .summary = "POST errors occurred",
     .description = "The Power On Self Test (POST) of the last start found one or more errors. A component may be "
                    "disabled or may not work as configured.",
     .recommendedActions = "Check the POST messages in the management log, and correct the configuration of the "
                           "components that they name or replace them."},
    {.family = recoveryFromHeat, .eventID = 203, .WBEMEventID = 3, .severity = severityMajor,
     .probableCause = causeFanFailure,
     .probableCauseDescription = "Fan Failure Reboot Occurred", .summary = "Fan failure reboot occurred",
     .description = "The server was restarted because too few fans were running to cool it.",
     .recommendedActions = "Replace the failed fans before the server is put back into service, and check that no "
                           "other component has overheated."},
    {.family = recoveryFromPower, .eventID = 204, .WBEMEventID = 4, .severity = severityMajor,
     .probableCause = causePowerSupplyFailure,
     .probableCauseDescription = "VRM Failure Reboot Occurred", .summary = "VRM failure reboot occurred",
     .description = "The server was restarted because a voltage regulator module (VRM) no longer supplied its "
                    "component with the correct voltage.",
     .recommendedActions = "Find the failed VRM in the management log. Replace it, or the processor or system board on "
                           "which it is."},
});

inline constexpr IndicationFamily processors{.sets = nonValmor, .WBEMProviderName = "KT Processor", .eventCategory = 2};

inline constexpr auto cpuRows = std::to_array<IndicationRow>({
    {.family = processors, .eventID = 1, .severity = severityMinor,
     .probableCauseDescription = "CPU Failed Power on Self Test (POST)",
     .summary = "CPU Failed Power on Self Test (POST)",
     .description = "A processor did not pass the Power On Self Test (POST). The server does not use it.",
     .recommendedActions = "Reseat the processor and check its socket and heat sink. Replace the processor if it fails "
                           "again."},
    {.family = processors, .eventID = 2, .severity = severityMinor,
     .probableCauseDescription = "CPU has been disabled by BIOS or EFI",
     .summary = "CPU has been disabled by BIOS or EFI",
     .description = "The system firmware has disabled a processor, because of a fault or because of a setting. The "
                    "server runs with fewer processors.",
     .recommendedActions = "If the processor was not disabled intentionally, find the fault in the management log, "
                           "replace the processor and enable it in the firmware setup."},
    {.family = processors, .eventID = 3, .severity = severityMinor,
     .probableCauseDescription = "CPU Predictive failure detected", .summary = "CPU Predictive failure detected",
     .description = "A processor has corrected more internal errors than normal. It still works, but may fail.",
     .recommendedActions = "Plan the replacement of the processor at the next maintenance window. Update the system "
                           "firmware first if a newer release handles corrected errors differently."},
    {.family = {.WBEMProviderName = "KT Processor"}, PYL_HEART_BEAT("CPU")},
});

inline constexpr IndicationFamily memory{.sets = nonValmor, .WBEMProviderName = "KT Memory", .eventCategory = 3};

inline constexpr auto memoryRows = std::to_array<IndicationRow>({
    {.family = memory, .eventID = 1, .severity = severityMajor,
     .probableCauseDescription = "Memory Module Failed or Predicted to Fail",
     .summary = "Memory module has failed or is predicted to fail",
     .description = "A memory module has had an error that could not be corrected, or corrects errors so often that "
                    "such an error is likely. The server may stop if it occurs.",
     .recommendedActions = "Replace the memory module that the event names. If the error persists, check the slot and "
                           "the memory board."},
    {.family = memory, .eventID = 2, .severity = severityMajor,
     .probableCauseDescription = "Memory Board Error", .summary = "Memory board error",
     .description = "A memory board reports an error. Its memory modules may be disabled or may run without "
                    "protection.",
     .recommendedActions = "Reseat the memory board and its modules. Replace the board if the error returns."},
    {.family = memory, .eventID = 3, .severity = severityMajor, .probableCause = causeRedundancyLost,
     .probableCauseDescription = "Advanced Memory Protection Degraded",
     .summary = "Advanced Memory Protection degraded",
     .description = "The protection of the memory, by spare, mirrored or additional memory, has been used or no longer "
                    "works. The next error that cannot be corrected may stop the server.",
     .recommendedActions = "Replace the memory module whose errors caused this, and check after the next start that "
                           "the protection is active."},
    {.family = memory, .eventID = 4, .severity = severityInformational,
     .probableCauseDescription = "Advanced Memory Protection now Fully Operational",
     .summary = "Advanced Memory Protection redundancy is fully operational",
     .description = "The spare, mirrored or additional memory is available again. The server can tolerate the failure "
                    "of a memory module."},
    {.family = {.WBEMProviderName = "KT Memory"}, PYL_HEART_BEAT("Memory")},
});

inline constexpr IndicationFamily consolidatedStatus{
    .WBEMProviderName = "KT Consolidated Status", .alertType = alertTypeModelChange};
inline constexpr IndicationFamily managementProcessor{.WBEMProviderName = "KT MP"};

inline constexpr IndicationRow membersRecovered{
    .family = consolidatedStatus, .sets = nonValmor, .eventID = 2, .severity = severityInformational,
    .probableCauseDescription = "Operational Status of participating members in this collection have transitioned to "
                                "OK from Degraded or Error state. These Operational Status changes could have also "
                                "affected the KT_GroupSystemSpecificCollections operational status.",
    .summary = "Consolidated Status Collection operational status has transitioned to OK.",
    .description = "Members of the collection have recovered, and the status of the whole collection is OK.",
};

inline constexpr IndicationRow membersDegraded{
    .family = consolidatedStatus, .sets = nonValmor, .eventID = 3, .severity = severityWarning,
    .probableCauseDescription = "Operational Status of participating members in this collection have transitioned to "
                                "Degraded or Error state. These Operational Status changes could have also affected "
                                "the KT_GroupSystemSpecificCollections operational status",
    .summary = "Consolidated Status Collection operational status has transitioned to Degraded.",
    .description = "Members of the collection have become degraded or faulty. The status of the whole collection is "
                   "Degraded: the server still works, but with reduced redundancy or performance.",
    .recommendedActions = "Find the members of the collection that are degraded or faulty, and follow the "
                          "recommendations of their own events.",
};

inline constexpr auto managementProcessorRows = std::to_array<IndicationRow>({
    {.family = {.WBEMProviderName = "KT MP", .alertType = alertTypeModelChange}, PYL_HEART_BEAT("MP")},
    policyChange(1, 1),
    membersRecovered,
    onValmor(membersRecovered,
        "Operational Status of participating members in this collection have transitioned to OK from Degraded or "
        "Error state. These Operational Status changes could have also affected the KT_GroupSystemSpecificCollection "
        "operational status."),
    membersDegraded,
    onValmor(membersDegraded,
        "Operational Status of participating members in this collection have transitioned to Degraded or Error state. "
        "These Operational Status changes could have also affected the KT_GroupSystemSpecificCollection operational "
        "status"),
    {.family = consolidatedStatus, .eventID = 4, .severity = severityMajor,
     .probableCauseDescription = "Operational Status of participating members in this collection have transitioned to "
                                 "Error state and caused operational status for the for the collection to transition "
                                 "to Error",
     .summary = "Consolidated Status Collection operational status has transitioned to Error",
     .description = "Members of the collection have become faulty, and the status of the whole collection is Error.",
     .recommendedActions = "Find the members of the collection that are faulty, and follow the recommendations of "
                           "their own events without delay."},
    {.family = managementProcessor, .eventID = 5, .severity = severityInformational,
     .probableCauseDescription = "Remote Periscope/ Lumio Controller Unauthorized Login Attempts threshold reached",
     .summary = "Remote Periscope/ Lumio Controller Unauthorized Login Attempts Threshold Reached.",
     .description = "Logins to the management processor have failed more often than its threshold allows. Someone may "
                    "be trying to guess a password.",
     .recommendedActions = "Find the source of the attempts in the event log of the management processor. If they were "
                           "not legitimate, restrict access to its network and change its passwords."},
    {.family = managementProcessor, .eventID = 6, .severity = severityWarning,
     .probableCauseDescription = "Remote Periscope/ Lumio Controller Self Test Error",
     .summary = "Remote Periscope/ Lumio Controller Self Test Error.",
     .description = "The self test of the management processor found an error. Remote management, sensors or logs may "
                    "not be available; the server itself keeps running.",
     .recommendedActions = "Reset the management processor. If the self test fails again, update its firmware or "
                           "replace the system board."},
    {.family = managementProcessor, .eventID = 7, .severity = severityWarning,
     .probableCauseDescription = "Remote Periscope/ Lumio Controller Interface Error",
     .summary = "Remote Periscope/ Lumio Controller Interface Error.",
     .description = "The operating system cannot communicate with the management processor. Its health data and events "
                    "are not available.",
     .recommendedActions = "Check that the driver of the management processor is installed and running. Reset the "
                           "management processor if it still does not respond."},
});

// clang-format on

}  // namespace PYL
