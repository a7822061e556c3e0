#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// UTF-8 (RFC 3629): no overlong forms, no surrogates, nothing beyond U+10FFFF. Safe from several
/// threads.
namespace cimhost {

struct CodePoint {
    char32_t value = 0;
    std::size_t length = 0;  ///< in bytes
};

/// The character at the start of the text, or nullopt when its bytes are none.
std::optional<CodePoint> firstCodePoint(std::string_view text) noexcept;

/// C1 control characters, line separators, and what turns the direction of text round: what a
/// reader of a terminal or a log may be deceived with. Async-signal-safe, as firstCodePoint is.
bool isDeceptive(char32_t value) noexcept;

/// The place of the first byte that is not UTF-8, or npos.
std::size_t findInvalidUtf8(std::string_view text) noexcept;

/// `value` is a Unicode scalar value.
void appendUtf8(std::string& text, char32_t value);

}  // namespace cimhost
