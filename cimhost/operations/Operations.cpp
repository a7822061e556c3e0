#include "cimhost/operations/Operations.h"

#include "cimhost/modules/ModuleHost.h"
#include "cimhost/objects/Broker.h"

namespace cimhost {

Operations::Operations(Broker& broker, ModuleHost& modules)
    : _broker(broker), _modules(modules), _servers(modules.registrations(), broker.repository()) {}

}  // namespace cimhost
