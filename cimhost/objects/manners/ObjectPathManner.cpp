#include "cimhost/objects/MannerTables.h"

namespace cimhost {

void adapt(CMPIObjectPathFT& table, const Manner& manner) noexcept {
    if (manner.has(Habit::lacksQualifierGetters)) {
        table.getClassQualifier = nullptr;
        table.getPropertyQualifier = nullptr;
        table.getMethodQualifier = nullptr;
        table.getParameterQualifier = nullptr;
    }
}

}  // namespace cimhost
