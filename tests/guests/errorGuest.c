/* Tells in an error object what went wrong, and gives the status no words. */
#include <cmpidt.h>
#include <cmpift.h>
#include <cmpimacs.h>

static const CMPIBroker* broker;

static CMPIStatus GuestMethodCleanup(CMPIMethodMI* mi, const CMPIContext* context,
                                     CMPIBoolean terminating) {
    (void)mi;
    (void)context;
    (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus GuestInvokeMethod(CMPIMethodMI* mi, const CMPIContext* context,
                                    const CMPIResult* result, const CMPIObjectPath* path,
                                    const char* method, const CMPIArgs* in, CMPIArgs* out) {
    CMPIError* error = CMNewCMPIError(broker, "guest", "G42", "the disk is on fire", ErrorSevFatal,
                                      Fire_Detected, CMPI_RC_ERR_ACCESS_DENIED, NULL);
    (void)mi;
    (void)context;
    (void)path;
    (void)method;
    (void)in;
    (void)out;
    CMReturnError(result, error);
    CMReturn(CMPI_RC_ERR_ACCESS_DENIED);
}

CMMethodMIStub(Guest, ErrorGuest, broker, CMNoHook)
