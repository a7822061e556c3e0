#include "cimhost/repository/Schema.h"

#include "cimhost/repository/Names.h"

#include <algorithm>

namespace cimhost {
namespace {

template <typename Members>
auto findMember(const Members& members, std::string_view name) noexcept
    -> decltype(members.front().get()) {
    const auto found = std::find_if(members.begin(), members.end(), [name](const auto& member) {
        return equalNames(member->name, name);
    });
    return found == members.end() ? nullptr : found->get();
}

}  // namespace

const Qualifier* findQualifier(const Qualifiers& qualifiers, std::string_view name) noexcept {
    const auto found =
        std::find_if(qualifiers.begin(), qualifiers.end(),
                     [name](const Qualifier& each) { return equalNames(each.name, name); });
    return found == qualifiers.end() ? nullptr : &*found;
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

bool Class::hasKeys() const noexcept {
    return std::any_of(properties.begin(), properties.end(),
                       [](const auto& property) { return property->isKey; });
}

}  // namespace cimhost
