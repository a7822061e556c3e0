#include "cimhost/objects/Description.h"

#include "cimhost/objects/ArgsHandle.h"
#include "cimhost/objects/ArrayHandle.h"
#include "cimhost/objects/DateTimeHandle.h"
#include "cimhost/objects/ErrorHandle.h"
#include "cimhost/objects/InstanceHandle.h"
#include "cimhost/objects/ObjectPathHandle.h"
#include "cimhost/objects/SelectCondHandle.h"
#include "cimhost/objects/SelectExpHandle.h"
#include "cimhost/objects/StringHandle.h"
#include "cimhost/repository/Utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace cimhost {

namespace {

struct KindRow {
    ObjectKind kind;
    std::string_view name;
};

constexpr auto kindRows = std::to_array<KindRow>({
    {ObjectKind::objectPath, "CMPIObjectPath"},
    {ObjectKind::instance, "CMPIInstance"},
    {ObjectKind::arguments, "CMPIArgs"},
    {ObjectKind::string, "CMPIString"},
    {ObjectKind::array, "CMPIArray"},
    {ObjectKind::dateTime, "CMPIDateTime"},
    {ObjectKind::enumeration, "CMPIEnumeration"},
    {ObjectKind::context, "CMPIContext"},
    {ObjectKind::result, "CMPIResult"},
    {ObjectKind::error, "CMPIError"},
    {ObjectKind::propertyList, "CMPIPropertyList"},
    {ObjectKind::enumerationFilter, "CMPIEnumerationFilter"},
    {ObjectKind::selectExpression, "CMPISelectExp"},
    {ObjectKind::selectCondition, "CMPISelectCond"},
    {ObjectKind::subCondition, "CMPISubCond"},
    {ObjectKind::predicate, "CMPIPredicate"},
});

std::string quoted(std::string_view text, char quote = '"') {
    std::string result(1, quote);
    for (const char c : text) {
        if (c == quote || c == '\\') result += '\\';
        result += c;
    }
    return result += quote;
}

/// Half of a surrogate pair has no form but its number.
std::string characterText(std::uint64_t code) {
    if (code >= 0xD800 && code <= 0xDFFF) {
        std::array<char, 4> digits{};
        std::to_chars(digits.data(), digits.data() + digits.size(), code, 16);
        return "'\\x" + std::string(digits.data(), digits.size()) + "'";
    }
    std::string text;
    appendUtf8(text, static_cast<char32_t>(code));
    return quoted(text, '\'');
}

std::string describeElements(const Value::Array& elements) {
    std::string result = "{";
    for (const Value& element : elements) {
        if (result.size() > 1) result += ", ";
        result += describe(element);
    }
    return result += '}';
}

/// With the point that tells a real from an integer.
std::string realText(double value) {
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    std::string text(buffer.data(), end);
    if (std::isfinite(value) && text.find('.') == std::string::npos) {
        text.insert(std::min(text.find('e'), text.size()), ".0");
    }
    return text;
}

struct ValueText {
    std::string operator()(std::monostate) const { return "NULL"; }
    std::string operator()(bool value) const { return value ? "TRUE" : "FALSE"; }
    std::string operator()(std::uint64_t value) const { return std::to_string(value); }
    std::string operator()(std::int64_t value) const { return std::to_string(value); }
    std::string operator()(double value) const { return realText(value); }
    std::string operator()(const Text& value) const { return quoted(value); }
    std::string operator()(const std::shared_ptr<const ObjectPath>& value) const {
        return quoted(describe(*value));
    }
    std::string operator()(const std::shared_ptr<const Instance>& value) const {
        return describe(*value);
    }
    std::string operator()(const std::shared_ptr<const Value::Array>& value) const {
        return describeElements(*value);
    }
};

std::string describe(const Arguments& arguments) {
    std::string result = "(";
    for (const Argument& argument : arguments) {
        if (result.size() > 1) result += ", ";
        result += argument.name + " = " + describe(argument.value);
    }
    return result += ')';
}

std::string describe(const WqlOperand& operand) {
    if (const auto* const property = std::get_if<WqlProperty>(&operand)) return property->text();
    return describe(std::get<Value>(operand));
}

std::string describe(const WqlPredicate& predicate) {
    const std::string left =
        describe(predicate.left) + " " + std::string(operatorText(predicate.operation));
    const bool hasRight =
        predicate.operation != WqlOperator::isNull && predicate.operation != WqlOperator::isNotNull;
    return hasRight ? left + " " + describe(predicate.right) : left;
}

std::string describe(const ErrorObject& error) {
    return describe(error.asInstance());
}

template <typename Object>
const Object& as(const ObjectHeader& header) noexcept {
    return static_cast<const Object&>(header);
}

}  // namespace

std::string_view typeNameOf(ObjectKind kind) noexcept {
    for (const KindRow& row : kindRows) {
        if (row.kind == kind) return row.name;
    }
    return {};
}

std::string describe(const Value& value) {
    const auto* const number = value.get<std::uint64_t>();
    if (number && value.type() == CimType::char16) return characterText(*number);
    return std::visit(ValueText{}, value.data());
}

std::string describe(const ObjectPath& path) {
    std::string result;
    if (!path.host.empty()) result += "//" + path.host + "/";
    if (!path.nameSpace.empty()) result += path.nameSpace + ":";
    result += path.className;
    char separator = '.';
    for (const KeyBinding& key : path.keys) {
        (result += separator).append(key.name).append("=") += describe(key.value);
        separator = ',';
    }
    return result;
}

std::string describe(const Instance& instance) {
    std::string result = "instance of " + instance.className() + " {";
    for (const PropertyValue& property : instance.properties) {
        result += " " + property.name + " = " + describe(property.value) + ";";
    }
    return result += " }";
}

std::string describe(const ObjectHeader& header) {
    switch (header.kind()) {
        case ObjectKind::objectPath:
            return describe(as<ObjectPathObject>(header).model.read());
        case ObjectKind::instance:
            return describe(as<InstanceObject>(header).read());
        case ObjectKind::arguments:
            return describe(as<ArgsObject>(header).model);
        case ObjectKind::string:
            return std::string(as<StringObject>(header).view());
        case ObjectKind::array:
            return describeElements(as<ArrayObject>(header).elements);
        case ObjectKind::dateTime:
            return std::string(as<DateTimeObject>(header).view());
        case ObjectKind::error:
            return describe(as<ErrorObject>(header));
        case ObjectKind::selectExpression:
            return as<SelectExpObject>(header).query->text;
        case ObjectKind::predicate:
            return describe(as<PredicateObject>(header).predicate());
        case ObjectKind::selectCondition:
        case ObjectKind::subCondition:
        case ObjectKind::enumeration:
        case ObjectKind::context:
        case ObjectKind::result:
        case ObjectKind::propertyList:
        case ObjectKind::enumerationFilter:
            break;
    }
    return std::string(typeNameOf(header.kind()));
}

}  // namespace cimhost
