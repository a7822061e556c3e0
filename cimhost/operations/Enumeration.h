#pragma once

#include "cimhost/operations/Dispatch.h"
#include "cimhost/operations/HostInstances.h"

namespace cimhost {

/// Calls `ask(registration, target)` for the class and each of its subclasses that a provider
/// serves, with the class that the provider is to be asked about. True when there was one.
template <typename Ask>
bool askProviders(const ModuleHost& modules, const Target& target, Ask&& ask) {
    bool isAsked = false;
    for (const Class* const definition : target.nameSpace.withDescendants(target.definition.name)) {
        const Target each{target.nameSpace, *definition};
        const Registration* const registration =
            definition == &target.definition
                ? nearestRegistration(modules, ProviderType::instance, each)
                : registrationOf(modules, ProviderType::instance, each);
        if (!registration) continue;
        isAsked = true;
        ask(*registration, each);
    }
    return isAsked;
}

/// Calls `visit(instance, class)` for the host's own instances of the class and its subclasses, but
/// for those classes that a provider is registered for. True when there was one.
template <typename Visit>
bool visitUnregistered(const Repository& repository, const ModuleHost& modules,
                       const Target& target, Visit&& visit) {
    bool isVisited = false;
    visitHostInstances(repository, target.nameSpace, target.definition,
                       [&](const Instance& instance, const Class& definition) {
                           const Target own{target.nameSpace, definition};
                           if (registrationOf(modules, ProviderType::instance, own)) return;
                           isVisited = true;
                           visit(instance, definition);
                       });
    return isVisited;
}

/// Asks all providers of the class and its subclasses and visits the host's own instances. CimError
/// notSupported when there is nobody to ask and nothing to visit.
template <typename Ask, typename Visit>
void enumerate(const Repository& repository, const ModuleHost& modules, const Target& target,
               Ask&& ask, Visit&& visit) {
    const bool isAsked = askProviders(modules, target, ask);
    const bool isVisited = visitUnregistered(repository, modules, target, visit);
    if (isAsked || isVisited || isHostClass(target.nameSpace, target.definition)) return;
    refuseUnserved(target);
}

}  // namespace cimhost
