#include "cimhost/modules/ProviderCall.h"

namespace cimhost {

CallNesting::CallNesting() {
    if (depth == limit) {
        throw CimError(CimCode::failed,
                       "provider calls are nested more than " + std::to_string(limit) + " deep");
    }
    ++depth;
}

}  // namespace cimhost
