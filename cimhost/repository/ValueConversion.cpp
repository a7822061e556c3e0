#include "cimhost/repository/ValueConversion.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/DateTime.h"
#include "cimhost/repository/ModelPathText.h"
#include "cimhost/repository/ModelText.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace cimhost {
namespace {

struct IntegerRange {
    std::int64_t lowest;
    std::uint64_t highest;
};

template <typename Integer>
constexpr IntegerRange rangeOf{std::numeric_limits<Integer>::min(),
                               std::numeric_limits<Integer>::max()};

constexpr IntegerRange unsignedRangeOf(std::uint64_t highest) { return {0, highest}; }

IntegerRange integerRange(CimType type) noexcept {
    switch (type) {
        case CimType::uint8: return unsignedRangeOf(std::numeric_limits<std::uint8_t>::max());
        case CimType::uint16: return unsignedRangeOf(std::numeric_limits<std::uint16_t>::max());
        case CimType::uint32: return unsignedRangeOf(std::numeric_limits<std::uint32_t>::max());
        case CimType::sint8: return rangeOf<std::int8_t>;
        case CimType::sint16: return rangeOf<std::int16_t>;
        case CimType::sint32: return rangeOf<std::int32_t>;
        case CimType::sint64: return rangeOf<std::int64_t>;
        default: return unsignedRangeOf(std::numeric_limits<std::uint64_t>::max());
    }
}

[[noreturn]] void mismatch(const std::string& message) {
    throw CimError(CimCode::typeMismatch, message);
}

// "an array of string", "a string", "a number": what the value is, in words.
std::string kindText(const Value& value) {
    if (value.isArray()) return "an array";
    if (isInteger(value.type())) return "an integer";
    if (isReal(value.type())) return "a real number";
    if (value.type() == CimType::instance) return "an embedded instance";
    return "a value of type " + std::string(typeName(value.type()));
}

[[noreturn]] void refuse(const Value& value, CimType type) {
    const char* const wanted = type == CimType::instance ? "an embedded instance" : nullptr;
    mismatch(kindText(value) + " is not " +
             (wanted ? std::string(wanted) : "of type " + std::string(typeName(type))));
}

[[noreturn]] void outOfRange(const std::string& number, CimType type) {
    const IntegerRange range = integerRange(type);
    mismatch(number + " is out of range for " + std::string(typeName(type)) + " (" +
             std::to_string(range.lowest) + " to " + std::to_string(range.highest) + ")");
}

Value toInteger(const Value& value, CimType type) {
    if (!isInteger(value.type())) refuse(value, type);
    std::optional<Value> converted = integerAs(value, type);
    if (!converted) outOfRange(describe(value), type);
    return *std::move(converted);
}

double numberOf(const Value& value) noexcept {
    if (const auto* number = value.get<std::uint64_t>()) return static_cast<double>(*number);
    if (const auto* number = value.get<std::int64_t>()) return static_cast<double>(*number);
    return *value.get<double>();
}

Value toReal(const Value& value, CimType type) {
    if (!isInteger(value.type()) && !isReal(value.type())) refuse(value, type);
    const double number = numberOf(value);
    if (type == CimType::real64 || !std::isfinite(number)) return Value(type, number);
    // Half a digit more than the largest float: what is below is that float, with fewer digits.
    constexpr double beyond = 0x1.ffffffp127;
    constexpr double most = std::numeric_limits<float>::max();
    if (std::abs(number) >= beyond) mismatch("the number is out of range for real32");
    return Value(type, static_cast<float>(std::clamp(number, -most, most)));
}

Value toDateTime(const Value& value) {
    const Text* const text = value.get<Text>();
    if (!text) refuse(value, CimType::dateTime);
    if (!isDateTime(*text)) {
        mismatch("'" + std::string(text->view().substr(0, 40)) + "' is not a datetime");
    }
    return Value(CimType::dateTime, *text);
}

Value toReference(const Value& value) {
    if (value.type() == CimType::reference) return value;
    if (value.type() != CimType::string) refuse(value, CimType::reference);
    return Value::reference(parseModelPath(*value.get<Text>()));
}

}  // namespace

std::optional<Value> integerAs(const Value& value, CimType type) noexcept {
    const IntegerRange range = integerRange(type);
    const auto* const integer = value.get<std::int64_t>();
    if (integer && *integer < 0) {
        if (*integer < range.lowest) return std::nullopt;
        return Value::signedInteger(type, *integer);
    }
    const std::uint64_t number =
        integer ? static_cast<std::uint64_t>(*integer) : *value.get<std::uint64_t>();
    if (number > range.highest) return std::nullopt;
    if (isUnsigned(type)) return Value::unsignedInteger(type, number);
    return Value::signedInteger(type, static_cast<std::int64_t>(number));
}

Value convertScalar(const Value& value, CimType type) {
    if (value.isArray()) refuse(value, type);
    if (value.isNull()) return Value::null(type);
    if (isInteger(type)) return toInteger(value, type);
    if (isReal(type)) return toReal(value, type);
    if (type == CimType::dateTime) return toDateTime(value);
    if (type == CimType::reference) return toReference(value);
    if (type == CimType::string && value.type() == CimType::dateTime) {
        return Value::string(*value.get<Text>());
    }
    if (value.type() != type) refuse(value, type);
    return value;
}

Value convertValue(const Value& value, CimType type, bool isArray,
                   std::optional<std::uint32_t> arraySize) {
    if (!isArray) return convertScalar(value, type);
    if (value.isNull()) return Value::nullArray(type);
    const auto* const elements = value.get<Value::Array>();
    if (!elements) mismatch(kindText(value) + " is not an array");
    if (arraySize && elements->size() > *arraySize) {
        mismatch(std::to_string(elements->size()) + " elements are too many for " +
                 typeText(type, true, arraySize));
    }
    Value::Array converted;
    converted.reserve(elements->size());
    for (const Value& element : *elements) converted.push_back(convertScalar(element, type));
    return Value::array(type, std::move(converted));
}

std::size_t valueBytes(const Value& value) noexcept {
    std::size_t bytes = sizeof(Value);
    if (const auto* text = value.get<Text>()) bytes += text->size();
    if (const auto* elements = value.get<Value::Array>()) {
        for (const Value& element : *elements) bytes += valueBytes(element);
    }
    if (const auto* path = value.get<std::shared_ptr<const ObjectPath>>()) {
        bytes += sizeof(ObjectPath);
        for (const KeyBinding& key : (*path)->keys) bytes += sizeof(key) + valueBytes(key.value);
    }
    if (const auto* instance = value.get<std::shared_ptr<const Instance>>()) {
        bytes += sizeof(Instance);
        for (const auto& each : (*instance)->properties) {
            bytes += sizeof(each) + valueBytes(each.value);
        }
    }
    return bytes;
}

std::string typeText(CimType type, bool isArray, std::optional<std::uint32_t> arraySize) {
    std::string text(typeName(type));
    if (isArray) text += arraySize ? "[" + std::to_string(*arraySize) + "]" : "[]";
    return text;
}

}  // namespace cimhost
