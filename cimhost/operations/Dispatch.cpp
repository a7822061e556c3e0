#include "cimhost/operations/Dispatch.h"

namespace cimhost {

const Registration* nearestRegistration(const ModuleHost& modules, ProviderType type,
                                        const Target& target) noexcept {
    for (const Class* definition = &target.definition; definition;
         definition = target.nameSpace.findClass(definition->superClass)) {
        const Registration* const found =
            registrationOf(modules, type, {target.nameSpace, *definition});
        if (found) return found;
    }
    return nullptr;
}

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
