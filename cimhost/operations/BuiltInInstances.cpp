#include "cimhost/operations/BuiltInInstances.h"

#include "cimhost/operations/HostName.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"
#include "cimhost/repository/ValueConversion.h"

#include <string>
#include <utility>

namespace cimhost {

namespace {

constexpr std::string_view managerName = "cimhost";
constexpr std::uint64_t enabled = 2;         // of EnabledState, and OK of OperationalStatus
constexpr std::uint64_t unknown = 0;         // of ClassInfo and ClassType
constexpr std::uint64_t notApplicable = 12;  // of RequestedState

/// Sets properties of one instance where its class declares them.
class Maker {
public:
    Maker(const NameSpace& nameSpace, const Class& definition) : _definition(definition) {
        _instance.path = {{}, nameSpace.name(), definition.name, {}};
    }

    void set(std::string_view name, const Value& value) {
        const PropertyDefinition* const property = _definition.findProperty(name);
        if (!property) return;
        try {
            _instance.properties.push_back({property->name, _typed(value, *property), {}});
        } catch (const CimError&) {
            return;  // a schema of its own kind: the class means something else by the name
        }
        if (property->isKey) {
            _instance.path.setKey(property->name, _instance.properties.back().value);
        }
    }

    void set(std::string_view name, std::string_view text) {
        set(name, Value::string(std::string(text)));
    }

    void set(std::string_view name, std::uint64_t number) {
        set(name, Value::unsignedInteger(CimType::uint64, number));
    }

    Instance take() { return std::move(_instance); }

private:
    static Value _typed(const Value& value, const PropertyDefinition& property) {
        if (!property.isArray) return convertScalar(value, property.type);
        return Value::array(property.type, {convertScalar(value, property.type)});
    }

    const Class& _definition;
    Instance _instance;
};

Instance objectManager(const NameSpace& nameSpace, const Class& definition) {
    Maker maker(nameSpace, definition);
    maker.set("SystemCreationClassName", systemClassName);
    maker.set("SystemName", hostName());
    maker.set("CreationClassName", definition.name);
    maker.set("Name", managerName);
    maker.set("ElementName", managerName);
    maker.set("Description", "cimhost, a development object manager");
    maker.set("Version", CIMHOST_VERSION);
    maker.set("OperationalStatus", enabled);
    maker.set("EnabledState", enabled);
    maker.set("RequestedState", notApplicable);
    maker.set("Started", Value::boolean(true));
    maker.set("GatherStatisticalData", Value::boolean(false));
    return maker.take();
}

Instance cimNamespace(const NameSpace& nameSpace, const Class& definition, std::string_view name) {
    Maker maker(nameSpace, definition);
    maker.set("SystemCreationClassName", systemClassName);
    maker.set("SystemName", hostName());
    maker.set("ObjectManagerCreationClassName", "CIM_ObjectManager");
    maker.set("ObjectManagerName", managerName);
    maker.set("CreationClassName", definition.name);
    maker.set("Name", name);
    maker.set("ElementName", name);
    maker.set("ClassType", unknown);
    maker.set("ClassInfo", unknown);
    return maker.take();
}

std::vector<Instance> cimNamespaces(const Repository& repository, const NameSpace& nameSpace,
                                    const Class& definition) {
    std::vector<Instance> instances;
    for (const std::string& name : repository.names()) {
        instances.push_back(cimNamespace(nameSpace, definition, name));
    }
    return instances;
}

std::vector<Instance> relativeNamespaces(const Repository& repository, const NameSpace& nameSpace,
                                         const Class& definition) {
    const std::string prefix = nameSpace.name() + "/";
    std::vector<Instance> instances;
    for (const std::string& name : repository.names()) {
        if (!equalNames(std::string_view(name).substr(0, prefix.size()), prefix)) continue;
        Maker maker(nameSpace, definition);
        maker.set("Name", std::string_view(name).substr(prefix.size()));
        instances.push_back(maker.take());
    }
    return instances;
}

}  // namespace

std::vector<Instance> builtInInstances(const Repository& repository, const NameSpace& nameSpace,
                                       const Class& definition) {
    if (equalNames(definition.name, "CIM_ObjectManager")) {
        return {objectManager(nameSpace, definition)};
    }
    if (equalNames(definition.name, "CIM_Namespace")) {
        return cimNamespaces(repository, nameSpace, definition);
    }
    if (equalNames(definition.name, "__Namespace")) {
        return relativeNamespaces(repository, nameSpace, definition);
    }
    return {};
}

}  // namespace cimhost
