#pragma once

#include "cimhost/objects/CopyOnWrite.h"
#include "cimhost/objects/Object.h"
#include "cimhost/repository/Instance.h"

namespace cimhost {

struct ObjectPathObject : ObjectBase<CMPIObjectPath, ObjectKind::objectPath> {
    static const CMPIObjectPathFT table;

    explicit ObjectPathObject(ObjectPath&& path) : model(std::move(path)) {}
    explicit ObjectPathObject(std::shared_ptr<const ObjectPath> path) : model(std::move(path)) {}

    CopyOnWrite<ObjectPath> model;
};

/// The qualifier functions of the table, answered from the repository. An unknown namespace, class
/// or method is an error of its own, anything else that is absent CMPI_RC_ERR_NO_SUCH_PROPERTY.
CMPIData classQualifier(const CMPIObjectPath* path, const char* qualifier,
                        CMPIStatus* status) noexcept;
CMPIData propertyQualifier(const CMPIObjectPath* path, const char* property, const char* qualifier,
                           CMPIStatus* status) noexcept;
CMPIData methodQualifier(const CMPIObjectPath* path, const char* method, const char* qualifier,
                         CMPIStatus* status) noexcept;
CMPIData parameterQualifier(const CMPIObjectPath* path, const char* method, const char* parameter,
                            const char* qualifier, CMPIStatus* status) noexcept;

}  // namespace cimhost
