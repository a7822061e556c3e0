#pragma once

#include "cimhost/mof/MofLexer.h"
#include "cimhost/repository/Value.h"

#include <string>

/// What the literals of MOF stand for (DSP0004, annex A). Each throws MofError at the very byte.
namespace cimhost {

/// The number as uint64, as sint64 when it is negative, or as real64.
/// Decimal, 0x hexadecimal, octal with a leading 0, binary with a trailing b.
Value numberOf(const MofToken& token);

/// The char16 in apostrophes.
Value characterOf(const MofToken& token);

/// Appends what stands between the quotes, escapes resolved, as UTF-8.
void appendString(const MofToken& token, std::string& text);

}  // namespace cimhost
