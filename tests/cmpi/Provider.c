/* A provider in C made with the macros alone: the headers have to be C as well as C++. */

#include "cmpi/cmpidt.h"
#include "cmpi/cmpift.h"
#include "cmpi/cmpimacs.h"

#include <stddef.h>

_Static_assert(sizeof(CMPIrc) == 4, "a C enumeration has the width of the C++ one");
_Static_assert(sizeof(CMPIData) == 24, "as in C++");
_Static_assert(sizeof(CMPIBrokerEncFT) == 192, "as in C++");
_Static_assert(offsetof(CMPIBroker, mft) == 32, "as in C++");

static const CMPIBroker* sampleBroker;

static CMPIStatus SampleCleanup(CMPIInstanceMI* mi, const CMPIContext* context,
                                CMPIBoolean terminating) {
    (void)mi, (void)context;
    if (!terminating) {
        CMReturn(CMPI_RC_DO_NOT_UNLOAD);
    } else {
        CMReturn(CMPI_RC_OK);
    }
}

static CMPIStatus SampleEnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context,
                                          const CMPIResult* result, const CMPIObjectPath* path) {
    (void)mi, (void)context;
    CMReturnObjectPath(result, path);
    return CMReturnDone(result);
}

static CMPIStatus SampleEnumInstances(CMPIInstanceMI* mi, const CMPIContext* context,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const char** properties) {
    (void)mi, (void)context, (void)result, (void)path, (void)properties;
    CMReturnWithChars(sampleBroker, CMPI_RC_ERR_ACCESS_DENIED, "not for you");
}

static CMPIStatus SampleGetInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                    const CMPIResult* result, const CMPIObjectPath* path,
                                    const char** properties) {
    CMPIStatus status;
    (void)mi, (void)context, (void)properties;
    CMSetStatus(&status, CMPI_RC_ERR_FAILED);
    const CMPIInstance* instance = CMNewInstance(sampleBroker, path, &status);
    if (CMIsNullObject(instance)) return status;
    CMReturnInstance(result, instance);
    return CMReturnDone(result);
}

static CMPIStatus SampleCreateInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                       const CMPIResult* result, const CMPIObjectPath* path,
                                       const CMPIInstance* instance) {
    (void)mi, (void)context, (void)result, (void)path, (void)instance;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus SampleModifyInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                       const CMPIResult* result, const CMPIObjectPath* path,
                                       const CMPIInstance* instance, const char** properties) {
    (void)mi, (void)context, (void)result, (void)path, (void)instance, (void)properties;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus SampleDeleteInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                       const CMPIResult* result, const CMPIObjectPath* path) {
    (void)mi, (void)context, (void)result, (void)path;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus SampleExecQuery(CMPIInstanceMI* mi, const CMPIContext* context,
                                  const CMPIResult* result, const CMPIObjectPath* path,
                                  const char* query, const char* language) {
    (void)mi, (void)context, (void)result, (void)path, (void)query, (void)language;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMInstanceMIStub(Sample, Sample, sampleBroker, CMNoHook)

    static CMPIStatus
    SampleMethodCleanup(CMPIMethodMI* mi, const CMPIContext* context, CMPIBoolean terminating) {
    (void)mi, (void)context, (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus SampleInvokeMethod(CMPIMethodMI* mi, const CMPIContext* context,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const char* method, const CMPIArgs* inputs,
                                     CMPIArgs* outputs) {
    CMPIValue sum = {0};
    CMPIData a = CMGetArg(inputs, "A", NULL);
    (void)mi, (void)context, (void)path, (void)method;
    if (CMIsNullValue(a) || CMIsArray(a)) CMReturn(CMPI_RC_ERR_INVALID_PARAMETER);
    sum.uint32 = a.value.uint32 + 1;
    CMAddArg(outputs, "Sum", &sum, CMPI_uint32);
    CMReturnData(result, &sum, CMPI_uint32);
    return CMReturnDone(result);
}

/* A hook may fail the factory. */
CMMethodMIStub(
    Sample, Sample, sampleBroker, if (ctx == NULL) {
        CMSetStatus(rc, CMPI_RC_ERR_FAILED);
        return NULL;
    })
