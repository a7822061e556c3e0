#include "cimhost/cimxml/ClassReader.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <charconv>
#include <memory>
#include <set>
#include <utility>

namespace cimhost {
namespace {

/// Reads the parts of one class.
class Parts {
public:
    Parts(const ModelReader& reader, std::string_view className)
        : _reader(reader), _className(className) {}

    Qualifiers qualifiers(const Element& owner) const;
    std::shared_ptr<const PropertyDefinition> property(const Element& element) const;
    std::shared_ptr<const MethodDefinition> method(const Element& element) const;

private:
    ParameterDefinition _parameter(const Element& element) const;
    template <typename Typed>
    void _readTyped(const Element& element, std::string_view kind, Typed& typed) const;
    CimType _type(const Element& element, std::string_view kind) const;

    const ModelReader& _reader;
    std::string_view _className;
};

std::string nameOf(const Element& element) {
    return std::string(element.attributeText(Attribute::name));
}

bool isTrue(const Element& element, Attribute attribute, bool isByDefault) {
    const auto text = element.attribute(attribute);
    return text ? equalNames(*text, "true") : isByDefault;
}

std::optional<std::uint32_t> arraySizeOf(const Element& element) {
    const std::string_view text = element.attributeText(Attribute::arraySize);
    if (text.empty()) return std::nullopt;
    std::uint32_t size = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), size);
    if (error != std::errc{} || end != text.data() + text.size()) {
        throwInvalidParameter(nameOf(element) + " has the array size \"" + std::string(text) +
                              "\"");
    }
    return size;
}

std::string embeddedClassOf(const Qualifiers& qualifiers) {
    const Qualifier* const found = findQualifier(qualifiers, "EmbeddedInstance");
    const Text* const name = found ? found->value.get<Text>() : nullptr;
    return name ? name->str() : std::string();
}

/// A string that holds an instance, by its attribute or by its qualifiers.
bool isEmbedded(const Element& element, const Qualifiers& qualifiers) {
    return element.attribute(Attribute::embeddedObject) || !embeddedClassOf(qualifiers).empty() ||
           hasQualifier(qualifiers, "EmbeddedObject");
}

bool isOneOf(const Element& element, TagSet tags) noexcept { return tags.contains(element.tag()); }

std::optional<Element> valueOf(const Element& element) {
    for (const Element child : element.children()) {
        if (child.tag() != Tag::qualifier) return child;
    }
    return std::nullopt;
}

CimType Parts::_type(const Element& element, std::string_view kind) const {
    const std::string_view name = element.attributeText(Attribute::type);
    const CimType type = typeFromName(name);
    if (type == CimType::none || type == CimType::reference || type == CimType::instance) {
        throwInvalidParameter(std::string(kind) + " " + nameOf(element) + " of " +
                              std::string(_className) + " has the unknown type \"" +
                              std::string(name) + "\"");
    }
    return type;
}

Qualifiers Parts::qualifiers(const Element& owner) const {
    Qualifiers found;
    for (const Element each : owner.children()) {
        if (each.tag() != Tag::qualifier) break;
        const std::optional<Element> content = each.firstChild();
        const bool isArray = content && content->tag() == Tag::valueArray;
        Qualifier qualifier;
        qualifier.name = nameOf(each);
        qualifier.value = _reader.value(
            content, {_type(each, "qualifier"), isArray, "qualifier", qualifier.name, _className});
        qualifier.flavor.overridable = isTrue(each, Attribute::overridable, true);
        qualifier.flavor.toSubclass = isTrue(each, Attribute::toSubclass, true);
        qualifier.flavor.translatable = isTrue(each, Attribute::translatable, false);
        qualifier.propagated = isTrue(each, Attribute::propagated, false);
        found.push_back(std::move(qualifier));
    }
    return found;
}

/// What properties and parameters have in common.
template <typename Typed>
void Parts::_readTyped(const Element& element, std::string_view kind, Typed& typed) const {
    typed.name = nameOf(element);
    typed.qualifiers = qualifiers(element);
    typed.isArray =
        isOneOf(element, {Tag::propertyArray, Tag::parameterArray, Tag::parameterReferenceArray});
    typed.arraySize = arraySizeOf(element);
    if (isOneOf(element,
                {Tag::propertyReference, Tag::parameterReference, Tag::parameterReferenceArray})) {
        typed.type = CimType::reference;
        typed.referenceClass = element.attributeText(Attribute::referenceClass);
        return;
    }
    typed.type = _type(element, kind);
    if (typed.type != CimType::string || !isEmbedded(element, typed.qualifiers)) return;
    typed.type = CimType::instance;
    typed.referenceClass = embeddedClassOf(typed.qualifiers);
    typed.isEmbeddedObject = typed.referenceClass.empty();
}

std::shared_ptr<const PropertyDefinition> Parts::property(const Element& element) const {
    const auto property = std::make_shared<PropertyDefinition>();
    _readTyped(element, "property", *property);
    property->defaultValue =
        _reader.value(valueOf(element),
                      {property->type, property->isArray, "property", property->name, _className});
    property->classOrigin = element.attributeText(Attribute::classOrigin);
    property->isKey = hasQualifier(property->qualifiers, "Key");
    return property;
}

ParameterDefinition Parts::_parameter(const Element& element) const {
    ParameterDefinition parameter;
    _readTyped(element, "parameter", parameter);
    parameter.isIn =
        !findQualifier(parameter.qualifiers, "In") || hasQualifier(parameter.qualifiers, "In");
    parameter.isOut = hasQualifier(parameter.qualifiers, "Out");
    return parameter;
}

std::shared_ptr<const MethodDefinition> Parts::method(const Element& element) const {
    const auto method = std::make_shared<MethodDefinition>();
    method->name = nameOf(element);
    method->qualifiers = qualifiers(element);
    if (element.attribute(Attribute::type)) method->returnType = _type(element, "method");
    if (method->returnType == CimType::string && isEmbedded(element, method->qualifiers)) {
        method->returnType = CimType::instance;
        method->returnEmbeddedClass = embeddedClassOf(method->qualifiers);
    }
    method->classOrigin = element.attributeText(Attribute::classOrigin);
    for (const Element each : element.children()) {
        if (each.tag() != Tag::qualifier) method->parameters.push_back(_parameter(each));
    }
    return method;
}

}  // namespace

Class readClass(const Element& element, const ModelReader& reader) {
    Class definition;
    definition.name = nameOf(element);
    definition.superClass = element.attributeText(Attribute::superClass);
    const Parts parts(reader, definition.name);
    definition.qualifiers = parts.qualifiers(element);
    definition.isAssociation = hasQualifier(definition.qualifiers, "Association");
    definition.isIndication = hasQualifier(definition.qualifiers, "Indication");
    definition.isAbstract = hasQualifier(definition.qualifiers, "Abstract");
    std::set<std::string_view, NameLess> properties;
    std::set<std::string_view, NameLess> methods;
    for (const Element each : element.children()) {
        if (each.tag() == Tag::qualifier) continue;
        const bool isMethod = each.tag() == Tag::method;
        if (!(isMethod ? methods : properties).insert(each.attributeText(Attribute::name)).second) {
            throwInvalidParameter("class " + definition.name + " has " + nameOf(each) + " twice");
        }
        if (isMethod) {
            definition.methods.push_back(parts.method(each));
        } else {
            definition.properties.push_back(parts.property(each));
        }
    }
    return definition;
}

}  // namespace cimhost
