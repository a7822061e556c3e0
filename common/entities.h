#pragma once

#include "pylcommon_export.h"

#include <cstddef>
#include <cstdint>

/// @file
/// XML and HTML character references in zero-terminated text, decoded to UTF-8. Everything here is
/// safe from several threads on different buffers, allocates nothing, never throws and leaves errno
/// as it was.

/// A named reference: its name with the semicolon ("amp;") and the character in UTF-8.
struct NamedEntity {
    /// @{
    /// Zero-terminated, and good for ever.
    const char* name;
    const char* replacement;
    /// @}
};

/// Replaces every reference in `source` by the character it stands for and returns the length of
/// the result in bytes without its closing zero. What is no reference stays as it is.
///
/// References stand between `&` and `;`: a name of HTML 4.01 or `apos`, or a code point up to
/// 0x10FFFF, decimal behind `#`, hexadecimal behind `#x` or `#X`. The digits are what strtoul(3)
/// takes: blanks, a sign and, among hexadecimal digits, a second "0x" may stand before them. No
/// digits at all are the number 0: `&#;`, `&#x;`, `&#0;` and their like write a zero byte, which
/// the length counts and after which the decoding goes on, although the result then ends there for
/// whoever reads up to the first zero.
///
/// Without a destination, or with `source` for one, the text is rewritten in place. Another
/// destination leaves the source alone; it has room for the result and its closing zero, which
/// strlen(source) + 1 bytes always are, and overlaps the source only when it begins before it.
/// Takes time linear in the length, whatever the text.
PYL_EXPORT std::size_t remove_xml_reference_chars(char* source, char* destination = nullptr);

/// Decodes the reference whose '&' is at `at`: writes the character, without a closing zero, to
/// `*to`, moves `*to` behind it and `*from` behind the reference's semicolon, and returns 1.
/// Returns 0 and changes nothing when there is no reference. Searches the text from `at` for a
/// semicolon, to its end.
PYL_EXPORT int parse_entity(const char* at, char** to, const char** from);

/// The character in UTF-8, zero-terminated and good for ever, whose name with its semicolon begins
/// `text`; nullptr when no name does. `text` is what follows the '&' and may go on after the name.
PYL_EXPORT const char* get_named_entity(const char* text);

/// Writes the UTF-8 form of a code point, without a closing zero, and returns its size: 1 to 4.
/// Returns 0 and writes nothing above 0x10FFFF. Surrogates are three bytes like their neighbours.
PYL_EXPORT std::size_t putc_utf8(std::uint64_t codePoint, char* buffer);

/// Compares a text with the name of a NamedEntity over the length of the name, as strncmp(3) does:
/// for bsearch(3), where a text that goes on after the name is equal to it.
PYL_EXPORT int cmp(const void* key, const void* entry);
