/* A module of which there are several builds, each of its own EDITION. Its functions are visible to
 * other modules on purpose: a build must not call those of another that is loaded beside it. */
#include "cmpi/cmpift.h"
#include "cmpi/cmpimacs.h"

#include <stddef.h>
#include <stdlib.h>
#include <unistd.h>

#define VISIBLE __attribute__((visibility("default")))

VISIBLE unsigned editionOfThis(void) { return EDITION; }

static CMPIStatus cleanUp(CMPIInstanceMI* mi, const CMPIContext* context, CMPIBoolean terminating) {
    (void)mi;
    (void)context;
    (void)terminating;
    CMPIStatus status = {CMPI_RC_OK, NULL};
    return status;
}

static CMPIStatus deliver(const CMPIResult* result, const CMPIObjectPath* path, unsigned begun) {
    CMPIStatus status = {CMPI_RC_OK, NULL};
    CMPIObjectPath* const found = path->ft->clone(path, &status);
    if (!found) return status;
    CMPIValue number;
    number.uint32 = begun;
    found->ft->addKey(found, "Begun", &number, CMPI_uint32);
    number.uint32 = editionOfThis();
    found->ft->addKey(found, "Ended", &number, CMPI_uint32);
    result->ft->returnObjectPath(result, found);
    found->ft->release(found);
    return result->ft->returnDone(result);
}

/* The names of TST_SlowEdition come once the file that PATH_TO_WAIT_FOR names is there. */
static CMPIStatus enumerateInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context,
                                         const CMPIResult* result, const CMPIObjectPath* path) {
    (void)mi;
    (void)context;
    const unsigned begun = editionOfThis();
    CMPIStatus status = {CMPI_RC_OK, NULL};
    CMPIString* const name = path->ft->getClassName(path, &status);
    if (status.rc != CMPI_RC_OK) return status;
    if (name->ft->getCharPtr(name, NULL)[4] == 'S') {
        const char* const file = getenv("EDITION_WAITS_FOR");
        while (file && access(file, F_OK) != 0) usleep(10000);
    }
    return deliver(result, path, begun);
}

static CMPIInstanceMIFT table = {
    .ftVersion = CMPIVersion200,
    .miVersion = 1,
    .miName = "instanceEdition",
    .cleanup = cleanUp,
    .enumerateInstanceNames = enumerateInstanceNames,
};
static CMPIInstanceMI instanceMi = {NULL, &table};

VISIBLE CMPIInstanceMI* Edition_Create_InstanceMI(const CMPIBroker* broker,
                                                  const CMPIContext* context, CMPIStatus* status) {
    (void)broker;
    (void)context;
    status->rc = CMPI_RC_OK;
    return &instanceMi;
}
