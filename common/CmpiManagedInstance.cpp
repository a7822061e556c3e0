#include "common/CmpiManagedInstance.h"

#include "cmpicpp/CmpiStatus.h"

namespace PYL {

CmpiManagedInstance::CmpiManagedInstance(const CmpiManagedInstance& other)
    : _visible(other.visible()) {}

CmpiManagedInstance& CmpiManagedInstance::operator=(const CmpiManagedInstance& other) {
    setVisible(other.visible());
    return *this;
}

CmpiManagedInstance::~CmpiManagedInstance() = default;

void CmpiManagedInstance::invokeMethod(const CmpiCpp::CmpiName&, const CmpiCpp::CmpiArgs&,
                                       CmpiCpp::CmpiMethodResult&) {
    throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_METHOD_NOT_FOUND);
}

}  // namespace PYL
