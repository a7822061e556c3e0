#pragma once

#include <memory>

#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "common/ProfileDB.h"
#include "platform/logger/Logger.h"
#include "providers/profiles/Conformance.h"

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
    ProfilesProvider(CmpiCpp::CmpiBroker const& broker, Logger& log);

    CMPIBroker* getBroker() override;

    void enumInstanceNames(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                           CmpiCpp::CmpiObjectPathResult& result) override;
    void enumInstances(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                       char const** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void getInstance(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                     char const** properties, CmpiCpp::CmpiInstanceResult& result) override;

    /// The methods of PYL_PXDataCollection.
    void invokeMethod(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                      CmpiCpp::CmpiName const& methodName, CmpiCpp::CmpiArgs const& in,
                      CmpiCpp::CmpiMethodResult& result) override;

    void associators(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                     CmpiCpp::CmpiName const& assocClass, CmpiCpp::CmpiName const& resultClass,
                     CmpiCpp::CmpiName const& role, CmpiCpp::CmpiName const& resultRole,
                     char const** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void associatorNames(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                         CmpiCpp::CmpiName const& assocClass, CmpiCpp::CmpiName const& resultClass,
                         CmpiCpp::CmpiName const& role, CmpiCpp::CmpiName const& resultRole,
                         CmpiCpp::CmpiObjectPathResult& result) override;
    void references(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                    CmpiCpp::CmpiName const& resultClass, CmpiCpp::CmpiName const& role,
                    char const** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void referenceNames(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                        CmpiCpp::CmpiName const& resultClass, CmpiCpp::CmpiName const& role,
                        CmpiCpp::CmpiObjectPathResult& result) override;

private:
    using Collection = PYL::CmpiManagedInstanceCollection;

    /// Calls `answer` with the collection that the class of the path is served from.
    template <typename Answer>
    void _answerClass(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                      Answer answer);
    /// Calls `answer` with each collection that may have associations of the path.
    template <typename Answer>
    void _answerAround(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                       CmpiCpp::CmpiName const& associationClass, Answer answer);

    CmpiCpp::CmpiBroker _broker;
    Logger _log;
    std::shared_ptr<PYL::ProfileDB const> _profiles;
    Conformance _conformance;
    Collection _unchanging;
};

}  // namespace profiles
