#include "cimhost/indications/FilterActivation.h"

#include "cimhost/modules/ProviderCall.h"
#include "cimhost/objects/SelectExpHandle.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <utility>

namespace cimhost {

/// A provider with active filters.
struct FilterActivation::Provider {
    Provider(const Registration& registered, MiUse<CMPIIndicationMI> mi)
        : registration(registered), use(std::move(mi)) {}

    const Registration& registration;
    MiUse<CMPIIndicationMI> use;  ///< keeps the MI
    std::size_t filters = 0;
    bool isEnabled = false;
    std::map<std::string, std::size_t, NameLess> filtersByClass;
};

/// One filter at one provider, for one namespace.
struct FilterActivation::Activation {
    const Registration* registration = nullptr;
    std::string nameSpace;
    Provider* provider = nullptr;  ///< once it is active
};

class FilterActivation::Active {
public:
    FilterMeaning filter;
    std::vector<Activation> activations;
};

namespace {

/// Notes whether mustPoll answered TRUE.
class PollAnswer final : public ResultSink {
public:
    void data(const Value& value) override {
        const auto* const flag = value.get<bool>();
        insists = flag && *flag;
    }

    bool insists = false;
};

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

/// One call of an indication MI about a filter.
class FilterCall {
public:
    FilterCall(const Broker& broker, RequestContext request, const FilterMeaning& filter,
               const std::string& nameSpace)
        : _className(filter.query->className),
          _namesNoClass(broker.manner().has(Habit::passesNoClassToFilters)),
          _owner(request.principal),
          _call(broker, _in(std::move(request), nameSpace), _answer),
          _filter(makeSelectExp(broker, filter.query)) {
        ObjectPath path;
        path.nameSpace = nameSpace;
        if (filter.query->condition) path.className = watchedClass(*filter.query->condition);
        _path = makeObjectPath(broker, std::move(path));
    }

    void authorize(const MiUse<CMPIIndicationMI>& use) {
        _call.tell(use, &CMPIIndicationMIFT::authorizeFilter, _filter, _className.c_str(), _path,
                   _owner.c_str());
    }

    /// True when the provider wants to be polled.
    bool mustPoll(const MiUse<CMPIIndicationMI>& use) {
        if (use.get()->ft->ftVersion < CMPIVersion210) {
            // The slot had no result then, so that there is no answer to be had but a status.
            using Older = CMPIStatus (*)(CMPIIndicationMI*, const CMPIContext*,
                                         const CMPISelectExp*, const char*, const CMPIObjectPath*);
            const auto older =
                reinterpret_cast<Older>(reinterpret_cast<void*>(use.get()->ft->mustPoll));
            _call.tellAs(use, "mustPoll", older, _filter, _className.c_str(), _path);
            return false;
        }
        _call.run(use, &CMPIIndicationMIFT::mustPoll, _filter, _className.c_str(), _path);
        return _answer.insists;
    }

    void activate(const MiUse<CMPIIndicationMI>& use, bool isFirst) {
        _call.tell(use, &CMPIIndicationMIFT::activateFilter, _filter,
                   _namesNoClass ? nullptr : _className.c_str(), _path, CMPIBoolean{isFirst});
    }

    void deactivate(const MiUse<CMPIIndicationMI>& use, bool isLast) {
        _call.tell(use, &CMPIIndicationMIFT::deActivateFilter, _filter,
                   _namesNoClass ? "" : _className.c_str(), _path, CMPIBoolean{isLast});
    }

private:
    static RequestContext _in(RequestContext request, const std::string& nameSpace) {
        request.nameSpace = nameSpace;
        request.flags = 0;
        return request;
    }

    std::string _className;
    bool _namesNoClass;  ///< where filters come and go
    std::string _owner;
    PollAnswer _answer;
    ProviderCall _call;
    CMPISelectExp* _filter;
    CMPIObjectPath* _path = nullptr;
};

}  // namespace

FilterActivation::FilterActivation(const Broker& broker, ModuleHost& modules)
    : _broker(broker), _modules(modules) {}

FilterActivation::~FilterActivation() = default;

void FilterActivation::_log(BrokerLog::Level level, const std::string& provider,
                            const std::string& message) const noexcept {
    _broker.log().write(level, provider, message);
}

std::vector<FilterActivation::Activation> FilterActivation::_providersOf(
    const FilterMeaning& filter) const {
    std::vector<Activation> found;
    for (const std::string& name : filter.nameSpaces) {
        const NameSpace& nameSpace = _broker.repository().get(name);
        for (const Registration* const each :
             _modules.registrations().all(ProviderType::indication, name)) {
            const bool isKnown = std::any_of(found.begin(), found.end(), [&](const auto& other) {
                return other.registration->provider == each->provider && other.nameSpace == name;
            });
            const bool isMeant = equalNames(each->className, filter.query->className) ||
                                 nameSpace.isA(each->className, filter.query->className);
            if (isMeant && !isKnown) found.push_back({each, name, nullptr});
        }
    }
    return found;
}

std::shared_ptr<FilterActivation::Active> FilterActivation::activate(const RequestContext& request,
                                                                     const FilterMeaning& filter) {
    auto active = std::make_shared<Active>();
    active->filter = filter;
    active->activations = _providersOf(filter);
    if (active->activations.empty()) {
        _log(BrokerLog::Level::warning, "indications",
             "no provider is registered for the indications of class " + filter.query->className);
    }
    try {
        for (Activation& activation : active->activations) _activate(request, *active, activation);
    } catch (...) {
        deactivate(request, *active);
        throw;
    }
    return active;
}

FilterActivation::Provider& FilterActivation::_join(const Registration& registration) {
    for (const auto& provider : _providers) {
        if (provider->registration.provider == registration.provider) return *provider;
    }
    _providers.push_back(
        std::make_unique<Provider>(registration, _modules.use<CMPIIndicationMI>(registration)));
    return *_providers.back();
}

void FilterActivation::_leave(Provider& provider) {
    if (provider.filters != 0) return;
    std::erase_if(_providers, [&](const auto& other) { return other.get() == &provider; });
}

void FilterActivation::_activate(const RequestContext& request, const Active& active,
                                 Activation& activation) {
    Provider& provider = _join(*activation.registration);
    const std::string& className = active.filter.query->className;
    try {
        FilterCall call(_broker, request, active.filter, activation.nameSpace);
        const CMPIIndicationMIFT& table = *provider.use.get()->ft;
        const bool isAuthorized = _broker.manner().has(Habit::skipsAuthorization);
        if (table.authorizeFilter && !isAuthorized) call.authorize(provider.use);
        if (table.mustPoll && !isAuthorized) {
            try {
                if (call.mustPoll(provider.use)) {
                    _log(BrokerLog::Level::warning, provider.registration.provider,
                         "wants to be polled for class " + className + ", which is not done");
                }
            } catch (const CimError&) {
                // A provider that does not know about polling need not be polled.
            }
        }
        const auto known = provider.filtersByClass.find(className);
        call.activate(provider.use, known == provider.filtersByClass.end());
    } catch (...) {
        _leave(provider);
        throw;
    }
    ++provider.filters;
    ++provider.filtersByClass[className];
    activation.provider = &provider;
}

void FilterActivation::enable(const RequestContext& request, Active& active) {
    for (const Activation& activation : active.activations) {
        Provider& provider = *activation.provider;
        if (std::exchange(provider.isEnabled, true)) continue;
        if (!provider.use.get()->ft->enableIndications) continue;
        try {
            PollAnswer nothing;
            RequestContext context = request;
            context.nameSpace = activation.nameSpace;
            ProviderCall::atStart(_broker, context, nothing)
                .tell(provider.use, &CMPIIndicationMIFT::enableIndications);
        } catch (const CimError& error) {
            _log(BrokerLog::Level::warning, provider.registration.provider,
                 std::string("enableIndications: ") + error.what());
        }
    }
}

void FilterActivation::deactivate(const RequestContext& request, Active& active) noexcept {
    for (Activation& activation : active.activations) {
        if (activation.provider) _deactivate(request, active, activation);
    }
}

void FilterActivation::_disable(const RequestContext& request, const std::string& nameSpace,
                                Provider& provider) noexcept {
    try {
        if (provider.isEnabled && provider.use.get()->ft->disableIndications) {
            PollAnswer nothing;
            RequestContext context = request;
            context.nameSpace = nameSpace;
            ProviderCall(_broker, context, nothing)
                .tell(provider.use, &CMPIIndicationMIFT::disableIndications);
        }
    } catch (const std::exception& error) {
        _log(BrokerLog::Level::warning, provider.registration.provider,
             std::string("disableIndications: ") + error.what());
    }
}

void FilterActivation::_deactivate(const RequestContext& request, const Active& active,
                                   Activation& activation) noexcept {
    Provider& provider = *std::exchange(activation.provider, nullptr);
    const std::string& className = active.filter.query->className;
    const bool disablesFirst =
        _broker.manner().has(Habit::disablesBeforeTheLastFilter) && provider.filters == 1;
    if (disablesFirst) _disable(request, activation.nameSpace, provider);
    try {
        const auto count = provider.filtersByClass.find(className);
        const bool isLast = --count->second == 0;
        if (isLast) provider.filtersByClass.erase(count);
        FilterCall(_broker, request, active.filter, activation.nameSpace)
            .deactivate(provider.use, isLast);
    } catch (const std::exception& error) {
        _log(BrokerLog::Level::warning, provider.registration.provider,
             std::string("deActivateFilter: ") + error.what());
    }
    if (--provider.filters != 0) return;
    if (!disablesFirst) _disable(request, activation.nameSpace, provider);
    _leave(provider);
}

}  // namespace cimhost
