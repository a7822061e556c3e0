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

    virtual void associators(const CmpiContext& context, const CmpiObjectPath& path,
                             const CmpiName& assocClass, const CmpiName& resultClass,
                             const CmpiName& role, const CmpiName& resultRole,
                             const char** properties, CmpiInstanceResult& result) = 0;
    virtual void associatorNames(const CmpiContext& context, const CmpiObjectPath& path,
                                 const CmpiName& assocClass, const CmpiName& resultClass,
                                 const CmpiName& role, const CmpiName& resultRole,
                                 CmpiObjectPathResult& result) = 0;
    virtual void references(const CmpiContext& context, const CmpiObjectPath& path,
                            const CmpiName& resultClass, const CmpiName& role,
                            const char** properties, CmpiInstanceResult& result) = 0;
    virtual void referenceNames(const CmpiContext& context, const CmpiObjectPath& path,
                                const CmpiName& resultClass, const CmpiName& role,
                                CmpiObjectPathResult& result) = 0;
};

}  // namespace CmpiCpp
