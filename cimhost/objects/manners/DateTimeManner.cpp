#include "cimhost/objects/MannerTables.h"

namespace cimhost {

void adapt(CMPIDateTimeFT& table, const Manner& manner) noexcept {
    static_cast<void>(table);
    static_cast<void>(manner);
}

}  // namespace cimhost
