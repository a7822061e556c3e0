#pragma once

#include "cimhost/cimxml/XmlDocument.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace cimhost {

/// The parameters of the intrinsic operations (DSP0200, 5.4.2).
enum class Parameter : std::uint8_t {
    className,
    instanceName,
    objectName,
    newInstance,
    modifiedInstance,
    propertyName,
    newValue,
    localOnly,
    deepInheritance,
    includeQualifiers,
    includeClassOrigin,
    propertyList,
    associationClass,
    resultClass,
    role,
    resultRole,
    queryLanguage,
    query,
    qualifierName,
};

constexpr std::size_t parameterCount = static_cast<std::size_t>(Parameter::qualifierName) + 1;

class ParameterSet {
public:
    constexpr ParameterSet() = default;
    constexpr ParameterSet(std::initializer_list<Parameter> parameters) {
        for (const Parameter parameter : parameters) {
            _bits |= std::uint32_t{1} << static_cast<unsigned>(parameter);
        }
    }

    constexpr bool contains(Parameter parameter) const noexcept {
        return (_bits >> static_cast<unsigned>(parameter) & 1) != 0;
    }

private:
    std::uint32_t _bits = 0;
};

/// The parameters of one intrinsic call. Good while the document is; safe from several threads.
/// A parameter without a value counts as not given. Every failure is CimError invalidParameter.
class Parameters {
public:
    /// Throws for a parameter that is not among the allowed ones, or that comes twice.
    Parameters(const Element& intrinsicCall, ParameterSet allowed);

    /// The element inside the parameter, or nothing when it was not given.
    std::optional<Element> find(Parameter parameter) const noexcept;

    /// The element inside, which must be there and be one of these.
    Element required(Parameter parameter, TagSet tags) const;

    bool boolean(Parameter parameter, bool defaultValue) const;

    /// The text of a VALUE; empty when not given.
    std::string text(Parameter parameter) const;
    std::string requiredText(Parameter parameter) const;

    /// The name of a CLASSNAME; empty when not given.
    std::string className(Parameter parameter) const;
    std::string requiredClassName(Parameter parameter) const;

    /// Nothing: all properties. Names that come twice are there once; more than 1024 are refused.
    std::optional<std::vector<std::string>> propertyList() const;

private:
    std::optional<Element> _optional(Parameter parameter, TagSet tags) const;

    std::array<std::optional<Element>, parameterCount> _values{};
};

}  // namespace cimhost
