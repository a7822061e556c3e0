#pragma once

#include "cmpi/cmpift.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiHandle.h"
#include "cmpicpp/CmpiName.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/CmpiValue.h"
#include "pylcommon_export.h"

#include <string>
#include <utility>

namespace CmpiCpp {

/// An instance with its path and the properties set so far. A value: see CmpiHandle.
class PYL_EXPORT CmpiInstance {
public:
    CmpiInstance() noexcept = default;
    /// Of a handle that the wrapper or an adapter made. Providers use makeCmpiInstance().
    explicit CmpiInstance(CmpiHandle<CMPIInstance> handle) noexcept : _handle(std::move(handle)) {}

    /// True when there is no object at all.
    bool empty() const noexcept { return !_handle; }

    /// A copy that may be kept beyond the provider's call; the wrapper releases it.
    CmpiInstance clone() const { return CmpiInstance(_handle.clone()); }

    /// The instance's path, which may be kept as long as the instance may; empty for the empty
    /// instance.
    CmpiObjectPath getPath() const;
    /// Replaces the path. An empty one is CMPI_RC_ERR_INVALID_PARAMETER.
    void setPath(const CmpiObjectPath& path);
    /// The class name of the path.
    CmpiName getClassName() const { return getPath().getClassName(); }

    /// How many getPropertyAt() can read; 0 for the empty instance.
    unsigned int getPropertyCount() const;
    /// @{
    /// Throws CMPI_RC_ERR_NOT_FOUND when the instance has no such property.
    CmpiData getProperty(const char* name) const;
    CmpiData getProperty(const CmpiName& name) const { return getProperty(name.c_str()); }
    /// @}
    /// Throws CMPI_RC_ERR_NO_SUCH_PROPERTY past the end.
    std::pair<CmpiName, CmpiData> getPropertyAt(unsigned int index) const;
    /// @{
    /// A NULL of no type, as an empty array is, gets that of the property where there is one, and
    /// may make none where there is none.
    void setProperty(const char* name, CmpiValue value);
    void setProperty(const CmpiName& name, CmpiValue value) { setProperty(name.c_str(), value); }
    /// @}

    /// Makes the object manager drop properties that are not listed; null lists all. Keys of the
    /// path may stay, and not every object manager drops anything. A name that is none of CIM is
    /// CMPI_RC_ERR_INVALID_PARAMETER.
    void setPropertyFilter(const char** properties);

    /// `instance of PYL_Fan {DeviceID = "1"; Slot = 2;}`; empty for the empty instance.
    std::string str() const;

    /// For calls of the C interface; nullptr when empty. A later change does not show through it.
    const CMPIInstance* toCMPI() const noexcept { return _handle.lend(); }
    /// The broker that the object belongs to; nullptr where none is known.
    const CMPIBroker* broker() const noexcept { return _handle.broker(); }

private:
    friend class CmpiValue;

    CmpiHandle<CMPIInstance> _handle;
};

/// A new instance with this path, good until the provider's call returns. The keys of the path are
/// its properties, but for keys that the class does not declare.
PYL_EXPORT CmpiInstance makeCmpiInstance(const CmpiBroker& broker, const CmpiObjectPath& path);

}  // namespace CmpiCpp
