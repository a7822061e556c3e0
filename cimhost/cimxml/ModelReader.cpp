#include "cimhost/cimxml/ModelReader.h"

#include "cimhost/cimxml/ValueText.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <set>
#include <utility>

namespace cimhost {
namespace {

/// Instances embedded in one another. Each level is text inside text, so that no limit on elements
/// bounds it.
constexpr unsigned embeddingLimit = 16;

/// Far more than any class has, and few enough to be searched one by one.
constexpr std::size_t keyLimit = 256;

/// "<what> is no uint8", with as much of the text as a message can bear.
std::string refusal(const ValueShape& shape, std::string_view text) {
    constexpr std::size_t shown = 64;
    return shape.text() + ": \"" + std::string(text.substr(0, shown)) +
           (text.size() > shown ? "...\"" : "\"") + " is no value of type " +
           std::string(typeName(shape.type));
}

[[noreturn]] void mismatch(const ValueShape& shape, std::string_view given) {
    std::string wanted(shape.type == CimType::instance ? "embedded instance"
                                                       : typeName(shape.type));
    if (shape.isArray) wanted += "[]";
    throw CimError(CimCode::typeMismatch,
                   shape.text() + " is of type " + wanted + ", not " + std::string(given));
}

CimType declaredType(const Element& property) {
    if (property.tag() == Tag::propertyReference) return CimType::reference;
    const std::string_view name = property.attributeText(Attribute::type);
    const CimType type = typeFromName(name);
    if (type == CimType::none || type == CimType::reference || type == CimType::instance) {
        throwInvalidParameter("property " + std::string(property.attributeText(Attribute::name)) +
                              " has the unknown type \"" + std::string(name) + "\"");
    }
    if (type == CimType::string && property.attribute(Attribute::embeddedObject)) {
        return CimType::instance;
    }
    return type;
}

/// What the element itself says about its value.
ValueShape writtenShape(const Element& property, std::string_view className) {
    return {declaredType(property), property.tag() == Tag::propertyArray, "property",
            property.attributeText(Attribute::name), className};
}

/// The class's word counts; the request's must not contradict it. An embedded instance may come as
/// a plain string: older clients leave it to the class to say so.
void checkShape(const ValueShape& written, const ValueShape& declared) {
    const bool sameType = written.type == declared.type ||
                          (declared.type == CimType::instance && written.type == CimType::string);
    if (sameType && written.isArray == declared.isArray) return;
    mismatch(declared, std::string(typeName(written.type)) + (written.isArray ? "[]" : ""));
}

const PropertyDefinition* onlyKey(const Class* definition) {
    const PropertyDefinition* key = nullptr;
    if (!definition) return nullptr;
    for (const auto& property : definition->properties) {
        if (!property->isKey) continue;
        if (key != nullptr) return nullptr;
        key = property.get();
    }
    return key;
}

/// The type of a key that no class declares.
CimType suggestedType(const Element& keyValue) noexcept {
    const CimType type = typeFromName(keyValue.attributeText(Attribute::type));
    if (type != CimType::none && type != CimType::reference) return type;
    const std::string_view kind = keyValue.attributeText(Attribute::valueType);
    if (equalNames(kind, "boolean")) return CimType::boolean;
    if (!equalNames(kind, "numeric")) return CimType::string;
    const std::string_view text = keyValue.text();
    const bool isHexadecimal = text.find_first_of("xX") != std::string_view::npos;
    if (!isHexadecimal && text.find_first_of(".eE") != std::string_view::npos) {
        return CimType::real64;
    }
    return text.find('-') != std::string_view::npos ? CimType::sint64 : CimType::uint64;
}

bool isPathOfInstance(Tag tag) noexcept {
    return tag == Tag::instancePath || tag == Tag::localInstancePath || tag == Tag::instanceName;
}

}  // namespace

std::string ValueShape::text() const {
    return std::string(kind) + " " + std::string(name) + " of " + std::string(owner);
}

std::string joinNameSpace(const Element& localNameSpacePath) {
    std::string joined;
    for (const Element part : localNameSpacePath.children()) {
        if (!joined.empty()) joined += '/';
        joined += part.attributeText(Attribute::name);
    }
    return joined;
}

Value ModelReader::value(const std::optional<Element>& element, const ValueShape& shape) const {
    if (!element) return shape.isArray ? Value::nullArray(shape.type) : Value::null(shape.type);
    const Tag tag = element->tag();
    const bool isArray = tag == Tag::valueArray || tag == Tag::valueReferenceArray;
    if (isArray != shape.isArray) mismatch(shape, isArray ? "an array" : "a scalar");
    return isArray ? _array(*element, shape) : _scalar(*element, shape);
}

Value ModelReader::_scalar(const Element& element, const ValueShape& shape) const {
    if (element.tag() == Tag::valueNull) return Value::null(shape.type);
    if (shape.type == CimType::reference) {
        if (element.tag() != Tag::valueReference) mismatch(shape, element.tagName());
        return Value::reference(reference(element));
    }
    if (element.tag() != Tag::value) mismatch(shape, element.tagName());
    if (shape.type == CimType::instance) return _embedded(element.text(), shape);
    std::optional<Value> value = readScalar(shape.type, element.text());
    if (!value) throw CimError(CimCode::typeMismatch, refusal(shape, element.text()));
    return std::move(*value);
}

Value ModelReader::_array(const Element& element, const ValueShape& shape) const {
    Value::Array values;
    for (const Element child : element.children()) values.push_back(_scalar(child, shape));
    return Value::array(shape.type, std::move(values));
}

Value ModelReader::_embedded(std::string_view text, const ValueShape& shape) const {
    if (_embeddingDepth == embeddingLimit) {
        throw CimError(CimCode::serverLimitsExceeded,
                       shape.text() + ": instances are embedded too deeply");
    }
    try {
        const XmlDocument document(text, {Tag::instance, Tag::classDefinition});
        if (document.root().tag() == Tag::classDefinition) {
            throw CimError(CimCode::notSupported,
                           shape.text() + ": embedded classes are not supported");
        }
        return Value::instance(_deeper()._embeddedInstance(document.root()));
    } catch (const XmlError& error) {
        throw CimError(CimCode::typeMismatch,
                       shape.text() + " holds no embedded instance: " + error.what());
    }
}

ModelReader ModelReader::_deeper() const {
    ModelReader reader = *this;
    ++reader._embeddingDepth;
    return reader;
}

Instance ModelReader::_embeddedInstance(const Element& element) const {
    const std::string_view name = element.attributeText(Attribute::className);
    if (const Class* const definition = _nameSpace.findClass(name)) {
        return instance(element, *definition);
    }
    return undeclaredInstance(element);
}

Instance ModelReader::undeclaredInstance(const Element& element) const {
    Instance result = _properties(element, nullptr);
    result.path.className = element.attributeText(Attribute::className);
    return result;
}

Instance ModelReader::instance(const Element& element, const Class& definition) const {
    Instance result = _properties(element, &definition);
    result.path.className = definition.name;
    return result;
}

Instance ModelReader::_properties(const Element& element, const Class* definition) const {
    Instance result;
    result.path.nameSpace = _nameSpace.name();
    std::set<std::string_view, NameLess> names;
    for (const Element child : element.children()) {
        if (child.tag() == Tag::qualifier) continue;
        const std::string_view name = child.attributeText(Attribute::name);
        if (!names.insert(name).second) {
            throwInvalidParameter("property " + std::string(name) + " is given more than once");
        }
        result.properties.push_back(_property(child, definition));
    }
    return result;
}

PropertyValue ModelReader::_property(const Element& element, const Class* definition) const {
    const std::string_view name = element.attributeText(Attribute::name);
    std::optional<Element> content;
    for (const Element child : element.children()) {
        if (child.tag() != Tag::qualifier) content = child;
    }
    const ValueShape written =
        writtenShape(element, definition != nullptr ? std::string_view(definition->name)
                                                    : "an embedded instance");
    if (!definition) {
        return {std::string(name), value(content, written),
                element.attributeText(Attribute::classOrigin)};
    }

    const PropertyDefinition& property = definition->requireProperty(name);
    ValueShape declared = written;
    declared.type = property.type;
    declared.isArray = property.isArray;
    checkShape(written, declared);
    return {property.name, value(content, declared), property.classOrigin};
}

ObjectPath ModelReader::path(const Element& name) const {
    return _pathIn(&_nameSpace, _nameSpace.name(), name);
}

ObjectPath ModelReader::reference(const Element& valueReference) const {
    const Element target = *valueReference.firstChild();
    if (target.tag() == Tag::instanceName || target.tag() == Tag::className) return path(target);
    // INSTANCEPATH and CLASSPATH hold a host and a local path; the local forms only the latter.
    const Element first = *target.firstChild();
    const Element local =
        first.tag() == Tag::nameSpacePath ? *first.child(Tag::localNameSpacePath) : first;
    const std::string name = joinNameSpace(local);
    const NameSpace* const nameSpace = _repository.find(name);
    return _pathIn(
        nameSpace, nameSpace != nullptr ? nameSpace->name() : name,
        *target.child(isPathOfInstance(target.tag()) ? Tag::instanceName : Tag::className));
}

ObjectPath ModelReader::_pathIn(const NameSpace* nameSpace, std::string nameSpaceName,
                                const Element& name) const {
    const bool isClass = name.tag() == Tag::className;
    const std::string_view className =
        name.attributeText(isClass ? Attribute::name : Attribute::className);
    const Class* const definition =
        nameSpace != nullptr ? nameSpace->findClass(className) : nullptr;
    ObjectPath result;
    result.nameSpace = std::move(nameSpaceName);
    result.className = definition != nullptr ? definition->name : std::string(className);
    if (!isClass) _readKeys(name, definition, result);
    return result;
}

void ModelReader::_readKeys(const Element& name, const Class* definition, ObjectPath& path) const {
    for (const Element child : name.children()) {
        const bool isNamed = child.tag() == Tag::keyBinding;
        const PropertyDefinition* const only = isNamed ? nullptr : onlyKey(definition);
        // A bare value stands for the only key of its class.
        if (!isNamed && !only) throwInvalidParameter("a key of " + path.className + " has no name");
        const std::string_view key = isNamed ? child.attributeText(Attribute::name) : only->name;
        if (path.findKey(key) != nullptr) {
            throwInvalidParameter("key " + std::string(key) + " of " + path.className +
                                  " is given more than once");
        }
        if (path.keys.size() == keyLimit) {
            throwInvalidParameter("a path of " + path.className + " has too many keys");
        }
        path.keys.push_back(
            {std::string(key), _keyValue(isNamed ? *child.firstChild() : child, definition, key)});
    }
}

Value ModelReader::_keyValue(const Element& element, const Class* definition,
                             std::string_view name) const {
    const bool isReference = element.tag() == Tag::valueReference;
    const PropertyDefinition* const property =
        definition != nullptr ? definition->findProperty(name) : nullptr;
    if (!property) {
        return isReference ? Value::reference(reference(element)) : _untypedKey(element, name);
    }
    const ValueShape shape{property->type, false, "key", property->name, definition->name};
    if (isReference != (property->type == CimType::reference)) {
        throwInvalidParameter(shape.text() + " is of type " +
                              std::string(typeName(property->type)));
    }
    return isReference ? Value::reference(reference(element)) : _typedKey(element, shape);
}

Value ModelReader::_typedKey(const Element& keyValue, const ValueShape& shape) const {
    // The other way round is usual: clients that know no class write all keys as strings.
    const std::string_view kind = keyValue.attributeText(Attribute::valueType);
    if (shape.type == CimType::string && !kind.empty() && !equalNames(kind, "string")) {
        throwInvalidParameter(shape.text() + " is of type string, not " + std::string(kind));
    }
    std::optional<Value> value = readScalar(shape.type, keyValue.text());
    if (!value) throwInvalidParameter(refusal(shape, keyValue.text()));
    return std::move(*value);
}

Value ModelReader::_untypedKey(const Element& keyValue, std::string_view name) const {
    return _typedKey(keyValue, {suggestedType(keyValue), false, "key", name, "a path"});
}

}  // namespace cimhost
