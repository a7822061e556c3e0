#pragma once

#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiName.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/CmpiResult.h"
#include "common/CmpiManagedInstance.h"
#include "common/detail/LocalRequest.h"
#include "platform/logger/Logger.h"

#include <functional>
#include <string>
#include <vector>

namespace PYL {

/// How an instance collection answers one association request: from the visible associations among
/// its instances, in their order. Each operation delivers what it finds and returns how many that
/// were. What an instance, a sink or the object manager throws goes on to the caller.
///
/// For one operation, under the collection's lock.
class AssociationWalk {
public:
    /// The instance of the collection with this path, or nullptr.
    using Owned = std::function<CmpiManagedInstance*(const CmpiCpp::CmpiObjectPath&)>;

    /// What is given must outlive the walk. An empty `resultClass` lets everything through: it
    /// filters the far ends of associators, and of references the associations.
    AssociationWalk(const std::vector<CmpiManagedInstance*>& instances, Logger& log,
                    const CmpiCpp::CmpiObjectPath& request, const CmpiCpp::CmpiName& resultClass)
        : _instances(instances), _log(log), _request(request), _resultClass(resultClass.str()) {}

    /// The far ends; those that are not owned come from an up-call, and one that fails is logged
    /// and left out.
    int associators(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& ctx,
                    const std::string& assocClass, const Owned& owned);
    /// Their paths, as the associations give them.
    int associatorNames(CmpiCpp::CmpiObjectPathResult& result, const std::string& assocClass);

    /// The associations that involve the request, each once.
    int references(CmpiCpp::CmpiInstanceResult& result);
    int referenceNames(CmpiCpp::CmpiObjectPathResult& result);

private:
    int _deliverOwned(CmpiCpp::CmpiInstanceResult& result, CmpiManagedInstance& association,
                      CmpiManagedInstance& target);
    int _deliverUpCall(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& ctx,
                       CmpiManagedInstance& association, const CmpiCpp::CmpiObjectPath& farEnd);
    template <typename Deliver>
    int _refer(Deliver deliver);

    const std::vector<CmpiManagedInstance*>& _instances;
    Logger& _log;
    LocalRequest _request;
    std::string _resultClass;
};

}  // namespace PYL
