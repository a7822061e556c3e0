#include "tests/support/BrokerFixture.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace cimhost {

namespace {

QualifierDeclaration declare(const char* name, CimType type, Value defaultValue) {
    QualifierDeclaration declaration;
    declaration.name = name;
    declaration.type = type;
    declaration.defaultValue = std::move(defaultValue);
    declaration.scopes = static_cast<std::uint16_t>(Scope::any);
    return declaration;
}

std::shared_ptr<const PropertyDefinition> property(const char* name, CimType type, bool isKey) {
    auto definition = std::make_shared<PropertyDefinition>();
    definition->name = name;
    definition->type = type;
    definition->isKey = isKey;
    if (isKey) definition->qualifiers.push_back({"Key", Value::boolean(true), {}});
    return definition;
}

std::shared_ptr<const MethodDefinition> rename() {
    auto method = std::make_shared<MethodDefinition>();
    method->name = "Rename";
    method->returnType = CimType::uint32;
    method->qualifiers.push_back({"Description", Value::string("gives a new name"), {}});
    ParameterDefinition parameter;
    parameter.name = "NewName";
    parameter.type = CimType::string;
    parameter.qualifiers.push_back({"Description", Value::string("the name to have"), {}});
    method->parameters.push_back(parameter);
    return method;
}

Class base() {
    Class definition;
    definition.name = "Test_Base";
    definition.qualifiers.push_back({"Description", Value::string("the base"), {}});
    definition.properties.push_back(property("Name", CimType::string, true));
    definition.properties.push_back(property("Size", CimType::uint32, false));
    definition.methods.push_back(rename());
    return definition;
}

}  // namespace

std::size_t CapturingLog::countOf(std::string_view part) const {
    constexpr std::array names = {"error", "warning", "information", "debug"};
    const auto all = lines();
    return static_cast<std::size_t>(std::count_if(all.begin(), all.end(), [&](const Line& line) {
        const std::string level = names.at(static_cast<std::size_t>(line.level));
        return (level + " " + line.source + ": " + line.message).find(part) != std::string::npos;
    }));
}

Manner mannerUnderTest() {
    const char* const name = std::getenv("PYL_MANNER");
    return name ? Manner(name) : Manner();
}

Repository testRepository() {
    Repository repository;
    NameSpace& nameSpace = repository.make("root/test");
    nameSpace.setQualifier(declare("Description", CimType::string, Value::null(CimType::string)));
    nameSpace.setQualifier(declare("Key", CimType::boolean, Value::boolean(false)));
    nameSpace.addClass(base());
    Class derived;
    derived.name = "Test_Derived";
    derived.superClass = "Test_Base";
    nameSpace.addClass(derived);
    Class other;
    other.name = "Test_Other";
    nameSpace.addClass(other);
    return repository;
}

}  // namespace cimhost
