#pragma once

#include "cimhost/cimxml/ModelReader.h"
#include "cimhost/objects/Objects.h"

#include <string>
#include <utility>

namespace cimhost {

/// Reads what another host writes that tells the types of all values itself: nothing is held
/// against classes, and names stay as they are written. Safe from several threads.
class WrittenModel {
public:
    /// Paths without a namespace are in this one.
    explicit WrittenModel(std::string nameSpace) : _nameSpace(std::move(nameSpace)) {}
    WrittenModel(const WrittenModel&) = delete;
    WrittenModel& operator=(const WrittenModel&) = delete;

    /// Of an INSTANCENAME, CLASSNAME or OBJECTPATH. CimError invalidParameter for any other
    /// element, as below; and what a ModelReader throws.
    ObjectPath path(const Element& element) const;

    /// Of an INSTANCE, alone or with a path or a name.
    Instance instance(const Element& element) const;

    /// Of a RETURNVALUE or PARAMVALUE. NULL is a scalar.
    Argument argument(const Element& element) const;

    /// Of a VALUE, VALUE.ARRAY or VALUE.REFERENCE that says no type: texts or references.
    Value untyped(const Element& element) const;

    const ModelReader& reader() const noexcept { return _reader; }

private:
    Value _value(const Element& element, CimType type) const;

    Repository _nothing;
    NameSpace _nameSpace;
    ModelReader _reader{_nothing, _nameSpace};
};

}  // namespace cimhost
