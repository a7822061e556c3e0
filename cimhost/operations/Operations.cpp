#include "cimhost/operations/Operations.h"

#include "cimhost/modules/ModuleHost.h"
#include "cimhost/objects/Broker.h"

namespace cimhost {

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
