#pragma once

#include "cimhost/modules/ModuleHost.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/objects/Objects.h"
#include "cimhost/query/WqlQuery.h"

#include <list>
#include <memory>
#include <string>
#include <vector>

namespace cimhost {

/// What providers are told of a filter.
struct FilterMeaning {
    std::shared_ptr<const WqlQuery> query;
    std::vector<std::string> nameSpaces;
};

/// Asks indication providers to serve filters and tells them when nobody wants them any more.
///
/// The providers of a filter are those registered, for indications, for the class behind FROM or a
/// subclass, in each namespace that the filter names. Each is asked in turn: authorizeFilter,
/// mustPoll (whose answer is only logged: nothing is polled) and activateFilter; then
/// enableIndications, before its first filter takes effect. At the end come deActivateFilter and,
/// after a provider's last filter, disableIndications. `first` and `last` tell of the filters of
/// one provider for one class. The MI of a provider with an active filter stays loaded. One thread
/// at a time.
class FilterActivation {
public:
    /// Broker and modules outlive this.
    FilterActivation(const Broker& broker, ModuleHost& modules);
    ~FilterActivation();
    FilterActivation(const FilterActivation&) = delete;
    FilterActivation& operator=(const FilterActivation&) = delete;

    class Active;

    /// Activates the filter at all its providers. Throws what the first that refuses answers, once
    /// the others have been told that it is off. No provider at all is logged.
    std::shared_ptr<Active> activate(const RequestContext& request, const FilterMeaning& filter);

    /// Tells the filter's providers that indications are accepted, where they do not know yet. What
    /// they answer is logged.
    void enable(const RequestContext& request, Active& filter);

    /// Ends it. A provider that refuses is logged: the filter is off in any case.
    void deactivate(const RequestContext& request, Active& filter) noexcept;

    /// It is active at an MI that takes no more calls but is still there for it.
    bool isLeaving(const Active& filter) const noexcept;

private:
    struct Provider;
    struct Activation;

    std::vector<Activation> _providersOf(const FilterMeaning& filter) const;
    void _activate(const RequestContext& request, const Active& filter, Activation& activation);
    void _disable(const RequestContext& request, const std::string& nameSpace,
                  Provider& provider) noexcept;
    void _deactivate(const RequestContext& request, const Active& filter,
                     Activation& activation) noexcept;
    Provider& _join(const Registration& registration);
    void _leave(Provider& provider);
    void _warn(const std::string& provider, const std::string& message) const noexcept;

    const Broker& _broker;
    ModuleHost& _modules;
    std::list<std::unique_ptr<Provider>> _providers;  ///< with active filters
};

}  // namespace cimhost
