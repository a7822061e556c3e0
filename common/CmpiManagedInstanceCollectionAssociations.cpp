// The association operations of the collection.

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiMBService.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "common/PYLUtil.h"
#include "common/detail/LocalRequest.h"
#include "common/detail/LockedWalk.h"

#include <string>
#include <typeinfo>

namespace PYL {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiInstanceResult;
using CmpiCpp::CmpiMBService;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiObjectPathResult;
using CmpiCpp::CmpiStatus;

namespace {

void refuse(const Logger& log, const char* line, const char* message) {
    log.warn(line);
    throw CmpiStatus(CMPI_RC_ERR_NOT_SUPPORTED, message);
}

void refuseRole(const Logger& log, const CmpiName& role) {
    if (!role.empty()) refuse(log, "role filter not supported", "role filters not supported");
}

void refuseResultRole(const Logger& log, const CmpiName& resultRole) {
    if (!resultRole.empty()) {
        refuse(log, "resultRole filter not supported", "resultRole filters not supported");
    }
}

void refuseProperties(const Logger& log, const char** properties) {
    if (properties) {
        refuse(log, "property filters not supported!", "property filters not supported");
    }
}

/// True when the path's class is of the filter's class or a subclass, or there is no filter.
bool passes(const CmpiObjectPath& path, const std::string& filter) {
    return filter.empty() || path.classPathIsA(CmpiBroker(PYLUtil::getBroker()), filter);
}

/// The same for an association, whose path is not asked for when there is no filter.
bool isOfClass(CmpiManagedInstance& association, const std::string& filter) {
    return filter.empty() || passes(association.getPath(), filter);
}

bool inNameSpaceOf(CmpiManagedInstance& association, LocalRequest& request) {
    return request.path().getNameSpace() == association.getPath().getNameSpace();
}

/// Tells the associations of a walk from other instances. Most of those stand next to one of their
/// own class, and a cast that fails searches all bases of the class: so it is asked once in a row.
class AssociationKinds {
public:
    /// Calls `two` with an association of two ends and `many` with one of many; neither with
    /// another instance.
    template <typename Two, typename Many>
    void apply(CmpiManagedInstance& instance, Two two, Many many) {
        const auto& type = typeid(instance);
        if (&type == _other) return;
        if (auto* association = dynamic_cast<CmpiManagedInstanceAssociation*>(&instance)) {
            two(*association);
        } else if (auto* multi = dynamic_cast<CmpiManagedInstanceMultiAssociation*>(&instance)) {
            many(*multi);
        } else {
            _other = &type;
        }
    }

private:
    const std::type_info* _other = nullptr;
};

/// Visits the far ends of an association as seen from the request. A two-ended association counts
/// only in the request's own namespace. An instance that is no association has none.
template <typename Visit>
void forEachFarEnd(CmpiManagedInstance& instance, AssociationKinds& kinds, LocalRequest& request,
                   Visit visit) {
    kinds.apply(
        instance,
        [&](CmpiManagedInstanceAssociation& association) {
            const auto farEnd = association.getAssociatedPath(request.path());
            // The namespace first, as in involves(): so an association that cannot tell its path
            // ends every operation, and not just those that ask for it before the far end.
            if (inNameSpaceOf(association, request) && !farEnd.empty()) visit(farEnd);
        },
        [&](CmpiManagedInstanceMultiAssociation& multi) {
            for (const auto& farEnd : multi.getAssociatedPaths(request.path())) {
                if (!farEnd.empty()) visit(farEnd);
            }
        });
}

/// True when the association involves the request. Of several far ends the first one tells, since
/// an association is reported once.
bool involves(CmpiManagedInstance& instance, AssociationKinds& kinds, LocalRequest& request) {
    bool found = false;
    kinds.apply(
        instance,
        [&](CmpiManagedInstanceAssociation& association) {
            found = inNameSpaceOf(association, request) &&
                    !association.getAssociatedPath(request.path()).empty();
        },
        [&](CmpiManagedInstanceMultiAssociation& multi) {
            const auto farEnds = multi.getAssociatedPaths(request.path());
            found = !farEnds.empty() && !farEnds.front().empty();
        });
    return found;
}

bool usable(const CmpiManagedInstance* instance) {
    return instance && instance->visible();
}

void logFilterFailure(const Logger& log, const char* format, const CmpiObjectPath& path) {
    if (log.infoEnabled()) log.info(format, path.getClassName().c_str());
}

constexpr const char* filterFailed = "%s result class filter failed";

}  // namespace

int CmpiManagedInstanceCollection::_deliverOwned(CmpiInstanceResult& result,
                                                 CmpiManagedInstance& association,
                                                 CmpiManagedInstance& target,
                                                 const std::string& resultClass) {
    if (!resultClass.empty() && !passes(target.getPath(), resultClass)) {
        // The line names the association's class, which tells whose far end was left out.
        logFilterFailure(_log, filterFailed, association.getPath());
        return 0;
    }
    if (_log.infoEnabled()) _log.info("deliver: %s", target.getPath().str());
    result.deliver(target.getInstance());
    return 1;
}

int CmpiManagedInstanceCollection::_deliverUpCall(
    CmpiInstanceResult& result, const CmpiContext& ctx, CmpiManagedInstance& association,
    const CmpiObjectPath& farEnd, const std::string& resultClass, const char** properties) {
    if (_log.infoEnabled()) {
        _log.info("%s references path %s, not owned by this provider. Performing Upcall",
                  association.getPath().getClassName().c_str(), farEnd.str());
    }
    const CmpiMBService service(PYLUtil::getBroker(), _log);
    try {
        const auto instance = service.getInstance(ctx, farEnd, properties);
        _log.info("got instance via upcall");
        const auto path = instance.getPath();
        if (!passes(path, resultClass)) {
            logFilterFailure(_log, "%s result class filter failed on upcall instance", path);
            return 0;
        }
        if (_log.infoEnabled()) _log.info("deliver upcall instance: %s", path.str());
        result.deliver(instance);
        return 1;
    } catch (...) {
        // One far end that another provider cannot give must not cost the client the others.
        _log.error("upcall failed!");
        return 0;
    }
}

int CmpiManagedInstanceCollection::_deliverFarEnd(
    CmpiInstanceResult& result, const CmpiContext& ctx, CmpiManagedInstance& association,
    const CmpiObjectPath& farEnd, const std::string& resultClass, const char** properties) {
    const int index = _findIndex(farEnd);
    if (index < 0) return _deliverUpCall(result, ctx, association, farEnd, resultClass, properties);
    return _deliverOwned(result, association, *_collection[static_cast<std::size_t>(index)],
                         resultClass);
}

int CmpiManagedInstanceCollection::associators(CmpiInstanceResult& result, const CmpiContext& ctx,
                                               const CmpiObjectPath& path,
                                               const CmpiName& assocClass,
                                               const CmpiName& resultClass, const CmpiName& role,
                                               const CmpiName& resultRole,
                                               const char** properties) {
    refuseRole(_log, role);
    refuseResultRole(_log, resultRole);
    refuseProperties(_log, properties);
    return lockedWalk(_mutex, _log, "associators", "associators() exception:", [&] {
        const auto associationFilter = assocClass.str();
        const auto resultFilter = resultClass.str();
        LocalRequest request(path);
        AssociationKinds kinds;
        int count = 0;
        for (auto* instance : _collection) {
            if (!usable(instance)) continue;
            forEachFarEnd(*instance, kinds, request, [&](const CmpiObjectPath& farEnd) {
                if (isOfClass(*instance, associationFilter)) {
                    count +=
                        _deliverFarEnd(result, ctx, *instance, farEnd, resultFilter, properties);
                }
            });
        }
        return count;
    });
}

int CmpiManagedInstanceCollection::associatorNames(CmpiObjectPathResult& result, const CmpiContext&,
                                                   const CmpiObjectPath& path,
                                                   const CmpiName& assocClass,
                                                   const CmpiName& resultClass,
                                                   const CmpiName& role,
                                                   const CmpiName& resultRole) {
    refuseRole(_log, role);
    refuseResultRole(_log, resultRole);
    return lockedWalk(_mutex, _log, "associatorNames", "associatorNames() exception:", [&] {
        const auto associationFilter = assocClass.str();
        const auto resultFilter = resultClass.str();
        LocalRequest request(path);
        AssociationKinds kinds;
        int count = 0;
        const auto deliver = [&](CmpiManagedInstance& association, const CmpiObjectPath& farEnd) {
            if (!isOfClass(association, associationFilter)) return;
            if (!passes(farEnd, resultFilter)) {
                logFilterFailure(_log, filterFailed, farEnd);
                return;
            }
            if (_log.infoEnabled()) _log.info("deliver: %s", farEnd.str());
            result.deliver(farEnd);
            ++count;
        };
        for (auto* instance : _collection) {
            if (usable(instance)) {
                forEachFarEnd(*instance, kinds, request,
                              [&](const CmpiObjectPath& farEnd) { deliver(*instance, farEnd); });
            }
        }
        return count;
    });
}

template <typename Deliver>
int CmpiManagedInstanceCollection::_refer(const CmpiObjectPath& path, const CmpiName& resultClass,
                                          Deliver deliver) {
    const auto filter = resultClass.str();
    LocalRequest request(path);
    AssociationKinds kinds;
    int count = 0;
    for (auto* instance : _collection) {
        if (!usable(instance) || !involves(*instance, kinds, request)) continue;
        if (!filter.empty()) {
            const auto associationPath = instance->getPath();
            if (!passes(associationPath, filter)) {
                logFilterFailure(_log, filterFailed, associationPath);
                continue;
            }
        }
        ++count;
        deliver(*instance);
    }
    return count;
}

int CmpiManagedInstanceCollection::references(CmpiInstanceResult& result, const CmpiContext&,
                                              const CmpiObjectPath& path,
                                              const CmpiName& resultClass, const CmpiName& role,
                                              const char** properties) {
    refuseRole(_log, role);
    refuseProperties(_log, properties);
    return lockedWalk(_mutex, _log, "references", "references exception:", [&] {
        return _refer(path, resultClass, [&](CmpiManagedInstance& instance) {
            result.deliver(instance.getInstance());
        });
    });
}

int CmpiManagedInstanceCollection::referenceNames(CmpiObjectPathResult& result, const CmpiContext&,
                                                  const CmpiObjectPath& path,
                                                  const CmpiName& resultClass,
                                                  const CmpiName& role) {
    refuseRole(_log, role);
    return lockedWalk(_mutex, _log, "referenceNames", "referenceNames exception:", [&] {
        return _refer(path, resultClass,
                      [&](CmpiManagedInstance& instance) { result.deliver(instance.getPath()); });
    });
}

}  // namespace PYL
