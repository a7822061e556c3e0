#include "cmpicpp/CmpiMemoryMark.h"

#include "cmpicpp/detail/Calls.h"

namespace CmpiCpp {

namespace {

// The member came with CMPI 2.0. The version was unsigned then.
const CMPIBrokerMemFT* memoryServices(const CMPIBroker* broker) noexcept {
    const bool has = broker && static_cast<int>(broker->bft->brokerVersion) >= CMPIVersion200;
    return has ? broker->mft : nullptr;
}

}  // namespace

CmpiMemoryMark::CmpiMemoryMark(const CmpiBroker& broker) noexcept : _broker(broker.toCMPI()) {
    const CMPIBrokerMemFT* const services = memoryServices(_broker);
    if (!services) return;
    try {
        _mark = ask(services->mark, _broker);
    } catch (const CmpiStatus&) {  // then there is none
    }
}

CmpiMemoryMark::~CmpiMemoryMark() {
    if (!_mark) return;
    try {
        call(_broker->mft->release, _broker, _mark);
    } catch (const CmpiStatus&) {  // what cannot be released ends with the call
    }
}

}  // namespace CmpiCpp
