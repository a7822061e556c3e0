#include "tests/cimhost/operations/OperationsFixture.h"

#include "cimhost/mof/MofReader.h"

#include <utility>

namespace cimhost::test {

namespace {

constexpr const char* qualifiers = R"(
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride, ToSubclass);
Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride, ToSubclass);
Qualifier Abstract : boolean = false, Scope(class, association, indication),
    Flavor(EnableOverride, Restricted);
Qualifier In : boolean = true, Scope(parameter), Flavor(DisableOverride, ToSubclass);
Qualifier Out : boolean = false, Scope(parameter), Flavor(DisableOverride, ToSubclass);
Qualifier Required : boolean = false, Scope(property, reference, method, parameter),
    Flavor(DisableOverride, ToSubclass);
Qualifier Static : boolean = false, Scope(property, method), Flavor(DisableOverride, ToSubclass);
Qualifier EmbeddedInstance : string = null, Scope(property, method, parameter);
)";

constexpr const char* classes = R"(
[Abstract] class TST_Element { string Caption; };

class TST_Fan : TST_Element {
    [Key] string Name;
    uint16 Speed;
    uint8 Levels[];
    datetime Since;
    uint32 SetSpeed([In, Required] uint16 Speed, [In] string Reason,
                    [In(false), Out] uint16 Previous, [In, Out] string Note);
    [Static] uint32 Count();
    boolean IsLoud();
};
class TST_FastFan : TST_Fan { uint32 Boost; };
class TST_TurboFan : TST_FastFan { uint32 Stages; };

class TST_Sensor : TST_Element { [Key] uint32 Number; [Key] datetime Since; real32 Value; };
class TST_System : TST_Element { [Key] string Name; };
class TST_Unserved { [Key] string Name; };
class TST_Keyless { string Text; };

[Association] class TST_Link {
    [Key] TST_System REF Whole;
    [Key] TST_Element REF Part;
};
[Association] class TST_FanLink : TST_Link { uint16 Slot; };
[Association] class TST_CoolingLink { [Key] TST_Fan REF Fan; [Key] TST_Sensor REF Sensor; };
)";

constexpr const char* interopClasses = R"(
class CIM_Namespace {
    [Key] string SystemCreationClassName; [Key] string SystemName;
    [Key] string ObjectManagerCreationClassName; [Key] string ObjectManagerName;
    [Key] string CreationClassName; [Key] string Name;
    uint16 ClassInfo;
};
class CIM_ObjectManager {
    [Key] string SystemCreationClassName; [Key] string SystemName;
    [Key] string CreationClassName; [Key] string Name;
    string Description; string Version; uint16 OperationalStatus[]; uint16 Started;
};
class __Namespace { [Key] string Name; };
)";

}  // namespace

void FoundInstances::deliver(const Instance& instance, const Class* definition,
                             const PropertySelection& selection) {
    FoundInstance found{instance, definition, {}};
    for (const PropertyValue& property : instance.properties) {
        if (selection.selects(property.name)) found.shown.push_back(property.name.str());
    }
    all.push_back(std::move(found));
}

std::vector<std::string> FoundPaths::texts() const {
    std::vector<std::string> result;
    for (const ObjectPath& path : all) result.push_back(textOf(path));
    return result;
}

ObjectPath classPath(const std::string& className, const std::string& nameSpace) {
    return {{}, nameSpace, className, {}};
}

ObjectPath pathOf(const std::string& className, const std::string& key, Value value,
                  const std::string& nameSpace) {
    return {{}, nameSpace, className, {{key, std::move(value)}}};
}

ObjectPath named(const std::string& className, const std::string& name,
                 const std::string& nameSpace) {
    return pathOf(className, "Name", Value::string(name), nameSpace);
}

std::string textOf(const ObjectPath& path) {
    std::string text = path.className;
    if (path.keys.empty()) return text;
    const auto* const name = path.keys[0].value.get<Text>();
    return text + "." + (name ? *name : "?");
}

Value uint32Value(std::uint64_t number) { return Value::unsignedInteger(CimType::uint32, number); }

Value uint16Value(std::uint64_t number) { return Value::unsignedInteger(CimType::uint16, number); }

OperationsTest::OperationsTest(std::string_view manner)
    : broker(repository, log, fillUpCalls, Manner(manner)) {
    _request.nameSpace = "root/test";
    readMof(qualifiers);
    readMof(classes);
    readMof(qualifiers, "interop");
    readMof(interopClasses, "interop");
}

OperationsTest::~OperationsTest() {
    _host.reset();
    broker.setOperations(nullptr);
}

void OperationsTest::readMof(const std::string& mof, const std::string& nameSpace) {
    MofReader(repository, nameSpace).readText(mof, "test");
}

ScriptedProvider& OperationsTest::serve(const std::string& provider, const std::string& what) {
    const std::size_t classEnd = what.find(' ');
    const std::size_t nameSpaceEnd = what.find(' ', classEnd + 1);
    _registrations.readText(what.substr(0, nameSpaceEnd) + " " + provider + " " + provider +
                                "Module" + what.substr(nameSpaceEnd),
                            "test");
    auto& scripted = _providers[provider];
    if (!scripted) scripted = std::make_unique<ScriptedProvider>(broker);
    return *scripted;
}

void OperationsTest::start(ResultPolicy results) {
    _host = std::make_unique<ModuleHost>(broker, std::move(_registrations),
                                         std::vector<std::filesystem::path>{});
    for (auto& [name, provider] : _providers) _host->addStatic(name + "Module", provider->module());
    _operations = std::make_unique<Operations>(broker, *_host, results);
    broker.setOperations(_operations.get());
}

}  // namespace cimhost::test
