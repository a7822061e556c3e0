#pragma once

#include "cmpi/cmpift.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiHandle.h"
#include "cmpicpp/CmpiValue.h"
#include "pylcommon_export.h"

#include <string>
#include <utility>

namespace CmpiCpp {

/// A fixed-length array of one element type; elements start as NULL. A value: see CmpiHandle.
class PYL_EXPORT CmpiArray {
public:
    CmpiArray() noexcept = default;
    /// Of a handle that the wrapper or an adapter made. Providers use makeCmpiArray().
    explicit CmpiArray(CmpiHandle<CMPIArray> handle) noexcept : _handle(std::move(handle)) {}

    /// True when there is no object at all. An array of no elements is not empty.
    bool empty() const noexcept { return !_handle; }
    /// A copy that may be kept beyond the provider's call; the wrapper releases it.
    CmpiArray clone() const { return CmpiArray(_handle.clone()); }

    /// @{
    /// The number of elements, which never changes; 0 for the empty value.
    unsigned int getSize() const;
    unsigned int size() const { return getSize(); }
    /// @}
    /// The element type without the array bit.
    CMPIType getType() const;
    /// Throws CMPI_RC_ERR_NO_SUCH_PROPERTY past the end.
    CmpiData getElementAt(unsigned int index) const;
    /// Throws CMPI_RC_ERR_TYPE_MISMATCH for another type, CMPI_RC_ERR_NO_SUCH_PROPERTY past the
    /// end. An object is put in as it is now, and stays in the array until the provider's function
    /// returns.
    void setElementAt(unsigned int index, CmpiValue value);

    /// `{1, 2, NULL}`
    std::string str() const;

    /// For calls of the C interface; nullptr when empty. A later change does not show through it.
    const CMPIArray* toCMPI() const noexcept { return _handle.lend(); }
    /// The broker that the object belongs to; nullptr where none is known.
    const CMPIBroker* broker() const noexcept { return _handle.broker(); }

private:
    CmpiHandle<CMPIArray> _handle;
};

/// A new array of `size` NULL elements of `type` (without the array bit), good until the call
/// returns.
PYL_EXPORT CmpiArray makeCmpiArray(const CmpiBroker& broker, unsigned int size, CMPIType type);

}  // namespace CmpiCpp
