#include "cmpi/cmpimacs.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <thread>

// A module of faults.

namespace {

constexpr CMPIStatus ok{CMPI_RC_OK, nullptr};

CMPIStatus cleanUp(CMPIMethodMI*, const CMPIContext*, CMPIBoolean) { return ok; }

CMPIStatus invokeMethod(CMPIMethodMI*, const CMPIContext*, const CMPIResult* result,
                        const CMPIObjectPath*, const char* method, const CMPIArgs*, CMPIArgs*) {
    const std::string_view name(method);
    if (name == "Crash") {
        std::fputs("the floor gives way\n", stderr);
        int* volatile nothing = nullptr;
        *nothing = 1;
    }
    if (name == "Leave") std::_Exit(7);
    while (name == "Hang") std::this_thread::sleep_for(std::chrono::hours(1));
    CMPIValue answer{};
    result->ft->returnData(result, &answer, CMPI_uint32);
    return ok;
}

const CMPIMethodMIFT table = {CMPIVersion200, CMPIVersion200, "frail", cleanUp, invokeMethod};
CMPIMethodMI frail{nullptr, &table};

}  // namespace

extern "C" __attribute__((visibility("default"))) CMPIMethodMI* FrailProvider_Create_MethodMI(
    const CMPIBroker*, const CMPIContext*, CMPIStatus*) {
    return &frail;
}
