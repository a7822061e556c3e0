#include "cimhost/broker/Description.h"

#include <array>
#include <charconv>

#include "cimhost/broker/ArgsHandle.h"
#include "cimhost/broker/ArrayHandle.h"
#include "cimhost/broker/DateTimeHandle.h"
#include "cimhost/broker/ErrorHandle.h"
#include "cimhost/broker/InstanceHandle.h"
#include "cimhost/broker/ObjectPathHandle.h"
#include "cimhost/broker/StringHandle.h"

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
});

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') result += '\\';
        result += c;
    }
    return result += '"';
}

std::string describeElements(const Value::Array& elements) {
    std::string result = "{";
    for (const Value& element : elements) {
        if (result.size() > 1) result += ", ";
        result += describe(element);
    }
    return result += '}';
}

std::string realText(double value) {
    std::array<char, 64> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}

struct ValueText {
    std::string operator()(std::monostate) const { return "NULL"; }
    std::string operator()(bool value) const { return value ? "TRUE" : "FALSE"; }
    std::string operator()(std::uint64_t value) const { return std::to_string(value); }
    std::string operator()(std::int64_t value) const { return std::to_string(value); }
    std::string operator()(double value) const { return realText(value); }
    std::string operator()(const std::string& value) const { return quoted(value); }
    std::string operator()(const std::shared_ptr<const ObjectPath>& value) const {
        return quoted(describe(*value));
    }
    std::string operator()(const std::shared_ptr<const Instance>& value) const {
        return describe(*value);
    }
    std::string operator()(const Value::Array& value) const { return describeElements(value); }
};

std::string describe(const Arguments& arguments) {
    std::string result = "(";
    for (const Argument& argument : arguments) {
        if (result.size() > 1) result += ", ";
        result += argument.name + " = " + describe(argument.value);
    }
    return result += ')';
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
    return std::visit(ValueText{}, value.data());
}

std::string describe(const ObjectPath& path) {
    std::string result;
    if (!path.host.empty()) result += "//" + path.host + "/";
    if (!path.nameSpace.empty()) result += path.nameSpace + ":";
    result += path.className;
    char separator = '.';
    for (const KeyBinding& key : path.keys) {
        result += separator + key.name + "=" + describe(key.value);
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
