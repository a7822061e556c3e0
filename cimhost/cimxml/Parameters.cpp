#include "cimhost/cimxml/Parameters.h"

#include "cimhost/cimxml/ValueText.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <set>

namespace cimhost {
namespace {

struct ParameterRow {
    Parameter parameter;
    std::string_view name;
};

constexpr auto rows = std::to_array<ParameterRow>({
    {Parameter::className, "ClassName"},
    {Parameter::instanceName, "InstanceName"},
    {Parameter::objectName, "ObjectName"},
    {Parameter::newInstance, "NewInstance"},
    {Parameter::modifiedInstance, "ModifiedInstance"},
    {Parameter::propertyName, "PropertyName"},
    {Parameter::newValue, "NewValue"},
    {Parameter::localOnly, "LocalOnly"},
    {Parameter::deepInheritance, "DeepInheritance"},
    {Parameter::includeQualifiers, "IncludeQualifiers"},
    {Parameter::includeClassOrigin, "IncludeClassOrigin"},
    {Parameter::propertyList, "PropertyList"},
    {Parameter::associationClass, "AssocClass"},
    {Parameter::resultClass, "ResultClass"},
    {Parameter::role, "Role"},
    {Parameter::resultRole, "ResultRole"},
    {Parameter::queryLanguage, "QueryLanguage"},
    {Parameter::query, "Query"},
    {Parameter::qualifierName, "QualifierName"},
});

static_assert(rows.size() == parameterCount);

// Every property of every result is looked up in the list, one by one.
constexpr std::size_t propertyLimit = 1024;

std::string nameOf(Parameter parameter) {
    return std::string(std::ranges::find(rows, parameter, &ParameterRow::parameter)->name);
}

}  // namespace

Parameters::Parameters(const Element& intrinsicCall, ParameterSet allowed) {
    std::array<bool, parameterCount> given{};
    for (const Element element : intrinsicCall.children()) {
        if (element.tag() != Tag::intrinsicParameter) continue;
        const std::string_view name = element.attributeText(Attribute::name);
        const std::string operation(intrinsicCall.attributeText(Attribute::name));
        const ParameterRow* const row = findNamed(rows, name);
        if (!row || !allowed.contains(row->parameter)) {
            throwInvalidParameter(operation + " has no parameter " + std::string(name));
        }
        const auto index = static_cast<std::size_t>(row->parameter);
        if (given[index]) {
            throwInvalidParameter("parameter " + std::string(name) + " is given more than once");
        }
        given[index] = true;
        _values[index] = element.firstChild();
    }
}

std::optional<Element> Parameters::find(Parameter parameter) const noexcept {
    return _values[static_cast<std::size_t>(parameter)];
}

std::optional<Element> Parameters::_optional(Parameter parameter, TagSet tags) const {
    const std::optional<Element> value = find(parameter);
    if (value && !tags.contains(value->tag())) {
        throwInvalidParameter("parameter " + nameOf(parameter) + " cannot be a " +
                              std::string(value->tagName()));
    }
    return value;
}

Element Parameters::required(Parameter parameter, TagSet tags) const {
    const std::optional<Element> value = _optional(parameter, tags);
    if (!value) throwInvalidParameter("parameter " + nameOf(parameter) + " is missing");
    return *value;
}

bool Parameters::boolean(Parameter parameter, bool defaultValue) const {
    const std::optional<Element> element = _optional(parameter, {Tag::value});
    if (!element) return defaultValue;
    const std::optional<Value> value = readScalar(CimType::boolean, element->text());
    if (!value) {
        throwInvalidParameter("parameter " + nameOf(parameter) + " is neither true nor false");
    }
    return *value->get<bool>();
}

std::string Parameters::text(Parameter parameter) const {
    const std::optional<Element> element = _optional(parameter, {Tag::value});
    return element ? std::string(element->text()) : std::string();
}

std::string Parameters::requiredText(Parameter parameter) const {
    return std::string(required(parameter, {Tag::value}).text());
}

std::string Parameters::className(Parameter parameter) const {
    const std::optional<Element> element = _optional(parameter, {Tag::className});
    return element ? std::string(element->attributeText(Attribute::name)) : std::string();
}

std::string Parameters::requiredClassName(Parameter parameter) const {
    return std::string(required(parameter, {Tag::className}).attributeText(Attribute::name));
}

std::optional<std::vector<std::string>> Parameters::propertyList() const {
    const std::optional<Element> list = _optional(Parameter::propertyList, {Tag::valueArray});
    if (!list) return std::nullopt;
    std::set<std::string_view, NameLess> seen;
    std::vector<std::string> names;
    for (const Element name : list->children()) {
        if (name.tag() == Tag::valueNull) {
            throwInvalidParameter("parameter PropertyList holds NULL");
        }
        if (!seen.insert(name.text()).second) continue;
        if (names.size() == propertyLimit) {
            throwInvalidParameter("parameter PropertyList is too long");
        }
        names.emplace_back(name.text());
    }
    return names;
}

}  // namespace cimhost
