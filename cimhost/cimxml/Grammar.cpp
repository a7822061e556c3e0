#include "cimhost/cimxml/Grammar.h"

#include <algorithm>
#include <cstddef>

namespace cimhost {
namespace {

using A = Attribute;

constexpr TagSet properties{Tag::property, Tag::propertyArray, Tag::propertyReference};
constexpr TagSet parameters{Tag::parameter, Tag::parameterReference, Tag::parameterArray,
                            Tag::parameterReferenceArray};
constexpr TagSet parameterContents{
    Tag::value,     Tag::valueArray,        Tag::valueReference,       Tag::valueReferenceArray,
    Tag::className, Tag::instanceName,      Tag::qualifierDeclaration, Tag::classDefinition,
    Tag::instance,  Tag::valueNamedInstance};
constexpr TagSet paths{Tag::classPath,    Tag::localClassPath,    Tag::className,
                       Tag::instancePath, Tag::localInstancePath, Tag::instanceName};

constexpr ContentStep any(TagSet tags) { return {tags, 0, ContentStep::any}; }
constexpr ContentStep some(TagSet tags) { return {tags, 1, ContentStep::any}; }
constexpr ContentStep one(TagSet tags) { return {tags, 1, 1}; }
constexpr ContentStep maybe(TagSet tags) { return {tags, 0, 1}; }

// In order of name, as the search needs it.
// clang-format off
constexpr auto rules = std::to_array<ElementRule>({
    {Tag::cim, "CIM", {A::cimVersion, A::dtdVersion}, false, {one({Tag::message})}},
    {Tag::classDefinition, "CLASS", {A::name}, false, {any({Tag::qualifier}), any(properties), any({Tag::method})}},
    {Tag::className, "CLASSNAME", {A::name}, false, {}},
    {Tag::classPath, "CLASSPATH", {}, false, {one({Tag::nameSpacePath}), one({Tag::className})}},
    {Tag::correlator, "CORRELATOR", {A::name, A::type}, false, {one({Tag::value})}},
    {Tag::exportCall, "EXPMETHODCALL", {A::name}, false, {any({Tag::exportParameter})}},
    {Tag::exportParameter, "EXPPARAMVALUE", {A::name}, false, {maybe({Tag::instance})}},
    {Tag::host, "HOST", {}, true, {}},
    {Tag::intrinsicCall, "IMETHODCALL", {A::name}, false, {one({Tag::localNameSpacePath}), any({Tag::intrinsicParameter})}},
    {Tag::instance, "INSTANCE", {A::className}, false, {any({Tag::qualifier}), any(properties)}},
    {Tag::instanceName, "INSTANCENAME", {A::className}, false, {any({Tag::keyBinding, Tag::keyValue, Tag::valueReference})}},
    {Tag::instancePath, "INSTANCEPATH", {}, false, {one({Tag::nameSpacePath}), one({Tag::instanceName})}},
    {Tag::intrinsicParameter, "IPARAMVALUE", {A::name}, false, {maybe(parameterContents)}},
    {Tag::keyBinding, "KEYBINDING", {A::name}, false, {one({Tag::keyValue, Tag::valueReference})}},
    {Tag::keyValue, "KEYVALUE", {}, true, {}},
    {Tag::localClassPath, "LOCALCLASSPATH", {}, false, {one({Tag::localNameSpacePath}), one({Tag::className})}},
    {Tag::localInstancePath, "LOCALINSTANCEPATH", {}, false, {one({Tag::localNameSpacePath}), one({Tag::instanceName})}},
    {Tag::localNameSpacePath, "LOCALNAMESPACEPATH", {}, false, {some({Tag::nameSpace})}},
    {Tag::message, "MESSAGE", {A::id, A::protocolVersion}, false, {one({Tag::simpleRequest, Tag::multipleRequest, Tag::simpleExportRequest})}},
    {Tag::method, "METHOD", {A::name}, false, {any({Tag::qualifier}), any(parameters)}},
    {Tag::methodCall, "METHODCALL", {A::name}, false, {one({Tag::localClassPath, Tag::localInstancePath}), any({Tag::parameterValue})}},
    {Tag::multipleRequest, "MULTIREQ", {}, false, {any({Tag::simpleRequest})}},
    {Tag::nameSpace, "NAMESPACE", {A::name}, false, {}},
    {Tag::nameSpacePath, "NAMESPACEPATH", {}, false, {one({Tag::host}), one({Tag::localNameSpacePath})}},
    {Tag::objectPath, "OBJECTPATH", {}, false, {one({Tag::instancePath, Tag::classPath})}},
    {Tag::parameter, "PARAMETER", {A::name, A::type}, false, {any({Tag::qualifier})}},
    {Tag::parameterArray, "PARAMETER.ARRAY", {A::name, A::type}, false, {any({Tag::qualifier})}},
    {Tag::parameterReferenceArray, "PARAMETER.REFARRAY", {A::name}, false, {any({Tag::qualifier})}},
    {Tag::parameterReference, "PARAMETER.REFERENCE", {A::name}, false, {any({Tag::qualifier})}},
    {Tag::parameterValue, "PARAMVALUE", {A::name}, false, {maybe(parameterContents)}},
    {Tag::property, "PROPERTY", {A::name, A::type}, false, {any({Tag::qualifier}), maybe({Tag::value})}},
    {Tag::propertyArray, "PROPERTY.ARRAY", {A::name, A::type}, false, {any({Tag::qualifier}), maybe({Tag::valueArray})}},
    {Tag::propertyReference, "PROPERTY.REFERENCE", {A::name}, false, {any({Tag::qualifier}), maybe({Tag::valueReference})}},
    {Tag::qualifier, "QUALIFIER", {A::name, A::type}, false, {maybe({Tag::value, Tag::valueArray})}},
    {Tag::qualifierDeclaration, "QUALIFIER.DECLARATION", {A::name, A::type}, false, {maybe({Tag::scope}), maybe({Tag::value, Tag::valueArray})}},
    {Tag::returnValue, "RETURNVALUE", {}, false, {maybe({Tag::value, Tag::valueArray, Tag::valueReference, Tag::valueReferenceArray})}},
    {Tag::scope, "SCOPE", {}, false, {}},
    {Tag::simpleExportRequest, "SIMPLEEXPREQ", {}, false, {any({Tag::correlator}), one({Tag::exportCall})}},
    {Tag::simpleRequest, "SIMPLEREQ", {}, false, {any({Tag::correlator}), one({Tag::intrinsicCall, Tag::methodCall})}},
    {Tag::value, "VALUE", {}, true, {}},
    {Tag::valueArray, "VALUE.ARRAY", {}, false, {any({Tag::value, Tag::valueNull})}},
    {Tag::valueNamedInstance, "VALUE.NAMEDINSTANCE", {}, false, {one({Tag::instanceName}), one({Tag::instance})}},
    {Tag::valueNull, "VALUE.NULL", {}, false, {}},
    {Tag::valueObjectWithPath, "VALUE.OBJECTWITHPATH", {}, false, {one({Tag::instancePath, Tag::classPath}), one({Tag::instance, Tag::classDefinition})}},
    {Tag::valueReferenceArray, "VALUE.REFARRAY", {}, false, {any({Tag::valueReference, Tag::valueNull})}},
    {Tag::valueReference, "VALUE.REFERENCE", {}, false, {one(paths)}},
});
// clang-format on

static_assert(std::ranges::is_sorted(rules, {}, &ElementRule::name));

constexpr std::size_t tagCount = static_cast<std::size_t>(Tag::valueObjectWithPath) + 1;
static_assert(rules.size() == tagCount && tagCount <= 64);

// Where each tag's rule stands in the table above.
constexpr auto placeOfTag = [] {
    std::array<std::uint8_t, tagCount> places{};
    for (std::size_t i = 0; i < rules.size(); ++i) {
        places[static_cast<std::size_t>(rules[i].tag)] = static_cast<std::uint8_t>(i);
    }
    return places;
}();

struct AttributeRow {
    std::string_view name;
    Attribute attribute;
};

constexpr auto attributes = std::to_array<AttributeRow>({
    {"NAME", A::name},
    {"CLASSNAME", A::className},
    {"TYPE", A::type},
    {"VALUETYPE", A::valueType},
    {"PARAMTYPE", A::parameterType},
    {"EmbeddedObject", A::embeddedObject},
    {"EMBEDDEDOBJECT", A::embeddedObject},  // an older spelling that clients still send
    {"CLASSORIGIN", A::classOrigin},
    {"ID", A::id},
    {"PROTOCOLVERSION", A::protocolVersion},
    {"CIMVERSION", A::cimVersion},
    {"DTDVERSION", A::dtdVersion},
    {"SUPERCLASS", A::superClass},
    {"REFERENCECLASS", A::referenceClass},
    {"ARRAYSIZE", A::arraySize},
    {"PROPAGATED", A::propagated},
    {"OVERRIDABLE", A::overridable},
    {"TOSUBCLASS", A::toSubclass},
    {"TRANSLATABLE", A::translatable},
});

}  // namespace

const ElementRule* findRule(std::string_view name) noexcept {
    const auto found = std::ranges::lower_bound(rules, name, {}, &ElementRule::name);
    return found != rules.end() && found->name == name ? &*found : nullptr;
}

const ElementRule& ruleOf(Tag tag) noexcept {
    return rules[placeOfTag[static_cast<std::size_t>(tag)]];
}

std::optional<Attribute> findAttribute(std::string_view name) noexcept {
    const auto found = std::ranges::find(attributes, name, &AttributeRow::name);
    if (found == attributes.end()) return std::nullopt;
    return found->attribute;
}

}  // namespace cimhost
