#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string_view>

/// The elements and attributes of CIM-XML requests, export requests included, and of the results in
/// replies (DSP0203), and what may stand in each. Constant data; safe from several threads.
namespace cimhost {

enum class Tag : std::uint8_t {
    cim,
    message,
    multipleRequest,
    simpleRequest,
    correlator,
    intrinsicCall,
    methodCall,
    intrinsicParameter,
    parameterValue,
    localNameSpacePath,
    nameSpacePath,
    nameSpace,
    host,
    classPath,
    localClassPath,
    className,
    instancePath,
    localInstancePath,
    instanceName,
    keyBinding,
    keyValue,
    value,
    valueArray,
    valueNull,
    valueReference,
    valueReferenceArray,
    valueNamedInstance,
    instance,
    property,
    propertyArray,
    propertyReference,
    qualifier,
    qualifierDeclaration,
    scope,
    classDefinition,
    method,
    parameter,
    parameterReference,
    parameterArray,
    parameterReferenceArray,
    multipleExportRequest,
    simpleExportRequest,
    exportCall,
    exportParameter,
    returnValue,
    objectPath,
    valueObjectWithPath,
};

/// The attributes that the meaning of a message depends on; all others are passed over.
enum class Attribute : std::uint8_t {
    cimVersion,
    dtdVersion,
    protocolVersion,
    id,
    name,
    className,
    type,
    valueType,
    parameterType,
    embeddedObject,
    classOrigin,
    superClass,
    referenceClass,
    arraySize,
    propagated,
    overridable,
    toSubclass,
    translatable,
};

class TagSet {
public:
    constexpr TagSet() = default;
    constexpr TagSet(std::initializer_list<Tag> tags) {
        for (const Tag tag : tags) _bits |= _bit(tag);
    }

    constexpr bool contains(Tag tag) const noexcept { return (_bits & _bit(tag)) != 0; }
    constexpr bool empty() const noexcept { return _bits == 0; }

private:
    static constexpr std::uint64_t _bit(Tag tag) noexcept {
        return std::uint64_t{1} << static_cast<unsigned>(tag);
    }

    std::uint64_t _bits = 0;
};

/// One step of an element's content: at least `least` and at most `most` of these elements.
struct ContentStep {
    static constexpr std::uint32_t any = std::numeric_limits<std::uint32_t>::max();

    TagSet tags;
    std::uint32_t least = 0;
    std::uint32_t most = any;
};

struct ElementRule {
    Tag tag;
    std::string_view name;  ///< as the document writes it
    std::array<std::optional<Attribute>, 2> required{};
    bool hasText = false;
    std::array<ContentStep, 3> content{};  ///< one after the other; those without tags are unused
};

/// The rule of the element with this name, or nullptr.
const ElementRule* findRule(std::string_view name) noexcept;
const ElementRule& ruleOf(Tag tag) noexcept;

std::optional<Attribute> findAttribute(std::string_view name) noexcept;

}  // namespace cimhost
