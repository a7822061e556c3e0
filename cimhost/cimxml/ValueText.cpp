#include "cimhost/cimxml/ValueText.h"

#include "cimhost/repository/DateTime.h"
#include "cimhost/repository/Names.h"
#include "cimhost/repository/ValueConversion.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <system_error>

namespace cimhost {
namespace {

std::string_view withoutBlanks(std::string_view text) noexcept { return trimmed(text, " \t\r\n"); }

std::optional<Value> integerOf(CimType type, std::string_view text) noexcept {
    Value integer;
    if (readInteger(text, IntegerForms::hexadecimal, integer) != std::errc()) return std::nullopt;
    return integerAs(integer, type);
}

std::optional<double> readNotANumber(std::string_view text) noexcept {
    using Limits = std::numeric_limits<double>;
    if (equalNames(text, "NaN")) return Limits::quiet_NaN();
    if (equalNames(text, "INF") || equalNames(text, "+INF")) return Limits::infinity();
    if (equalNames(text, "-INF")) return -Limits::infinity();
    return std::nullopt;
}

std::optional<Value> realOf(CimType type, std::string_view text) noexcept {
    if (const auto number = readNotANumber(text)) return Value(type, *number);
    Value real;
    if (readReal(text, type, real) != std::errc()) return std::nullopt;
    return real;
}

std::optional<Value> readDateTime(std::string_view text) {
    if (!isDateTime(text)) return std::nullopt;
    return Value(CimType::dateTime, std::string(text));
}

std::string_view numberText(double number, CimType type, ScalarScratch& scratch) noexcept {
    if (std::isnan(number)) return "NaN";
    if (std::isinf(number)) return number > 0 ? "INF" : "-INF";
    return realText(number, type, scratch);
}

/// Half of a surrogate pair is no character by itself: it comes out as U+FFFD.
std::string_view unitText(std::uint64_t code, ScalarScratch& scratch) {
    const std::string text = characterText(code).value_or("\xEF\xBF\xBD");
    return {scratch.data(), text.copy(scratch.data(), scratch.size())};
}

std::string_view integerText(auto number, ScalarScratch& scratch) noexcept {
    const auto result = std::to_chars(scratch.data(), scratch.data() + scratch.size(), number);
    return {scratch.data(), static_cast<std::size_t>(result.ptr - scratch.data())};
}

}  // namespace

std::optional<Value> readScalar(CimType type, std::string_view text) {
    switch (type) {
        case CimType::boolean: return readBoolean(withoutBlanks(text));
        case CimType::char16: return readCharacter(text);
        case CimType::uint8:
        case CimType::uint16:
        case CimType::uint32:
        case CimType::uint64:
        case CimType::sint8:
        case CimType::sint16:
        case CimType::sint32:
        case CimType::sint64: return integerOf(type, withoutBlanks(text));
        case CimType::real32:
        case CimType::real64: return realOf(type, withoutBlanks(text));
        case CimType::string: return Value::string(std::string(text));
        case CimType::dateTime: return readDateTime(withoutBlanks(text));
        case CimType::none:
        case CimType::reference:
        case CimType::instance: break;
    }
    return std::nullopt;
}

std::string_view scalarText(const Value& value, ScalarScratch& scratch) {
    if (const auto* text = value.get<Text>()) return *text;
    if (const auto* boolean = value.get<bool>()) return *boolean ? "true" : "false";
    if (const auto* number = value.get<std::int64_t>()) return integerText(*number, scratch);
    if (const auto* number = value.get<double>()) return numberText(*number, value.type(), scratch);
    if (const auto* number = value.get<std::uint64_t>()) {
        if (value.type() != CimType::char16) return integerText(*number, scratch);
        return unitText(*number, scratch);
    }
    return {};
}

}  // namespace cimhost
