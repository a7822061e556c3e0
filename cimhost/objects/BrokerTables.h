#pragma once

#include "cmpi/cmpift.h"

/// The tables of a broker that do not depend on which broker it is. All slots are filled.
namespace cimhost {

/// Makers of data objects, log, messages. newSelectExp reads the queries of WqlParser.h;
/// newEnumerationFilter says NOT_SUPPORTED to a filter that would have to look at instances.
extern const CMPIBrokerEncFT encapsulationTable;

/// Threads, mutexes and conditions of POSIX.
extern const CMPIBrokerExtFT systemTable;

/// Marks, memory blocks and the early end of objects.
extern const CMPIBrokerMemFT memoryTable;

}  // namespace cimhost
