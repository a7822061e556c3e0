#pragma once

#include "cmpi/cmpift.h"

namespace cimhost {

/// The up-call slots of the broker's table, from enumerateInstanceNames on: they are answered by
/// the broker's operations, and CMPI_RC_ERR_NOT_SUPPORTED as long as there are none.
void fillUpCalls(CMPIBrokerFT& table);

}  // namespace cimhost
