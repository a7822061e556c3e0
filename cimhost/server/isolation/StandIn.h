#pragma once

#include "cimhost/modules/Module.h"
#include "cimhost/query/WqlQuery.h"
#include "cimhost/server/isolation/ModuleProcess.h"

#include <list>
#include <memory>
#include <mutex>
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
        std::string className;  ///< behind FROM
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

    /// What a process that starts anew is told again.
    void noteActive(Filter filter);
    void noteInactive(const Filter& filter);
    void noteEnabled(const RequestContext& request, bool isEnabled);

private:
    void _restore(ClientTransport& transport);

    const Broker& _broker;
    ModuleProcess& _process;
    std::string _provider;
    CMPIInstanceMI _instanceMi;
    CMPIAssociationMI _associationMi;
    CMPIMethodMI _methodMi;
    CMPIIndicationMI _indicationMi;
    std::mutex _mutex;
    std::list<Filter> _filters;
    RequestContext _enabling;  ///< the request that enabled indications
    bool _isEnabled = false;
};

}  // namespace cimhost
