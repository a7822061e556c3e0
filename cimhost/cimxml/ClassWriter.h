#pragma once

#include "cimhost/cimxml/ObjectWriter.h"
#include "cimhost/cimxml/XmlBuffer.h"
#include "cimhost/repository/Schema.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// How much of a class the asker gets to see.
struct ClassOptions {
    bool localOnly = true;  ///< only what the class itself declares or overrides
    bool includeQualifiers = true;
    bool includeClassOrigin = false;
    std::optional<std::vector<std::string>> propertyList;  ///< none: all
};

/// Writes classes and qualifier declarations as CIM-XML (DSP0201). Attributes with their default
/// value are left out. Used by one thread; the arguments must outlive it.
class ClassWriter {
public:
    ClassWriter(XmlBuffer& out, ObjectWriter& objects, const NameSpace& nameSpace,
                const ClassOptions& options)
        : _out(out), _objects(objects), _nameSpace(nameSpace), _options(options) {}

    void write(const Class& definition);                  ///< CLASS
    void write(const QualifierDeclaration& declaration);  ///< QUALIFIER.DECLARATION

private:
    bool _selects(std::string_view property) const;
    void _qualifiers(const Qualifiers& qualifiers, bool isInherited);
    void _flavor(const Flavor& flavor);
    void _property(const PropertyDefinition& property, bool isInherited);
    void _method(const MethodDefinition& method, bool isInherited);
    void _parameter(const ParameterDefinition& parameter, bool isInherited);
    void _origin(std::string_view classOrigin, bool isInherited);
    void _arraySize(const std::optional<std::uint32_t>& size);
    void _open(std::string_view element, std::string_view name);
    void _close(std::string_view element);

    XmlBuffer& _out;
    ObjectWriter& _objects;
    const NameSpace& _nameSpace;
    const ClassOptions& _options;
};

}  // namespace cimhost
