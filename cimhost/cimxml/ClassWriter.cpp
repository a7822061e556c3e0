#include "cimhost/cimxml/ClassWriter.h"

#include "cimhost/repository/Names.h"

#include <array>

namespace cimhost {
namespace {

struct ScopeRow {
    Scope scope;
    std::string_view attribute;
};

// A SCOPE element has no attribute for Schema.
constexpr auto scopeRows = std::to_array<ScopeRow>({
    {Scope::classes, "CLASS"},
    {Scope::association, "ASSOCIATION"},
    {Scope::reference, "REFERENCE"},
    {Scope::property, "PROPERTY"},
    {Scope::method, "METHOD"},
    {Scope::parameter, "PARAMETER"},
    {Scope::indication, "INDICATION"},
});

std::string_view propertyElement(const PropertyDefinition& property) noexcept {
    if (property.isArray) return "PROPERTY.ARRAY";
    return property.type == CimType::reference ? "PROPERTY.REFERENCE" : "PROPERTY";
}

std::string_view parameterElement(const ParameterDefinition& parameter) noexcept {
    if (parameter.type == CimType::reference) {
        return parameter.isArray ? "PARAMETER.REFARRAY" : "PARAMETER.REFERENCE";
    }
    return parameter.isArray ? "PARAMETER.ARRAY" : "PARAMETER";
}

}  // namespace

void ClassWriter::_open(std::string_view element, std::string_view name) {
    _out.markup("<");
    _out.markup(element);
    _out.attribute("NAME", name);
}

void ClassWriter::_close(std::string_view element) {
    _out.markup("</");
    _out.markup(element);
    _out.markup(">");
}

bool ClassWriter::_selects(std::string_view property) const {
    const auto& list = _options.propertyList;
    return !list || containsName(*list, property);
}

void ClassWriter::write(const Class& definition) {
    const Class* const super =
        definition.superClass.empty() ? nullptr : _nameSpace.findClass(definition.superClass);
    _open("CLASS", definition.name);
    if (!definition.superClass.empty()) _out.attribute("SUPERCLASS", definition.superClass);
    _out.markup(">");
    _qualifiers(definition.qualifiers, false);
    // A class shares with its superclass exactly those elements that it does not override.
    for (const auto& property : definition.properties) {
        const bool isInherited =
            super != nullptr && super->findProperty(property->name) == property.get();
        if (_selects(property->name) && !(isInherited && _options.localOnly)) {
            _property(*property, isInherited);
        }
    }
    for (const auto& method : definition.methods) {
        const bool isInherited =
            super != nullptr && super->findMethod(method->name) == method.get();
        if (!(isInherited && _options.localOnly)) _method(*method, isInherited);
    }
    _close("CLASS");
}

void ClassWriter::_qualifiers(const Qualifiers& qualifiers, bool isInherited) {
    if (!_options.includeQualifiers) return;
    for (const Qualifier& qualifier : qualifiers) {
        // An inherited element is its superclass's own object, with all that stays behind there.
        if (isInherited && !qualifier.flavor.toSubclass) continue;
        const bool isPropagated = isInherited || qualifier.propagated;
        if (isPropagated && _options.localOnly) continue;
        _open("QUALIFIER", qualifier.name);
        _out.attribute("TYPE", typeName(qualifier.value.type()));
        if (isPropagated) _out.attribute("PROPAGATED", "true");
        _flavor(qualifier.flavor);
        _out.markup(">");
        _objects.value(qualifier.value);
        _close("QUALIFIER");
    }
}

void ClassWriter::_flavor(const Flavor& flavor) {
    if (!flavor.overridable) _out.attribute("OVERRIDABLE", "false");
    if (!flavor.toSubclass) _out.attribute("TOSUBCLASS", "false");
    if (flavor.translatable) _out.attribute("TRANSLATABLE", "true");
}

void ClassWriter::_origin(std::string_view classOrigin, bool isInherited) {
    if (_options.includeClassOrigin && !classOrigin.empty()) {
        _out.attribute("CLASSORIGIN", classOrigin);
    }
    if (isInherited) _out.attribute("PROPAGATED", "true");
}

void ClassWriter::_arraySize(const std::optional<std::uint32_t>& size) {
    if (size) _out.attribute("ARRAYSIZE", std::to_string(*size));
}

void ClassWriter::_property(const PropertyDefinition& property, bool isInherited) {
    const std::string_view element = propertyElement(property);
    _open(element, property.name);
    if (property.type != CimType::reference) {
        _out.attribute("TYPE", typeName(property.type));
    } else if (!property.referenceClass.empty()) {
        _out.attribute("REFERENCECLASS", property.referenceClass);
    }
    if (property.isArray) _arraySize(property.arraySize);
    _origin(property.classOrigin, isInherited);
    if (property.type == CimType::instance) {
        _out.attribute("EmbeddedObject", property.isEmbeddedObject ? "object" : "instance");
    }
    _out.markup(">");
    _qualifiers(property.qualifiers, isInherited);
    _objects.value(property.defaultValue);
    _close(element);
}

void ClassWriter::_method(const MethodDefinition& method, bool isInherited) {
    _open("METHOD", method.name);
    if (method.returnType != CimType::none) _out.attribute("TYPE", typeName(method.returnType));
    _origin(method.classOrigin, isInherited);
    _out.markup(">");
    _qualifiers(method.qualifiers, isInherited);
    for (const ParameterDefinition& parameter : method.parameters) {
        _parameter(parameter, isInherited);
    }
    _close("METHOD");
}

void ClassWriter::_parameter(const ParameterDefinition& parameter, bool isInherited) {
    const std::string_view element = parameterElement(parameter);
    _open(element, parameter.name);
    if (parameter.type != CimType::reference) {
        _out.attribute("TYPE", typeName(parameter.type));
    } else if (!parameter.referenceClass.empty()) {
        _out.attribute("REFERENCECLASS", parameter.referenceClass);
    }
    if (parameter.isArray) _arraySize(parameter.arraySize);
    _out.markup(">");
    _qualifiers(parameter.qualifiers, isInherited);
    _close(element);
}

void ClassWriter::write(const QualifierDeclaration& declaration) {
    _open("QUALIFIER.DECLARATION", declaration.name);
    _out.attribute("TYPE", typeName(declaration.type));
    if (declaration.isArray) _out.attribute("ISARRAY", "true");
    _arraySize(declaration.arraySize);
    _flavor(declaration.flavor);
    _out.markup("><SCOPE");
    for (const ScopeRow& row : scopeRows) {
        if ((declaration.scopes & static_cast<std::uint16_t>(row.scope)) != 0) {
            _out.attribute(row.attribute, "true");
        }
    }
    _out.markup("></SCOPE>");
    _objects.value(declaration.defaultValue);
    _close("QUALIFIER.DECLARATION");
}

}  // namespace cimhost
