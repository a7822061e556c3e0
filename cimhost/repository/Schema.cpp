#include "cimhost/repository/Schema.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"
#include "cimhost/repository/NearestName.h"

#include <algorithm>

namespace cimhost {
namespace {

template <typename Members>
auto findMember(const Members& members, std::string_view name) noexcept
    -> decltype(members.front().get()) {
    const auto found = std::ranges::find_if(
        members, [name](const auto& member) { return equalNames(member->name, name); });
    return found == members.end() ? nullptr : found->get();
}

template <typename Members>
std::string meantMember(std::string_view written, const Members& members) {
    return didYouMean(written, members,
                      [](const auto& member) { return std::string_view(member->name); });
}

}  // namespace

const Qualifier* findQualifier(const Qualifiers& qualifiers, std::string_view name) noexcept {
    return findNamed(qualifiers, name);
}

bool hasQualifier(const Qualifiers& qualifiers, std::string_view name) noexcept {
    const Qualifier* const qualifier = findQualifier(qualifiers, name);
    const bool* const value = qualifier ? qualifier->value.get<bool>() : nullptr;
    return value && *value;
}

const PropertyDefinition* Class::findProperty(std::string_view property) const noexcept {
    return findMember(properties, property);
}

const MethodDefinition* Class::findMethod(std::string_view method) const noexcept {
    return findMember(methods, method);
}

const PropertyDefinition& Class::requireProperty(std::string_view property) const {
    if (const PropertyDefinition* const found = findProperty(property)) return *found;
    throw CimError(CimCode::noSuchProperty, "class " + name + " has no property '" +
                                                std::string(property) + "'" +
                                                meantProperty(property));
}

const MethodDefinition& Class::requireMethod(std::string_view method) const {
    if (const MethodDefinition* const found = findMethod(method)) return *found;
    throw CimError(CimCode::methodNotFound, "class " + name + " has no method '" +
                                                std::string(method) + "'" + meantMethod(method));
}

std::string Class::meantProperty(std::string_view property) const {
    return meantMember(property, properties);
}

std::string Class::meantKey(std::string_view key) const {
    NearestName nearest(key);
    for (const auto& property : properties) {
        if (property->isKey) nearest.offer(property->name);
    }
    return nearest.words();
}

std::string Class::meantMethod(std::string_view method) const {
    return meantMember(method, methods);
}

bool Class::hasKeys() const noexcept {
    return std::ranges::any_of(properties, [](const auto& property) { return property->isKey; });
}

}  // namespace cimhost
