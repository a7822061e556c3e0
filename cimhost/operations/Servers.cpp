#include "cimhost/operations/Servers.h"

namespace cimhost {

Server Servers::of(ProviderType type, const Target& target) const noexcept {
    const auto registered = [&](ProviderType each) {
        return _modules.registrations().find(each, target.nameSpace.name(), target.definition.name);
    };
    if (const Registration* const registration = registered(type)) return {registration, nullptr};
    // Sources have no methods, and leave a class whose instances a provider has to that provider.
    if (type != ProviderType::instance && type != ProviderType::association) return {};
    if (registered(ProviderType::instance)) return {};
    for (InstanceSource* const source : _sources) {
        if (source->serves(target)) return {nullptr, source};
    }
    return {};
}

Server Servers::nearest(ProviderType type, const Target& target) const noexcept {
    for (const Class* definition = &target.definition; definition;
         definition = target.nameSpace.findClass(definition->superClass)) {
        if (const Server found = of(type, {target.nameSpace, *definition})) return found;
    }
    return {};
}

bool Servers::countsReadOnly(ProviderType type, const Target& target) const noexcept {
    return !of(type, target) && !nearest(type, target).source;
}

void Servers::visitAssociations(const Target& end, const WantsInstance& isWanted,
                                const VisitInstance& visit) const {
    for (const InstanceSource* const source : _sources) {
        source->visitAssociations(end, [&](const Instance& instance, const Class& definition) {
            if (!isWanted(instance, definition)) return;
            const Target own{end.nameSpace, definition};
            if (nearest(ProviderType::instance, own).source == source) visit(instance, definition);
        });
    }
    _readOnly.visitAssociations(end, [&](const Instance& instance, const Class& definition) {
        if (!isWanted(instance, definition)) return;
        const Target own{end.nameSpace, definition};
        if (countsReadOnly(ProviderType::association, own)) visit(instance, definition);
    });
}

}  // namespace cimhost
