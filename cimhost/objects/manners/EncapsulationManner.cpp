#include "cimhost/objects/MannerTables.h"

/// Makers of objects, log and messages; texts, since they hardly do more than be made.
namespace cimhost {

namespace {

CMPIStatus refuseToLog() noexcept {
    return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

CMPIStatus refuseLogMessage(const CMPIBroker*, CMPISeverity, const char*, const char*,
                            const CMPIString*) noexcept {
    return refuseToLog();
}

CMPIStatus refuseTrace(const CMPIBroker*, CMPILevel, const char*, const char*,
                       const CMPIString*) noexcept {
    return refuseToLog();
}

}  // namespace

void adapt(CMPIStringFT& table, const Manner& manner) noexcept {
    static_cast<void>(table);
    static_cast<void>(manner);
}

void adapt(CMPIBrokerEncFT& table, const Manner& manner) noexcept {
    if (manner.has(Habit::namesAnOldVersion)) table.ftVersion = 1;
    if (manner.has(Habit::refusesLogging)) {
        table.logMessage = refuseLogMessage;
        table.trace = refuseTrace;
    }
    if (manner.has(Habit::lacksErrorsAndMessages)) {
        table.newCMPIError = nullptr;
        table.openMessageFile = nullptr;
        table.closeMessageFile = nullptr;
        table.getMessage2 = nullptr;
        table.newPropertyList = nullptr;
        table.newStringCP = nullptr;
        table.newEnumerationFilter = nullptr;
    }
}

}  // namespace cimhost
