#pragma once

#include "cimhost/modules/Module.h"
#include "cimhost/query/WqlQuery.h"
#include "cimhost/server/isolation/ModuleProcess.h"

#include <list>
#include <memory>
#include <string>

namespace cimhost {

/// Stands for a provider whose module runs in a process of its own: each function of its MIs asks
/// that process the same. Safe from several threads.
class StandIn {
public:
    /// A filter that is active.
    struct Filter {
        RequestContext request;
        std::string query;
        std::string language;
        std::string className;        ///< behind FROM
        Clock::time_point process{};  ///< when the one that it is active in was started
    };

    /// Broker and process outlive this.
    StandIn(const Broker& broker, ModuleProcess& process, std::string provider);
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;

    const Broker& broker() const noexcept { return _broker; }
    const std::string& provider() const noexcept { return _provider; }

    CMPIInstanceMI* instanceMi() noexcept { return &_instanceMi; }
    CMPIAssociationMI* associationMi() noexcept { return &_associationMi; }
    CMPIMethodMI* methodMi() noexcept { return &_methodMi; }
    CMPIIndicationMI* indicationMi() noexcept { return &_indicationMi; }

    ModuleProcess& process() noexcept { return _process; }

    /// @{
    /// What a process that starts anew is told again. With its lasting().
    void noteActive(Filter filter);
    /// Whether the process that runs now knew of it.
    bool noteInactive(const Filter& filter);
    void noteEnabled(const RequestContext& request, Clock::time_point process);
    void noteDisabled() { _isEnabled = false; }
    /// @}

private:
    void _restore(ClientTransport& transport, Clock::time_point process);

    const Broker& _broker;
    ModuleProcess& _process;
    std::string _provider;
    CMPIInstanceMI _instanceMi;
    CMPIAssociationMI _associationMi;
    CMPIMethodMI _methodMi;
    CMPIIndicationMI _indicationMi;
    std::list<Filter> _filters;
    RequestContext _enabling;        ///< the request that enabled indications
    Clock::time_point _enabledIn{};  ///< when the process that it enabled them in was started
    bool _isEnabled = false;
};

}  // namespace cimhost
