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

class AssociationSearch {
public:
    AssociationSearch(const NameSpace& nameSpace, std::string_view className,
                      const ClassAssociationFilter& filter)
        : _nameSpace(nameSpace), _className(className), _filter(filter) {}

    std::vector<ClassAssociation> run() {
        for (const Class* const association : _nameSpace.associations()) {
            if (matchesClass(_nameSpace, association->name, _filter.associationClass)) {
                _searchNear(*association);
            }
        }
        return std::move(_found);
    }

private:
    void _searchNear(const Class& association) {
        for (const auto& near : association.properties) {
            if (!mayHold(_nameSpace, *near, _className)) continue;
            if (matchesRole(*near, _filter.role)) _searchFar(association, *near);
        }
    }

    void _searchFar(const Class& association, const PropertyDefinition& near) {
        for (const auto& far : association.properties) {
            if (far.get() == &near || far->type != CimType::reference) continue;
            if (!matchesRole(*far, _filter.resultRole)) continue;
            const Class* const farClass = farClassOf(_nameSpace, *far, _filter.resultClass);
            if (farClass) _found.push_back({&association, &near, far.get(), farClass});
        }
    }

    const NameSpace& _nameSpace;
    std::string_view _className;
    const ClassAssociationFilter& _filter;
    std::vector<ClassAssociation> _found;
};

}  // namespace

std::vector<ClassAssociation> classAssociations(const NameSpace& nameSpace,
                                                std::string_view className,
                                                const ClassAssociationFilter& filter) {
    checkKnown(nameSpace, filter.associationClass);
    checkKnown(nameSpace, filter.resultClass);
    return AssociationSearch(nameSpace, className, filter).run();
}

std::vector<const Class*> associatedClasses(const NameSpace& nameSpace, std::string_view className,
                                            const ClassAssociationFilter& filter) {
    std::vector<const Class*> classes;
    std::unordered_set<const Class*> seen;
    for (const ClassAssociation& each : classAssociations(nameSpace, className, filter)) {
        if (seen.insert(each.farClass).second) classes.push_back(each.farClass);
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
