#pragma once

#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "common/CmpiManagedInstance.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <functional>
#include <memory>

namespace PYL {

/// Adds an instance to a collection, which owns it from then on. When it throws, for lack of
/// memory, the instance is deleted.
PYL_EXPORT void add(CmpiManagedInstanceCollection& collection,
                    std::unique_ptr<CmpiManagedInstance> instance);

/// A provider that answers from a collection of managed instances: what is left to write is what
/// is in it.
///
///     class UptimeProvider : public PYL::CollectionProvider {
///     public:
///         UptimeProvider(const CmpiCpp::CmpiBroker& broker, Logger& log)
///             : CollectionProvider(broker, log) {
///             add(_instances, std::make_unique<Uptime>());
///         }
///     };
///
/// Instance, association and method requests go to the collection, and what it refuses is refused
/// as it says. What it does not find is CMPI_RC_ERR_NOT_FOUND, with the path in the text. Writing
/// and queries are CMPI_RC_ERR_NOT_SUPPORTED: a provider that can do them overrides them.
///
/// Threads: an object manager calls from several at once. Nothing is locked here but the collection
/// by itself, so whatever a provider overrides is called from several threads too. The collection's
/// rules hold: neither instances nor the request's sink may come back for the same collection.
class PYL_EXPORT CollectionProvider : public CmpiCpp::CmpiInstanceProvider,
                                      public CmpiCpp::CmpiMethodProvider,
                                      public CmpiCpp::CmpiAssociationProvider {
public:
    /// What requests are answered from.
    using Collection = CmpiManagedInstanceCollection;

    /// Keeps a copy of the logger. The collection is empty.
    CollectionProvider(const CmpiCpp::CmpiBroker& broker, Logger& log);
    ~CollectionProvider() override;

    CMPIBroker* getBroker() override;

    void enumInstanceNames(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                           CmpiCpp::CmpiObjectPathResult& result) override;
    void enumInstances(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                       const char** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void getInstance(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                     const char** properties, CmpiCpp::CmpiInstanceResult& result) override;

    /// Runs the method of the visible instance with this path, whatever host the path names. The
    /// collection is not locked meanwhile: a provider that removes instances while it serves
    /// requests overrides this, or answer().
    void invokeMethod(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                      const CmpiCpp::CmpiName& methodName, const CmpiCpp::CmpiArgs& in,
                      CmpiCpp::CmpiMethodResult& result) override;

    void associators(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                     const CmpiCpp::CmpiName& assocClass, const CmpiCpp::CmpiName& resultClass,
                     const CmpiCpp::CmpiName& role, const CmpiCpp::CmpiName& resultRole,
                     const char** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void associatorNames(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                         const CmpiCpp::CmpiName& assocClass, const CmpiCpp::CmpiName& resultClass,
                         const CmpiCpp::CmpiName& role, const CmpiCpp::CmpiName& resultRole,
                         CmpiCpp::CmpiObjectPathResult& result) override;
    void references(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                    const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role,
                    const char** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void referenceNames(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                        const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role,
                        CmpiCpp::CmpiObjectPathResult& result) override;

protected:
    /// Puts the request to a collection.
    using Ask = std::function<void(Collection&)>;

    /// Brings the collection up to date: called before each request, with no lock held. Nothing,
    /// unless overridden. What it throws is the answer to the request.
    virtual void refresh(const CmpiCpp::CmpiContext& context);

    /// Lets a collection answer a request. Unless overridden, that is the provider's own, refreshed
    /// first. An override may ask another one, made for this request, and several one after the
    /// other: all that they deliver is the answer. `path` is the class, the instance or, of
    /// association requests, the source object.
    virtual void answer(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                        const Ask& ask);

    /// The same for association requests alone; calls answer(), unless overridden. With an
    /// `associationClass` that is not empty only links of this class and those derived from it
    /// count.
    virtual void answerAround(const CmpiCpp::CmpiContext& context,
                              const CmpiCpp::CmpiObjectPath& source,
                              const CmpiCpp::CmpiName& associationClass, const Ask& ask);

    CmpiCpp::CmpiBroker _broker;  ///< that the provider was made with
    Logger _log;                  ///< the provider's own copy
    Collection _instances;        ///< refresh() keeps it up to date
};

}  // namespace PYL
