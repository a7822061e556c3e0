#include "cmpi/cmpift.h"

// A module whose author forgot to link what it uses.

namespace boards {
int countSlots(int board);
int countFans(int board);
}  // namespace boards

extern "C" __attribute__((visibility("default"))) CMPIInstanceMI* Undefined_Create_InstanceMI(
    const CMPIBroker*, const CMPIContext*, CMPIStatus*) {
    return boards::countSlots(1) == boards::countFans(2) ? nullptr : nullptr;
}
