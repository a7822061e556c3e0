#include "cimhost/operations/HostInstances.h"

#include "cimhost/operations/BuiltInInstances.h"
#include "cimhost/repository/Names.h"

#include <algorithm>

namespace cimhost {

namespace {

bool hasStaticInstances(const NameSpace& nameSpace, std::string_view className) noexcept {
    const auto& instances = nameSpace.instances();
    return std::any_of(instances.begin(), instances.end(), [className](const Instance& instance) {
        return equalNames(instance.className(), className);
    });
}

bool isBuiltIn(std::string_view className) noexcept {
    const auto& classes = builtInClasses();
    return std::any_of(classes.begin(), classes.end(),
                       [className](std::string_view name) { return equalNames(name, className); });
}

// Empty for classes that have static instances.
std::vector<Instance> ownInstances(const Repository& repository, const NameSpace& nameSpace,
                                   const Class& definition) {
    if (!isBuiltIn(definition.name) || hasStaticInstances(nameSpace, definition.name)) return {};
    return builtInInstances(repository, nameSpace, definition);
}

}  // namespace

void visitHostInstances(const Repository& repository, const NameSpace& nameSpace,
                        const Class& ancestor,
                        const std::function<void(const Instance&, const Class&)>& visit) {
    for (const Instance& instance : nameSpace.instances()) {
        if (!nameSpace.isA(instance.className(), ancestor.name)) continue;
        visit(instance, *nameSpace.findClass(instance.className()));
    }
    for (const std::string_view name : builtInClasses()) {
        if (!nameSpace.isA(name, ancestor.name)) continue;
        const Class& definition = *nameSpace.findClass(name);
        for (const Instance& instance : ownInstances(repository, nameSpace, definition)) {
            visit(instance, definition);
        }
    }
}

std::optional<Instance> findHostInstance(const Repository& repository, const NameSpace& nameSpace,
                                         const ObjectPath& path) {
    if (const Instance* const instance = nameSpace.findInstance(path)) return *instance;
    const Class* const definition = nameSpace.findClass(path.className);
    if (!definition) return std::nullopt;
    for (Instance& instance : ownInstances(repository, nameSpace, *definition)) {
        if (sameModelPath(instance.path, path)) return std::move(instance);
    }
    return std::nullopt;
}

bool isHostClass(const NameSpace& nameSpace, const Class& definition) noexcept {
    return isBuiltIn(definition.name) || hasStaticInstances(nameSpace, definition.name);
}

}  // namespace cimhost
