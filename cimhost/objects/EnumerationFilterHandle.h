#pragma once

#include "cimhost/objects/Object.h"

namespace cimhost {

/// A filter that lets every instance pass: the only kind as long as queries are not supported.
struct EnumerationFilterObject : ObjectBase<CMPIEnumerationFilter, ObjectKind::enumerationFilter> {
    static const CMPIEnumerationFilterFT table;
};

}  // namespace cimhost
