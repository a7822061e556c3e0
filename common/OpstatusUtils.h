#pragma once

#include "pylcommon_export.h"

#include <string>

/// @file
/// Operational status, health and severity: the values, and the arithmetic over them. Pure
/// functions; nothing throws but opstatusToString(), for lack of memory. Values outside an
/// enumeration are valid arguments everywhere: they come from other providers.
namespace PYL {

/// The value map of CIM_ManagedSystemElement.OperationalStatus (CIM schema 2.x).
enum operationalStatus : int {
    statusUnknown = 0,
    statusOther = 1,
    statusOK = 2,
    statusDegraded = 3,
    statusStressed = 4,
    statusPredictiveFailure = 5,
    statusError = 6,
    statusNonRecoverableError = 7,
    statusStarting = 8,
    statusStopping = 9,
    statusStopped = 10,
    statusInService = 11,
    statusNoContact = 12,
    statusLostCommunication = 13,
    statusAborted = 14,
    statusDormant = 15,
    statusSupportingEntityInError = 16,
    statusCompleted = 17,
    statusPowerMode = 18,
};

/// The value map of CIM_ManagedSystemElement.HealthState (CIM schema 2.x).
enum healthState : int {
    healthStateUnknown = 0,
    healthStateOK = 5,
    healthStateDegraded = 10,
    healthStateMinorFailure = 15,
    healthStateMajorFailure = 20,
    healthStateCriticalFailure = 25,
    healthStateNonRecoverable = 30,
};

/// The value map of CIM_AlertIndication.PerceivedSeverity (CIM schema 2.x), which names 3 twice.
enum indicationSeverity : int {
    severityUnknown = 0,
    severityOther = 1,
    severityInformational = 2,
    severityDegraded = 3,
    severityWarning = 3,
    severityMinor = 4,
    severityMajor = 5,
    severityCritical = 6,
    severityFatal = 7,
};

/// The alert levels of the maker's management log. 4 and 6 are not used.
enum ktlogAlertLevel : int {
    ktlogAlertLevelMinor = 0,
    ktlogAlertLevelMajor = 1,
    ktlogAlertLevelInformational = 2,
    ktlogAlertLevelWarning = 3,
    ktlogAlertLevelCritical = 5,
    ktlogAlertLevelFatal = 7,
    ktlogAlertLevelUnknown = 8,
};

/// "OK", "Degraded" ...; of another value "Unknown operationalStatus value 25".
PYL_EXPORT std::string opstatusToString(operationalStatus status);

/// A CIM value of 1 to 18 as it is; any other is statusUnknown.
PYL_EXPORT operationalStatus opstatusFromUint16(unsigned short value) noexcept;

/// One step of a fold: the worse of what was found so far and one more status.
///
/// Each status counts as one of seven classes, from the least severe: statusOther, statusUnknown,
/// statusOK (which an undefined value counts as), statusStopped, statusDegraded, statusError,
/// statusNonRecoverableError. The result is always one of them. A `worstSoFar` that is none of them
/// is replaced. Start with statusUnknown or statusOK:
///
///     auto worst = statusUnknown;
///     for (const auto& fan : fans) worst = updateWorst(worst, fan.status);
PYL_EXPORT operationalStatus updateWorst(operationalStatus worstSoFar,
                                         operationalStatus status) noexcept;

}  // namespace PYL
