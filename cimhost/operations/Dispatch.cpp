#include "cimhost/operations/Dispatch.h"

#include "cimhost/objects/Values.h"

namespace cimhost {

void refuseUnserved(const Target& target) {
    throw CimError(CimCode::notSupported, "no provider serves class " + target.definition.name +
                                              " in namespace " + target.nameSpace.name());
}

void refuseMissing(const ObjectPath& path) {
    throw CimError(CimCode::notFound, "there is no such instance of class " + path.className);
}

void takeKeys(const Class& definition, Instance& instance) {
    for (const auto& property : definition.properties) {
        if (!property->isKey) continue;
        const PropertyValue* const given = instance.find(property->name);
        if (!given || given->value.isNull()) {
            instance.path.keys.clear();
            return;
        }
        instance.path.setKey(property->name, given->value);
    }
}

CMPIFlags flagsOf(const InstanceOptions& options) noexcept {
    CMPIFlags flags = 0;
    if (options.deepInheritance) flags |= CMPI_FLAG_DeepInheritance;
    if (options.includeQualifiers) flags |= CMPI_FLAG_IncludeQualifiers;
    if (options.includeClassOrigin) flags |= CMPI_FLAG_IncludeClassOrigin;
    return flags;
}

InstanceOptions optionsOf(CMPIFlags flags, const char** properties) {
    return {.propertyList = namesOf(properties),
            .localOnly = (flags & CMPI_FLAG_LocalOnly) != 0,
            .deepInheritance = (flags & CMPI_FLAG_DeepInheritance) != 0,
            .includeQualifiers = (flags & CMPI_FLAG_IncludeQualifiers) != 0,
            .includeClassOrigin = (flags & CMPI_FLAG_IncludeClassOrigin) != 0};
}

PropertySelection selectionOf(const Manner& manner, const InstanceOptions& options,
                              const Class* limit) {
    // Some hosts leave it to the provider to heed the list.
    static const std::optional<std::vector<std::string>> all;
    return {manner.has(Habit::passesAllProperties) ? all : options.propertyList, limit};
}

}  // namespace cimhost
