#include "cimhost/objects/MannerTables.h"

namespace cimhost {

void adapt(CMPIArgsFT& table, const Manner& manner) noexcept {
    static_cast<void>(table);
    static_cast<void>(manner);
}

}  // namespace cimhost
