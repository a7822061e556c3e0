#pragma once

#include "cimhost/repository/Instance.h"

#include <string_view>

namespace cimhost {

/// The object path that a text such as `root/cimv2:CIM_Fan.DeviceID="1",SystemName="a"` names
/// (DSP0004, 8.2): `[//host/][namespace:]Class[.key=value[,key=value...]]`.
///
/// Values are strings in quotes, characters in apostrophes, integers, reals, TRUE and FALSE, in the
/// type their form suggests; a key that is a reference is a string here, since only its class can
/// tell. Throws CimError typeMismatch that says where the text ceases to be a path. Safe from
/// several threads.
ObjectPath parseModelPath(std::string_view text);

}  // namespace cimhost
