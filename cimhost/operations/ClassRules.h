#pragma once

#include "cimhost/repository/Instance.h"
#include "cimhost/repository/Schema.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace cimhost {

/// A class, made ready for holding many instances against it. Constant; safe from several threads.
class ClassRules {
public:
    struct Property {
        Text name;
        CimType type;
        bool isArray;
        bool isKey;

        /// NULL fits any; a string fits an embedded instance, whose type is string in CIM.
        bool takes(const Value& value) const noexcept;
        /// Brokers know of many keys only that they are numbers or texts: those have any width.
        bool takesAsKey(const Value& value) const noexcept;
    };

    /// What a walk remembers of the last clean result: the next one mostly has the same names in
    /// the same order. For one thread.
    struct Memory {
        std::vector<const Property*> properties;
        std::vector<const Property*> keys;
    };

    /// The class outlives the rules.
    explicit ClassRules(const Class& definition);

    const Class& definition() const noexcept { return _definition; }
    const std::vector<Property>& properties() const noexcept { return _properties; }

    /// The property with this name, in any case, or nullptr.
    const Property* find(std::string_view name) const noexcept;

    // The memory is null where no other result follows.

    /// True when every property is declared and has its type.
    bool areClean(const std::vector<PropertyValue>& properties, Memory* memory) const;
    /// True when the path has the keys of the class and no others.
    bool isClean(const ObjectPath& path, Memory* memory) const;

private:
    std::size_t _bucketOf(std::string_view name) const noexcept;

    const Class& _definition;
    std::vector<Property> _properties;
    std::size_t _keys = 0;
    std::vector<std::uint32_t> _buckets;  ///< places in _properties and 1; 0 for none
};

}  // namespace cimhost
