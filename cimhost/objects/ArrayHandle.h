#pragma once

#include "cimhost/objects/Object.h"
#include "cimhost/repository/Value.h"

namespace cimhost {

/// A fixed number of elements of one type. An array made for CMPI_chars holds strings.
struct ArrayObject : ObjectBase<CMPIArray, ObjectKind::array> {
    static const CMPIArrayFT table;

    ArrayObject(CimType type, Value::Array content)
        : elementType(type), elements(std::move(content)) {}

    CimType elementType;
    Value::Array elements;
};

}  // namespace cimhost
