#pragma once

#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/CmpiProvider.h"
#include "pylcommon_export.h"

#include <string>

namespace CmpiCpp {

/// Raises indications. The select expression is the raw CMPI object and may not be kept.
class PYL_EXPORT CmpiIndicationProvider : public virtual CmpiProvider {
public:
    ~CmpiIndicationProvider() override;

    /// Throws to say that the filter cannot be served.
    virtual void authorizeFilter(const CmpiContext& context, const CMPISelectExp* filter,
                                 const std::string& className, const CmpiObjectPath& path,
                                 const std::string& owner) = 0;
    /// Returning asks the object manager to poll. Its C signature differs between CMPI 2.0 and 2.1,
    /// so the adapter answers for it and no object manager reaches this operation.
    virtual void mustPoll(const CmpiContext& context, const CMPISelectExp* filter,
                          const std::string& className, const CmpiObjectPath& path) = 0;
    /// @{
    /// `last`: CMPI's flag for the first activation, respectively the last deactivation.
    virtual void activateFilter(const CmpiContext& context, const CMPISelectExp* filter,
                                const std::string& className, const CmpiObjectPath& path,
                                bool last) = 0;
    virtual void deactivateFilter(const CmpiContext& context, const CMPISelectExp* filter,
                                  const std::string& className, const CmpiObjectPath& path,
                                  bool last) = 0;
    /// @}
    /// @{
    /// From the one to the other the object manager takes indications; outside of that nobody gets
    /// them.
    virtual void enableIndications(const CmpiContext& context) = 0;
    virtual void disableIndications(const CmpiContext& context) = 0;
    /// @}
};

}  // namespace CmpiCpp
