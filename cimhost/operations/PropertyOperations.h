#pragma once

#include "cimhost/operations/CimOperations.h"

#include <string_view>

/// Single properties, read and written as parts of their instances. Pure functions, safe from
/// several threads.
namespace cimhost {

/// By getInstance of these operations. Throws what that throws; CimError noSuchProperty.
Value readProperty(CimOperations& operations, const Repository& repository,
                   const RequestContext& request, const ObjectPath& path,
                   std::string_view property);

/// By modifyInstance, likewise.
void writeProperty(CimOperations& operations, const Repository& repository,
                   const RequestContext& request, const ObjectPath& path, std::string_view property,
                   Value value);

}  // namespace cimhost
