#include "cimhost/operations/Operations.h"

namespace cimhost {

Operations::Operations(Broker& broker, ModuleHost& modules) : _broker(broker), _modules(modules) {}

}  // namespace cimhost
