#pragma once

#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiName.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/CmpiProvider.h"
#include "cmpicpp/CmpiResult.h"
#include "pylcommon_export.h"

namespace CmpiCpp {

/// Runs the extrinsic methods of its classes.
class PYL_EXPORT CmpiMethodProvider : public virtual CmpiProvider {
public:
    ~CmpiMethodProvider() override;

    /// Delivers the return value and the output arguments.
    /// An unknown method is CMPI_RC_ERR_METHOD_NOT_FOUND.
    virtual void invokeMethod(const CmpiContext& context, const CmpiObjectPath& path,
                              const CmpiName& methodName, const CmpiArgs& in,
                              CmpiMethodResult& result) = 0;
};

}  // namespace CmpiCpp
