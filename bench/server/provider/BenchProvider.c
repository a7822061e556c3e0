/* Serves as many instances as the name of the class says: Bench_Device100 has a hundred of them.
   What is made for Bench_Device... is left to the broker until the call ends, what is made for
   Bench_MarkedDevice... ends with each instance. In plain C over CMPI, so that what is measured is
   the object manager and not the support library. */
#include "cmpi/cmpimacs.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static const CMPIBroker* broker;

static const char deviceClass[] = "Bench_Device";
static const char markedClass[] = "Bench_MarkedDevice";
static const char systemClass[] = "Bench_System";
static const char linkedClass[] = "Bench_Device100";

static const CMPIStatus ok = {CMPI_RC_OK, NULL};
static const CMPIStatus notSupported = {CMPI_RC_ERR_NOT_SUPPORTED, NULL};

static const char* charsOf(const CMPIString* string) {
    const char* const text = string != NULL ? CMGetCharPtr(string) : NULL;
    return text != NULL ? text : "";
}

static int beginsWith(const char* text, const char* beginning) {
    return strncmp(text, beginning, strlen(beginning)) == 0;
}

static unsigned long countOf(const char* className) {
    if (beginsWith(className, deviceClass)) {
        return strtoul(className + strlen(deviceClass), NULL, 10);
    }
    if (beginsWith(className, markedClass)) {
        return strtoul(className + strlen(markedClass), NULL, 10);
    }
    return 0;
}

static const char* formatId(char* id, size_t size, unsigned long index) {
    snprintf(id, size, "device-%08lu", index);
    return id;
}

static CMPIObjectPath* newPath(const char* nameSpace, const char* className, const char* key,
                               const char* id, CMPIStatus* status) {
    CMPIValue value;
    CMPIObjectPath* const path = CMNewObjectPath(broker, nameSpace, className, status);
    if (status->rc == CMPI_RC_OK) value.string = CMNewString(broker, id, status);
    if (status->rc == CMPI_RC_OK) *status = CMAddKey(path, key, &value, CMPI_string);
    return status->rc == CMPI_RC_OK ? path : NULL;
}

static void setValue(CMPIInstance* instance, const char* name, CMPIValue value, CMPIType type,
                     CMPIStatus* status) {
    if (status->rc == CMPI_RC_OK) *status = CMSetProperty(instance, name, &value, type);
}

static void setText(CMPIInstance* instance, const char* name, const char* text,
                    CMPIStatus* status) {
    CMPIValue value;
    if (status->rc == CMPI_RC_OK) value.string = CMNewString(broker, text, status);
    if (status->rc == CMPI_RC_OK) *status = CMSetProperty(instance, name, &value, CMPI_string);
}

static CMPIInstance* newDevice(const char* nameSpace, const char* className, unsigned long index,
                               const char** properties, CMPIStatus* status) {
    char id[32];
    CMPIInstance* device;
    CMPIObjectPath* const path =
        newPath(nameSpace, className, "DeviceID", formatId(id, sizeof id, index), status);
    if (path == NULL) return NULL;
    device = CMNewInstance(broker, path, status);
    if (status->rc != CMPI_RC_OK) return NULL;
    if (properties != NULL) *status = CMSetPropertyFilter(device, properties, NULL);
    setText(device, "DeviceID", id, status);
    setText(device, "ElementName", "Slot & tray", status);
    setText(device, "Description", "A device that exists to be asked for", status);
    setText(device, "SerialNumber", "0123456789ABCDEF", status);
    setValue(device, "HealthState", (CMPIValue){.uint16 = 5}, CMPI_uint16, status);
    setValue(device, "EnabledState", (CMPIValue){.uint16 = 2}, CMPI_uint16, status);
    setValue(device, "Slot", (CMPIValue){.uint32 = (CMPIUint32)index}, CMPI_uint32, status);
    setValue(device, "Capacity", (CMPIValue){.uint64 = 4000787030016ULL}, CMPI_uint64, status);
    setValue(device, "IsLocked", (CMPIValue){.boolean = 1}, CMPI_boolean, status);
    return status->rc == CMPI_RC_OK ? device : NULL;
}

static CMPIStatus returnDevice(const CMPIResult* result, const char* nameSpace,
                               const char* className, unsigned long index,
                               const char** properties) {
    CMPIStatus status = ok;
    CMPIInstance* const device = newDevice(nameSpace, className, index, properties, &status);
    return device != NULL ? CMReturnInstance(result, device) : status;
}

/* After a failure the mark stays, since the message of the status was made behind it. */
static CMPIStatus returnMarkedDevice(const CMPIResult* result, const char* nameSpace,
                                     const char* className, unsigned long index,
                                     const char** properties) {
    CMPIStatus status = ok;
    CMPIGcStat* const mark = broker->mft->mark(broker, &status);
    if (status.rc != CMPI_RC_OK) return status;
    status = returnDevice(result, nameSpace, className, index, properties);
    return status.rc == CMPI_RC_OK ? broker->mft->release(broker, mark) : status;
}

static CMPIStatus returnDevices(const CMPIResult* result, const char* nameSpace,
                                const char* className, const char** properties) {
    const unsigned long count = countOf(className);
    const int isMarked = beginsWith(className, markedClass);
    CMPIStatus status = ok;
    unsigned long i;
    for (i = 0; i < count && status.rc == CMPI_RC_OK; ++i) {
        status = isMarked ? returnMarkedDevice(result, nameSpace, className, i, properties)
                          : returnDevice(result, nameSpace, className, i, properties);
    }
    return status.rc == CMPI_RC_OK ? CMReturnDone(result) : status;
}

static CMPIStatus returnPaths(const CMPIResult* result, const char* nameSpace,
                              const char* className) {
    const unsigned long count = countOf(className);
    CMPIStatus status = ok;
    unsigned long i;
    for (i = 0; i < count && status.rc == CMPI_RC_OK; ++i) {
        char id[32];
        CMPIObjectPath* const path =
            newPath(nameSpace, className, "DeviceID", formatId(id, sizeof id, i), &status);
        if (path != NULL) status = CMReturnObjectPath(result, path);
    }
    return status.rc == CMPI_RC_OK ? CMReturnDone(result) : status;
}

/* Instances. */

static CMPIStatus BenchCleanup(CMPIInstanceMI* mi, const CMPIContext* context,
                               CMPIBoolean terminating) {
    (void)mi, (void)context, (void)terminating;
    return ok;
}

static CMPIStatus BenchEnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context,
                                         const CMPIResult* result, const CMPIObjectPath* path) {
    (void)mi, (void)context;
    return returnPaths(result, charsOf(CMGetNameSpace(path, NULL)),
                       charsOf(CMGetClassName(path, NULL)));
}

static CMPIStatus BenchEnumInstances(CMPIInstanceMI* mi, const CMPIContext* context,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const char** properties) {
    (void)mi, (void)context;
    return returnDevices(result, charsOf(CMGetNameSpace(path, NULL)),
                         charsOf(CMGetClassName(path, NULL)), properties);
}

static CMPIStatus BenchGetInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char** properties) {
    const char* const className = charsOf(CMGetClassName(path, NULL));
    CMPIStatus status = ok;
    CMPIInstance* device;
    unsigned long index = 0;
    CMPIData key;
    (void)mi, (void)context;
    key = CMGetKey(path, "DeviceID", &status);
    if (status.rc != CMPI_RC_OK || key.type != CMPI_string ||
        sscanf(charsOf(key.value.string), "device-%8lu", &index) != 1 ||
        index >= countOf(className)) {
        status.rc = CMPI_RC_ERR_NOT_FOUND;
        return status;
    }
    device = newDevice(charsOf(CMGetNameSpace(path, NULL)), className, index, properties, &status);
    if (device != NULL) status = CMReturnInstance(result, device);
    return status.rc == CMPI_RC_OK ? CMReturnDone(result) : status;
}

static CMPIStatus BenchCreateInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const CMPIInstance* instance) {
    (void)mi, (void)context, (void)result, (void)path, (void)instance;
    return notSupported;
}

static CMPIStatus BenchModifyInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const CMPIInstance* instance, const char** properties) {
    (void)mi, (void)context, (void)result, (void)path, (void)instance, (void)properties;
    return notSupported;
}

static CMPIStatus BenchDeleteInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                      const CMPIResult* result, const CMPIObjectPath* path) {
    (void)mi, (void)context, (void)result, (void)path;
    return notSupported;
}

static CMPIStatus BenchExecQuery(CMPIInstanceMI* mi, const CMPIContext* context,
                                 const CMPIResult* result, const CMPIObjectPath* path,
                                 const char* query, const char* language) {
    (void)mi, (void)context, (void)result, (void)path, (void)query, (void)language;
    return notSupported;
}

/* Associations: the one system has the devices of one class. */

static CMPIStatus BenchAssociationCleanup(CMPIAssociationMI* mi, const CMPIContext* context,
                                          CMPIBoolean terminating) {
    (void)mi, (void)context, (void)terminating;
    return ok;
}

static CMPIStatus BenchAssociators(CMPIAssociationMI* mi, const CMPIContext* context,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char* associationClass, const char* resultClass,
                                   const char* role, const char* resultRole,
                                   const char** properties) {
    (void)mi, (void)context, (void)associationClass, (void)resultClass, (void)role,
        (void)resultRole;
    if (strcmp(charsOf(CMGetClassName(path, NULL)), systemClass) != 0) return CMReturnDone(result);
    return returnDevices(result, charsOf(CMGetNameSpace(path, NULL)), linkedClass, properties);
}

static CMPIStatus BenchAssociatorNames(CMPIAssociationMI* mi, const CMPIContext* context,
                                       const CMPIResult* result, const CMPIObjectPath* path,
                                       const char* associationClass, const char* resultClass,
                                       const char* role, const char* resultRole) {
    (void)mi, (void)context, (void)associationClass, (void)resultClass, (void)role,
        (void)resultRole;
    if (strcmp(charsOf(CMGetClassName(path, NULL)), systemClass) != 0) return CMReturnDone(result);
    return returnPaths(result, charsOf(CMGetNameSpace(path, NULL)), linkedClass);
}

static CMPIStatus BenchReferences(CMPIAssociationMI* mi, const CMPIContext* context,
                                  const CMPIResult* result, const CMPIObjectPath* path,
                                  const char* resultClass, const char* role,
                                  const char** properties) {
    (void)mi, (void)context, (void)result, (void)path, (void)resultClass, (void)role,
        (void)properties;
    return notSupported;
}

static CMPIStatus BenchReferenceNames(CMPIAssociationMI* mi, const CMPIContext* context,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const char* resultClass, const char* role) {
    (void)mi, (void)context, (void)result, (void)path, (void)resultClass, (void)role;
    return notSupported;
}

CMInstanceMIStub(Bench, BenchProvider, broker, CMNoHook)
    CMAssociationMIStub(Bench, BenchProvider, broker, CMNoHook)
