#include "cimhost/repository/ElementResolver.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/NameSpace.h"
#include "cimhost/repository/Names.h"
#include "cimhost/repository/QualifierRules.h"
#include "cimhost/repository/ValueConversion.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace cimhost {
namespace {

[[noreturn]] void refuse(const std::string& element, const std::string& problem) {
    throw CimError(CimCode::invalidParameter, element + ": " + problem);
}

std::string elementText(std::string_view kind, std::string_view name, const Class& definition) {
    return std::string(kind) + " '" + std::string(name) + "' of '" + definition.name + "'";
}

// Override names the element that is replaced, which bears the same name.
void checkOverride(const Qualifiers& qualifiers, std::string_view name, bool hasInherited,
                   const std::string& element) {
    const Qualifier* const qualifier = findQualifier(qualifiers, "Override");
    if (!qualifier) return;
    const Text* const target = qualifier->value.get<Text>();
    if (target && !equalNames(*target, name)) {
        refuse(element, "overrides '" + *target + "', which has another name");
    }
    if (!hasInherited) refuse(element, "overrides nothing: the superclass has no such element");
}

/// What EmbeddedInstance and EmbeddedObject make of a string.
struct Embedding {
    CimType type = CimType::string;
    std::string className;
    bool isObject = false;
};

Embedding embeddingOf(const Qualifiers& qualifiers) {
    const Qualifier* const instance = findQualifier(qualifiers, "EmbeddedInstance");
    if (const auto* className = instance ? instance->value.get<Text>() : nullptr) {
        return {CimType::instance, className->str(), false};
    }
    if (hasQualifier(qualifiers, "EmbeddedObject")) return {CimType::instance, {}, true};
    return {};
}

// Works for properties and parameters, which share these members.
template <typename Typed>
void embed(Typed& element) {
    if (element.type != CimType::string && element.type != CimType::instance) return;
    Embedding embedding = embeddingOf(element.qualifiers);
    if (embedding.type == CimType::string) return;
    element.type = embedding.type;
    element.referenceClass = std::move(embedding.className);
    element.isEmbeddedObject = embedding.isObject;
}

bool isNarrowed(const NameSpace& nameSpace, const std::string& to, const std::string& from) {
    // A class may be used before it is defined; then there is nothing to hold it against yet.
    const bool known = nameSpace.findClass(to) && nameSpace.findClass(from);
    return !known || nameSpace.isA(to, from);
}

template <typename Typed>
void checkSameType(const NameSpace& nameSpace, const Typed& own, const Typed& inherited,
                   const std::string& element) {
    const bool embedsString = own.type == CimType::instance && inherited.type == CimType::string;
    if ((own.type != inherited.type && !embedsString) || own.isArray != inherited.isArray) {
        refuse(element, "is " + typeText(own.type, own.isArray) + " but " +
                            typeText(inherited.type, inherited.isArray) + " in the superclass");
    }
    if (own.referenceClass.empty() || inherited.referenceClass.empty()) return;
    if (!isNarrowed(nameSpace, own.referenceClass, inherited.referenceClass)) {
        refuse(element, "refers to '" + own.referenceClass + "', which is no subclass of '" +
                            inherited.referenceClass + "'");
    }
}

void checkKey(const PropertyDefinition& property, const std::string& element) {
    if (!property.isKey) return;
    if (property.isArray) refuse(element, "an array cannot be a key");
    if (property.type == CimType::instance) refuse(element, "an embedded object cannot be a key");
}

void resolveDefault(const ElementContext& context, PropertyDefinition& property,
                    const PropertyDefinition* inherited, const std::string& element) {
    if (property.defaultValue.isNull() && inherited) {
        context.budget.charge(valueBytes(inherited->defaultValue));
        property.defaultValue = inherited->defaultValue;
    }
    if (property.type == CimType::instance && !property.defaultValue.isNull()) {
        refuse(element, "an embedded object has no default value but NULL");
    }
    try {
        property.defaultValue = convertValue(property.defaultValue, property.type, property.isArray,
                                             property.arraySize);
    } catch (const CimError& error) {
        refuse(element, std::string("default value: ") + error.what());
    }
}

void resolveParameter(const ElementContext& context, ParameterDefinition& parameter,
                      const MethodDefinition* inherited, const std::string& method) {
    const std::string element = "parameter '" + parameter.name + "' of " + method;
    checkQualifiers(context.nameSpace, parameter.qualifiers, scopeMask(Scope::parameter), element);
    const ParameterDefinition* const overridden =
        inherited ? findNamed(inherited->parameters, parameter.name) : nullptr;
    if (overridden) {
        inheritQualifiers(parameter.qualifiers, overridden->qualifiers, element, context.budget);
    }
    embed(parameter);
    if (overridden) checkSameType(context.nameSpace, parameter, *overridden, element);
    const Qualifier* const in = findQualifier(parameter.qualifiers, "In");
    parameter.isIn = !in || hasQualifier(parameter.qualifiers, "In");
    parameter.isOut = hasQualifier(parameter.qualifiers, "Out");
}

void resolveParameters(const ElementContext& context, MethodDefinition& method,
                       const MethodDefinition* inherited, const std::string& element) {
    std::unordered_set<std::string_view, NameHash, NameEqual> names;
    for (ParameterDefinition& parameter : method.parameters) {
        if (!names.insert(parameter.name).second) {
            refuse(element, "parameter '" + parameter.name + "' is declared twice");
        }
        resolveParameter(context, parameter, inherited, element);
    }
}

}  // namespace

std::shared_ptr<const PropertyDefinition> resolveProperty(const ElementContext& context,
                                                          const PropertyDefinition& declared,
                                                          const PropertyDefinition* inherited) {
    const auto property = std::make_shared<PropertyDefinition>(declared);
    const bool isReference = property->type == CimType::reference;
    const std::string element =
        elementText(isReference ? "reference" : "property", property->name, context.definition);
    if (isReference && !context.definition.isAssociation) {
        refuse(element, "only an association has references");
    }
    const Scope scope = isReference ? Scope::reference : Scope::property;
    checkQualifiers(context.nameSpace, property->qualifiers, scopeMask(scope), element);
    checkOverride(property->qualifiers, property->name, inherited != nullptr, element);
    if (inherited) {
        inheritQualifiers(property->qualifiers, inherited->qualifiers, element, context.budget);
    }
    embed(*property);
    if (inherited) checkSameType(context.nameSpace, *property, *inherited, element);
    property->isKey = hasQualifier(property->qualifiers, "Key");
    property->classOrigin = context.definition.name;
    checkKey(*property, element);
    resolveDefault(context, *property, inherited, element);
    return property;
}

std::shared_ptr<const MethodDefinition> resolveMethod(const ElementContext& context,
                                                      const MethodDefinition& declared,
                                                      const MethodDefinition* inherited) {
    const auto method = std::make_shared<MethodDefinition>(declared);
    const std::string element = elementText("method", method->name, context.definition);
    checkQualifiers(context.nameSpace, method->qualifiers, scopeMask(Scope::method), element);
    checkOverride(method->qualifiers, method->name, inherited != nullptr, element);
    if (inherited) {
        inheritQualifiers(method->qualifiers, inherited->qualifiers, element, context.budget);
        if (typeName(method->returnType) != typeName(inherited->returnType)) {
            refuse(element, "returns " + std::string(typeName(method->returnType)) + " but " +
                                std::string(typeName(inherited->returnType)) +
                                " in the superclass");
        }
    }
    if (method->returnType == CimType::string) {
        Embedding embedding = embeddingOf(method->qualifiers);
        method->returnType = embedding.type;
        method->returnEmbeddedClass = std::move(embedding.className);
    }
    resolveParameters(context, *method, inherited, element);
    method->classOrigin = context.definition.name;
    return method;
}

}  // namespace cimhost
