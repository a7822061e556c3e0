#pragma once

#include "cmpi/cmpift.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiHandle.h"
#include "pylcommon_export.h"

#include <chrono>
#include <string>
#include <utility>

namespace CmpiCpp {

/// A CIM datetime: a point in time or an interval, to the microsecond. A value: see CmpiHandle.
class PYL_EXPORT CmpiDateTime {
public:
    CmpiDateTime() noexcept = default;
    /// Of a handle that the wrapper or an adapter made. Providers use makeCmpiDateTime().
    explicit CmpiDateTime(CmpiHandle<CMPIDateTime> handle) noexcept : _handle(std::move(handle)) {}

    /// True when there is no object at all.
    bool empty() const noexcept { return !_handle; }
    /// A copy that may be kept beyond the provider's call; the wrapper releases it.
    CmpiDateTime clone() const { return CmpiDateTime(_handle.clone()); }

    /// Whether it is a length of time rather than a moment. Throws for the empty value.
    bool isInterval() const;
    /// Since 1970-01-01 UTC, or the interval's length.
    std::chrono::microseconds microseconds() const;
    /// The 25 characters of DSP0004, 5.2.4; empty for the empty value.
    std::string str() const;

    /// For calls of the C interface; nullptr when empty. A later change does not show through it.
    const CMPIDateTime* toCMPI() const noexcept { return _handle.lend(); }
    /// The broker that the object belongs to; nullptr where none is known.
    const CMPIBroker* broker() const noexcept { return _handle.broker(); }

private:
    friend class CmpiValue;

    CmpiHandle<CMPIDateTime> _handle;
};

/// The present moment.
PYL_EXPORT CmpiDateTime makeCmpiDateTime(const CmpiBroker& broker);
/// A point in time since 1970-01-01 UTC, or an interval. Negative figures, moments after the year
/// 9999 and intervals of more than 99999999 days are CMPI_RC_ERR_INVALID_PARAMETER.
PYL_EXPORT CmpiDateTime makeCmpiDateTime(const CmpiBroker& broker, std::chrono::microseconds value,
                                         bool interval);
/// From the 25-character notation; other text, and a day or time that there is not, are
/// CMPI_RC_ERR_INVALID_PARAMETER.
PYL_EXPORT CmpiDateTime makeCmpiDateTime(const CmpiBroker& broker, const std::string& text);

}  // namespace CmpiCpp
