#pragma once

#include "cmpi/cmpift.h"

#include <array>
#include <cstddef>
#include <cstdint>

/// The tables of a broker that do not depend on which broker it is. All slots are filled.
namespace cimhost {

enum class ObjectKind : std::uint8_t {
    objectPath,
    instance,
    arguments,
    string,
    array,
    dateTime,
    enumeration,
    context,
    result,
    error,
    propertyList,
    enumerationFilter,
    selectExpression,
    selectCondition,
    subCondition,
    predicate,  // the last
};

/// The function table of each kind of object, by ObjectKind.
using ObjectTables = std::array<const void*, static_cast<std::size_t>(ObjectKind::predicate) + 1>;

extern const ObjectTables standardObjectTables;

/// Makers of data objects, log, messages. newSelectExp reads the queries of WqlParser.h;
/// newEnumerationFilter says NOT_SUPPORTED to a filter that would have to look at instances.
extern const CMPIBrokerEncFT encapsulationTable;

/// Threads, mutexes and conditions of POSIX.
extern const CMPIBrokerExtFT systemTable;

/// Marks, memory blocks and the early end of objects.
extern const CMPIBrokerMemFT memoryTable;

}  // namespace cimhost
