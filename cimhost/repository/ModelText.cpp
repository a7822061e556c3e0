#include "cimhost/repository/ModelText.h"

#include "cimhost/repository/CimError.h"

#include <cmath>

namespace cimhost {
namespace {

struct ValueText {
    std::string operator()(std::monostate) const { return "NULL"; }
    std::string operator()(bool value) const { return value ? "TRUE" : "FALSE"; }
    std::string operator()(std::uint64_t value) const {
        return type == CimType::char16 ? characterLiteral(value, escapes) : std::to_string(value);
    }
    std::string operator()(std::int64_t value) const { return std::to_string(value); }
    std::string operator()(double value) const {
        NumberScratch scratch;
        std::string text(realText(value, type, scratch));
        if (escapes == Escapes::mof && !std::isfinite(value)) {
            throw CimError(CimCode::failed, "MOF has no literal for the real number " + text);
        }
        return text;
    }
    std::string operator()(const Text& value) const { return quoted(value, '"', escapes); }
    std::string operator()(const std::shared_ptr<const ObjectPath>& value) const {
        return quoted(describe(*value), '"', escapes);
    }
    std::string operator()(const std::shared_ptr<const Instance>& value) const {
        const std::string text = describe(*value, escapes);
        return escapes == Escapes::mof ? quoted(text + ";", '"', escapes) : text;
    }
    std::string operator()(const std::shared_ptr<const Value::Array>& value) const {
        std::string result = "{";
        for (const Value& element : *value) {
            if (result.size() > 1) result += ", ";
            result += describe(element, escapes);
        }
        return result += '}';
    }

    CimType type;
    Escapes escapes;
};

}  // namespace

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

std::string describe(const Value& value, Escapes escapes) {
    return std::visit(ValueText{value.type(), escapes}, value.data());
}

std::string describe(const Instance& instance, Escapes escapes) {
    std::string result = "instance of " + instance.className() + " {";
    for (const PropertyValue& property : instance.properties) {
        result += " " + property.name + " = " + describe(property.value, escapes) + ";";
    }
    return result += " }";
}

}  // namespace cimhost
