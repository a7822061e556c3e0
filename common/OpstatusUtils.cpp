#include "common/OpstatusUtils.h"

#include "common/PYLUtil.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace PYL {

namespace {

struct StatusRow {
    operationalStatus status;
    const char* text;
    operationalStatus severityClass;  ///< what it counts as when statuses are folded
    healthState health;
};

// clang-format off
constexpr auto statusRows = std::to_array<StatusRow>({
    {statusUnknown,                 "Unknown",                   statusUnknown,             healthStateUnknown},
    {statusOther,                   "Other",                     statusOther,               healthStateUnknown},
    {statusOK,                      "OK",                        statusOK,                  healthStateOK},
    {statusDegraded,                "Degraded",                  statusDegraded,            healthStateDegraded},
    {statusStressed,                "Stressed",                  statusDegraded,            healthStateDegraded},
    {statusPredictiveFailure,       "Predicted failure",         statusError,               healthStateMajorFailure},
    {statusError,                   "Error",                     statusError,               healthStateMajorFailure},
    {statusNonRecoverableError,     "Non-recoverable error",     statusNonRecoverableError, healthStateNonRecoverable},
    {statusStarting,                "Starting",                  statusOther,               healthStateOK},
    {statusStopping,                "Stopping",                  statusOther,               healthStateOK},
    {statusStopped,                 "Stopped",                   statusStopped,             healthStateDegraded},
    {statusInService,               "In service",                statusStopped,             healthStateDegraded},
    {statusNoContact,               "No contact",                statusUnknown,             healthStateUnknown},
    {statusLostCommunication,       "Lost communication",        statusNonRecoverableError, healthStateNonRecoverable},
    {statusAborted,                 "Aborted",                   statusError,               healthStateMajorFailure},
    {statusDormant,                 "Dormant",                   statusOther,               healthStateOK},
    {statusSupportingEntityInError, "Supporting entity in error", statusError,              healthStateMajorFailure},
    {statusCompleted,               "Complete",                  statusOK,                  healthStateOK},
    {statusPowerMode,               "Power mode",                statusOther,               healthStateOK},
});
// clang-format on

/// The classes, from the least severe. Not knowing is worse than Other and better than OK: it is
/// news only while nothing else is known.
constexpr std::array severityOrder{statusOther,
                                   statusUnknown,
                                   statusOK,
                                   statusStopped,
                                   statusDegraded,
                                   statusError,
                                   statusNonRecoverableError};

constexpr const StatusRow* findRow(operationalStatus status) noexcept {
    const auto* const row = std::ranges::find(statusRows, status, &StatusRow::status);
    return row == statusRows.end() ? nullptr : row;
}

constexpr operationalStatus severityClassOf(operationalStatus status) noexcept {
    const auto* const row = findRow(status);
    return row ? row->severityClass : statusOK;
}

struct SeverityRow {
    ktlogAlertLevel level;
    indicationSeverity severity;
};

constexpr auto severityRows = std::to_array<SeverityRow>({
    {ktlogAlertLevelMinor, severityMinor},
    {ktlogAlertLevelMajor, severityMajor},
    {ktlogAlertLevelInformational, severityInformational},
    {ktlogAlertLevelWarning, severityWarning},
    {ktlogAlertLevelCritical, severityCritical},
    // The log calls fatal what a management client must treat as critical: the server still runs.
    {ktlogAlertLevelFatal, severityCritical},
    {ktlogAlertLevelUnknown, severityUnknown},
});

}  // namespace

std::string opstatusToString(operationalStatus status) {
    if (const auto* const row = findRow(status)) return row->text;
    std::ostringstream text;
    text << "Unknown operationalStatus value " << static_cast<int>(status);
    return text.str();
}

operationalStatus opstatusFromUint16(unsigned short value) noexcept {
    return value <= statusPowerMode ? static_cast<operationalStatus>(value) : statusUnknown;
}

operationalStatus updateWorst(operationalStatus worstSoFar, operationalStatus status) noexcept {
    const auto counted = severityClassOf(status);
    const auto* const worstRank = std::ranges::find(severityOrder, worstSoFar);
    const auto* const rank = std::ranges::find(severityOrder, counted);
    return worstRank == severityOrder.end() || rank >= worstRank ? counted : worstSoFar;
}

healthState PYLUtil::opstatusToHealthState(operationalStatus status) noexcept {
    const auto* const row = findRow(status);
    return row ? row->health : healthStateUnknown;
}

indicationSeverity PYLUtil::ktLogToCIMSeverity(ktlogAlertLevel level) noexcept {
    const auto* const row = std::ranges::find(severityRows, level, &SeverityRow::level);
    return row == severityRows.end() ? severityUnknown : row->severity;
}

}  // namespace PYL
