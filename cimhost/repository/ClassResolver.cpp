#include "cimhost/repository/ClassResolver.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/ElementResolver.h"
#include "cimhost/repository/NameSpace.h"
#include "cimhost/repository/Names.h"
#include "cimhost/repository/QualifierRules.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace cimhost {
namespace {

// The place of each name; hashed, because a hostile class has very many.
using Places = std::unordered_map<std::string_view, std::size_t, NameHash, NameEqual>;

template <typename Members>
Places placesOf(const Members& members) {
    Places places;
    places.reserve(members.size());
    for (std::size_t i = 0; i < members.size(); ++i) places.emplace(members[i]->name, i);
    return places;
}

template <typename Members>
void checkDistinct(const Members& own, std::string_view kind, const std::string& className) {
    Places seen;
    seen.reserve(own.size());
    for (const auto& member : own) {
        if (!seen.emplace(member->name, 0).second) {
            throwInvalidParameter(std::string(kind) + " '" + member->name + "' of '" + className +
                                  "' is declared twice");
        }
    }
}

// Inherited members first, each replaced in its place by what overrides it; then the new ones.
template <typename Members, typename Resolve>
Members merge(const Members& own, const Members& inherited, Resolve resolve) {
    Members merged;
    merged.reserve(inherited.size() + own.size());
    merged = inherited;
    const Places places = own.empty() ? Places{} : placesOf(inherited);
    for (const auto& member : own) {
        const auto place = places.find(member->name);
        const bool overrides = place != places.end();
        auto resolved = resolve(*member, overrides ? inherited[place->second].get() : nullptr);
        if (overrides) {
            merged[place->second] = std::move(resolved);
        } else {
            merged.push_back(std::move(resolved));
        }
    }
    return merged;
}

void checkAssociation(const Class& definition, const Class* superClass) {
    if (definition.isAssociation && definition.isIndication) {
        throwInvalidParameter("class '" + definition.name +
                              "' cannot be an association and an indication");
    }
    if (superClass && definition.isAssociation && !superClass->isAssociation) {
        throwInvalidParameter("association '" + definition.name + "' has the superclass '" +
                              superClass->name + "', which is no association");
    }
}

void checkReferenceCount(const Class& definition) {
    if (!definition.isAssociation || definition.isAbstract) return;
    const auto references = std::ranges::count_if(definition.properties, [](const auto& property) {
        return property->type == CimType::reference;
    });
    if (references < 2) {
        throwInvalidParameter("association '" + definition.name + "' needs two references");
    }
}

// A subclass may name keys only when none are inherited. Its inherited members have kept their
// places.
void checkKeys(const Class& definition, const Class* superClass) {
    if (!superClass || !superClass->hasKeys()) return;
    const auto& inherited = superClass->properties;
    for (std::size_t i = 0; i < definition.properties.size(); ++i) {
        const PropertyDefinition& property = *definition.properties[i];
        if (!property.isKey || (i < inherited.size() && inherited[i]->isKey)) continue;
        throwInvalidParameter("class '" + definition.name + "' adds the key '" + property.name +
                              "' to the keys of '" + superClass->name + "'");
    }
}

}  // namespace

ClassResolver::ClassResolver(const NameSpace& nameSpace, MemoryBudget& budget)
    : _nameSpace(nameSpace), _budget(budget) {}

Class ClassResolver::resolve(Class definition) const {
    const Class* superClass = nullptr;
    if (!definition.superClass.empty()) {
        superClass = _nameSpace.findClass(definition.superClass);
        if (!superClass) {
            throw CimError(CimCode::invalidSuperclass,
                           "superclass '" + definition.superClass + "' of '" + definition.name +
                               "' is not known" + _nameSpace.meantClass(definition.superClass));
        }
        definition.superClass = superClass->name;
    }
    _resolveClassQualifiers(definition, superClass);
    _resolveProperties(definition, superClass);
    _resolveMethods(definition, superClass);
    checkReferenceCount(definition);
    checkKeys(definition, superClass);
    return definition;
}

void ClassResolver::_resolveClassQualifiers(Class& definition, const Class* superClass) const {
    const std::string element = "class '" + definition.name + "'";
    checkQualifiers(_nameSpace, definition.qualifiers, classScopeMask(definition.qualifiers),
                    element);
    if (superClass) {
        inheritQualifiers(definition.qualifiers, superClass->qualifiers, element, _budget);
    }
    definition.isAbstract = hasQualifier(definition.qualifiers, "Abstract");
    definition.isAssociation = hasQualifier(definition.qualifiers, "Association");
    definition.isIndication = hasQualifier(definition.qualifiers, "Indication");
    checkAssociation(definition, superClass);
}

void ClassResolver::_resolveProperties(Class& definition, const Class* superClass) const {
    static const decltype(Class::properties) none;
    const auto& inherited = superClass ? superClass->properties : none;
    checkDistinct(definition.properties, "property", definition.name);
    _budget.charge(inherited.size() * sizeof(inherited.front()));
    const ElementContext context{_nameSpace, _budget, definition};
    definition.properties = merge(definition.properties, inherited,
                                  [&context](const auto& declared, const auto* overridden) {
                                      return resolveProperty(context, declared, overridden);
                                  });
}

void ClassResolver::_resolveMethods(Class& definition, const Class* superClass) const {
    static const decltype(Class::methods) none;
    const auto& inherited = superClass ? superClass->methods : none;
    checkDistinct(definition.methods, "method", definition.name);
    _budget.charge(inherited.size() * sizeof(inherited.front()));
    const ElementContext context{_nameSpace, _budget, definition};
    definition.methods = merge(definition.methods, inherited,
                               [&context](const auto& declared, const auto* overridden) {
                                   return resolveMethod(context, declared, overridden);
                               });
}

}  // namespace cimhost
