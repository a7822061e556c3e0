#include "common/CmpiManagedInstance.h"

#include "cmpicpp/CmpiStatus.h"

namespace PYL {

CmpiManagedInstance::~CmpiManagedInstance() = default;

void CmpiManagedInstance::invokeMethod(const CmpiCpp::CmpiName&, const CmpiCpp::CmpiArgs&,
                                       CmpiCpp::CmpiMethodResult&) {
    throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_METHOD_NOT_FOUND);
}

}  // namespace PYL
