#include "cimhost/cimxml/ObjectWriter.h"

#include "cimhost/cimxml/ValueText.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <memory>

namespace cimhost {
namespace {

const ObjectPath* pathOf(const Value& value) noexcept {
    const auto* const path = value.get<std::shared_ptr<const ObjectPath>>();
    return path != nullptr ? path->get() : nullptr;
}

const Instance* instanceOf(const Value& value) noexcept {
    const auto* const instance = value.get<std::shared_ptr<const Instance>>();
    return instance != nullptr ? instance->get() : nullptr;
}

/// The markup between the name of a key and the end of its start tag.
std::string_view keyValueOf(CimType type) noexcept {
    if (type == CimType::boolean) return "\"><KEYVALUE VALUETYPE=\"boolean\"";
    return isInteger(type) || isReal(type) ? "\"><KEYVALUE VALUETYPE=\"numeric\""
                                           : "\"><KEYVALUE VALUETYPE=\"string\"";
}

struct PropertyMarkup {
    std::string_view open;
    std::string_view close;
};

PropertyMarkup propertyMarkup(CimType type, bool isArray) noexcept {
    if (isArray) return {"<PROPERTY.ARRAY NAME=\"", "</PROPERTY.ARRAY>"};
    if (type == CimType::reference) return {"<PROPERTY.REFERENCE NAME=\"", "</PROPERTY.REFERENCE>"};
    return {"<PROPERTY NAME=\"", "</PROPERTY>"};
}

/// Whether a value of the type is written as plain text.
constexpr bool isPlainScalar(CimType type) noexcept {
    return type != CimType::none && type != CimType::reference && type != CimType::instance;
}

/// What stands between the name and the text of a property that is a plain scalar. Each is written
/// as the constant that it is, which takes a few moves; a text of any length takes a call.
void writeScalarMarkup(XmlBuffer& out, CimType type) {
    switch (type) {
        case CimType::boolean: return out.markup("\" TYPE=\"boolean\"><VALUE>");
        case CimType::char16: return out.markup("\" TYPE=\"char16\"><VALUE>");
        case CimType::uint8: return out.markup("\" TYPE=\"uint8\"><VALUE>");
        case CimType::uint16: return out.markup("\" TYPE=\"uint16\"><VALUE>");
        case CimType::uint32: return out.markup("\" TYPE=\"uint32\"><VALUE>");
        case CimType::uint64: return out.markup("\" TYPE=\"uint64\"><VALUE>");
        case CimType::sint8: return out.markup("\" TYPE=\"sint8\"><VALUE>");
        case CimType::sint16: return out.markup("\" TYPE=\"sint16\"><VALUE>");
        case CimType::sint32: return out.markup("\" TYPE=\"sint32\"><VALUE>");
        case CimType::sint64: return out.markup("\" TYPE=\"sint64\"><VALUE>");
        case CimType::real32: return out.markup("\" TYPE=\"real32\"><VALUE>");
        case CimType::real64: return out.markup("\" TYPE=\"real64\"><VALUE>");
        case CimType::string: return out.markup("\" TYPE=\"string\"><VALUE>");
        case CimType::dateTime: return out.markup("\" TYPE=\"datetime\"><VALUE>");
        case CimType::none:
        case CimType::reference:
        case CimType::instance: break;
    }
}

/// A provider may set NULL without a type; the class then knows it.
CimType typeOf(const Value& value, const PropertyDefinition* definition) noexcept {
    if (value.type() != CimType::none) return value.type();
    return definition != nullptr ? definition->type : CimType::string;
}

bool isArray(const Value& value, const PropertyDefinition* definition) noexcept {
    if (value.type() == CimType::none && definition != nullptr) return definition->isArray;
    return value.isArray();
}

}  // namespace

void ObjectWriter::className(std::string_view name) {
    _out.markup("<CLASSNAME");
    _out.attribute("NAME", name);
    _out.markup("/>");
}

void ObjectWriter::instanceName(const ObjectPath& path) {
    _out.markup("<INSTANCENAME CLASSNAME=\"");
    _out.text(path.className);
    _out.markup("\">");
    for (const KeyBinding& key : path.keys) _key(key, path);
    _out.markup("</INSTANCENAME>");
}

void ObjectWriter::_key(const KeyBinding& key, const ObjectPath& owner) {
    if (key.value.isArray() || key.value.type() == CimType::instance) {
        throw CimError(CimCode::failed, "key " + key.name + " of a path of " + owner.className +
                                            " holds what no key can hold");
    }
    _out.markup("<KEYBINDING NAME=\"");
    _out.text(key.name);
    if (const ObjectPath* const path = pathOf(key.value)) {
        _out.markup("\">");
        _keyReference(*path, owner);
        _out.markup("</KEYBINDING>");
    } else {
        _out.markup(keyValueOf(key.value.type()));
        if (_typesKeys) _out.attribute("TYPE", typeName(key.value.type()));
        _out.markup(">");
        _scalar(key.value);
        _out.markup("</KEYVALUE></KEYBINDING>");
    }
}

void ObjectWriter::localNameSpacePath(std::string_view nameSpace) {
    _out.markup("<LOCALNAMESPACEPATH>");
    while (!nameSpace.empty()) {
        const std::size_t slash = std::min(nameSpace.find('/'), nameSpace.size());
        if (slash != 0) {
            _out.markup("<NAMESPACE");
            _out.attribute("NAME", nameSpace.substr(0, slash));
            _out.markup("/>");
        }
        nameSpace.remove_prefix(std::min(slash + 1, nameSpace.size()));
    }
    _out.markup("</LOCALNAMESPACEPATH>");
}

void ObjectWriter::_nameSpacePath(std::string_view nameSpace) {
    _out.markup("<NAMESPACEPATH><HOST>");
    _out.text(_host);
    _out.markup("</HOST>");
    localNameSpacePath(nameSpace);
    _out.markup("</NAMESPACEPATH>");
}

void ObjectWriter::instancePath(const ObjectPath& path) {
    _out.markup("<INSTANCEPATH>");
    _nameSpacePath(path.nameSpace.empty() ? _nameSpace : std::string_view(path.nameSpace));
    instanceName(path);
    _out.markup("</INSTANCEPATH>");
}

void ObjectWriter::classPath(std::string_view name) {
    _out.markup("<CLASSPATH>");
    _nameSpacePath(_nameSpace);
    className(name);
    _out.markup("</CLASSPATH>");
}

// Whoever reads a name alone takes it for one in the namespace of the path that it is a key of.
void ObjectWriter::_keyReference(const ObjectPath& path, const ObjectPath& owner) {
    const std::string_view here = owner.nameSpace.empty() ? _nameSpace : owner.nameSpace;
    if (!path.nameSpace.empty() && !equalNames(path.nameSpace, here)) return _reference(path);
    _out.markup("<VALUE.REFERENCE>");
    instanceName(path);
    _out.markup("</VALUE.REFERENCE>");
}

void ObjectWriter::_reference(const ObjectPath& path) {
    _out.markup("<VALUE.REFERENCE>");
    instancePath(path);
    _out.markup("</VALUE.REFERENCE>");
}

void ObjectWriter::instance(const Instance& instance, const Class* definition,
                            const PropertySelection& selection, bool includeClassOrigin) {
    _out.markup("<INSTANCE CLASSNAME=\"");
    _out.text(instance.className());
    _out.markup("\">");
    for (const PropertyValue& property : instance.properties) {
        if (selection.selects(property.name)) _property(property, definition, includeClassOrigin);
    }
    _out.markup("</INSTANCE>");
}

void ObjectWriter::_property(const PropertyValue& property, const Class* owner,
                             bool includeClassOrigin) {
    const Value& given = property.value;
    const bool isPlain = !given.isNull() && !given.isArray() && isPlainScalar(given.type());
    if (!isPlain || includeClassOrigin) return _richProperty(property, owner, includeClassOrigin);
    // Nearly all properties are like this: written in five pieces they take half the instructions.
    _out.markup("<PROPERTY NAME=\"");
    _out.text(property.name);
    writeScalarMarkup(_out, given.type());
    _scalar(given);
    _out.markup("</VALUE></PROPERTY>");
}

void ObjectWriter::_richProperty(const PropertyValue& property, const Class* owner,
                                 bool includeClassOrigin) {
    const PropertyDefinition* const definition =
        owner != nullptr ? owner->findProperty(property.name) : nullptr;
    const CimType type = typeOf(property.value, definition);
    const bool array = isArray(property.value, definition);
    if (array && type == CimType::reference) {
        throw CimError(CimCode::failed, "property " + property.name +
                                            " is an array of references, which no property can be");
    }
    const PropertyMarkup markup = propertyMarkup(type, array);
    _out.markup(markup.open);
    _out.text(property.name);
    _out.markup("\"");
    _propertyAttributes(property, type, definition, includeClassOrigin);
    _out.markup(">");
    value(property.value);
    _out.markup(markup.close);
}

void ObjectWriter::_propertyAttributes(const PropertyValue& property, CimType type,
                                       const PropertyDefinition* definition,
                                       bool includeClassOrigin) {
    if (type != CimType::reference) {
        _out.markup(" TYPE=\"");
        _out.markup(typeName(type));
        _out.markup("\"");
    } else if (definition != nullptr && !definition->referenceClass.empty()) {
        _out.attribute("REFERENCECLASS", definition->referenceClass);
    }
    if (includeClassOrigin) {
        if (!property.classOrigin.empty()) {
            _out.attribute("CLASSORIGIN", property.classOrigin);
        } else if (definition != nullptr) {
            _out.attribute("CLASSORIGIN", definition->classOrigin);
        }
    }
    if (type == CimType::instance) {
        const bool isObject = definition != nullptr && definition->isEmbeddedObject;
        _out.attribute("EmbeddedObject", isObject ? "object" : "instance");
    }
}

void ObjectWriter::typeAttribute(std::string_view attribute, const Value& value) {
    _out.attribute(attribute, typeName(value.type()));
    if (value.type() == CimType::instance) _out.attribute("EmbeddedObject", "instance");
}

void ObjectWriter::value(const Value& value) {
    if (value.isNull()) return;
    if (const auto* const elements = value.get<Value::Array>()) {
        _array(*elements, value.type());
    } else {
        _element(value);
    }
}

void ObjectWriter::_array(const Value::Array& elements, CimType type) {
    const std::string_view element =
        type == CimType::reference ? "VALUE.REFARRAY>" : "VALUE.ARRAY>";
    _out.markup("<");
    _out.markup(element);
    for (const Value& each : elements) {
        if (each.isNull()) {
            _out.markup("<VALUE.NULL/>");
        } else {
            _element(each);
        }
    }
    _out.markup("</");
    _out.markup(element);
}

void ObjectWriter::_element(const Value& value) {
    if (const ObjectPath* const path = pathOf(value)) return _reference(*path);
    _out.markup("<VALUE>");
    if (const Instance* const embedded = instanceOf(value)) {
        _embedded(*embedded);
    } else {
        _scalar(value);
    }
    _out.markup("</VALUE>");
}

void ObjectWriter::_scalar(const Value& value) {
    if (const auto* const text = value.get<Text>()) return _out.text(*text);
    ScalarScratch scratch;
    _out.text(scalarText(value, scratch));
}

void ObjectWriter::_embedded(const Instance& embedded) {
    XmlBuffer inner(_out.keepsLines());
    // Embedded instances have no class here, so that all that is known of them is in themselves.
    ObjectWriter(inner, _host, _nameSpace, _typesKeys).instance(embedded, nullptr, {}, false);
    _out.text(inner.view());
}

}  // namespace cimhost
