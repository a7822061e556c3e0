#pragma once

#include "pylcommon_export.h"

#include <string>
#include <string_view>

/// The text with each control byte (0x00 to 0x1f and 0x7f) as \n, \r, \t or \xNN and each backslash
/// doubled, so that no text can end its line and start another. Other bytes, UTF-8 among them,
/// stay. Throws only when memory is short.
PYL_EXPORT std::string escapeLogText(std::string_view text);

/// The same, added to the end of a line that is being made.
PYL_EXPORT void appendLogText(std::string& line, std::string_view text);
