#pragma once

#include "cimhost/repository/MemoryBudget.h"
#include "cimhost/repository/Schema.h"

#include <cstdint>
#include <string>

/// What qualifiers may stand where, and how they travel to subclasses (DSP0004, 5.6).
/// Messages begin with `element`, which names the element in words ("property 'Speed' of
/// 'CIM_Fan'").
namespace cimhost {

class NameSpace;

/// The scopes, as a mask, that an element of a kind answers to. A reference is a property too, an
/// association and an indication a class.
std::uint16_t scopeMask(Scope kind) noexcept;

/// The scope that a class has by this qualifier of it: association or indication, or 0.
std::uint16_t grantedScope(const Qualifier& qualifier) noexcept;

/// The scopes of a class with these qualifiers.
std::uint16_t classScopeMask(const Qualifiers& qualifiers) noexcept;

/// Throws CimError invalidParameter when the qualifier has no place in these scopes.
void checkScope(const QualifierDeclaration& declaration, std::uint16_t scopes,
                const std::string& element);

/// Holds the qualifiers of an element against their declarations: each declared, once, in scope and
/// of its type. Throws CimError invalidParameter.
void checkQualifiers(const NameSpace& nameSpace, const Qualifiers& qualifiers, std::uint16_t scopes,
                     const std::string& element);

/// Adds the qualifiers of the superclass's element that travel and are not given anew.
/// Throws CimError invalidParameter when one that must not be overridden is given another value.
void inheritQualifiers(Qualifiers& qualifiers, const Qualifiers& inherited,
                       const std::string& element, MemoryBudget& budget);

}  // namespace cimhost
