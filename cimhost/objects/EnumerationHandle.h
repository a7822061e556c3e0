#pragma once

#include "cimhost/objects/Object.h"
#include "cimhost/repository/Value.h"

namespace cimhost {

/// Instances or paths, as reference or instance values. A clone goes on where its original is;
/// toArray gives all elements, those already taken too.
struct EnumerationObject : ObjectBase<CMPIEnumeration, ObjectKind::enumeration> {
    static const CMPIEnumerationFT table;

    EnumerationObject(CimType type, Value::Array content)
        : elementType(type), elements(std::move(content)) {}

    CimType elementType;
    Value::Array elements;
    std::size_t position = 0;
};

}  // namespace cimhost
