#include "cimhost/objects/Entry.h"
#include "cimhost/objects/ObjectPathHandle.h"
#include "cimhost/objects/Values.h"
#include "cimhost/repository/CimError.h"

namespace cimhost {

namespace {

// Tells a path's class apart from what its namespace does not have.
const Class& classOf(const ObjectPathObject& object) {
    const ObjectPath& path = object.model.read();
    const NameSpace& nameSpace = object.broker->repository().get(path.nameSpace);
    if (const Class* const found = nameSpace.findClass(path.className)) return *found;
    throw CimError(CimCode::invalidClass,
                   "class " + path.className + " is not in namespace " + nameSpace.name());
}

// `find` gives the qualifiers of the element, or nullptr when the class has no such element.
template <typename Find>
CMPIData qualifierOf(const CMPIObjectPath* path, const char* name, CMPIStatus* status,
                     Find&& find) noexcept {
    return enter<ObjectPathObject>(path, status, [&](ObjectPathObject& object, CMPIrc& code) {
        const std::string_view wanted = required(name);
        const Qualifiers* const qualifiers = find(classOf(object));
        const Qualifier* const found = qualifiers ? findQualifier(*qualifiers, wanted) : nullptr;
        if (found) return toCmpi(partOf(object), found->value);
        code = CMPI_RC_ERR_NO_SUCH_PROPERTY;
        return CMPIData{};
    });
}

}  // namespace

CMPIData classQualifier(const CMPIObjectPath* path, const char* qualifier,
                        CMPIStatus* status) noexcept {
    return qualifierOf(path, qualifier, status,
                       [](const Class& definition) { return &definition.qualifiers; });
}

CMPIData propertyQualifier(const CMPIObjectPath* path, const char* property, const char* qualifier,
                           CMPIStatus* status) noexcept {
    return qualifierOf(path, qualifier, status, [property](const Class& definition) {
        const PropertyDefinition* const found = definition.findProperty(required(property));
        return found ? &found->qualifiers : nullptr;
    });
}

CMPIData methodQualifier(const CMPIObjectPath* path, const char* method, const char* qualifier,
                         CMPIStatus* status) noexcept {
    return qualifierOf(path, qualifier, status, [method](const Class& definition) {
        return &definition.requireMethod(required(method)).qualifiers;
    });
}

CMPIData parameterQualifier(const CMPIObjectPath* path, const char* method, const char* parameter,
                            const char* qualifier, CMPIStatus* status) noexcept {
    return qualifierOf(path, qualifier, status, [method, parameter](const Class& definition) {
        const ParameterDefinition* const found =
            findNamed(definition.requireMethod(required(method)).parameters, required(parameter));
        return found ? &found->qualifiers : nullptr;
    });
}

}  // namespace cimhost
