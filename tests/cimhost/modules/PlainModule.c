/* A module in C with specific entry points. Tests steer and watch it through what it exports. */
#include "cmpi/cmpift.h"
#include "cmpi/cmpimacs.h"

#include <stddef.h>
#include <string.h>

#define TEST_EXPORT __attribute__((visibility("default")))

TEST_EXPORT int plainCleanupCode = CMPI_RC_OK;
TEST_EXPORT int plainCleanups = 0;
TEST_EXPORT int plainLastTerminating = -1;
TEST_EXPORT int plainCreations = 0;
TEST_EXPORT char plainInitNameSpace[64] = "";

static const CMPIBroker* broker;

static CMPIStatus statusOf(int code) {
    CMPIStatus status = {CMPI_RC_OK, NULL};
    status.rc = (CMPIrc)code;
    return status;
}

static CMPIStatus finish(CMPIBoolean terminating) {
    ++plainCleanups;
    plainLastTerminating = terminating;
    return statusOf(plainCleanupCode);
}

static CMPIStatus cleanUpInstances(CMPIInstanceMI* mi, const CMPIContext* context,
                                   CMPIBoolean terminating) {
    (void)mi;
    (void)context;
    return finish(terminating);
}

static CMPIStatus cleanUpMethods(CMPIMethodMI* mi, const CMPIContext* context,
                                 CMPIBoolean terminating) {
    (void)mi;
    (void)context;
    return finish(terminating);
}

static CMPIStatus enumerateInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context,
                                         const CMPIResult* result, const CMPIObjectPath* path) {
    (void)mi;
    (void)context;
    const char* const names[] = {"left", "right"};
    for (size_t i = 0; i < sizeof names / sizeof names[0]; ++i) {
        CMPIStatus status = {CMPI_RC_OK, NULL};
        CMPIObjectPath* const found = path->ft->clone(path, &status);
        if (!found) return status;
        found->ft->addKey(found, "Name", (const CMPIValue*)names[i], CMPI_chars);
        result->ft->returnObjectPath(result, found);
        found->ft->release(found);
    }
    return result->ft->returnDone(result);
}

static CMPIStatus invokeMethod(CMPIMethodMI* mi, const CMPIContext* context,
                               const CMPIResult* result, const CMPIObjectPath* path,
                               const char* method, const CMPIArgs* inputs, CMPIArgs* outputs) {
    (void)mi;
    (void)context;
    (void)path;
    (void)method;
    (void)inputs;
    (void)outputs;
    CMPIValue count;
    memset(&count, 0, sizeof count);
    count.uint32 = 2;
    return result->ft->returnData(result, &count, CMPI_uint32);
}

static CMPIInstanceMIFT instanceTable = {
    .ftVersion = CMPIVersion200,
    .miVersion = 1,
    .miName = "instancePlain",
    .cleanup = cleanUpInstances,
    .enumerateInstanceNames = enumerateInstanceNames,
};
static CMPIInstanceMI instanceMi = {NULL, &instanceTable};

static CMPIMethodMIFT methodTable = {
    .ftVersion = CMPIVersion200,
    .miVersion = 1,
    .miName = "methodPlain",
    .cleanup = cleanUpMethods,
    .invokeMethod = invokeMethod,
};
static CMPIMethodMI methodMi = {NULL, &methodTable};

static void begin(const CMPIBroker* self, const CMPIContext* context) {
    broker = self;
    ++plainCreations;
    CMPIStatus status = {CMPI_RC_OK, NULL};
    const CMPIData entry = context->ft->getEntry(context, CMPIInitNameSpace, &status);
    if (status.rc != CMPI_RC_OK || entry.type != CMPI_string) return;
    const char* const text = entry.value.string->ft->getCharPtr(entry.value.string, NULL);
    strncpy(plainInitNameSpace, text, sizeof plainInitNameSpace - 1);
}

TEST_EXPORT CMPIInstanceMI* Plain_Create_InstanceMI(const CMPIBroker* self,
                                                    const CMPIContext* context,
                                                    CMPIStatus* status) {
    begin(self, context);
    *status = statusOf(CMPI_RC_OK);
    return &instanceMi;
}

TEST_EXPORT CMPIMethodMI* Plain_Create_MethodMI(const CMPIBroker* self, const CMPIContext* context,
                                                CMPIStatus* status) {
    begin(self, context);
    *status = statusOf(CMPI_RC_OK);
    return &methodMi;
}
