#pragma once

#include "cimhost/cimxml/XmlBuffer.h"
#include "cimhost/operations/CimOperations.h"
#include "cimhost/repository/Instance.h"
#include "cimhost/repository/Schema.h"

#include <string_view>

namespace cimhost {

/// Writes values, paths and instances as CIM-XML (DSP0201). Elements that clients in use cannot
/// read self-closed always get an end tag. Used by one thread.
///
/// A reference names its namespace: clients keep it longer than they know what they asked for it.
/// As a key of a path it does so only where it is another than the request's: a client in use does
/// not read back what it then prints.
/// CimError failed: a value that CIM-XML has no form for, such as an array as a key.
class ObjectWriter {
public:
    /// `host` is host[:port] for full paths; `nameSpace` is the request's. Both must outlive the
    /// writer.
    /// With `typesKeys` each key says its CIM type, which clients of DTDs before 2.4 may not know.
    ObjectWriter(XmlBuffer& out, std::string_view host, std::string_view nameSpace,
                 bool typesKeys = false)
        : _out(out), _host(host), _nameSpace(nameSpace), _typesKeys(typesKeys) {}

    void instanceName(const ObjectPath& path);   ///< INSTANCENAME
    void instancePath(const ObjectPath& path);   ///< INSTANCEPATH
    void classPath(std::string_view className);  ///< CLASSPATH in the request's namespace
    void className(std::string_view name);       ///< CLASSNAME

    void localNameSpacePath(std::string_view nameSpace);  ///< LOCALNAMESPACEPATH

    /// INSTANCE with the properties that the selection lets through. The definition, where it is
    /// known, adds class origins and what it declares of references and embedded objects.
    void instance(const Instance& instance, const Class* definition,
                  const PropertySelection& selection, bool includeClassOrigin);

    /// VALUE, VALUE.ARRAY, VALUE.REFERENCE or VALUE.REFARRAY; nothing for NULL.
    void value(const Value& value);

    /// ` TYPE="uint8"`, or with PARAMTYPE for the attribute's name, and EmbeddedObject if it is
    /// one.
    void typeAttribute(std::string_view attribute, const Value& value);

private:
    void _nameSpacePath(std::string_view nameSpace);
    void _key(const KeyBinding& key, const ObjectPath& owner);
    void _keyReference(const ObjectPath& path, const ObjectPath& owner);
    void _reference(const ObjectPath& path);
    void _property(const PropertyValue& property, const Class* owner, bool includeClassOrigin);
    void _richProperty(const PropertyValue& property, const Class* owner, bool includeClassOrigin);
    void _propertyAttributes(const PropertyValue& property, CimType type,
                             const PropertyDefinition* definition, bool includeClassOrigin);
    void _array(const Value::Array& elements, CimType type);
    void _element(const Value& value);
    void _scalar(const Value& value);
    void _embedded(const Instance& instance);

    XmlBuffer& _out;
    std::string_view _host;
    std::string_view _nameSpace;
    bool _typesKeys;
};

}  // namespace cimhost
