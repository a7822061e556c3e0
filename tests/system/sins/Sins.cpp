#include "cmpi/cmpimacs.h"

#include <dlfcn.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

// A module that brings its process down, keeps it or lies, when asked for an instance of that name.

namespace {

constexpr CMPIStatus ok{CMPI_RC_OK, nullptr};

void writeThroughNull() {
    int* volatile nowhere = nullptr;
    *nowhere = 1;
}

void callNull() {
    void (*volatile nowhere)() = nullptr;
    nowhere();
}

int divide(int number) {
    volatile int zero = 0;
    return number / zero;
}

int overflow(int depth) {
    volatile char used[4096];
    used[0] = static_cast<char>(depth);
    return depth < 0 ? 0 : overflow(depth + 1) + used[0];
}

void freeTwice() {
    void* volatile memory = std::malloc(64);
    std::free(memory);
    std::free(memory);
}

void say(const char* words) {
    [[maybe_unused]] const auto written = write(STDERR_FILENO, words, std::strlen(words));
}

void sayGoodbye(int) {
    say("the module's own handler\n");
    _exit(3);
}

// The second ends the process as soon as its signal does that by itself.
void crashTwice() {
    std::thread first(writeThroughNull);
    struct sigaction now {};
    do sigaction(SIGSEGV, nullptr, &now);
    while (now.sa_handler != SIG_DFL);
    writeThroughNull();
    first.join();
}

void crashWhileAnotherLoads() {
    int ends[2];
    if (pipe(ends) != 0) return;
    setenv("SINS_LOADING", std::to_string(ends[1]).c_str(), 1);
    std::thread([] { dlopen(TEST_SLOW_LIBRARY, RTLD_NOW); }).detach();
    char told = 0;
    if (read(ends[0], &told, 1) == 1) writeThroughNull();
}

void commit(const char* sin) {
    if (std::strcmp(sin, "null") == 0) writeThroughNull();
    if (std::strcmp(sin, "call") == 0) callNull();
    if (std::strcmp(sin, "abort") == 0) std::abort();
    if (std::strcmp(sin, "division") == 0) divide(1);
    if (std::strcmp(sin, "overflow") == 0) overflow(0);
    if (std::strcmp(sin, "corrupt") == 0) freeTwice();
    if (std::strcmp(sin, "thread") == 0) std::thread(writeThroughNull).join();
    if (std::strcmp(sin, "twice") == 0) crashTwice();
    if (std::strcmp(sin, "load") == 0) crashWhileAnotherLoads();
    if (std::strcmp(sin, "handled") == 0) {
        std::signal(SIGSEGV, sayGoodbye);
        writeThroughNull();
    }
    if (std::strcmp(sin, "leave") == 0) _exit(7);
    if (std::strcmp(sin, "hang") == 0) {
        say("it hangs\n");
        for (;;) pause();
    }
}

const char* keyOf(const CMPIObjectPath* path) {
    const CMPIData key = path->ft->getKey(path, "Name", nullptr);
    return key.value.string->ft->getCharPtr(key.value.string, nullptr);
}

CMPIStatus cleanUpInstance(CMPIInstanceMI*, const CMPIContext*, CMPIBoolean) { return ok; }

CMPIStatus cleanUpMethod(CMPIMethodMI*, const CMPIContext*, CMPIBoolean) { return ok; }

const CMPIBroker* theBroker = nullptr;

// An instance with a property that the class does not declare.
CMPIStatus lie(const CMPIResult* result, const CMPIObjectPath* path) {
    CMPIInstance* const instance = theBroker->eft->newInstance(theBroker, path, nullptr);
    CMPIValue colour{};
    colour.uint32 = 7;
    instance->ft->setProperty(instance, "Colour", &colour, CMPI_uint32);
    return result->ft->returnInstance(result, instance);
}

CMPIStatus getInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result,
                       const CMPIObjectPath* path, const char**) {
    if (std::strcmp(keyOf(path), "lie") == 0) return lie(result, path);
    commit(keyOf(path));
    return {CMPI_RC_ERR_NOT_FOUND, nullptr};
}

CMPIStatus invokeMethod(CMPIMethodMI*, const CMPIContext*, const CMPIResult* result,
                        const CMPIObjectPath*, const char*, const CMPIArgs* inputs, CMPIArgs*) {
    const CMPIData sin = inputs->ft->getArg(inputs, "Sin", nullptr);
    commit(sin.value.string->ft->getCharPtr(sin.value.string, nullptr));
    CMPIValue answer{};
    result->ft->returnData(result, &answer, CMPI_uint32);
    return ok;
}

const CMPIInstanceMIFT instanceTable = {
    CMPIVersion200, CMPIVersion200, "sins",  cleanUpInstance, nullptr, nullptr,
    getInstance,    nullptr,        nullptr, nullptr,         nullptr, nullptr};
CMPIInstanceMI instanceMi{nullptr, &instanceTable};

const CMPIMethodMIFT methodTable = {CMPIVersion200, CMPIVersion200, "sins", cleanUpMethod,
                                    invokeMethod};
CMPIMethodMI methodMi{nullptr, &methodTable};

}  // namespace

#define SINS_ENTRY extern "C" __attribute__((visibility("default")))

SINS_ENTRY CMPIInstanceMI* SinProvider_Create_InstanceMI(const CMPIBroker* broker,
                                                         const CMPIContext*, CMPIStatus*) {
    theBroker = broker;
    return &instanceMi;
}

SINS_ENTRY CMPIMethodMI* SinProvider_Create_MethodMI(const CMPIBroker*, const CMPIContext*,
                                                     CMPIStatus*) {
    return &methodMi;
}
