#include "tests/cimhost/mof/MofText.h"

#include <stdexcept>

namespace cimhost::test {

const std::string qualifiers =
    "Qualifier Abstract : boolean = false, Scope(class, association, indication), "
    "Flavor(Restricted);"
    "Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride, "
    "ToSubclass);"
    "Qualifier Indication : boolean = false, Scope(class, indication),"
    " Flavor(DisableOverride, ToSubclass);"
    "Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride, "
    "ToSubclass);"
    "Qualifier Override : string = null, Scope(property, reference, method), Flavor(Restricted);"
    "Qualifier Description : string = null, Scope(any), Flavor(Translatable);"
    "Qualifier Version : string = null, Scope(class, association, indication), Flavor(Restricted);"
    "Qualifier EmbeddedInstance : string = null, Scope(property, method, parameter);"
    "Qualifier EmbeddedObject : boolean = false, Scope(property, method, parameter),"
    " Flavor(DisableOverride);"
    "Qualifier In : boolean = true, Scope(parameter), Flavor(DisableOverride);"
    "Qualifier Out : boolean = false, Scope(parameter), Flavor(DisableOverride);"
    "Qualifier Values : string[] = null, Scope(property, method, parameter);"
    "Qualifier MaxLen : uint32 = null, Scope(property, method, parameter);";

MofText::MofText() { MofReader(_repository, "root/test").readText(qualifiers, "qualifiers.mof"); }

void MofText::read(std::string_view text) {
    MofReader(_repository, "root/test").readText(text, "t.mof");
}

std::string MofText::errorOf(std::string_view text) {
    try {
        read(text);
    } catch (const MofError& error) {
        return error.what();
    }
    return {};
}

const Class& MofText::classOf(std::string_view name) {
    const Class* const found = nameSpace().findClass(name);
    if (!found) throw std::runtime_error("no class " + std::string(name));
    return *found;
}

const PropertyDefinition& MofText::property(std::string_view className, std::string_view name) {
    const PropertyDefinition* const found = classOf(className).findProperty(name);
    if (!found) throw std::runtime_error("no property " + std::string(name));
    return *found;
}

const MethodDefinition& MofText::method(std::string_view className, std::string_view name) {
    const MethodDefinition* const found = classOf(className).findMethod(name);
    if (!found) throw std::runtime_error("no method " + std::string(name));
    return *found;
}

Value MofText::defaultOf(const std::string& declaration) {
    const std::string name = "T_Default" + std::to_string(_classCount++);
    read("class " + name + " { " + declaration + "; };");
    return classOf(name).properties.front()->defaultValue;
}

std::vector<std::string> namesOf(const std::vector<const Class*>& classes) {
    std::vector<std::string> names;
    for (const Class* const each : classes) names.push_back(each->name);
    return names;
}

}  // namespace cimhost::test
