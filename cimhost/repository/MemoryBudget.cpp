#include "cimhost/repository/MemoryBudget.h"

#include "cimhost/repository/CimError.h"

#include <string>

namespace cimhost {

void MemoryBudget::charge(std::size_t bytes) {
    if (bytes > limit - _used) {
        throw CimError(CimCode::serverLimitsExceeded,
                       "the definitions take more than " + std::to_string(limit >> 20U) + " MiB");
    }
    _used += bytes;
}

}  // namespace cimhost
