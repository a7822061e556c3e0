#include "cimhost/operations/Dispatch.h"

namespace cimhost {

void refuseUnserved(const Target& target) {
    throw CimError(CimCode::notSupported, "no provider serves class " + target.definition.name +
                                              " in namespace " + target.nameSpace.name());
}

CMPIFlags flagsOf(const InstanceOptions& options) noexcept {
    CMPIFlags flags = 0;
    if (options.deepInheritance) flags |= CMPI_FLAG_DeepInheritance;
    if (options.includeQualifiers) flags |= CMPI_FLAG_IncludeQualifiers;
    if (options.includeClassOrigin) flags |= CMPI_FLAG_IncludeClassOrigin;
    return flags;
}

}  // namespace cimhost
