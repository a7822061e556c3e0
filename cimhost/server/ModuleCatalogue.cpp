#include "cimhost/server/ModuleCatalogue.h"

#include "cimhost/repository/Names.h"
#include "cimhost/server/RegistrationCheck.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <set>

namespace cimhost {
namespace {

constexpr std::string_view moduleClass = "CIMHOST_Module";
constexpr std::string_view providerClass = "CIMHOST_Provider";

/// As registrations have them, in the order of ProviderType.
constexpr auto kindNames =
    std::to_array<const char*>({"instance", "association", "method", "indication"});
static_assert(kindNames.size() == providerTypeCount);

Value texts(const std::vector<std::string>& all) {
    Value::Array values;
    for (const std::string& each : all) values.push_back(Value::string(each));
    return Value::array(CimType::string, std::move(values));
}

void setKey(Instance& instance, const char* name, const std::string& value) {
    instance.path.setKey(name, Value::string(value));
    instance.set(name, Value::string(value));
}

bool isSame(const Registration& left, const Registration& right) noexcept {
    return equalNames(left.className, right.className) &&
           equalNames(left.nameSpace, right.nameSpace) && left.provider == right.provider;
}

/// Those of one provider for one class as one, whose kinds are all of theirs.
std::vector<Registration> merged(const Registrations& all) {
    std::vector<Registration> result;
    for (const Registration& each : all.all()) {
        const auto found = std::ranges::find_if(
            result, [&each](const Registration& other) { return isSame(each, other); });
        if (found == result.end()) {
            result.push_back(each);
        } else {
            found->types |= each.types;
        }
    }
    return result;
}

Instance describe(const Registration& registration, const Target& target) {
    Instance instance;
    instance.path = {{}, target.nameSpace.name(), target.definition.name, {}};
    setKey(instance, "ClassName", registration.className);
    setKey(instance, "NameSpace", registration.nameSpace);
    setKey(instance, "Provider", registration.provider);
    instance.set("Module", Value::string(registration.module));
    std::vector<std::string> kinds;
    for (std::size_t type = 0; type < providerTypeCount; ++type) {
        if (registration.types[type]) kinds.emplace_back(kindNames[type]);
    }
    instance.set("Kinds", texts(kinds));
    return instance;
}

}  // namespace

bool ModuleCatalogue::serves(const Target& target) const noexcept {
    return equalNames(target.definition.name, moduleClass) ||
           equalNames(target.definition.name, providerClass);
}

void ModuleCatalogue::visit(const Target& target, const VisitInstance& visit) const {
    const NameSpace& nameSpace = target.nameSpace;
    for (const std::string_view name : {moduleClass, providerClass}) {
        const Class* const definition = nameSpace.findClass(name);
        if (!definition || !nameSpace.isA(definition->name, target.definition.name)) continue;
        const Target own{nameSpace, *definition};
        name == moduleClass ? _visitModules(own, visit) : _visitProviders(own, visit);
    }
}

void ModuleCatalogue::_visitModules(const Target& target, const VisitInstance& visit) const {
    std::set<std::string> names;
    for (const Registration& each : _modules.registrations().all()) names.insert(each.module);
    for (const std::string& name : names) visit(_describe(name, target), target.definition);
}

void ModuleCatalogue::_visitProviders(const Target& target, const VisitInstance& visit) const {
    for (const Registration& each : merged(_modules.registrations())) {
        visit(describe(each, target), target.definition);
    }
}

void ModuleCatalogue::visitAssociations(const Target&, const VisitInstance&) const {}

std::optional<Instance> ModuleCatalogue::find(const ObjectPath& path) const {
    const NameSpace& nameSpace = _repository.get(path.nameSpace);
    const Class* const definition = nameSpace.findClass(path.className);
    if (!definition) return std::nullopt;
    const auto key = [&path](std::string_view name) {
        const Value* const value = path.findKey(name);
        const auto* const text = value ? value->get<Text>() : nullptr;
        return text ? text->str() : std::string();
    };
    const Target target{nameSpace, *definition};
    const bool isModule = equalNames(definition->name, moduleClass);
    Registration wanted;
    wanted.className = key("ClassName");
    wanted.nameSpace = key("NameSpace");
    wanted.provider = key("Provider");
    wanted.module = key("Module");
    for (const Registration& each : merged(_modules.registrations())) {
        if (isModule && each.module == wanted.module) return _describe(each.module, target);
        if (!isModule && isSame(each, wanted)) return describe(each, target);
    }
    return std::nullopt;
}

Instance ModuleCatalogue::_describe(const std::string& module, const Target& target) const {
    Instance instance;
    instance.path = {{}, target.nameSpace.name(), target.definition.name, {}};
    setKey(instance, "Module", module);
    const std::string file = Module::find(module, _folders).string();
    instance.set("File", file.empty() ? Value::null(CimType::string) : Value::string(file));
    instance.set("Isolated", Value::boolean(_isolated != nullptr));
    _describeProcess(module, instance);
    instance.set("Findings", texts(_findings(module)));
    return instance;
}

void ModuleCatalogue::_describeProcess(const std::string& module, Instance& instance) const {
    ModuleProcess::State state;
    if (_isolated) {
        state = _isolated->stateOf(module);
    } else if (_modules.stateOf(module).isLoaded) {
        state.id = getpid();
    }
    instance.set("Loaded", Value::boolean(state.id != 0));
    describeProcess(state, instance);
    if (_isolated) return;
    for (const char* const count : {"Starts", "Crashes"}) {
        instance.set(count, Value::null(CimType::uint32));
    }
}

std::vector<std::string> ModuleCatalogue::_findings(const std::string& module) const {
    const Registrations& registrations = _modules.registrations();
    std::vector<std::string> all = registrations.warnings(module);
    const auto add = [&all](const std::vector<std::string>& more) {
        for (const std::string& each : more) {
            if (std::ranges::find(all, each) == all.end()) all.push_back(each);
        }
    };
    add(checkClasses(_repository, registrations, module));
    add(checkModuleFiles(registrations, _folders, module));
    add(_modules.stateOf(module).failures);
    const std::string failure = _isolated ? _isolated->stateOf(module).failure : std::string();
    if (!failure.empty()) add({failure});
    return all;
}

}  // namespace cimhost
