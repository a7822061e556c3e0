#include "cimhost/indications/FilterActivation.h"

#include "cimhost/indications/FilterCall.h"
#include "cimhost/modules/ProviderCall.h"
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

FilterActivation::FilterActivation(const Broker& broker, ModuleHost& modules)
    : _broker(broker), _modules(modules) {}

FilterActivation::~FilterActivation() = default;

void FilterActivation::_warn(const std::string& provider,
                             const std::string& message) const noexcept {
    _broker.log().write(BrokerLog::Level::warning, provider, message);
}

std::vector<FilterActivation::Activation> FilterActivation::_providersOf(
    const FilterMeaning& filter) const {
    std::vector<Activation> found;
    for (const std::string& name : filter.nameSpaces) {
        const NameSpace& nameSpace = _broker.repository().get(name);
        for (const Registration* const each :
             _modules.registrations().all(ProviderType::indication, name)) {
            const bool isKnown = std::ranges::any_of(found, [&](const auto& other) {
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
        _warn("indications",
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
        const bool isSame = provider->registration.provider == registration.provider;
        if (isSame && !provider->use.isLeaving()) return *provider;
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
        FilterCall call(_broker, request, active.filter.query, activation.nameSpace);
        const CMPIIndicationMIFT& table = *provider.use.get()->ft;
        const bool isAuthorized = _broker.manner().has(Habit::skipsAuthorization);
        if (table.authorizeFilter && !isAuthorized) call.authorize(provider.use);
        if (table.mustPoll && !isAuthorized) {
            try {
                if (call.mustPoll(provider.use)) {
                    _warn(provider.registration.provider,
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
        if (provider.isEnabled) continue;
        try {
            enableIndications(_broker, request, activation.nameSpace, provider.use);
            provider.isEnabled = true;
        } catch (const CimError& error) {
            _warn(provider.registration.provider,
                  std::string("enableIndications: ") + error.what());
        }
    }
}

void FilterActivation::deactivate(const RequestContext& request, Active& active) noexcept {
    for (Activation& activation : active.activations) {
        if (activation.provider) _deactivate(request, active, activation);
    }
}

bool FilterActivation::isLeaving(const Active& filter) const noexcept {
    return std::ranges::any_of(filter.activations, [](const Activation& each) {
        return each.provider && each.provider->use.isLeaving();
    });
}

void FilterActivation::_disable(const RequestContext& request, const std::string& nameSpace,
                                Provider& provider) noexcept {
    try {
        if (provider.isEnabled) disableIndications(_broker, request, nameSpace, provider.use);
    } catch (const std::exception& error) {
        _warn(provider.registration.provider, std::string("disableIndications: ") + error.what());
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
        FilterCall(_broker, request, active.filter.query, activation.nameSpace)
            .deactivate(provider.use, isLast);
    } catch (const std::exception& error) {
        _warn(provider.registration.provider, std::string("deActivateFilter: ") + error.what());
    }
    if (--provider.filters != 0) return;
    if (!disablesFirst) _disable(request, activation.nameSpace, provider);
    _leave(provider);
}

}  // namespace cimhost
