#include "cimhost/repository/ClassAssociations.h"

#include "cimhost/repository/CimError.h"

#include <algorithm>
#include <string>
#include <unordered_set>

namespace cimhost {
namespace {

void checkKnown(const NameSpace& nameSpace, std::string_view className) {
    if (className.empty() || nameSpace.findClass(className)) return;
    throw CimError(CimCode::invalidParameter,
                   "class '" + std::string(className) + "' is not known");
}

bool matchesRole(const PropertyDefinition& reference, std::string_view role) noexcept {
    return role.empty() || equalNames(reference.name, role);
}

bool matchesClass(const NameSpace& nameSpace, std::string_view className, std::string_view wanted) {
    return wanted.empty() || nameSpace.isA(className, wanted);
}

bool mayHold(const NameSpace& nameSpace, const PropertyDefinition& property,
             std::string_view className) {
    return property.type == CimType::reference && nameSpace.isA(className, property.referenceClass);
}

const Class* farClassOf(const NameSpace& nameSpace, const PropertyDefinition& far,
                        std::string_view resultClass) {
    const Class* const declared = nameSpace.findClass(far.referenceClass);
    if (!declared || matchesClass(nameSpace, declared->name, resultClass)) return declared;
    return nameSpace.isA(resultClass, declared->name) ? nameSpace.findClass(resultClass) : nullptr;
}

}  // namespace

std::vector<const Class*> associatedClasses(const NameSpace& nameSpace, std::string_view className,
                                            const ClassAssociationFilter& filter) {
    checkKnown(nameSpace, filter.associationClass);
    checkKnown(nameSpace, filter.resultClass);
    std::vector<const Class*> classes;
    std::unordered_set<const Class*> seen;
    const auto addFarClasses = [&](const Class& association, const PropertyDefinition& near) {
        for (const auto& far : association.properties) {
            if (far.get() == &near || far->type != CimType::reference) continue;
            if (!matchesRole(*far, filter.resultRole)) continue;
            const Class* const farClass = farClassOf(nameSpace, *far, filter.resultClass);
            if (farClass && seen.insert(farClass).second) classes.push_back(farClass);
        }
    };
    for (const Class* const association : nameSpace.associations()) {
        if (!matchesClass(nameSpace, association->name, filter.associationClass)) continue;
        for (const auto& near : association->properties) {
            if (!mayHold(nameSpace, *near, className) || !matchesRole(*near, filter.role)) continue;
            addFarClasses(*association, *near);
        }
    }
    return classes;
}

std::vector<const Class*> referencingClasses(const NameSpace& nameSpace, std::string_view className,
                                             std::string_view resultClass, std::string_view role) {
    checkKnown(nameSpace, resultClass);
    std::vector<const Class*> classes;
    for (const Class* const association : nameSpace.associations()) {
        if (!matchesClass(nameSpace, association->name, resultClass)) continue;
        const bool refers = std::ranges::any_of(association->properties, [&](const auto& property) {
            return mayHold(nameSpace, *property, className) && matchesRole(*property, role);
        });
        if (refers) classes.push_back(association);
    }
    return classes;
}

}  // namespace cimhost
