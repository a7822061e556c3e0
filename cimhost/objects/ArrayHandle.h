#pragma once

#include "cimhost/objects/Object.h"
#include "cimhost/repository/Value.h"
#include "cmpi/cmpidt.h"

namespace cimhost {

/// A fixed number of elements of one type. An array made for CMPI_chars holds strings. One of
/// objects that are no CIM values keeps their handles, as numbers, and is no CIM value itself.
struct ArrayObject : ObjectBase<CMPIArray, ObjectKind::array> {
    static const CMPIArrayFT table;

    ArrayObject(CimType type, Value::Array content)
        : elementType(type), elements(std::move(content)) {}

    CimType elementType;
    Value::Array elements;
    CMPIType handleType = CMPI_null;  ///< what the handles are of; then elementType is none
};

}  // namespace cimhost
