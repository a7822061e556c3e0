#pragma once

#include "cmpi/cmpift.h"

#include <cstdarg>
#include <string>
#include <string_view>
#include <vector>

/// Message templates of getMessage: `$0` to `$9` stand for the inserts, in order.
namespace cimhost {

/// The inserts as text, from pairs of a type code and a value. Failure
/// CMPI_RC_ERR_INVALID_PARAMETER for more than ten, CMPI_RC_ERR_INVALID_DATA_TYPE for a code that
/// inserts cannot have, CMPI_RC_ERR_INVALID_HANDLE for a string that is not ours. A null text reads
/// as "NULL".
std::vector<std::string> messageInserts(CMPICount count, va_list arguments);

/// A place holder without an insert stays as it is.
std::string expandMessage(std::string_view text, const std::vector<std::string>& inserts);

}  // namespace cimhost
