#include "cimhost/operations/HostInstances.h"

#include "cimhost/operations/BuiltInInstances.h"
#include "cimhost/repository/Names.h"

#include <algorithm>

namespace cimhost {

namespace {

bool hasStaticInstances(const NameSpace& nameSpace, std::string_view className) noexcept {
    const auto& instances = nameSpace.instances();
    return std::ranges::any_of(instances, [className](const Instance& instance) {
        return equalNames(instance.className(), className);
    });
}

}  // namespace

// Empty for classes that have static instances.
std::vector<Instance> HostInstances::_builtIn(const NameSpace& nameSpace,
                                              const Class& definition) const {
    const bool isBuiltIn = containsName(builtInClasses, definition.name);
    if (!isBuiltIn || hasStaticInstances(nameSpace, definition.name)) return {};
    return builtInInstances(_repository, nameSpace, definition);
}

bool HostInstances::serves(const Target& target) const noexcept {
    return containsName(builtInClasses, target.definition.name) ||
           hasStaticInstances(target.nameSpace, target.definition.name);
}

void HostInstances::visit(const Target& target, const VisitInstance& visit) const {
    const NameSpace& nameSpace = target.nameSpace;
    const std::string& ancestor = target.definition.name;
    for (const Instance& instance : nameSpace.instances()) {
        if (!nameSpace.isA(instance.className(), ancestor)) continue;
        visit(instance, *nameSpace.findClass(instance.className()));
    }
    for (const std::string_view name : builtInClasses) {
        if (!nameSpace.isA(name, ancestor)) continue;
        const Class& definition = *nameSpace.findClass(name);
        for (const Instance& instance : _builtIn(nameSpace, definition)) {
            visit(instance, definition);
        }
    }
}

void HostInstances::visitAssociations(const Target& end, const VisitInstance& visit) const {
    for (const Instance& instance : end.nameSpace.instances()) {
        const Class* const definition = end.nameSpace.findClass(instance.className());
        if (definition && definition->isAssociation) visit(instance, *definition);
    }
}

std::optional<Instance> HostInstances::find(const ObjectPath& path) const {
    const NameSpace& nameSpace = _repository.get(path.nameSpace);
    if (const Instance* const instance = nameSpace.findInstance(path)) return *instance;
    const Class* const definition = nameSpace.findClass(path.className);
    if (!definition) return std::nullopt;
    for (Instance& instance : _builtIn(nameSpace, *definition)) {
        if (sameModelPath(instance.path, path)) return std::move(instance);
    }
    return std::nullopt;
}

}  // namespace cimhost
