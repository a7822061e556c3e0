#include "cimhost/indications/FilterCall.h"

#include "cimhost/objects/SelectExpHandle.h"
#include "cimhost/repository/Names.h"

#include <utility>

namespace cimhost {
namespace {

/// The class that a lifecycle filter watches: `SourceInstance ISA class`, where all must hold.
std::string watchedClass(const WqlCondition& condition) {
    if (condition.kind == WqlCondition::Kind::all) {
        for (const WqlCondition& part : condition.parts) {
            std::string found = watchedClass(part);
            if (!found.empty()) return found;
        }
    }
    if (condition.kind != WqlCondition::Kind::predicate) return {};
    const WqlPredicate& predicate = condition.predicate;
    const auto* const property = std::get_if<WqlProperty>(&predicate.left);
    if (predicate.operation != WqlOperator::isA || !property || property->parts.size() != 1 ||
        !equalNames(property->parts.front(), "SourceInstance")) {
        return {};
    }
    return std::get<Value>(predicate.right).get<Text>()->str();
}

RequestContext in(RequestContext request, const std::string& nameSpace) {
    request.nameSpace = nameSpace;
    request.flags = 0;
    return request;
}

}  // namespace

void PollAnswer::data(const Value& value) {
    const auto* const flag = value.get<bool>();
    insists = flag && *flag;
}

FilterCall::FilterCall(const Broker& broker, RequestContext request,
                       const std::shared_ptr<const WqlQuery>& query, const std::string& nameSpace)
    : _className(query->className),
      _namesNoClass(broker.manner().has(Habit::passesNoClassToFilters)),
      _owner(request.principal),
      _call(broker, in(std::move(request), nameSpace), _answer),
      _filter(makeSelectExp(broker, query)) {
    ObjectPath path;
    path.nameSpace = nameSpace;
    if (query->condition) path.className = watchedClass(*query->condition);
    _path = makeObjectPath(broker, std::move(path));
}

void FilterCall::authorize(const MiUse<CMPIIndicationMI>& use) {
    _call.tell(use, &CMPIIndicationMIFT::authorizeFilter, _filter, _className.c_str(), _path,
               _owner.c_str());
}

bool FilterCall::mustPoll(const MiUse<CMPIIndicationMI>& use) {
    if (use.get()->ft->ftVersion < CMPIVersion210) {
        // The slot had no result then, so that there is no answer to be had but a status.
        using Older = CMPIStatus (*)(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp*,
                                     const char*, const CMPIObjectPath*);
        const auto older =
            reinterpret_cast<Older>(reinterpret_cast<void*>(use.get()->ft->mustPoll));
        _call.tellAs(use, "mustPoll", older, _filter, _className.c_str(), _path);
        return false;
    }
    _call.run(use, &CMPIIndicationMIFT::mustPoll, _filter, _className.c_str(), _path);
    return _answer.insists;
}

void FilterCall::activate(const MiUse<CMPIIndicationMI>& use, bool isFirst) {
    _call.tell(use, &CMPIIndicationMIFT::activateFilter, _filter,
               _namesNoClass ? nullptr : _className.c_str(), _path, CMPIBoolean{isFirst});
}

void FilterCall::deactivate(const MiUse<CMPIIndicationMI>& use, bool isLast) {
    _call.tell(use, &CMPIIndicationMIFT::deActivateFilter, _filter,
               _namesNoClass ? "" : _className.c_str(), _path, CMPIBoolean{isLast});
}

void enableIndications(const Broker& broker, RequestContext request, const std::string& nameSpace,
                       const MiUse<CMPIIndicationMI>& use) {
    if (!use.get()->ft->enableIndications) return;
    PollAnswer nothing;
    request.nameSpace = nameSpace;
    ProviderCall::atStart(broker, request, nothing)
        .tell(use, &CMPIIndicationMIFT::enableIndications);
}

void disableIndications(const Broker& broker, RequestContext request, const std::string& nameSpace,
                        const MiUse<CMPIIndicationMI>& use) {
    if (!use.get()->ft->disableIndications) return;
    PollAnswer nothing;
    request.nameSpace = nameSpace;
    ProviderCall(broker, request, nothing).tell(use, &CMPIIndicationMIFT::disableIndications);
}

}  // namespace cimhost
