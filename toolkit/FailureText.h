#pragma once

#include "pylcommon_export.h"

#include <string>

namespace PYL {

/// The exception in flight in words, whatever it is: "CMPI_RC_ERR_FAILED (1): blind" of a
/// CmpiStatus, what any other one says, "unknown exception" where it says nothing. For catch
/// clauses only. "out of memory" where there is none for the words.
PYL_EXPORT std::string failureText() noexcept;

}  // namespace PYL
