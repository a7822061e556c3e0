#pragma once

#include "cimhost/repository/Value.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

/// Texts that stand for scalar values, read and written: what MOF, queries, object paths and
/// CIM-XML have in common. Where they differ a parameter says how. Pure functions, safe from
/// several threads.
namespace cimhost {

/// What may stand for an integer besides decimal digits.
enum class IntegerForms {
    decimal,
    hexadecimal,  ///< 0x1F
    all,          ///< 0x1F, octal 017, binary 101b: MOF
};

/// The integer, with or without a sign, as uint64, as sint64 when it is negative. invalid_argument
/// for what is none, result_out_of_range for one beyond 64 bits; the value is as it was then.
std::errc readInteger(std::string_view text, IntegerForms forms, Value& value) noexcept;

/// As readInteger, a real of this type, with or without a point. "inf" and the like are none.
std::errc readReal(std::string_view text, CimType type, Value& value) noexcept;

/// A decimal integer that 64 bits can hold, or else a real64.
std::optional<Value> readNumber(std::string_view text) noexcept;

/// TRUE and FALSE in any case.
std::optional<Value> readBoolean(std::string_view text) noexcept;

/// One character of the basic plane as char16.
std::optional<Value> readCharacter(std::string_view text) noexcept;

/// True when a number stands at the front of the text, perhaps a bad one.
bool beginsNumber(std::string_view text) noexcept;

/// How far such a number goes, with letters, so that "12ab" is one bad number and not a number and
/// a name. The sign of an exponent is part of it behind a point, or with `wholeExponents` always.
std::size_t numberLength(std::string_view text, bool wholeExponents) noexcept;

/// How a language writes in quotes what cannot stand there as it is.
enum class Escapes {
    backslash,  ///< a backslash before any character: object paths
    quotes,     ///< a backslash before a quote or a backslash, or the quote twice: queries
    mof,        ///< \n, \", \x20AC (DSP0004, annex A); bare control characters are errors
};

/// Why a literal is none, and at which of its bytes.
class LiteralError : public std::runtime_error {
public:
    LiteralError(std::size_t place, const char* message)
        : std::runtime_error(message), _place(place) {}

    std::size_t place() const noexcept { return _place; }

private:
    std::size_t _place;
};

/// Appends what stands between the quotes; the text begins with the first. Returns the place behind
/// the second, or npos when there is none. Throws LiteralError for Escapes::mof alone.
std::size_t readQuoted(std::string_view text, Escapes escapes, std::string& result);

/// The character or escape of MOF at the place, which moves behind it: a code unit where an escape
/// says so. Throws LiteralError.
char32_t readMofUnit(std::string_view text, std::size_t& place);

/// The text in quotes, so that readQuoted finds it again. Throws CimError failed for what MOF
/// cannot write: U+0000, and bytes that are not UTF-8.
std::string quoted(std::string_view text, char quote, Escapes escapes);

/// The char16 in UTF-8; nothing for half of a surrogate pair, which is no character by itself.
std::optional<std::string> characterText(std::uint64_t code);

/// The char16 in apostrophes.
std::string characterLiteral(std::uint64_t code, Escapes escapes);

/// Room for the text of any number.
using NumberScratch = std::array<char, 48>;

/// The shortest text that reads as this number of its type, with the point that tells it from an
/// integer; "inf", "-inf" and "nan" for what is no number. In `scratch`.
std::string_view realText(double number, CimType type, NumberScratch& scratch) noexcept;

}  // namespace cimhost
