#include "cimhost/mof/MofInstances.h"

#include "cimhost/repository/InstanceConformer.h"

#include <memory>
#include <utility>

namespace cimhost {
namespace {

constexpr std::size_t deepestNesting = 16;

// A path repeats what its references lead to, so that two keys a level make a million in twenty.
constexpr std::size_t mostKeysInPath = 1024;

std::size_t countKeys(const ObjectPath& path) {
    std::size_t count = path.keys.size();
    for (const KeyBinding& key : path.keys) {
        const auto* const nested = key.value.get<std::shared_ptr<const ObjectPath>>();
        if (nested) count += countKeys(**nested);
    }
    return count;
}

void checkClass(const NameSpace& nameSpace, const Class& definition,
                const PropertyDefinition& property, const MofPosition& position, const char* what) {
    if (!nameSpace.findClass(property.referenceClass)) return;  // nothing to hold it against
    if (nameSpace.isA(definition.name, property.referenceClass)) return;
    failAt(position, std::string(what) + " is an instance of '" + definition.name + "', not of '" +
                         property.referenceClass + "'");
}

}  // namespace

void MofInstances::add(MofInstance instance) {
    if (!instance.alias.empty() && !_aliases.emplace(instance.alias, _entries.size()).second) {
        failAt(instance.aliasPosition, "the alias '" + instance.alias + "' is used already");
    }
    _entries.push_back({std::move(instance), State::unresolved, {}});
}

void MofInstances::resolve(const Taker& take) {
    for (const Entry& entry : _entries) {
        Instance instance = _convert(entry.declared, 0);
        atPosition(entry.declared.position, [&] { take(entry.declared, std::move(instance)); });
    }
}

Instance MofInstances::_convert(const MofInstance& declared, std::size_t depth) {
    Instance instance;
    instance.path.className = declared.definition->name;
    instance.properties.reserve(declared.properties.size());
    for (const MofInstanceProperty& given : declared.properties) {
        const PropertyDefinition& property = *declared.definition->findProperty(given.name);
        instance.properties.push_back({property.name,
                                       _convertProperty(declared, given, property, depth),
                                       property.classOrigin});
    }
    return instance;
}

Value MofInstances::_convertProperty(const MofInstance& declared, const MofInstanceProperty& given,
                                     const PropertyDefinition& property, std::size_t depth) {
    return convertInitializer(given.value, property, [&](const MofElement& element, CimType) {
        return _convertElement(declared, element, property, depth);
    });
}

Value MofInstances::_convertElement(const MofInstance& declared, const MofElement& element,
                                    const PropertyDefinition& property, std::size_t depth) {
    if (depth > deepestNesting) {
        failAt(element.position, "references or embedded instances nest deeper than " +
                                     std::to_string(deepestNesting));
    }
    if (!element.alias.empty()) return _reference(declared, element, property, depth);
    if (property.type == CimType::instance && !element.literal.isNull()) {
        return _embedded(declared, element, property, depth);
    }
    return convertLiteral(element, property.type);
}

Value MofInstances::_reference(const MofInstance& declared, const MofElement& element,
                               const PropertyDefinition& property, std::size_t depth) {
    const auto found = _aliases.find(element.alias);
    if (found == _aliases.end()) {
        failAt(element.position, "the alias '" + element.alias + "' is not defined");
    }
    if (property.type != CimType::reference) {
        failAt(element.position, "the alias '" + element.alias + "' stands for a reference, but '" +
                                     property.name + "' is none");
    }
    Entry& target = _entries[found->second];
    const bool isElsewhere = target.declared.nameSpace != declared.nameSpace;
    if (!isElsewhere) {
        checkClass(*declared.nameSpace, *target.declared.definition, property, element.position,
                   element.alias.c_str());
    }
    ObjectPath path = _pathOf(target, element.position, depth + 1);
    if (isElsewhere) path.nameSpace = target.declared.nameSpace->name();
    return Value::reference(std::move(path));
}

Value MofInstances::_embedded(const MofInstance& declared, const MofElement& element,
                              const PropertyDefinition& property, std::size_t depth) {
    const auto* const text = element.literal.get<Text>();
    if (!text) failAt(element.position, "expected an embedded instance as a string of MOF");
    static const std::string name = "embedded instance";
    try {
        MofCursor cursor(*text, name);
        cursor.expectKeyword("instance", "at the start");
        const MofInstance inner = parseInstance(cursor, *declared.nameSpace);
        if (cursor.peek().kind != MofToken::Kind::end) {
            cursor.unexpected("nothing after the instance");
        }
        checkClass(*declared.nameSpace, *inner.definition, property, inner.position, "this");
        Instance instance = _convert(inner, depth + 1);
        return atPosition(inner.position, [&] {
            return Value::instance(conformProperties(*declared.nameSpace,
                                                     declared.nameSpace->budget(),
                                                     *inner.definition, std::move(instance)));
        });
    } catch (const MofError& error) {
        failAt(element.position, error.what());
    }
}

const ObjectPath& MofInstances::_pathOf(Entry& entry, const MofPosition& user, std::size_t depth) {
    if (entry.state == State::inProgress) {
        failAt(user, "the alias '" + entry.declared.alias + "' leads back to itself by its keys");
    }
    if (entry.state == State::resolved) return entry.path;
    entry.state = State::inProgress;
    entry.path = _makePath(entry.declared, depth);
    if (countKeys(entry.path) > mostKeysInPath) {
        failAt(user, "the path of '" + entry.declared.alias + "' has more than " +
                         std::to_string(mostKeysInPath) + " keys");
    }
    entry.state = State::resolved;
    return entry.path;
}

ObjectPath MofInstances::_makePath(const MofInstance& declared, std::size_t depth) {
    ObjectPath path;
    path.className = declared.definition->name;
    for (const auto& property : declared.definition->properties) {
        if (!property->isKey) continue;
        const MofInstanceProperty* const given = declared.find(property->name);
        Value value =
            given ? _convertProperty(declared, *given, *property, depth) : property->defaultValue;
        if (value.isNull()) {
            failAt(declared.position,
                   "the instance has no value for its key '" + property->name + "'");
        }
        path.keys.push_back({property->name, std::move(value)});
    }
    return path;
}

}  // namespace cimhost
