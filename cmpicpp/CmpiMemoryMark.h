#pragma once

#include "cmpi/cmpift.h"
#include "cmpicpp/CmpiBroker.h"
#include "pylcommon_export.h"

namespace CmpiCpp {

/// A lifetime within a call: what the broker makes while a mark lives ends with it, clones excepted
/// (CMPIBrokerMemFT of CMPI 2.0). Without marks everything lives until the provider's function
/// returns, or until its thread is detached; so a loop over many objects has one in its body:
///
///     for (const auto& disk : disks) {
///         CmpiMemoryMark const mark(broker);
///         result.deliver(instanceOf(disk));
///     }
///
/// What was made meanwhile is not to be used afterwards; clone() what is to stay. Marks nest, and
/// end in the opposite order. A broker that has no memory services, or gives no mark, keeps the
/// objects until the function returns: nothing else changes. For the thread that made it.
class PYL_EXPORT CmpiMemoryMark {
public:
    /// Begins the lifetime. Nothing where the broker has no memory services.
    explicit CmpiMemoryMark(const CmpiBroker& broker) noexcept;
    ~CmpiMemoryMark();
    CmpiMemoryMark(const CmpiMemoryMark&) = delete;
    CmpiMemoryMark& operator=(const CmpiMemoryMark&) = delete;

private:
    const CMPIBroker* _broker;
    const CMPIGcStat* _mark = nullptr;
};

}  // namespace CmpiCpp
