#include "cimhost/repository/QualifierRules.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/NameSpace.h"
#include "cimhost/repository/Names.h"
#include "cimhost/repository/ValueConversion.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace cimhost {
namespace {

constexpr std::uint16_t bits(Scope scope) noexcept { return static_cast<std::uint16_t>(scope); }

void checkType(const QualifierDeclaration& declaration, const Value& value,
               const std::string& element) {
    const bool null = value.isNull();
    if (value.isArray() == declaration.isArray && (null || value.type() == declaration.type)) {
        return;
    }
    throwInvalidParameter(element + ": qualifier '" + declaration.name + "' is declared as " +
                          typeText(declaration.type, declaration.isArray, declaration.arraySize));
}

}  // namespace

std::uint16_t scopeMask(Scope kind) noexcept {
    unsigned mask = bits(kind);
    if (kind == Scope::reference) mask |= bits(Scope::property);
    if (kind == Scope::association || kind == Scope::indication) mask |= bits(Scope::classes);
    return static_cast<std::uint16_t>(mask);
}

std::uint16_t grantedScope(const Qualifier& qualifier) noexcept {
    const bool* const value = qualifier.value.get<bool>();
    if (!value || !*value) return 0;
    if (equalNames(qualifier.name, "Association")) return bits(Scope::association);
    if (equalNames(qualifier.name, "Indication")) return bits(Scope::indication);
    return 0;
}

std::uint16_t classScopeMask(const Qualifiers& qualifiers) noexcept {
    unsigned mask = bits(Scope::classes);
    for (const Qualifier& qualifier : qualifiers) mask |= grantedScope(qualifier);
    return static_cast<std::uint16_t>(mask);
}

void checkScope(const QualifierDeclaration& declaration, std::uint16_t scopes,
                const std::string& element) {
    if ((declaration.scopes & scopes) != 0) return;
    throwInvalidParameter(element + ": qualifier '" + declaration.name +
                          "' has no place here by its scope");
}

void checkQualifiers(const NameSpace& nameSpace, const Qualifiers& qualifiers, std::uint16_t scopes,
                     const std::string& element) {
    std::unordered_set<std::string_view, NameHash, NameEqual> seen;
    for (const Qualifier& qualifier : qualifiers) {
        const QualifierDeclaration* const declaration = nameSpace.findQualifier(qualifier.name);
        if (!declaration) {
            throwInvalidParameter(element + ": qualifier '" + qualifier.name + "' is not declared" +
                                  nameSpace.meantQualifier(qualifier.name));
        }
        if (!seen.insert(qualifier.name).second) {
            throwInvalidParameter(element + ": qualifier '" + qualifier.name + "' is given twice");
        }
        checkScope(*declaration, scopes, element);
        checkType(*declaration, qualifier.value, element);
    }
}

void inheritQualifiers(Qualifiers& qualifiers, const Qualifiers& inherited,
                       const std::string& element, MemoryBudget& budget) {
    std::unordered_map<std::string_view, const Qualifier*, NameHash, NameEqual> own;
    for (const Qualifier& each : qualifiers) own.emplace(each.name, &each);
    Qualifiers added;
    for (const Qualifier& each : inherited) {
        if (!each.flavor.toSubclass) continue;
        const auto given = own.find(each.name);
        if (given == own.end()) {
            budget.charge(sizeof(Qualifier) + valueBytes(each.value));
            added.push_back(each);
            added.back().propagated = true;
        } else if (!each.flavor.overridable && !(given->second->value == each.value)) {
            throwInvalidParameter(element + ": qualifier '" + each.name +
                                  "' must not be overridden");
        }
    }
    std::move(added.begin(), added.end(), std::back_inserter(qualifiers));
}

}  // namespace cimhost
