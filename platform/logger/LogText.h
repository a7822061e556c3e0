#pragma once

#include "pylcommon_export.h"

#include <string>
#include <string_view>

/// The text with each control byte (0x00 to 0x1f and 0x7f) as `\n`, `\r`, `\t` or `\xNN` and each
/// backslash doubled, so that no text can end its line and start another. So is what a terminal may
/// take for a control character or what turns text round: of UTF-8 the C1 control characters, line
/// separators and bidirectional controls, as `\uNNNN`, and a byte from 0x80 to 0x9f that is no part
/// of UTF-8, as `\xNN`. Other bytes, UTF-8 among them, stay. Throws only when memory is short.
PYL_EXPORT std::string escapeLogText(std::string_view text);

/// The same, added to the end of a line that is being made.
PYL_EXPORT void appendLogText(std::string& line, std::string_view text);
