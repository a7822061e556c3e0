#include "common/detail/AssociationWalk.h"

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiMBService.h"
#include "common/PYLUtil.h"
#include "common/detail/LogText.h"

#include <typeinfo>

namespace PYL {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiInstanceResult;
using CmpiCpp::CmpiMBService;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiObjectPathResult;

namespace {

/// True when the path's class is the filter's or a subclass, or there is no filter. Object managers
/// differ on the classes of a path without a namespace, so that it is read in that of `home`.
bool passes(const CmpiObjectPath& path, const std::string& filter, const CmpiObjectPath& home) {
    if (filter.empty()) return true;
    const CmpiBroker broker(PYLUtil::getBroker());
    if (!path.getNameSpace().empty()) return path.classPathIsA(broker, filter);
    auto complete = path;
    complete.setNameSpace(home.getNameSpace());
    return complete.classPathIsA(broker, filter);
}

/// The same for an instance, whose path is not asked for when there is no filter.
bool isOfClass(CmpiManagedInstance& instance, const std::string& filter, LocalRequest& request) {
    return filter.empty() || passes(instance.getPath(), filter, request.path());
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

bool usable(const CmpiManagedInstance* instance) { return instance && instance->visible(); }

/// The line for an object left out; `path` gives the path of which it names the class.
template <typename Path>
void logFilterFailure(const Logger& log, const char* format, Path path) {
    if (log.infoEnabled()) log.info(format, logText([&] { return path().getClassName(); }));
}

constexpr const char* filterFailed = "%s result class filter failed";

}  // namespace

int AssociationWalk::_deliverOwned(CmpiInstanceResult& result, CmpiManagedInstance& association,
                                   CmpiManagedInstance& target) {
    if (!isOfClass(target, _resultClass, _request)) {
        // The line names the association's class, which tells whose far end was left out.
        logFilterFailure(_log, filterFailed, [&] { return association.getPath(); });
        return 0;
    }
    if (_log.infoEnabled()) _log.info("deliver: %s", logText([&] { return target.getPath(); }));
    result.deliver(target.getInstance());
    return 1;
}

int AssociationWalk::_deliverUpCall(CmpiInstanceResult& result, const CmpiContext& ctx,
                                    CmpiManagedInstance& association,
                                    const CmpiObjectPath& farEnd) {
    if (_log.infoEnabled()) {
        _log.info("%s references path %s, not owned by this provider. Performing Upcall",
                  logText([&] { return association.getPath().getClassName(); }), logText(farEnd));
    }
    const CmpiMBService service(PYLUtil::getBroker(), _log);
    try {
        const auto instance = service.getInstance(ctx, farEnd, nullptr);
        _log.info("got instance via upcall");
        const auto path = [&instance] { return instance.getPath(); };
        if (!_resultClass.empty() && !passes(path(), _resultClass, farEnd)) {
            logFilterFailure(_log, "%s result class filter failed on upcall instance", path);
            return 0;
        }
        if (_log.infoEnabled()) _log.info("deliver upcall instance: %s", logText(path));
        result.deliver(instance);
        return 1;
    } catch (...) {
        // One far end that another provider cannot give must not cost the client the others.
        _log.error("upcall failed!");
        return 0;
    }
}

int AssociationWalk::associators(CmpiInstanceResult& result, const CmpiContext& ctx,
                                 const std::string& assocClass, const Owned& owned) {
    AssociationKinds kinds;
    int count = 0;
    for (auto* instance : _instances) {
        if (!usable(instance)) continue;
        forEachFarEnd(*instance, kinds, _request, [&](const CmpiObjectPath& farEnd) {
            if (!isOfClass(*instance, assocClass, _request)) return;
            auto* const target = owned(farEnd);
            count += target ? _deliverOwned(result, *instance, *target)
                            : _deliverUpCall(result, ctx, *instance, farEnd);
        });
    }
    return count;
}

int AssociationWalk::associatorNames(CmpiObjectPathResult& result, const std::string& assocClass) {
    AssociationKinds kinds;
    int count = 0;
    const auto deliver = [&](CmpiManagedInstance& association, const CmpiObjectPath& farEnd) {
        if (!isOfClass(association, assocClass, _request)) return;
        if (!passes(farEnd, _resultClass, _request.path())) {
            logFilterFailure(_log, filterFailed, [&] { return farEnd; });
            return;
        }
        if (_log.infoEnabled()) _log.info("deliver: %s", logText(farEnd));
        result.deliver(farEnd);
        ++count;
    };
    for (auto* instance : _instances) {
        if (usable(instance)) {
            forEachFarEnd(*instance, kinds, _request,
                          [&](const CmpiObjectPath& farEnd) { deliver(*instance, farEnd); });
        }
    }
    return count;
}

template <typename Deliver>
int AssociationWalk::_refer(Deliver deliver) {
    AssociationKinds kinds;
    int count = 0;
    for (auto* instance : _instances) {
        if (!usable(instance) || !involves(*instance, kinds, _request)) continue;
        if (!isOfClass(*instance, _resultClass, _request)) {
            logFilterFailure(_log, filterFailed, [&] { return instance->getPath(); });
            continue;
        }
        ++count;
        deliver(*instance);
    }
    return count;
}

int AssociationWalk::references(CmpiInstanceResult& result) {
    return _refer([&](CmpiManagedInstance& instance) { result.deliver(instance.getInstance()); });
}

int AssociationWalk::referenceNames(CmpiObjectPathResult& result) {
    return _refer([&](CmpiManagedInstance& instance) { result.deliver(instance.getPath()); });
}

}  // namespace PYL
