#include "cimhost/operations/HostAssociations.h"

#include "cimhost/repository/Names.h"

#include <algorithm>
#include <memory>

namespace cimhost {

namespace {

const ObjectPath* referenceIn(const PropertyValue& property) noexcept {
    const auto* const path = property.value.get<std::shared_ptr<const ObjectPath>>();
    return path ? path->get() : nullptr;
}

bool hasName(const PropertyValue& property, std::string_view wanted) noexcept {
    return wanted.empty() || equalNames(property.name, wanted);
}

/// The source as references name it: relative to the namespace of the associations.
class Source {
public:
    Source(const Target& target, const ObjectPath& path) : _target(target), _path(path) {}

    bool isMeantBy(const PropertyValue& property) const {
        const ObjectPath* const other = referenceIn(property);
        if (!other) return false;
        const bool isHere = other->nameSpace.empty() ||
                            equalNames(trimmedSlashes(other->nameSpace), _target.nameSpace.name());
        return isHere && sameModelPath(*other, _path);
    }

    bool isMeantBy(const Instance& association, std::string_view role) const {
        return std::ranges::any_of(association.properties, [&](const PropertyValue& property) {
            return hasName(property, role) && isMeantBy(property);
        });
    }

private:
    const Target& _target;
    const ObjectPath& _path;
};

// Through one property the source, through another the object: also when both are the same object.
bool leadsTo(const Instance& association, const PropertyValue& end, const Source& source,
             std::string_view role) {
    return std::ranges::any_of(association.properties, [&](const PropertyValue& property) {
        return &property != &end && hasName(property, role) && source.isMeantBy(property);
    });
}

bool isResult(const Repository& repository, const ObjectPath& path, std::string_view resultClass) {
    if (resultClass.empty()) return true;
    const NameSpace* const nameSpace = repository.find(path.nameSpace);
    return nameSpace && nameSpace->isA(path.className, resultClass);
}

}  // namespace

void visitReferences(const Servers& servers, const Target& target, const ObjectPath& source,
                     std::string_view associationClass, std::string_view role,
                     const VisitInstance& visit) {
    const NameSpace& nameSpace = target.nameSpace;
    const Source wanted(target, source);
    const auto isWanted = [&](const Instance& instance, const Class& definition) {
        return (associationClass.empty() || nameSpace.isA(definition.name, associationClass)) &&
               wanted.isMeantBy(instance, role);
    };
    servers.visitAssociations(target, isWanted, visit);
}

void visitAssociators(const Servers& servers, const Repository& repository, const Target& target,
                      const ObjectPath& source, const AssociationFilter& filter,
                      const std::function<void(const ObjectPath&)>& visit) {
    const Source wanted(target, source);
    const auto visitEnds = [&](const Instance& association, const Class&) {
        for (const PropertyValue& end : association.properties) {
            const ObjectPath* const path = referenceIn(end);
            if (!path || !hasName(end, filter.resultRole)) continue;
            if (!leadsTo(association, end, wanted, filter.role)) continue;
            ObjectPath complete = *path;
            if (complete.nameSpace.empty()) complete.nameSpace = target.nameSpace.name();
            if (isResult(repository, complete, filter.resultClass)) visit(complete);
        }
    };
    visitReferences(servers, target, source, filter.associationClass, filter.role, visitEnds);
}

}  // namespace cimhost
