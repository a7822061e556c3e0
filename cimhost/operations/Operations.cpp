#include "cimhost/operations/Operations.h"

#include "cimhost/modules/ModuleHost.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/repository/Names.h"

namespace cimhost {

bool PropertySelection::lists(std::string_view property) const noexcept {
    if (limit && !limit->findProperty(property)) return false;
    return !names || containsName(*names, property);
}

Operations::Operations(Broker& broker, ModuleHost& modules, ResultPolicy results)
    : _broker(broker),
      _modules(modules),
      _servers(modules, broker.repository()),
      _judge(broker.log(), results) {}

// Null where results pass.
const ResultJudge* Operations::_judgeFor(const RequestContext& request) const noexcept {
    return request.isProviders || _judge.policy() == ResultPolicy::pass ? nullptr : &_judge;
}

}  // namespace cimhost
