#pragma once

#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiName.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/CmpiResult.h"
#include "pylcommon_export.h"

#include <atomic>
#include <vector>

namespace PYL {

/// One managed thing that a provider reports: a fan, a disk, a link between two of them.
///
/// A CmpiManagedInstanceCollection owns it and calls it under its lock, so no operation may call
/// back into that collection. A hidden instance is found only where a visible association leads to
/// it, and goes at the next clean-up. A copy made by a derived class is as visible as the original
/// and belongs to its maker.
class PYL_EXPORT CmpiManagedInstance {
public:
    CmpiManagedInstance() = default;
    virtual ~CmpiManagedInstance();

    /// The full path: namespace, class, keys, and the local host name as PYLUtil gives it.
    virtual CmpiCpp::CmpiObjectPath getPath() = 0;

    /// The instance with all its properties.
    virtual CmpiCpp::CmpiInstance getInstance() = 0;

    /// Runs an extrinsic method. Unless overridden, throws CMPI_RC_ERR_METHOD_NOT_FOUND.
    virtual void invokeMethod(const CmpiCpp::CmpiName& method, const CmpiCpp::CmpiArgs& in,
                              CmpiCpp::CmpiMethodResult& out);

    /// The CIM class of the instance.
    virtual CmpiCpp::CmpiName getClassName() = 0;

    /// @{
    /// Whether the instance is reported. Neither is locked: a refresh may hide instances while
    /// another thread walks the collection. The clean-up that finds an instance hidden deletes it,
    /// so what was done to it before must be over.
    bool visible() const { return _visible.load(std::memory_order_acquire); }
    void setVisible(bool visible) { _visible.store(visible, std::memory_order_release); }
    /// @}

protected:
    /// @{
    /// For derived classes: as visible as the other.
    CmpiManagedInstance(const CmpiManagedInstance& other);
    CmpiManagedInstance& operator=(const CmpiManagedInstance& other);
    /// @}

    std::atomic<bool> _visible{true};  ///< see visible()
};

/// A link between two objects.
class PYL_EXPORT CmpiManagedInstanceAssociation : public CmpiManagedInstance {
public:
    /// When `path` names one end, the path of the other; otherwise the empty path.
    virtual CmpiCpp::CmpiObjectPath getAssociatedPath(const CmpiCpp::CmpiObjectPath& path) = 0;
};

/// A link from an object to any number of others.
class PYL_EXPORT CmpiManagedInstanceMultiAssociation : public CmpiManagedInstance {
public:
    /// Everything associated with `path` through this instance, in the order in which it is
    /// reported; empty when `path` is not an end of it.
    virtual std::vector<CmpiCpp::CmpiObjectPath> getAssociatedPaths(
        const CmpiCpp::CmpiObjectPath& path) = 0;
};

}  // namespace PYL
