#pragma once

#include "common/detail/IndicationCatalogue.h"

#include <array>

/// Rows of the catalogue: Ethernet and Fibre Channel.
namespace PYL {

// clang-format off

// The heart beat comes first, and in one of the sets two events stand before the first.
inline constexpr auto ethernetRows = std::to_array<IndicationRow>({
    {both, 100, "100", "KT Ethernet", severityInformational, 1, 0, alertTypeCommunications, 1, "Ethernet Heart Beat", "Ethernet Heart Beat indication Id:", "Ethernet Heart Beat test indication", noAction},
    {nonValmor, 2, "2", "KT Ethernet", severityCritical, 9, 0, alertTypeCommunications, 7, "Network Interface Lost Connectivity", "The Network interface has lost connectivity.", "A network interface has lost its link. Nothing is sent or received on it; a team moves its traffic to another member.", "Check the cable, the transceiver and the port of the switch. Check that neither side was disabled."},
    {nonValmor, 3, "3", "KT Ethernet", severityInformational, 9, 0, alertTypeCommunications, 1, "Network Interface Connectivity Restored", "The interface network connectivity has been restored.", "A network interface has its link again and carries traffic.", noAction},
    {both, 1, "1", "KT Ethernet", severityMajor, 9, 1, alertTypeCommunications, 47, "Event Provider Fatal Error", "Event provider fatal error", "The provider of network events has met an error that it cannot recover from, and has stopped. Changes of network interfaces are no longer reported.", "Restart the object manager. If the error returns, read its log and update or reinstall the providers."},
    {valmor, 2, "2", "KT Ethernet", severityCritical, 9, 0, alertTypeCommunications, 7, "Network Interface Lost Connectivity", "Network interface lost connectivity", "The link of a network interface is down. Nothing is sent or received on it; a team moves its traffic to another member.", "Check the cable, the transceiver and the port of the switch. Check that neither side was disabled."},
    {valmor, 3, "3", "KT Ethernet", severityInformational, 9, 0, alertTypeCommunications, 1, "Network Connectivity now Restored", "Network connectivity restored", "The link of a network interface is up again and carries traffic.", noAction},
    {both, 4, "4", "KT Ethernet", severityWarning, 9, 12, alertTypeCommunications, 88, "Ethernet Team Redundancy Decreased", "Ethernet team's redundancy decreased", "A member of the network team is out of service. The team still has more than one working member.", "Check the link and the driver of the members of the team, and restore the one that is out of service."},
    {both, 5, "5", "KT Ethernet", severityCritical, 9, 12, alertTypeCommunications, 88, "Ethernet Team Redundancy Lost", "Ethernet team lost redundancy", "The network team has one working member left. If that loses its link too, the server is cut off from the network.", "Restore the other members of the team: check their cables, switch ports and drivers."},
    {both, 6, "6", "KT Ethernet", severityInformational, 9, 12, alertTypeCommunications, 1, "Ethernet Team Redundancy Increased", "Ethernet team redundancy increased", "A member of the network team is back in service. The team can bear the loss of more members than before.", noAction},
    {both, 7, "7", "KT Ethernet", severityInformational, 9, 12, alertTypeCommunications, 1, "Ethernet Team Member Added to Team", "Ethernet team member added to team", "A network interface was added to a team.", noAction},
    {both, 8, "8", "KT Ethernet", severityInformational, 9, 12, alertTypeCommunications, 1, "Ethernet Team Member Dropped from Team", "Ethernet team member dropped from team", "A network interface was removed from a team.", "If the interface was not removed on purpose, check its state and the configuration of the team."},
    {both, 9, "9", "KT Ethernet", severityInformational, 9, 12, alertTypeCommunications, 1, "Ethernet Team Member Reported Role Change", "Ethernet team member reported role change", "The part that a network interface plays in its team has changed, for example from standby to active.", noAction},
    {both, 10, "10", "KT Ethernet", severityInformational, 9, 12, alertTypeCommunications, 1, "Ethernet Team Member Status Change", "Ethernet team member reported status change", "The status of a network interface in its team has changed.", noAction},
    {both, 11, "11", "KT Ethernet", severityInformational, 9, 12, alertTypeCommunications, 1, "New Network Interface Available", "New network interface available", "A network interface was added to the server or enabled.", noAction},
    {both, 12, "12", "KT Ethernet", severityWarning, 9, 12, alertTypeCommunications, 1, "Network Interface Unavailable", "Network interface no longer available", "A network interface was removed from the server or disabled. Traffic that used it takes another way or stops.", "If this was not done on purpose, check that the adapter is seated properly, and look for driver errors in the log of the operating system."},
    {both, 13, "13", "KT Ethernet", severityInformational, 9, 12, alertTypeCommunications, 1, "Ethernet Team reported change in number of active members", "Ethernet team reported change in number of active members", "The number of members that carry the traffic of a network team has changed.", noAction},
    {both, 14, "14", "KT Ethernet", severityInformational, 9, 1, alertTypeCommunications, 1, "Provider Cannot Access Data Source", "Provider cannot access data source", "The provider of network events cannot read the data of the network interfaces. Events may be missed until it can.", "Check that the network drivers and management services are installed and running."},
    {both, 15, "15", "KT Ethernet", severityInformational, 9, 12, alertTypeCommunications, 1, "Ethernet Team Redundancy Status Changed to Fully Redundant", "Ethernet team redundancy Fully Redundant", "Every member of the network team is in service. The team has its full redundancy.", noAction},
    {both, 201, "1", "KT Consolidated Status", severityInformational, 1, 0, alertTypeModelChange, 1, "This group status policy change is caused by activation or deactivation of State Propagation Filtering for existing managed elements in KT_GroupSystemSpecificCollection", policySummary, policyDescription, policyActions, policySubCategory},
});

inline constexpr auto fibreChannelPortRows = std::to_array<IndicationRow>({
    {both, 100, "100", "KT FCHBA", severityInformational, 1, 0, alertTypeDevice, 1, "FCHBAFCPort Heart Beat", "FCHBAFCPort Heart Beat indication Id:", "FCHBAFCPort Heart Beat test indication", noAction},
    {both, 1, "1", "KT FCHBA", severityInformational, 11, 0, alertTypeDevice, 1, "FC HBA Port State Changed to Unknown", "FC HBA port state Unknown", "The driver of the Fibre Channel host bus adapter (HBA) reports a state of the port that is not known.", "If the state lasts, check the driver and the firmware of the adapter."},
    {both, 2, "2", "KT FCHBA", severityInformational, 11, 0, alertTypeDevice, 1, "FC HBA Port Status Changed to OK", "FC HBA port OK", "The port of the Fibre Channel host bus adapter (HBA) is online and carries traffic.", noAction},
    {both, 3, "3", "KT FCHBA", severityInformational, 11, 0, alertTypeDevice, 1, "FC HBA Port State Changed to Offine", "FC HBA port in offine state", "The port of the Fibre Channel host bus adapter (HBA) was taken offline. Storage is not reached through it.", "If the port was not taken offline on purpose, bring it online with the tools of the adapter or of the operating system."},
    {both, 4, "4", "KT FCHBA", severityInformational, 11, 0, alertTypeDevice, 1, "FC HBA Port State Changed to Bypass", "FC HBA port in bypass state", "The port of the Fibre Channel host bus adapter (HBA) is bypassed and takes no part in its loop.", "If this was not done on purpose, check the hub or the storage device that bypasses the port."},
    {both, 5, "5", "KT FCHBA", severityInformational, 11, 0, alertTypeDevice, 1, "FC HBA Port State Changed to Diagnostic", "FC port in diagnostic state", "The port of the Fibre Channel host bus adapter (HBA) runs diagnostics and carries no traffic meanwhile.", noAction},
    {both, 6, "6", "KT FCHBA", severityMajor, 11, 0, alertTypeDevice, 5, "FC HBA Port State Changed to Link Down", "FC HBA port in link down state", "The port of the Fibre Channel host bus adapter (HBA) has lost its link. Storage is reached by other paths, if there are any.", "Check the cable, the transceivers and the port of the switch or storage device at the far end."},
    {both, 7, "7", "KT FCHBA", severityMajor, 11, 0, alertTypeDevice, 2, "FC HBA Port Status Changed to Failed", "FC HBA port Failed", "The port of the Fibre Channel host bus adapter (HBA) has failed. Storage is reached by other paths, if there are any.", "Update the firmware and the driver of the adapter. Replace the adapter if the port fails again."},
    {both, 8, "8", "KT FCHBA", severityInformational, 11, 0, alertTypeDevice, 1, "FC HBA Port State Changed to Loopback", "FC HBA port in loopback state", "The port of the Fibre Channel host bus adapter (HBA) is in loopback for a test and carries no traffic meanwhile.", noAction},
    {both, 9, "9", "KT Consolidated Status", severityInformational, 1, 0, alertTypeModelChange, 1, "This group status policy change is caused by activation or deactivation of State Propagation Filtering for existing managed elements in KT_GroupSystemSpecificCollection", policySummary, policyDescription, policyActions, policySubCategory},
});

// clang-format on

}  // namespace PYL
