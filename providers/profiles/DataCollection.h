#pragma once

#include "common/CmpiManagedInstance.h"
#include "common/ProfileDC.h"

#include <memory>

namespace profiles {

/// PYL_PXDataCollection: tells which classes the data collection gathers of a profile.
class DataCollection : public PYL::CmpiManagedInstance {
public:
    static constexpr const char* className = "PYL_PXDataCollection";

    explicit DataCollection(std::shared_ptr<const PYL::ProfileDC> table)
        : _table(std::move(table)) {}

    CmpiCpp::CmpiObjectPath getPath() override;
    CmpiCpp::CmpiInstance getInstance() override;
    CmpiCpp::CmpiName getClassName() override { return className; }

    /// GetCollectedClasses(RegisteredName). Throws CMPI_RC_ERR_INVALID_PARAMETER for an argument
    /// that is missing or no text, CMPI_RC_ERR_NOT_FOUND for a name that is not in the table, and
    /// CMPI_RC_ERR_METHOD_NOT_FOUND for another method.
    void invokeMethod(const CmpiCpp::CmpiName& method, const CmpiCpp::CmpiArgs& in,
                      CmpiCpp::CmpiMethodResult& out) override;

private:
    std::shared_ptr<const PYL::ProfileDC> _table;
};

}  // namespace profiles
