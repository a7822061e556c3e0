#pragma once

#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiName.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/CmpiProvider.h"
#include "cmpicpp/CmpiResult.h"
#include "pylcommon_export.h"

namespace CmpiCpp {

/// Answers association requests about a source object. An empty filter name does not filter.
/// In references and referenceNames `resultClass` filters the association class (DSP0200, 5.3.2.5).
class PYL_EXPORT CmpiAssociationProvider : public virtual CmpiProvider {
public:
    ~CmpiAssociationProvider() override;

    /// Delivers the objects that associations link to the one at `path`. `assocClass` filters the
    /// associations, `resultClass` the objects. `role` names the reference to the source object,
    /// `resultRole` the one to the result. `properties` is as in CmpiInstanceProvider.
    virtual void associators(const CmpiContext& context, const CmpiObjectPath& path,
                             const CmpiName& assocClass, const CmpiName& resultClass,
                             const CmpiName& role, const CmpiName& resultRole,
                             const char** properties, CmpiInstanceResult& result) = 0;
    /// The same for the paths of those objects.
    virtual void associatorNames(const CmpiContext& context, const CmpiObjectPath& path,
                                 const CmpiName& assocClass, const CmpiName& resultClass,
                                 const CmpiName& role, const CmpiName& resultRole,
                                 CmpiObjectPathResult& result) = 0;
    /// Delivers the associations that refer to the object at `path`, those by a reference named
    /// `role` where one is given.
    virtual void references(const CmpiContext& context, const CmpiObjectPath& path,
                            const CmpiName& resultClass, const CmpiName& role,
                            const char** properties, CmpiInstanceResult& result) = 0;
    /// The same for the paths of those associations.
    virtual void referenceNames(const CmpiContext& context, const CmpiObjectPath& path,
                                const CmpiName& resultClass, const CmpiName& role,
                                CmpiObjectPathResult& result) = 0;
};

}  // namespace CmpiCpp
