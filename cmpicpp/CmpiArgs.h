#pragma once

#include "cmpi/cmpift.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiHandle.h"
#include "cmpicpp/CmpiName.h"
#include "cmpicpp/CmpiValue.h"
#include "pylcommon_export.h"

#include <utility>

namespace CmpiCpp {

/// The arguments of a method call, by name and in order. A value: see CmpiHandle.
class PYL_EXPORT CmpiArgs {
public:
    CmpiArgs() noexcept = default;
    /// Of a handle that the wrapper or an adapter made. Providers use makeCmpiArgs().
    explicit CmpiArgs(CmpiHandle<CMPIArgs> handle) noexcept : _handle(std::move(handle)) {}

    /// True when there is no object at all. A container without arguments is not empty.
    bool empty() const noexcept { return !_handle; }
    /// A copy that may be kept beyond the provider's call; the wrapper releases it.
    CmpiArgs clone() const { return CmpiArgs(_handle.clone()); }

    /// 0 for the empty value.
    unsigned int getArgCount() const;
    /// Throws CMPI_RC_ERR_NO_SUCH_PROPERTY past the end.
    std::pair<CmpiName, CmpiData> getArgAt(unsigned int index) const;
    /// @{
    /// Throws CMPI_RC_ERR_NO_SUCH_PROPERTY when there is no such argument.
    CmpiData getArg(const char* name) const;
    CmpiData getArg(const CmpiName& name) const { return getArg(name.c_str()); }
    /// @}
    /// @{
    /// Throws CMPI_RC_ERR_INVALID_PARAMETER for what is no name, and for an array with NULL texts,
    /// datetimes, references or instances, which some object managers do not survive.
    void addArg(const char* name, CmpiValue value);
    void addArg(const CmpiName& name, CmpiValue value) { addArg(name.c_str(), value); }
    /// @}

    /// For calls of the C interface; nullptr when empty. A later change does not show through it.
    const CMPIArgs* toCMPI() const noexcept { return _handle.lend(); }
    /// The broker that the object belongs to; nullptr where none is known.
    const CMPIBroker* broker() const noexcept { return _handle.broker(); }

private:
    CmpiHandle<CMPIArgs> _handle;
};

/// A new, empty container, good until the provider's call returns.
PYL_EXPORT CmpiArgs makeCmpiArgs(const CmpiBroker& broker);

}  // namespace CmpiCpp
