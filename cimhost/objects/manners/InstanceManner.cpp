#include "cimhost/objects/MannerTables.h"

namespace cimhost {

void adapt(CMPIInstanceFT& table, const Manner& manner) noexcept {
    if (manner.has(Habit::lacksErrorsAndMessages)) table.setPropertyWithOrigin = nullptr;
}

}  // namespace cimhost
