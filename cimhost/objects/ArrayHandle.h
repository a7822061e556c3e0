#pragma once

#include "cimhost/objects/Object.h"
#include "cimhost/repository/Value.h"
#include "cmpi/cmpidt.h"

#include <memory>

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
    bool hasArrayBit = false;         ///< made with it, under a manner that keeps it
    /// Under a manner that keeps pointers: whether an object that was put in has been released.
    std::shared_ptr<bool> isDangling;
};

}  // namespace cimhost
