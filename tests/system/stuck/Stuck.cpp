#include "cmpi/cmpimacs.h"

#include <chrono>
#include <thread>

// A module whose clean-up never returns.

namespace {

constexpr CMPIStatus ok{CMPI_RC_OK, nullptr};

CMPIStatus cleanUp(CMPIMethodMI*, const CMPIContext*, CMPIBoolean) {
    for (;;) std::this_thread::sleep_for(std::chrono::hours(1));
}

CMPIStatus invokeMethod(CMPIMethodMI*, const CMPIContext*, const CMPIResult* result,
                        const CMPIObjectPath*, const char*, const CMPIArgs*, CMPIArgs*) {
    CMPIValue answer{};
    result->ft->returnData(result, &answer, CMPI_uint32);
    return ok;
}

const CMPIMethodMIFT table = {CMPIVersion200, CMPIVersion200, "stuck", cleanUp, invokeMethod};
CMPIMethodMI stuck{nullptr, &table};

}  // namespace

extern "C" __attribute__((visibility("default"))) CMPIMethodMI* StuckProvider_Create_MethodMI(
    const CMPIBroker*, const CMPIContext*, CMPIStatus*) {
    return &stuck;
}
