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
    {.tag = Tag::cim, .name = "CIM", .required = {A::cimVersion, A::dtdVersion}, .content = {one({Tag::message})}},
    {.tag = Tag::classDefinition, .name = "CLASS", .required = {A::name},
     .content = {any({Tag::qualifier}), any(properties), any({Tag::method})}},
    {.tag = Tag::className, .name = "CLASSNAME", .required = {A::name}},
    {.tag = Tag::classPath, .name = "CLASSPATH", .content = {one({Tag::nameSpacePath}), one({Tag::className})}},
    {.tag = Tag::correlator, .name = "CORRELATOR", .required = {A::name, A::type}, .content = {one({Tag::value})}},
    {.tag = Tag::exportCall, .name = "EXPMETHODCALL", .required = {A::name}, .content = {any({Tag::exportParameter})}},
    {.tag = Tag::exportParameter, .name = "EXPPARAMVALUE", .required = {A::name}, .content = {maybe({Tag::instance})}},
    {.tag = Tag::host, .name = "HOST", .hasText = true},
    {.tag = Tag::intrinsicCall, .name = "IMETHODCALL", .required = {A::name},
     .content = {one({Tag::localNameSpacePath}), any({Tag::intrinsicParameter})}},
    {.tag = Tag::instance, .name = "INSTANCE", .required = {A::className},
     .content = {any({Tag::qualifier}), any(properties)}},
    {.tag = Tag::instanceName, .name = "INSTANCENAME", .required = {A::className},
     .content = {any({Tag::keyBinding, Tag::keyValue, Tag::valueReference})}},
    {.tag = Tag::instancePath, .name = "INSTANCEPATH",
     .content = {one({Tag::nameSpacePath}), one({Tag::instanceName})}},
    {.tag = Tag::intrinsicParameter, .name = "IPARAMVALUE", .required = {A::name},
     .content = {maybe(parameterContents)}},
    {.tag = Tag::keyBinding, .name = "KEYBINDING", .required = {A::name},
     .content = {one({Tag::keyValue, Tag::valueReference})}},
    {.tag = Tag::keyValue, .name = "KEYVALUE", .hasText = true},
    {.tag = Tag::localClassPath, .name = "LOCALCLASSPATH",
     .content = {one({Tag::localNameSpacePath}), one({Tag::className})}},
    {.tag = Tag::localInstancePath, .name = "LOCALINSTANCEPATH",
     .content = {one({Tag::localNameSpacePath}), one({Tag::instanceName})}},
    {.tag = Tag::localNameSpacePath, .name = "LOCALNAMESPACEPATH", .content = {some({Tag::nameSpace})}},
    {.tag = Tag::message, .name = "MESSAGE", .required = {A::id, A::protocolVersion},
     .content = {one({Tag::simpleRequest, Tag::multipleRequest, Tag::simpleExportRequest,
                      Tag::multipleExportRequest})}},
    {.tag = Tag::method, .name = "METHOD", .required = {A::name}, .content = {any({Tag::qualifier}), any(parameters)}},
    {.tag = Tag::methodCall, .name = "METHODCALL", .required = {A::name},
     .content = {one({Tag::localClassPath, Tag::localInstancePath}), any({Tag::parameterValue})}},
    {.tag = Tag::multipleExportRequest, .name = "MULTIEXPREQ", .content = {any({Tag::simpleExportRequest})}},
    {.tag = Tag::multipleRequest, .name = "MULTIREQ", .content = {any({Tag::simpleRequest})}},
    {.tag = Tag::nameSpace, .name = "NAMESPACE", .required = {A::name}},
    {.tag = Tag::nameSpacePath, .name = "NAMESPACEPATH", .content = {one({Tag::host}), one({Tag::localNameSpacePath})}},
    {.tag = Tag::objectPath, .name = "OBJECTPATH", .content = {one({Tag::instancePath, Tag::classPath})}},
    {.tag = Tag::parameter, .name = "PARAMETER", .required = {A::name, A::type}, .content = {any({Tag::qualifier})}},
    {.tag = Tag::parameterArray, .name = "PARAMETER.ARRAY", .required = {A::name, A::type},
     .content = {any({Tag::qualifier})}},
    {.tag = Tag::parameterReferenceArray, .name = "PARAMETER.REFARRAY", .required = {A::name},
     .content = {any({Tag::qualifier})}},
    {.tag = Tag::parameterReference, .name = "PARAMETER.REFERENCE", .required = {A::name},
     .content = {any({Tag::qualifier})}},
    {.tag = Tag::parameterValue, .name = "PARAMVALUE", .required = {A::name}, .content = {maybe(parameterContents)}},
    {.tag = Tag::property, .name = "PROPERTY", .required = {A::name, A::type},
     .content = {any({Tag::qualifier}), maybe({Tag::value})}},
    {.tag = Tag::propertyArray, .name = "PROPERTY.ARRAY", .required = {A::name, A::type},
     .content = {any({Tag::qualifier}), maybe({Tag::valueArray})}},
    {.tag = Tag::propertyReference, .name = "PROPERTY.REFERENCE", .required = {A::name},
     .content = {any({Tag::qualifier}), maybe({Tag::valueReference})}},
    {.tag = Tag::qualifier, .name = "QUALIFIER", .required = {A::name, A::type},
     .content = {maybe({Tag::value, Tag::valueArray})}},
    {.tag = Tag::qualifierDeclaration, .name = "QUALIFIER.DECLARATION", .required = {A::name, A::type},
     .content = {maybe({Tag::scope}), maybe({Tag::value, Tag::valueArray})}},
    {.tag = Tag::returnValue, .name = "RETURNVALUE",
     .content = {maybe({Tag::value, Tag::valueArray, Tag::valueReference, Tag::valueReferenceArray})}},
    {.tag = Tag::scope, .name = "SCOPE"},
    {.tag = Tag::simpleExportRequest, .name = "SIMPLEEXPREQ",
     .content = {any({Tag::correlator}), one({Tag::exportCall})}},
    {.tag = Tag::simpleRequest, .name = "SIMPLEREQ",
     .content = {any({Tag::correlator}), one({Tag::intrinsicCall, Tag::methodCall})}},
    {.tag = Tag::value, .name = "VALUE", .hasText = true},
    {.tag = Tag::valueArray, .name = "VALUE.ARRAY", .content = {any({Tag::value, Tag::valueNull})}},
    {.tag = Tag::valueNamedInstance, .name = "VALUE.NAMEDINSTANCE",
     .content = {one({Tag::instanceName}), one({Tag::instance})}},
    {.tag = Tag::valueNull, .name = "VALUE.NULL"},
    {.tag = Tag::valueObjectWithPath, .name = "VALUE.OBJECTWITHPATH",
     .content = {one({Tag::instancePath, Tag::classPath}), one({Tag::instance, Tag::classDefinition})}},
    {.tag = Tag::valueReferenceArray, .name = "VALUE.REFARRAY",
     .content = {any({Tag::valueReference, Tag::valueNull})}},
    {.tag = Tag::valueReference, .name = "VALUE.REFERENCE", .content = {one(paths)}},
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
