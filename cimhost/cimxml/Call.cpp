#include "cimhost/cimxml/Call.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <array>
#include <string>

namespace cimhost {
namespace {

using P = Parameter;

// clang-format off
constexpr auto operations = std::to_array<IntrinsicOperation>({
    {"GetInstance", getInstance,
     {P::instanceName, P::localOnly, P::includeQualifiers, P::includeClassOrigin, P::propertyList}},
    {"EnumerateInstances", enumerateInstances,
     {P::className, P::localOnly, P::deepInheritance, P::includeQualifiers, P::includeClassOrigin, P::propertyList}},
    {"EnumerateInstanceNames", enumerateInstanceNames, {P::className}},
    {"CreateInstance", createInstance, {P::newInstance}},
    {"ModifyInstance", modifyInstance, {P::modifiedInstance, P::includeQualifiers, P::propertyList}},
    {"DeleteInstance", deleteInstance, {P::instanceName}},
    {"GetProperty", getProperty, {P::instanceName, P::propertyName}},
    {"SetProperty", setProperty, {P::instanceName, P::propertyName, P::newValue}},
    {"ExecQuery", execQuery, {P::queryLanguage, P::query}},

    {"Associators", associators,
     {P::objectName, P::associationClass, P::resultClass, P::role, P::resultRole, P::includeQualifiers,
      P::includeClassOrigin, P::propertyList}},
    {"AssociatorNames", associatorNames, {P::objectName, P::associationClass, P::resultClass, P::role, P::resultRole}},
    {"References", references,
     {P::objectName, P::resultClass, P::role, P::includeQualifiers, P::includeClassOrigin, P::propertyList}},
    {"ReferenceNames", referenceNames, {P::objectName, P::resultClass, P::role}},

    {"GetClass", getClass, {P::className, P::localOnly, P::includeQualifiers, P::includeClassOrigin, P::propertyList}},
    {"EnumerateClasses", enumerateClasses,
     {P::className, P::deepInheritance, P::localOnly, P::includeQualifiers, P::includeClassOrigin}},
    {"EnumerateClassNames", enumerateClassNames, {P::className, P::deepInheritance}},
    {"GetQualifier", getQualifier, {P::qualifierName}},
    {"EnumerateQualifiers", enumerateQualifiers, {}},
});
// clang-format on

}  // namespace

const Class& Call::requireClass(std::string_view name, CimCode code) const {
    if (const Class* const definition = nameSpace.findClass(name)) return *definition;
    throw CimError(code, "there is no class " + std::string(name) + " in namespace " +
                             nameSpace.name() + repository.meantClass(nameSpace, name));
}

const IntrinsicOperation* findIntrinsicOperation(std::string_view name) noexcept {
    const auto found = std::ranges::find_if(
        operations, [name](const IntrinsicOperation& row) { return equalNames(row.name, name); });
    return found != operations.end() ? &*found : nullptr;
}

}  // namespace cimhost
