#pragma once

#include "common/detail/IndicationCatalogue.h"

#include <array>

/// Rows of the catalogue: Ethernet and Fibre Channel.
namespace PYL {

// clang-format off

inline constexpr IndicationFamily ethernetLinks{
    .WBEMProviderName = "KT Ethernet", .eventCategory = 9, .alertType = alertTypeCommunications};
inline constexpr IndicationFamily ethernetProvider{
    .WBEMProviderName = "KT Ethernet", .eventCategory = 9, .eventSubCategory = 1, .alertType = alertTypeCommunications};
inline constexpr IndicationFamily ethernetTeams{
    .WBEMProviderName = "KT Ethernet", .eventCategory = 9, .eventSubCategory = 12,
    .alertType = alertTypeCommunications};

// The heart beat comes first, and in one of the sets two events stand before the first.
inline constexpr auto ethernetRows = std::to_array<IndicationRow>({
    {.family = {.WBEMProviderName = "KT Ethernet", .alertType = alertTypeCommunications}, PYL_HEART_BEAT("Ethernet")},
    {.family = ethernetLinks, .sets = nonValmor, .eventID = 2, .severity = severityCritical,
     .probableCause = causeCommunicationsFailure, .probableCauseDescription = "Network Interface Lost Connectivity",
     .summary = "The Network interface has lost connectivity.",
     .description = "A network interface has lost its link and carries no traffic. If it belongs to a team, another "
                    "member takes over its traffic.",
     .recommendedActions = "Check the cable, the transceiver and the switch port. Check that neither end was "
                           "disabled."},
    {.family = ethernetLinks, .sets = nonValmor, .eventID = 3, .severity = severityInformational,
     .probableCauseDescription = "Network Interface Connectivity Restored",
     .summary = "The interface network connectivity has been restored.",
     .description = "A network interface has its link again and carries traffic."},
    {.family = ethernetProvider, .eventID = 1, .severity = severityMajor, .probableCause = causeSoftwareError,
     .probableCauseDescription = "Event Provider Fatal Error", .summary = "Event provider fatal error",
     .description = "The provider of network events has stopped because of an error from which it cannot recover. "
                    "Changes of network interfaces are no longer reported.",
     .recommendedActions = "Restart the object manager. If the error returns, check its log, and update or reinstall "
                           "the providers."},
    {.family = ethernetLinks, .sets = valmor, .eventID = 2, .severity = severityCritical,
     .probableCause = causeCommunicationsFailure, .probableCauseDescription = "Network Interface Lost Connectivity",
     .summary = "Network interface lost connectivity",
     .description = "A network interface has lost its link and carries no traffic. If it belongs to a team, another "
                    "member takes over its traffic.",
     .recommendedActions = "Check the cable, the transceiver and the switch port. Check that neither end was "
                           "disabled."},
    {.family = ethernetLinks, .sets = valmor, .eventID = 3, .severity = severityInformational,
     .probableCauseDescription = "Network Connectivity now Restored", .summary = "Network connectivity restored",
     .description = "A network interface has its link again and carries traffic."},
    {.family = ethernetTeams, .eventID = 4, .severity = severityWarning, .probableCause = causeRedundancyLost,
     .probableCauseDescription = "Ethernet Team Redundancy Decreased",
     .summary = "Ethernet team's redundancy decreased",
     .description = "A member of the network team is out of service. The team still has more than one working member.",
     .recommendedActions = "Check the link and the driver of the members of the team, and restore the one that is out "
                           "of service."},
    {.family = ethernetTeams, .eventID = 5, .severity = severityCritical, .probableCause = causeRedundancyLost,
     .probableCauseDescription = "Ethernet Team Redundancy Lost", .summary = "Ethernet team lost redundancy",
     .description = "The network team has one working member left. If that one fails too, the server loses its "
                    "connection to the network.",
     .recommendedActions = "Restore the other members of the team: check their cables, switch ports and drivers."},
    {.family = ethernetTeams, .eventID = 6, .severity = severityInformational,
     .probableCauseDescription = "Ethernet Team Redundancy Increased", .summary = "Ethernet team redundancy increased",
     .description = "A member of the network team is back in service. The team can tolerate the failure of more "
                    "members than before."},
    {.family = ethernetTeams, .eventID = 7, .severity = severityInformational,
     .probableCauseDescription = "Ethernet Team Member Added to Team", .summary = "Ethernet team member added to team",
     .description = "A network interface was added to a team."},
    {.family = ethernetTeams, .eventID = 8, .severity = severityInformational,
     .probableCauseDescription = "Ethernet Team Member Dropped from Team",
     .summary = "Ethernet team member dropped from team",
     .description = "A network interface was removed from a team.",
     .recommendedActions = "If the interface was not removed intentionally, check its state and the configuration of "
                           "the team."},
    {.family = ethernetTeams, .eventID = 9, .severity = severityInformational,
     .probableCauseDescription = "Ethernet Team Member Reported Role Change",
     .summary = "Ethernet team member reported role change",
     .description = "The role of a network interface in its team has changed, for example from standby to active."},
    {.family = ethernetTeams, .eventID = 10, .severity = severityInformational,
     .probableCauseDescription = "Ethernet Team Member Status Change",
     .summary = "Ethernet team member reported status change",
     .description = "The status of a network interface in its team has changed."},
    {.family = ethernetTeams, .eventID = 11, .severity = severityInformational,
     .probableCauseDescription = "New Network Interface Available", .summary = "New network interface available",
     .description = "A network interface was added to the server or enabled."},
    {.family = ethernetTeams, .eventID = 12, .severity = severityWarning,
     .probableCauseDescription = "Network Interface Unavailable", .summary = "Network interface no longer available",
     .description = "A network interface was removed from the server or disabled. If it belonged to a team, the other "
                    "members carry its traffic; otherwise the traffic stops.",
     .recommendedActions = "If this was not intended, check that the adapter is seated properly, and look for driver "
                           "errors in the log of the operating system."},
    {.family = ethernetTeams, .eventID = 13, .severity = severityInformational,
     .probableCauseDescription = "Ethernet Team reported change in number of active members",
     .summary = "Ethernet team reported change in number of active members",
     .description = "The number of members that carry the traffic of a network team has changed."},
    {.family = ethernetProvider, .eventID = 14, .severity = severityInformational,
     .probableCauseDescription = "Provider Cannot Access Data Source", .summary = "Provider cannot access data source",
     .description = "The provider of network events cannot read the data of the network interfaces. Until it can, "
                    "events may be missed.",
     .recommendedActions = "Check that the network drivers and management services are installed and running."},
    {.family = ethernetTeams, .eventID = 15, .severity = severityInformational,
     .probableCauseDescription = "Ethernet Team Redundancy Status Changed to Fully Redundant",
     .summary = "Ethernet team redundancy Fully Redundant",
     .description = "Every member of the network team is in service. The team is fully redundant."},
    policyChange(201, 1),
});

inline constexpr IndicationFamily fibreChannelPorts{.WBEMProviderName = "KT FCHBA", .eventCategory = 11};

inline constexpr auto fibreChannelPortRows = std::to_array<IndicationRow>({
    {.family = {.WBEMProviderName = "KT FCHBA"}, PYL_HEART_BEAT("FCHBAFCPort")},
    {.family = fibreChannelPorts, .eventID = 1, .severity = severityInformational,
     .probableCauseDescription = "FC HBA Port State Changed to Unknown", .summary = "FC HBA port state Unknown",
     .description = "The port of the Fibre Channel host bus adapter (HBA) is in a state that is not known.",
     .recommendedActions = "If the state persists, check the driver and the firmware of the adapter."},
    {.family = fibreChannelPorts, .eventID = 2, .severity = severityInformational,
     .probableCauseDescription = "FC HBA Port Status Changed to OK", .summary = "FC HBA port OK",
     .description = "The port of the Fibre Channel host bus adapter (HBA) is online and carries traffic."},
    {.family = fibreChannelPorts, .eventID = 3, .severity = severityInformational,
     .probableCauseDescription = "FC HBA Port State Changed to Offine", .summary = "FC HBA port in offine state",
     .description = "The port of the Fibre Channel host bus adapter (HBA) is offline. Storage is not accessible "
                    "through it.",
     .recommendedActions = "If the port was not taken offline intentionally, bring it online with the tools of the "
                           "adapter or of the operating system."},
    {.family = fibreChannelPorts, .eventID = 4, .severity = severityInformational,
     .probableCauseDescription = "FC HBA Port State Changed to Bypass", .summary = "FC HBA port in bypass state",
     .description = "The port of the Fibre Channel host bus adapter (HBA) is bypassed and does not take part in its "
                    "loop.",
     .recommendedActions = "If this was not intended, check the hub or the storage device that bypasses the port."},
    {.family = fibreChannelPorts, .eventID = 5, .severity = severityInformational,
     .probableCauseDescription = "FC HBA Port State Changed to Diagnostic", .summary = "FC port in diagnostic state",
     .description = "The port of the Fibre Channel host bus adapter (HBA) is running diagnostics and carries no "
                    "traffic until they are complete."},
    {.family = fibreChannelPorts, .eventID = 6, .severity = severityMajor, .probableCause = causeConnectionError,
     .probableCauseDescription = "FC HBA Port State Changed to Link Down", .summary = "FC HBA port in link down state",
     .description = "The port of the Fibre Channel host bus adapter (HBA) has lost its link. Storage is accessible "
                    "only through other paths, if there are any.",
     .recommendedActions = "Check the cable, the transceivers and the port of the switch or storage device at the "
                           "other end."},
    {.family = fibreChannelPorts, .eventID = 7, .severity = severityMajor, .probableCause = causeAdapterError,
     .probableCauseDescription = "FC HBA Port Status Changed to Failed", .summary = "FC HBA port Failed",
     .description = "The port of the Fibre Channel host bus adapter (HBA) has failed. Storage is accessible only "
                    "through other paths, if there are any.",
     .recommendedActions = "Reset the adapter, and update its firmware and its driver. Replace the adapter if the port "
                           "fails again."},
    {.family = fibreChannelPorts, .eventID = 8, .severity = severityInformational,
     .probableCauseDescription = "FC HBA Port State Changed to Loopback", .summary = "FC HBA port in loopback state",
     .description = "The port of the Fibre Channel host bus adapter (HBA) is in loopback mode for a test and carries "
                    "no traffic until it is complete."},
    policyChange(9, 9),
});

// clang-format on

}  // namespace PYL
