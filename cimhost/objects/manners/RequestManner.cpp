#include "cimhost/objects/MannerTables.h"

/// Contexts and results.
namespace cimhost {

void adapt(CMPIContextFT& table, const Manner& manner) noexcept {
    if (manner.has(Habit::lacksCloneOfContexts)) table.clone = nullptr;
}

void adapt(CMPIResultFT& table, const Manner& manner) noexcept {
    if (manner.has(Habit::lacksCloneOfContexts)) {
        table.clone = nullptr;
        table.release = nullptr;
    }
    if (manner.has(Habit::lacksErrorsAndMessages)) table.returnError = nullptr;
}

}  // namespace cimhost
