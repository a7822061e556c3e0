#pragma once

#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiName.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/CmpiResult.h"
#include "common/CmpiManagedInstance.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <pthread.h>

#include <vector>

namespace PYL {

/// The managed instances of a provider, in order of insertion, and the answers to instance and
/// association requests from them.
///
/// Owns its instances. Duplicate paths are allowed: enumerations deliver each, look-ups take the
/// first.
///
/// Threads: every operation locks the collection, except size(), getManagedInstance(unsigned int)
/// and the destructor. The lock is not recursive and is held for the whole operation, deliveries
/// into the result sink and up-calls to the object manager included. So neither an instance nor a
/// sink may call back into the same collection, and every object that the collection's own
/// associations point at must be in it under exactly the path that they return: the up-call for one
/// that is not would come back here and wait for ever.
///
/// Exceptions: what an instance, a sink or the object manager throws is logged and goes on to the
/// caller unchanged; what was delivered before stays delivered. What fails about a far end that is
/// asked for by an up-call, its delivery included, is logged and costs that far end alone.
class PYL_EXPORT CmpiManagedInstanceCollection {
public:
    /// Keeps a copy of the logger, with ":CmpiManagedInstanceCollection" added to its source.
    explicit CmpiManagedInstanceCollection(Logger& log);
    CmpiManagedInstanceCollection(const CmpiManagedInstanceCollection&) = delete;
    CmpiManagedInstanceCollection& operator=(const CmpiManagedInstanceCollection&) = delete;
    virtual ~CmpiManagedInstanceCollection();

    /// Appends the instance and owns it from now on. Always true.
    bool createInstance(CmpiManagedInstance* inst);

    /// Deletes the first instance with this path, hidden ones included. False when there is none.
    bool deleteInstance(const CmpiCpp::CmpiObjectPath& path);

    /// @{
    /// Delivers the visible instances of exactly the request's class and namespace, or their paths.
    /// Subclasses are not included, and a property list is ignored with a warning. The result is
    /// how many.
    int enumInstanceNames(CmpiCpp::CmpiObjectPathResult& result, const CmpiCpp::CmpiContext& ctx,
                          const CmpiCpp::CmpiObjectPath& path);
    int enumInstances(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& ctx,
                      const CmpiCpp::CmpiObjectPath& path, const char** properties);
    /// @}

    /// Delivers the first visible instance with this path, whatever host the path names.
    /// False when there is none: it is for the provider to report that.
    bool getInstance(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& ctx,
                     const CmpiCpp::CmpiObjectPath& path, const char** properties);

    /// Delivers the objects at the far ends of the request's visible associations; those that are
    /// not in the collection come from an up-call, and one that fails is logged and left out.
    /// Empty filters let everything through; a class filter lets subclasses through. Any role,
    /// result role or property list is refused with CMPI_RC_ERR_NOT_SUPPORTED. The result is how
    /// many.
    int associators(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& ctx,
                    const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& assocClass,
                    const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role,
                    const CmpiCpp::CmpiName& resultRole, const char** properties);
    /// The same for their paths, as the associations give them; no up-call.
    int associatorNames(CmpiCpp::CmpiObjectPathResult& result, const CmpiCpp::CmpiContext& ctx,
                        const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& assocClass,
                        const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role,
                        const CmpiCpp::CmpiName& resultRole);

    /// @{
    /// Delivers the visible associations that involve the request, each once. `resultClass` filters
    /// the class of the association. Refusals as in associators().
    int references(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& ctx,
                   const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& resultClass,
                   const CmpiCpp::CmpiName& role, const char** properties);
    int referenceNames(CmpiCpp::CmpiObjectPathResult& result, const CmpiCpp::CmpiContext& ctx,
                       const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& resultClass,
                       const CmpiCpp::CmpiName& role);
    /// @}

    /// How many instances there are, hidden ones included.
    unsigned int size() const;

    /// The instance in this slot, or null when there is no such slot. Owned by the collection.
    CmpiManagedInstance* getManagedInstance(unsigned int index);

    /// The first instance with this path, hidden ones included and the host as given, or null.
    /// Good until the instance is removed.
    CmpiManagedInstance* getManagedInstance(const CmpiCpp::CmpiObjectPath& path);

    /// Deletes all instances.
    void clear();

    /// Deletes the hidden instances; the others keep their order. After a refresh that hid what is
    /// gone.
    void cleanup();

protected:
    /// The slot of the first instance with this path, or -1. The caller holds the lock.
    int _findIndex(const CmpiCpp::CmpiObjectPath& path);

    pthread_mutex_t _mutex;                         ///< guards the instances
    std::vector<CmpiManagedInstance*> _collection;  ///< owned, in order of insertion
    Logger _log;                                    ///< the collection's own copy

private:
    template <typename Deliver>
    int _enumerate(const CmpiCpp::CmpiObjectPath& path, Deliver deliver);
};

}  // namespace PYL
