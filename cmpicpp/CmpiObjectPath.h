#pragma once

#include "cmpi/cmpift.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiHandle.h"
#include "cmpicpp/CmpiName.h"
#include "cmpicpp/CmpiValue.h"
#include "pylcommon_export.h"

#include <iosfwd>
#include <string>
#include <utility>

namespace CmpiCpp {

/// The path of a class or of an instance: host, namespace, class and keys. A value: see CmpiHandle
/// for how it is shared and how long it lives. Failing calls of the broker are thrown as
/// CmpiStatus; reading an empty path gives empty texts and no keys, changing one is
/// CMPI_RC_ERR_INVALID_HANDLE.
class PYL_EXPORT CmpiObjectPath {
public:
    /// The empty path.
    CmpiObjectPath() noexcept = default;
    /// An empty path too, which names the broker that there is no path from.
    explicit CmpiObjectPath(const CmpiBroker& broker) noexcept
        : _handle(CmpiHandle<CMPIObjectPath>::borrowed(broker.toCMPI(), nullptr)) {}
    /// Of a handle that the wrapper or an adapter made. Providers use makeCmpiObjectPath().
    explicit CmpiObjectPath(CmpiHandle<CMPIObjectPath> handle) noexcept
        : _handle(std::move(handle)) {}

    /// True when there is no path at all.
    bool empty() const noexcept { return !_handle; }

    /// A copy that may be kept beyond the provider's call; the wrapper releases it.
    CmpiObjectPath clone() const { return CmpiObjectPath(_handle.clone()); }

    /// @{
    /// A part of the path; the empty name where it has none.
    CmpiName getHost() const;
    CmpiName getNameSpace() const;
    CmpiName getClassName() const;
    /// @}
    /// @{
    /// Replaces a part of the path.
    void setHost(const CmpiName& host);
    void setNameSpace(const CmpiName& nameSpace);
    void setClassName(const CmpiName& className);
    /// @}

    /// Of the keys that are set, whatever the class has.
    unsigned int getKeyCount() const;
    /// @{
    /// Throws CMPI_RC_ERR_NO_SUCH_PROPERTY when the path has no such key.
    CmpiData getKey(const char* name) const;
    CmpiData getKey(const CmpiName& name) const { return getKey(name.c_str()); }
    /// @}
    /// Throws CMPI_RC_ERR_NO_SUCH_PROPERTY past the end. Mostly in the order in which the keys were
    /// added, but some object managers have one of their own.
    std::pair<CmpiName, CmpiData> getKeyAt(unsigned int index) const;
    /// @{
    /// Adds a key, or replaces the one of this name. An empty name and a NULL are
    /// CMPI_RC_ERR_INVALID_PARAMETER; what other names a path takes is the object manager's.
    void addKey(const char* name, CmpiValue value);
    void addKey(const CmpiName& name, CmpiValue value) { addKey(name.c_str(), value); }
    /// @}

    /// True when the path's class is the named class or derives from it, as the object manager
    /// knows. A path without a namespace has no superclasses that could be asked for: it is
    /// CMPI_RC_ERR_INVALID_NAMESPACE.
    bool classPathIsA(const CmpiBroker& broker, const std::string& className) const;

    /// A WBEM URI (DSP0207): `//host/root/ktq:PYL_Fan.DeviceID="1",Slot=2`; without a host
    /// `/root/ktq:PYL_Fan...`. Texts are quoted with `\"` and `\\` escaped. Empty for the empty
    /// path.
    std::string str() const;

    /// Host, namespace, class and keys all count; names without regard to case, keys in any order
    /// and compared as CmpiData compares. Empty paths are equal to each other only.
    PYL_EXPORT friend bool operator==(const CmpiObjectPath& left, const CmpiObjectPath& right);

    /// For calls of the C interface; nullptr when empty. A later change does not show through it.
    const CMPIObjectPath* toCMPI() const noexcept { return _handle.lend(); }
    /// The broker that the object belongs to; nullptr where none is known.
    const CMPIBroker* broker() const noexcept { return _handle.broker(); }

private:
    friend class CmpiValue;

    CmpiHandle<CMPIObjectPath> _handle;
};

/// @{
/// A new path without host and keys, good until the provider's call returns.
/// Throws CmpiStatus when the broker is null or refuses.
PYL_EXPORT CmpiObjectPath makeCmpiObjectPath(const CmpiBroker& broker, const char* nameSpace,
                                             const char* className);
PYL_EXPORT CmpiObjectPath makeCmpiObjectPath(const CmpiBroker& broker, const CmpiName& nameSpace,
                                             const CmpiName& className);
/// @}

/// Writes str().
PYL_EXPORT std::ostream& operator<<(std::ostream& out, const CmpiObjectPath& path);

}  // namespace CmpiCpp
