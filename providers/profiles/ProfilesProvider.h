#pragma once

#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "common/ProfileDB.h"
#include "platform/logger/Logger.h"
#include "providers/profiles/Conformance.h"

#include <memory>

namespace profiles {

/// Answers for the registered profiles, the links between them and to the elements that conform to
/// them, and for the data collection. Read-only.
///
/// What never changes is kept in one collection, which asks for nothing outside itself. The links
/// to elements are found for each request and kept in a collection of its own, so that no request
/// waits for another one's up-calls, and one that comes back here finds no lock taken.
class ProfilesProvider : public CmpiCpp::CmpiInstanceProvider,
                         public CmpiCpp::CmpiMethodProvider,
                         public CmpiCpp::CmpiAssociationProvider {
public:
    ProfilesProvider(const CmpiCpp::CmpiBroker& broker, Logger& log);

    CMPIBroker* getBroker() override;

    void enumInstanceNames(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                           CmpiCpp::CmpiObjectPathResult& result) override;
    void enumInstances(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                       const char** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void getInstance(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                     const char** properties, CmpiCpp::CmpiInstanceResult& result) override;

    /// The methods of PYL_PXDataCollection.
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

private:
    using Collection = PYL::CmpiManagedInstanceCollection;

    /// Calls `answer` with the collection that the class of the path is served from.
    template <typename Answer>
    void _answerClass(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                      Answer answer);
    /// Calls `answer` with each collection that may have associations of the path.
    template <typename Answer>
    void _answerAround(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                       const CmpiCpp::CmpiName& associationClass, Answer answer);

    CmpiCpp::CmpiBroker _broker;
    Logger _log;
    std::shared_ptr<const PYL::ProfileDB> _profiles;
    Conformance _conformance;
    Collection _unchanging;
};

}  // namespace profiles
