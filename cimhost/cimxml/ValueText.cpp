#include "cimhost/cimxml/ValueText.h"

#include "cimhost/repository/DateTime.h"
#include "cimhost/repository/Names.h"
#include "cimhost/repository/Utf8.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <system_error>

namespace cimhost {
namespace {

std::string_view trimmed(std::string_view text) noexcept {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Sign and magnitude of an integer; nothing when the text is none or beyond 64 bits.
struct Integer {
    bool negative = false;
    std::uint64_t magnitude = 0;
};

std::optional<Integer> readInteger(std::string_view text) noexcept {
    Integer integer;
    if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
        integer.negative = text[0] == '-';
        text.remove_prefix(1);
    }
    int base = 10;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        base = 16;
        text.remove_prefix(2);
    }
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, integer.magnitude, base);
    if (text.empty() || stop != end || error != std::errc{}) return std::nullopt;
    return integer;
}

unsigned bitsOf(CimType type) noexcept {
    switch (type) {
        case CimType::uint8:
        case CimType::sint8:
            return 8;
        case CimType::uint16:
        case CimType::sint16:
            return 16;
        case CimType::uint32:
        case CimType::sint32:
            return 32;
        default:
            return 64;
    }
}

std::optional<Value> readUnsigned(CimType type, std::string_view text) noexcept {
    const std::optional<Integer> integer = readInteger(text);
    if (!integer || (integer->negative && integer->magnitude != 0)) return std::nullopt;
    if (integer->magnitude > UINT64_MAX >> (64 - bitsOf(type))) return std::nullopt;
    return Value::unsignedInteger(type, integer->magnitude);
}

std::optional<Value> readSigned(CimType type, std::string_view text) noexcept {
    const std::optional<Integer> integer = readInteger(text);
    if (!integer) return std::nullopt;
    const std::uint64_t most =
        (std::uint64_t{1} << (bitsOf(type) - 1)) - (integer->negative ? 0 : 1);
    if (integer->magnitude > most) return std::nullopt;
    // Negated as unsigned: the smallest number has no positive twin.
    const std::uint64_t bits = integer->negative ? 0 - integer->magnitude : integer->magnitude;
    return Value::signedInteger(type, static_cast<std::int64_t>(bits));
}

std::optional<double> readNotANumber(std::string_view text) noexcept {
    using Limits = std::numeric_limits<double>;
    if (equalNames(text, "NaN")) return Limits::quiet_NaN();
    if (equalNames(text, "INF") || equalNames(text, "+INF")) return Limits::infinity();
    if (equalNames(text, "-INF")) return -Limits::infinity();
    return std::nullopt;
}

template <typename Real>
std::optional<double> readNumber(std::string_view text) noexcept {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    // from_chars would take "inf", "infinity" and "nan(...)" too.
    if (text.find_first_not_of("+-.0123456789eE") != std::string_view::npos) return std::nullopt;
    Real number{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (stop != end || text.empty() || error != std::errc{}) return std::nullopt;
    return number;
}

std::optional<Value> readReal(CimType type, std::string_view text) noexcept {
    std::optional<double> number = readNotANumber(text);
    if (!number) {
        number = type == CimType::real32 ? readNumber<float>(text) : readNumber<double>(text);
    }
    if (!number) return std::nullopt;
    return Value(type, *number);
}

std::optional<Value> readBoolean(std::string_view text) noexcept {
    if (equalNames(text, "true")) return Value::boolean(true);
    if (equalNames(text, "false")) return Value::boolean(false);
    return std::nullopt;
}

/// A char16 is one character of the basic plane.
std::optional<Value> readCharacter(std::string_view text) noexcept {
    const std::optional<CodePoint> character = firstCodePoint(text);
    if (!character || character->length != text.size() || character->value > 0xFFFF) {
        return std::nullopt;
    }
    return Value::unsignedInteger(CimType::char16, character->value);
}

std::optional<Value> readDateTime(std::string_view text) {
    if (!isDateTime(text)) return std::nullopt;
    return Value(CimType::dateTime, std::string(text));
}

/// Writes the value of a real as DSP0201 wants it: always with a decimal point.
std::string_view realText(double number, bool single, ScalarScratch& scratch) noexcept {
    if (std::isnan(number)) return "NaN";
    if (std::isinf(number)) return number > 0 ? "INF" : "-INF";
    char* const begin = scratch.data();
    char* const end = begin + scratch.size() - 2;
    char* stop = single ? std::to_chars(begin, end, static_cast<float>(number)).ptr
                        : std::to_chars(begin, end, number).ptr;
    if (std::find(begin, stop, '.') == stop) {
        char* const exponent = std::find(begin, stop, 'e');
        std::copy_backward(exponent, stop, stop + 2);
        std::copy_n(".0", 2, exponent);
        stop += 2;
    }
    return {begin, static_cast<std::size_t>(stop - begin)};
}

/// Half of a surrogate pair is no character by itself: it comes out as U+FFFD.
std::string_view characterText(std::uint64_t code, ScalarScratch& scratch) {
    const bool isCharacter = code <= 0xFFFF && (code < 0xD800 || code > 0xDFFF);
    std::string text;
    appendUtf8(text, isCharacter ? static_cast<char32_t>(code) : U'\uFFFD');
    return {scratch.data(), text.copy(scratch.data(), scratch.size())};
}

std::string_view integerText(auto number, ScalarScratch& scratch) noexcept {
    const auto result = std::to_chars(scratch.data(), scratch.data() + scratch.size(), number);
    return {scratch.data(), static_cast<std::size_t>(result.ptr - scratch.data())};
}

}  // namespace

std::optional<Value> readScalar(CimType type, std::string_view text) {
    switch (type) {
        case CimType::boolean:
            return readBoolean(trimmed(text));
        case CimType::char16:
            return readCharacter(text);
        case CimType::uint8:
        case CimType::uint16:
        case CimType::uint32:
        case CimType::uint64:
            return readUnsigned(type, trimmed(text));
        case CimType::sint8:
        case CimType::sint16:
        case CimType::sint32:
        case CimType::sint64:
            return readSigned(type, trimmed(text));
        case CimType::real32:
        case CimType::real64:
            return readReal(type, trimmed(text));
        case CimType::string:
            return Value::string(std::string(text));
        case CimType::dateTime:
            return readDateTime(trimmed(text));
        case CimType::none:
        case CimType::reference:
        case CimType::instance:
            break;
    }
    return std::nullopt;
}

std::string_view scalarText(const Value& value, ScalarScratch& scratch) {
    if (const auto* text = value.get<Text>()) return *text;
    if (const auto* boolean = value.get<bool>()) return *boolean ? "true" : "false";
    if (const auto* number = value.get<std::int64_t>()) return integerText(*number, scratch);
    if (const auto* number = value.get<double>()) {
        return realText(*number, value.type() == CimType::real32, scratch);
    }
    if (const auto* number = value.get<std::uint64_t>()) {
        if (value.type() != CimType::char16) return integerText(*number, scratch);
        return characterText(*number, scratch);
    }
    return {};
}

}  // namespace cimhost
