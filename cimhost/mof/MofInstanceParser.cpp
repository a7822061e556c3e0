#include "cimhost/mof/MofInstanceParser.h"

#include "cimhost/mof/MofQualifierParser.h"

#include <unordered_set>

namespace cimhost {
namespace {

using PropertyNames = std::unordered_set<std::string_view, NameHash, NameEqual>;

// Qualifiers on an instance have had no meaning since DSP0004 2.3; those there are must still be
// right.
MofInstanceProperty parseProperty(MofCursor& cursor, const NameSpace& nameSpace) {
    parseQualifiers(cursor, nameSpace);
    MofInstanceProperty property;
    const MofToken name = cursor.expectName("the name of a property or '}'");
    property.name = name.text;
    property.position = name.position;
    atPosition(name.position, [&] { nameSpace.budget().charge(2 * sizeof(MofInstanceProperty)); });
    cursor.expectSymbol('=', "after the property");
    property.value = parseInitializer(cursor, nameSpace.budget());
    cursor.expectSymbol(';', "after the value");
    return property;
}

PropertyNames namesOf(const Class& definition) {
    PropertyNames names;
    names.reserve(definition.properties.size());
    for (const auto& property : definition.properties) names.insert(property->name);
    return names;
}

void checkNames(const MofInstance& instance) {
    const PropertyNames known = namesOf(*instance.definition);
    PropertyNames seen;
    for (const MofInstanceProperty& property : instance.properties) {
        if (!known.contains(property.name)) {
            failAt(property.position, "class '" + instance.definition->name +
                                          "' has no property '" + property.name + "'" +
                                          instance.definition->meantProperty(property.name));
        }
        if (!seen.insert(property.name).second) {
            failAt(property.position, "property '" + property.name + "' is given twice");
        }
    }
}

}  // namespace

const MofInstanceProperty* MofInstance::find(std::string_view name) const noexcept {
    return findNamed(properties, name);
}

MofInstance parseInstance(MofCursor& cursor, const NameSpace& nameSpace) {
    MofInstance instance;
    instance.nameSpace = &nameSpace;
    cursor.expectKeyword("of", "after 'instance'");
    const MofToken name = cursor.expectName("the name of the class");
    instance.position = name.position;
    instance.definition = nameSpace.findClass(name.text);
    if (!instance.definition) {
        failAt(name.position,
               "class " + describe(name) + " is not known" + nameSpace.meantClass(name.text));
    }
    atPosition(name.position, [&] { nameSpace.budget().charge(2 * sizeof(MofInstance)); });
    if (cursor.acceptKeyword("as")) {
        instance.aliasPosition = cursor.position();
        instance.alias = cursor.expectKind(MofToken::Kind::alias, "an alias after 'as'").text;
    }
    cursor.expectSymbol('{', "before the properties of the instance");
    while (!cursor.acceptSymbol('}')) {
        instance.properties.push_back(parseProperty(cursor, nameSpace));
    }
    cursor.expectSymbol(';', "after the instance");
    checkNames(instance);
    return instance;
}

}  // namespace cimhost
