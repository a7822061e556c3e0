#include "cimhost/mof/MofWriter.h"

#include "cimhost/repository/ModelText.h"

namespace cimhost {

std::string writeInstances(const std::vector<Instance>& instances) {
    std::string text;
    const std::string* nameSpace = nullptr;
    for (const Instance& instance : instances) {
        if (!nameSpace || *nameSpace != instance.path.nameSpace) {
            nameSpace = &instance.path.nameSpace;
            text += "#pragma namespace (" + quoted(*nameSpace, '"', Escapes::mof) + ")\n";
        }
        text += "instance of " + instance.className() + " {\n";
        for (const PropertyValue& property : instance.properties) {
            if (property.value.isNull()) continue;
            text += "    " + property.name + " = " + describe(property.value, Escapes::mof) + ";\n";
        }
        text += "};\n";
    }
    return text;
}

}  // namespace cimhost
