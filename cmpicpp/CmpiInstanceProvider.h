#pragma once

#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/CmpiProvider.h"
#include "cmpicpp/CmpiResult.h"
#include "pylcommon_export.h"

#include <string>

namespace CmpiCpp {

/// Serves the instances of one or more classes. A property list is a null-terminated array of
/// names, or null for all properties. What a class does not override is refused with
/// CMPI_RC_ERR_NOT_SUPPORTED.
class PYL_EXPORT CmpiInstanceProvider : public virtual CmpiProvider {
public:
    ~CmpiInstanceProvider() override;

    /// Delivers the paths of the class's instances.
    virtual void enumInstanceNames(const CmpiContext& context, const CmpiObjectPath& classPath,
                                   CmpiObjectPathResult& result) = 0;
    /// Delivers the class's instances.
    virtual void enumInstances(const CmpiContext& context, const CmpiObjectPath& classPath,
                               const char** properties, CmpiInstanceResult& result) = 0;
    /// Delivers exactly one instance, or throws CMPI_RC_ERR_NOT_FOUND.
    virtual void getInstance(const CmpiContext& context, const CmpiObjectPath& path,
                             const char** properties, CmpiInstanceResult& result) = 0;
    /// Delivers the path of the instance made.
    virtual void createInstance(const CmpiContext& context, const CmpiObjectPath& path,
                                const CmpiInstance& instance, CmpiObjectPathResult& result);
    /// Gives the instance at `path` the values of the listed properties, or of all that `instance`
    /// has. Throws CMPI_RC_ERR_NOT_FOUND where there is none.
    virtual void modifyInstance(const CmpiContext& context, const CmpiObjectPath& path,
                                const CmpiInstance& instance, const char** properties);
    /// Removes the instance, or throws CMPI_RC_ERR_NOT_FOUND.
    virtual void deleteInstance(const CmpiContext& context, const CmpiObjectPath& path);
    /// Delivers the paths of the instances that satisfy the query.
    virtual void execQuery(const CmpiContext& context, const CmpiObjectPath& path,
                           const std::string& query, const std::string& language,
                           CmpiObjectPathResult& result);
};

}  // namespace CmpiCpp
