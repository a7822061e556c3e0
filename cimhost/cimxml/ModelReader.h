#pragma once

#include "cimhost/cimxml/XmlDocument.h"
#include "cimhost/repository/Instance.h"
#include "cimhost/repository/Repository.h"

#include <optional>
#include <string>
#include <string_view>

namespace cimhost {

/// What a value must be, from the class that declares it, and how messages call it.
/// Views are good as long as the element and the class that they come from.
struct ValueShape {
    CimType type = CimType::none;
    bool isArray = false;
    std::string_view kind;  ///< "property", "key", "parameter"
    std::string_view name;
    std::string_view owner;  ///< the class or method that declares it

    /// Such as `property Speed of ACME_Fan`.
    std::string text() const;
};

/// Makes values, paths and instances out of request elements, in the types that the classes of the
/// repository declare. What names no namespace of its own belongs to the operation's one.
/// Holds references to its arguments; safe from several threads.
class ModelReader {
public:
    ModelReader(const Repository& repository, const NameSpace& nameSpace)
        : _repository(repository), _nameSpace(nameSpace) {}

    /// The value of VALUE, VALUE.ARRAY, VALUE.REFERENCE or VALUE.REFARRAY; NULL for no element.
    /// CimError typeMismatch: another element or text than the shape asks for.
    Value value(const std::optional<Element>& element, const ValueShape& shape) const;

    /// The path of an INSTANCENAME or CLASSNAME in the operation's namespace. Keys get the type
    /// that the class declares; where the class is not known, the one that the element suggests.
    /// CimError invalidParameter: a duplicate key, or a key whose text is not of its type.
    ObjectPath path(const Element& name) const;

    /// The path inside a VALUE.REFERENCE, in any of its six forms. Hosts are not kept.
    ObjectPath reference(const Element& valueReference) const;

    /// An INSTANCE of a class of this namespace, without keys in its path; qualifiers are passed
    /// over. CimError noSuchProperty; invalidParameter for a property given twice; typeMismatch.
    Instance instance(const Element& element, const Class& definition) const;

    /// An INSTANCE of whatever class, with the types that its elements say. Throws as instance.
    Instance undeclaredInstance(const Element& element) const;

private:
    Value _scalar(const Element& element, const ValueShape& shape) const;
    Value _array(const Element& element, const ValueShape& shape) const;
    Value _embedded(std::string_view text, const ValueShape& shape) const;
    Value _keyValue(const Element& element, const Class* definition, std::string_view name) const;
    Value _typedKey(const Element& keyValue, const ValueShape& shape) const;
    Value _untypedKey(const Element& keyValue, std::string_view name) const;
    ObjectPath _pathIn(const NameSpace* nameSpace, std::string nameSpaceName,
                       const Element& name) const;
    void _readKeys(const Element& name, const Class* definition, ObjectPath& path) const;
    Instance _embeddedInstance(const Element& element) const;
    Instance _properties(const Element& element, const Class* definition) const;
    PropertyValue _property(const Element& element, const Class* definition) const;
    ModelReader _deeper() const;

    const Repository& _repository;
    const NameSpace& _nameSpace;
    unsigned _embeddingDepth = 0;
};

/// The names of a LOCALNAMESPACEPATH, joined by slashes.
std::string joinNameSpace(const Element& localNameSpacePath);

}  // namespace cimhost
