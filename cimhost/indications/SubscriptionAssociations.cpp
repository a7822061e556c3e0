#include "cimhost/indications/SubscriptionModule.h"
#include "cimhost/indications/Subscriptions.h"
#include "cimhost/objects/Entry.h"
#include "cimhost/operations/HostAssociations.h"
#include "cimhost/operations/Target.h"

#include <functional>
#include <string_view>
#include <utility>

// Walks from filters to destinations and back, over the subscriptions in the namespace of the
// source.

namespace cimhost {

namespace {

constexpr const char* subscriptionClass = "CIM_IndicationSubscription";

std::string_view orEmpty(const char* text) noexcept {
    return text ? text : std::string_view();
}

struct Walk {
    Target target;
    const ObjectPath& source;
    std::vector<Instance> subscriptions;
};

Walk makeWalk(const SubscriptionModule& module, const CMPIObjectPath* path) {
    const ObjectPath& source = modelOf(path);
    const Target target = requireTarget(module.broker().repository(), {}, source);
    return {target, source, module.subscriptions().all(target.nameSpace, subscriptionClass)};
}

/// Runs the work of an MI function and ends its result.
template <typename Work>
CMPIStatus answer(const CMPIAssociationMI* mi, const CMPIResult* result, Work&& work) noexcept {
    const auto& module = *static_cast<const SubscriptionModule*>(mi->hdl);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    run(module.broker(), &status, [&](CMPIrc&) {
        work(module);
        result->ft->returnDone(result);
        return 0;
    });
    return status;
}

CMPIStatus walkAssociators(const CMPIAssociationMI* mi, const CMPIResult* result,
                           const CMPIObjectPath* path, const AssociationFilter& filter,
                           void (*deliver)(const SubscriptionModule&, const CMPIResult*,
                                           const ObjectPath&)) noexcept {
    return answer(mi, result, [&](const SubscriptionModule& module) {
        const Walk walk = makeWalk(module, path);
        visitAssociators(walk.subscriptions, module.broker().repository(), walk.target, walk.source,
                         filter, [&](const ObjectPath& end) { deliver(module, result, end); });
    });
}

AssociationFilter filterOf(const char* associationClass, const char* resultClass, const char* role,
                           const char* resultRole) {
    return {std::string(orEmpty(associationClass)), std::string(orEmpty(resultClass)),
            std::string(orEmpty(role)), std::string(orEmpty(resultRole))};
}

CMPIStatus cleanup(CMPIAssociationMI*, const CMPIContext*, CMPIBoolean) noexcept {
    return {CMPI_RC_OK, nullptr};
}

CMPIStatus associators(CMPIAssociationMI* mi, const CMPIContext*, const CMPIResult* result,
                       const CMPIObjectPath* path, const char* associationClass,
                       const char* resultClass, const char* role, const char* resultRole,
                       const char**) noexcept {
    const auto deliver = [](const SubscriptionModule& module, const CMPIResult* sink,
                            const ObjectPath& end) {
        std::optional<Instance> found = module.subscriptions().find(end);
        if (!found) return;
        requireTaken(
            sink->ft->returnInstance(sink, makeInstance(module.broker(), std::move(*found))));
    };
    return walkAssociators(mi, result, path,
                           filterOf(associationClass, resultClass, role, resultRole), deliver);
}

CMPIStatus associatorNames(CMPIAssociationMI* mi, const CMPIContext*, const CMPIResult* result,
                           const CMPIObjectPath* path, const char* associationClass,
                           const char* resultClass, const char* role,
                           const char* resultRole) noexcept {
    const auto deliver = [](const SubscriptionModule& module, const CMPIResult* sink,
                            const ObjectPath& end) {
        requireTaken(sink->ft->returnObjectPath(sink, makeObjectPath(module.broker(), end)));
    };
    return walkAssociators(mi, result, path,
                           filterOf(associationClass, resultClass, role, resultRole), deliver);
}

CMPIStatus references(CMPIAssociationMI* mi, const CMPIContext*, const CMPIResult* result,
                      const CMPIObjectPath* path, const char* resultClass, const char* role,
                      const char**) noexcept {
    return answer(mi, result, [&](const SubscriptionModule& module) {
        const Walk walk = makeWalk(module, path);
        visitReferences(walk.subscriptions, walk.target, walk.source, orEmpty(resultClass),
                        orEmpty(role), [&](const Instance& instance, const Class&) {
                            requireTaken(result->ft->returnInstance(
                                result, makeInstance(module.broker(), instance)));
                        });
    });
}

CMPIStatus referenceNames(CMPIAssociationMI* mi, const CMPIContext*, const CMPIResult* result,
                          const CMPIObjectPath* path, const char* resultClass,
                          const char* role) noexcept {
    return answer(mi, result, [&](const SubscriptionModule& module) {
        const Walk walk = makeWalk(module, path);
        visitReferences(walk.subscriptions, walk.target, walk.source, orEmpty(resultClass),
                        orEmpty(role), [&](const Instance& instance, const Class&) {
                            requireTaken(result->ft->returnObjectPath(
                                result, makeObjectPath(module.broker(), instance.path)));
                        });
    });
}

}  // namespace

const CMPIAssociationMIFT subscriptionAssociations = {
    CMPIVersion200, CMPIVersion200, "subscriptions of cimhost",
    cleanup,        associators,    associatorNames,
    references,     referenceNames,
    nullptr,  // 2.1
    nullptr,
};

}  // namespace cimhost
