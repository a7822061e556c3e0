#pragma once

#include "cimhost/repository/Value.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// How a qualifier travels (DSP0004, 5.6.3).
struct Flavor {
    bool overridable = true;
    bool toSubclass = true;
    bool translatable = false;
};

enum class Scope : std::uint16_t {
    schema = 1,
    classes = 2,
    association = 4,
    indication = 8,
    property = 16,
    reference = 32,
    method = 64,
    parameter = 128,
    any = 255,
};

/// A declared type, as values are held against it.
struct DeclaredType {
    CimType type = CimType::none;
    bool isArray = false;
    std::optional<std::uint32_t> arraySize;
};

struct QualifierDeclaration : DeclaredType {
    std::string name;
    Value defaultValue;  ///< NULL when none is given
    std::uint16_t scopes = 0;
    Flavor flavor;
};

struct Qualifier {
    std::string name;
    Value value;
    Flavor flavor;
    bool propagated = false;  ///< inherited rather than written on this element
};

using Qualifiers = std::vector<Qualifier>;

/// The qualifier with this name, or nullptr.
const Qualifier* findQualifier(const Qualifiers& qualifiers, std::string_view name) noexcept;

/// True when the qualifier is there and its value is true.
bool hasQualifier(const Qualifiers& qualifiers, std::string_view name) noexcept;

struct PropertyDefinition : DeclaredType {
    std::string name;
    std::string referenceClass;     ///< of a reference, or of an EmbeddedInstance
    bool isEmbeddedObject = false;  ///< EmbeddedObject rather than EmbeddedInstance
    Value defaultValue;
    Qualifiers qualifiers;
    std::string classOrigin;
    bool isKey = false;
};

struct ParameterDefinition : DeclaredType {
    std::string name;
    std::string referenceClass;
    bool isEmbeddedObject = false;
    Qualifiers qualifiers;
    bool isIn = true;
    bool isOut = false;
};

struct MethodDefinition {
    std::string name;
    CimType returnType = CimType::none;
    std::string returnEmbeddedClass;
    std::vector<ParameterDefinition> parameters;
    Qualifiers qualifiers;
    std::string classOrigin;
};

/// A class with everything it inherits. Constant once in the repository; what a subclass does not
/// override is shared with its superclass, so that 1,830 classes stay small.
struct Class {
    std::string name;
    std::string superClass;  ///< empty at the top
    Qualifiers qualifiers;
    std::vector<std::shared_ptr<const PropertyDefinition>> properties;  ///< inherited ones first
    std::vector<std::shared_ptr<const MethodDefinition>> methods;
    bool isAssociation = false;
    bool isIndication = false;
    bool isAbstract = false;

    const PropertyDefinition* findProperty(std::string_view name) const noexcept;
    const MethodDefinition* findMethod(std::string_view name) const noexcept;
    bool hasKeys() const noexcept;

    /// @{
    /// As those that find, but what is not there is CimError noSuchProperty or methodNotFound,
    /// which tells what was meant.
    const PropertyDefinition& requireProperty(std::string_view name) const;
    const MethodDefinition& requireMethod(std::string_view name) const;
    /// @}

    // For a name that the class has not, the words that tell which one was meant (NearestName.h).
    std::string meantProperty(std::string_view name) const;
    std::string meantKey(std::string_view name) const;
    std::string meantMethod(std::string_view name) const;
};

}  // namespace cimhost
