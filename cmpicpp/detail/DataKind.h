#pragma once

#include "cmpi/cmpidt.h"

/// What a CMPIData holds, apart from its exact type code. Not installed.
namespace CmpiCpp {

enum class DataKind {
    bad,   // the object manager marks it so: neither type nor value means anything
    null,  // of whatever type
    boolean,
    char16,
    integer,
    real,
    text,
    dateTime,
    reference,
    instance,
    array,
    other,  // a type that no property, key or argument has
};

/// A null pointer where an object is due counts as NULL.
DataKind kindOf(const CMPIData& data) noexcept;

/// An integer of any width, in two's complement.
struct Integer {
    unsigned long long bits;
    bool negative;

    friend bool operator==(const Integer&, const Integer&) = default;
};

/// Of data whose kind is integer.
Integer integerOf(const CMPIData& data) noexcept;

/// Of data whose kind is real.
inline double realOf(const CMPIData& data) noexcept {
    return data.type == CMPI_real32 ? static_cast<double>(data.value.real32) : data.value.real64;
}

}  // namespace CmpiCpp
