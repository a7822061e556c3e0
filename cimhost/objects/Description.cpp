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

#include <array>

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

// A line each, as established hosts have them: there are providers that compare the text.
std::string describe(const Arguments& arguments) {
    std::string result;
    for (const Argument& argument : arguments) {
        const Text* const text = argument.value.get<Text>();
        const std::string value = text ? std::string(*text) : describe(argument.value);
        result += ' ' + argument.name + ':' + value + '\n';
    }
    return result;
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

std::string describe(const ErrorObject& error) { return describe(error.asInstance()); }

std::string describe(const ArrayObject& array) {
    if (array.handleType != CMPI_null) return std::string(typeNameOf(ObjectKind::array));
    return describe(Value::array(array.elementType, array.elements));
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

std::string describe(const ObjectHeader& header) {
    switch (header.kind()) {
        case ObjectKind::objectPath: return describe(as<ObjectPathObject>(header).model.read());
        case ObjectKind::instance: return describe(as<InstanceObject>(header).read());
        case ObjectKind::arguments: return describe(as<ArgsObject>(header).model);
        case ObjectKind::string: return std::string(as<StringObject>(header).view());
        case ObjectKind::array: return describe(as<ArrayObject>(header));
        case ObjectKind::dateTime: return std::string(as<DateTimeObject>(header).view());
        case ObjectKind::error: return describe(as<ErrorObject>(header));
        case ObjectKind::selectExpression: return as<SelectExpObject>(header).query->text;
        case ObjectKind::predicate: return describe(as<PredicateObject>(header).predicate());
        case ObjectKind::selectCondition:
        case ObjectKind::subCondition:
        case ObjectKind::enumeration:
        case ObjectKind::context:
        case ObjectKind::result:
        case ObjectKind::propertyList:
        case ObjectKind::enumerationFilter: break;
    }
    return std::string(typeNameOf(header.kind()));
}

}  // namespace cimhost
