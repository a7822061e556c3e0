#pragma once

#include "cimhost/mof/MofInstanceParser.h"
#include "cimhost/repository/Names.h"

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace cimhost {

/// The instances of one compilation, kept until the last alias is known.
/// How deep and how wide references may nest is bounded: a few lines could ask for any size.
class MofInstances {
public:
    /// Throws MofError when the alias is taken.
    void add(MofInstance instance);

    /// What takes an instance whose aliases are resolved; a CimError of it becomes a MofError.
    using Taker = std::function<void(const MofInstance& declared, Instance instance)>;

    /// Resolves aliases and hands on every instance, in order.
    /// Throws MofError for an unknown alias, one that leads back to itself by its keys, or a value
    /// that does not fit.
    void resolve(const Taker& take);

private:
    enum class State { unresolved, inProgress, resolved };

    struct Entry {
        MofInstance declared;
        State state = State::unresolved;
        ObjectPath path;  ///< once resolved; without a namespace
    };

    Instance _convert(const MofInstance& declared, std::size_t depth);
    Value _convertProperty(const MofInstance& declared, const MofInstanceProperty& given,
                           const PropertyDefinition& property, std::size_t depth);
    Value _convertElement(const MofInstance& declared, const MofElement& element,
                          const PropertyDefinition& property, std::size_t depth);
    Value _reference(const MofInstance& declared, const MofElement& element,
                     const PropertyDefinition& property, std::size_t depth);
    Value _embedded(const MofInstance& declared, const MofElement& element,
                    const PropertyDefinition& property, std::size_t depth);
    const ObjectPath& _pathOf(Entry& entry, const MofPosition& user, std::size_t depth);
    ObjectPath _makePath(const MofInstance& declared, std::size_t depth);

    std::vector<Entry> _entries;
    std::unordered_map<std::string, std::size_t, NameHash, NameEqual> _aliases;
};

}  // namespace cimhost
