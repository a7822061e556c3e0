#pragma once

#include "cmpi/cmpidt.h"

#include <string>
#include <string_view>

/// Text between UTF-8, which strings hold, and the character sets of CMPI. The system's own is
/// UTF-8. Pure functions, safe from several threads.
namespace cimhost {

/// `text` ends with a zero unit; UTF-16 is aligned, of the machine's byte order unless it begins
/// with a byte order mark. Failure CMPI_RC_ERR_NOT_IN_CODEPAGE for text that is not what it is said
/// to be, CMPI_RC_ERR_INVALID_PARAMETER for another codepage.
std::string toUtf8(const char* text, CMPICodepageID codepage);

/// The bytes without a terminator; UTF-16 in the machine's byte order, unmarked. Fails as toUtf8.
std::string fromUtf8(std::string_view text, CMPICodepageID codepage);

}  // namespace cimhost
