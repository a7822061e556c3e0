#include "cmpicpp/CmpiMemoryMark.h"

namespace CmpiCpp {

CmpiMemoryMark::CmpiMemoryMark(const CmpiBroker& broker) noexcept : _broker(broker.toCMPI()) {
    if (!_broker || !_broker->mft) return;
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIGcStat* const mark = _broker->mft->mark(_broker, &status);
    if (status.rc == CMPI_RC_OK) _mark = mark;
}

// What cannot be released ends with the call.
CmpiMemoryMark::~CmpiMemoryMark() {
    if (_mark != nullptr) _broker->mft->release(_broker, _mark);
}

}  // namespace CmpiCpp
