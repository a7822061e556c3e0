#pragma once

#include "cmpi/cmpift.h"

#include <string_view>

/// Equality over the C interface. Asks the broker for as little as decides, and allocates nothing.
/// Failing calls of the broker are thrown as CmpiStatus. Not installed.
namespace CmpiCpp {

/// As operator== of CmpiData.
bool equalData(const CMPIData& left, const CMPIData& right);

/// As operator== of CmpiObjectPath, of paths that are not empty.
bool equalPaths(const CMPIObjectPath* left, const CMPIObjectPath* right);

/// The characters of a datetime, a string or a C string, borrowed.
std::string_view charactersOf(const CMPIData& data);

}  // namespace CmpiCpp
