#pragma once

#include "cmpi/cmpift.h"
#include "pylcommon_export.h"

namespace CmpiCpp {

/// The object manager's broker: a borrowed pointer that is good for as long as the module is
/// loaded. Copies are free; safe from several threads. A null broker may be held but not used:
/// calls through it throw CmpiStatus CMPI_RC_ERR_INVALID_HANDLE.
class PYL_EXPORT CmpiBroker {
public:
    /// Borrows the handle as the object manager gave it.
    explicit CmpiBroker(const CMPIBroker* broker) noexcept : _broker(broker) {}

    /// For calls of the C interface.
    const CMPIBroker* toCMPI() const noexcept { return _broker; }

    /// The handle as CmpiProvider::getBroker() hands it out. The broker is held const everywhere;
    /// its C type is not const in older interfaces, so this is the one place that casts.
    CMPIBroker* toRawCMPI() const noexcept { return const_cast<CMPIBroker*>(_broker); }

private:
    const CMPIBroker* _broker;
};

}  // namespace CmpiCpp
