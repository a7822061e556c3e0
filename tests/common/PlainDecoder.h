#pragma once

#include <string>
#include <string_view>

/// Decodes character references in the plainest way, one byte after the other and in quadratic
/// time: what the fast decoder is held against. `text` holds no zero byte.
std::string decodePlainly(std::string_view text);

/// The UTF-8 form of a code point up to 0x10FFFF.
std::string plainUtf8(unsigned long codePoint);
