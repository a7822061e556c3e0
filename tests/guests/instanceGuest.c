/* One instance, found by any key. */
#include <cmpidt.h>
#include <cmpift.h>
#include <cmpimacs.h>
#include <stdio.h>

static const CMPIBroker* broker;

static CMPIStatus GuestCleanup(CMPIInstanceMI* mi, const CMPIContext* context,
                               CMPIBoolean terminating) {
    (void)mi;
    (void)context;
    (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus GuestEnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context,
                                         const CMPIResult* result, const CMPIObjectPath* path) {
    CMPIString* nameSpace = CMGetNameSpace(path, NULL);
    CMPIObjectPath* made = CMNewObjectPath(broker, CMGetCharPtr(nameSpace), "TST_Thing", NULL);
    (void)mi;
    (void)context;
    CMAddKey(made, "Name", "only", CMPI_chars);
    CMRelease(nameSpace);
    CMReturnObjectPath(result, made);
    return CMReturnDone(result);
}

static CMPIStatus GuestEnumInstances(CMPIInstanceMI* mi, const CMPIContext* context,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const char** properties) {
    (void)mi;
    (void)context;
    (void)result;
    (void)path;
    (void)properties;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus GuestGetInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char** properties) {
    char text[100];
    CMPIString* key;
    CMPIInstance* made =
        CMNewInstance(broker, CMNewObjectPath(broker, NULL, "tst_thing", NULL), NULL);
    (void)mi;
    (void)context;
    (void)properties;
    CMGetKeyAt(path, 0, &key, NULL);
    sprintf(text, "found by %.80s", CMGetCharPtr(key));
    CMSetProperty(made, "NAME", text, CMPI_chars);
    CMReturnInstance(result, made);
    return CMReturnDone(result);
}

static CMPIStatus GuestCreateInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const CMPIInstance* instance) {
    (void)mi;
    (void)context;
    (void)result;
    (void)path;
    (void)instance;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus GuestModifyInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const CMPIInstance* instance, const char** properties) {
    (void)mi;
    (void)context;
    (void)result;
    (void)path;
    (void)instance;
    (void)properties;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus GuestDeleteInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                      const CMPIResult* result, const CMPIObjectPath* path) {
    (void)mi;
    (void)context;
    (void)result;
    (void)path;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus GuestExecQuery(CMPIInstanceMI* mi, const CMPIContext* context,
                                 const CMPIResult* result, const CMPIObjectPath* path,
                                 const char* query, const char* language) {
    (void)mi;
    (void)context;
    (void)result;
    (void)path;
    (void)query;
    (void)language;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMInstanceMIStub(Guest, InstanceGuest, broker, CMNoHook)
