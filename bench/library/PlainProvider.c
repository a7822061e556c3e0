#include "bench/library/PlainProvider.h"

#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

struct PlainProvider {
    const CMPIBroker* broker;
    pthread_mutex_t mutex;
    struct PlainDevice* devices;
    char (*ids)[24];
    char* host;
    size_t count;
    size_t links;
    CMPIInstanceMI instanceMI;
    CMPIAssociationMI associationMI;
};

/* The MI's own data; CMPI hands it out as const. */
static struct PlainProvider* providerOf(const void* hdl) { return (struct PlainProvider*)hdl; }

static const CMPIStatus ok = {CMPI_RC_OK, NULL};

/* Both walks of an enumeration: class and namespace tell what is delivered. */
static CMPIStatus enumerate(struct PlainProvider* provider, const CMPIResult* result,
                            const CMPIObjectPath* request, int namesOnly) {
    CMPIStatus status = ok;
    const char* const className = plainChars(request->ft->getClassName(request, &status), &status);
    const char* const nameSpace = plainChars(request->ft->getNameSpace(request, &status), &status);
    size_t i;
    pthread_mutex_lock(&provider->mutex);
    for (i = 0; i < provider->count && status.rc == CMPI_RC_OK; ++i) {
        const struct PlainDevice* const device = &provider->devices[i];
        CMPIObjectPath* path;
        if (strcasecmp(className, device->className) != 0) continue;
        path = plainDevicePath(provider->broker, device, &status);
        if (status.rc != CMPI_RC_OK) break;
        if (strcasecmp(nameSpace, plainChars(path->ft->getNameSpace(path, &status), &status)) !=
            0) {
            continue;
        }
        if (namesOnly) {
            CMPIObjectPath* const name = plainDevicePath(provider->broker, device, &status);
            if (status.rc == CMPI_RC_OK) status = result->ft->returnObjectPath(result, name);
        } else {
            CMPIInstance* const instance = plainDeviceInstance(provider->broker, device, &status);
            if (status.rc == CMPI_RC_OK) status = result->ft->returnInstance(result, instance);
        }
    }
    pthread_mutex_unlock(&provider->mutex);
    return status.rc == CMPI_RC_OK ? result->ft->returnDone(result) : status;
}

static CMPIStatus enumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context,
                                    const CMPIResult* result, const CMPIObjectPath* path) {
    (void)context;
    return enumerate(providerOf(mi->hdl), result, path, 1);
}

static CMPIStatus enumInstances(CMPIInstanceMI* mi, const CMPIContext* context,
                                const CMPIResult* result, const CMPIObjectPath* path,
                                const char** properties) {
    (void)context;
    (void)properties;
    return enumerate(providerOf(mi->hdl), result, path, 0);
}

/* A copy of the request that names this host. Made once for a whole walk. */
static CMPIObjectPath* localRequest(const struct PlainProvider* provider,
                                    const CMPIObjectPath* request, CMPIStatus* status) {
    CMPIObjectPath* const local = request->ft->clone(request, status);
    if (status->rc == CMPI_RC_OK) *status = local->ft->setHostname(local, provider->host);
    return local;
}

static const struct PlainDevice* find(struct PlainProvider* provider, const CMPIObjectPath* wanted,
                                      CMPIStatus* status) {
    size_t i;
    for (i = 0; i < provider->count && status->rc == CMPI_RC_OK; ++i) {
        CMPIObjectPath* const path =
            plainDevicePath(provider->broker, &provider->devices[i], status);
        if (status->rc == CMPI_RC_OK && plainSamePath(wanted, path, status)) {
            return &provider->devices[i];
        }
    }
    return NULL;
}

static void deliver(const struct PlainProvider* provider, const CMPIResult* result,
                    const struct PlainDevice* device, CMPIStatus* status) {
    CMPIInstance* const instance = plainDeviceInstance(provider->broker, device, status);
    if (status->rc == CMPI_RC_OK) *status = result->ft->returnInstance(result, instance);
}

static CMPIStatus getInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                              const CMPIResult* result, const CMPIObjectPath* path,
                              const char** properties) {
    struct PlainProvider* const provider = providerOf(mi->hdl);
    const struct PlainDevice* device = NULL;
    CMPIStatus status = ok;
    CMPIObjectPath* local;
    (void)context;
    (void)properties;
    pthread_mutex_lock(&provider->mutex);
    local = localRequest(provider, path, &status);
    if (status.rc == CMPI_RC_OK) device = find(provider, local, &status);
    if (device != NULL) deliver(provider, result, device, &status);
    if (local != NULL) local->ft->release(local);
    pthread_mutex_unlock(&provider->mutex);
    if (status.rc != CMPI_RC_OK) return status;
    if (device == NULL) return (CMPIStatus){CMPI_RC_ERR_NOT_FOUND, NULL};
    return result->ft->returnDone(result);
}

static CMPIObjectPath* systemPath(const struct PlainProvider* provider, CMPIStatus* status) {
    const CMPIBroker* const broker = provider->broker;
    CMPIObjectPath* const path = broker->eft->newObjectPath(broker, provider->devices[0].nameSpace,
                                                            benchSystemClass, status);
    if (status->rc != CMPI_RC_OK) return NULL;
    *status = path->ft->setHostname(path, provider->host);
    plainAddKey(broker, path, "CreationClassName", benchSystemClass, status);
    plainAddKey(broker, path, "Name", provider->host, status);
    return status->rc == CMPI_RC_OK ? path : NULL;
}

/* The link's own path: two references. */
static CMPIObjectPath* linkPath(const struct PlainProvider* provider,
                                const struct PlainDevice* device, CMPIStatus* status) {
    const CMPIBroker* const broker = provider->broker;
    CMPIValue end;
    CMPIObjectPath* const path =
        broker->eft->newObjectPath(broker, device->nameSpace, benchLinkClass, status);
    if (status->rc != CMPI_RC_OK) return NULL;
    *status = path->ft->setHostname(path, device->host);
    if (status->rc == CMPI_RC_OK) end.ref = systemPath(provider, status);
    if (status->rc == CMPI_RC_OK) {
        *status = path->ft->addKey(path, "GroupComponent", &end, CMPI_ref);
    }
    if (status->rc == CMPI_RC_OK) end.ref = plainDevicePath(broker, device, status);
    if (status->rc == CMPI_RC_OK) *status = path->ft->addKey(path, "PartComponent", &end, CMPI_ref);
    return status->rc == CMPI_RC_OK ? path : NULL;
}

/* One link: is the request its system, and if so which device is at the other end? */
static void followLink(struct PlainProvider* provider, const CMPIResult* result,
                       const CMPIObjectPath* request, const struct PlainDevice* target,
                       CMPIStatus* status) {
    const struct PlainDevice* device;
    CMPIObjectPath* farEnd;
    CMPIObjectPath* link;
    CMPIObjectPath* const system = systemPath(provider, status);
    if (status->rc != CMPI_RC_OK || !plainSamePath(request, system, status)) return;
    farEnd = plainDevicePath(provider->broker, target, status);
    if (status->rc != CMPI_RC_OK) return;
    link = linkPath(provider, target, status);
    if (link == NULL) return;
    if (strcasecmp(plainChars(request->ft->getNameSpace(request, status), status),
                   plainChars(link->ft->getNameSpace(link, status), status)) != 0) {
        return;
    }
    device = find(provider, farEnd, status);
    if (device != NULL) deliver(provider, result, device, status);
}

static CMPIStatus associators(CMPIAssociationMI* mi, const CMPIContext* context,
                              const CMPIResult* result, const CMPIObjectPath* path,
                              const char* associationClass, const char* resultClass,
                              const char* role, const char* resultRole, const char** properties) {
    struct PlainProvider* const provider = providerOf(mi->hdl);
    CMPIStatus status = ok;
    CMPIObjectPath* local;
    size_t i;
    (void)context;
    (void)associationClass;
    (void)resultClass;
    (void)role;
    (void)resultRole;
    (void)properties;
    pthread_mutex_lock(&provider->mutex);
    local = localRequest(provider, path, &status);
    for (i = provider->count - provider->links; i < provider->count && status.rc == CMPI_RC_OK;
         ++i) {
        followLink(provider, result, local, &provider->devices[i], &status);
    }
    if (local != NULL) local->ft->release(local);
    pthread_mutex_unlock(&provider->mutex);
    return status.rc == CMPI_RC_OK ? result->ft->returnDone(result) : status;
}

/* Only what the rows ask for has a function. */
static CMPIInstanceMIFT instanceTable = {
    .ftVersion = 200,
    .miVersion = 200,
    .miName = "PlainProvider",
    .enumerateInstanceNames = enumInstanceNames,
    .enumerateInstances = enumInstances,
    .getInstance = getInstance,
};

static CMPIAssociationMIFT associationTable = {
    .ftVersion = 200,
    .miVersion = 200,
    .miName = "PlainProvider",
    .associators = associators,
};

struct PlainProvider* makePlainProvider(const CMPIBroker* broker, const char* host,
                                        const char* nameSpace, size_t devices, size_t links) {
    struct PlainProvider* const provider = calloc(1, sizeof *provider);
    size_t i;
    if (provider == NULL) return NULL;
    pthread_mutex_init(&provider->mutex, NULL);
    provider->devices = calloc(devices, sizeof *provider->devices);
    provider->ids = calloc(devices, sizeof *provider->ids);
    provider->host = strdup(host);
    if (provider->devices == NULL || provider->ids == NULL || provider->host == NULL) {
        deletePlainProvider(provider);
        return NULL;
    }
    for (i = 0; i < devices; ++i) {
        snprintf(provider->ids[i], sizeof provider->ids[i], "%08zu", i);
        provider->devices[i] = (struct PlainDevice){provider->host, nameSpace, benchDeviceClass,
                                                    provider->ids[i], (unsigned)i};
    }
    provider->broker = broker;
    provider->count = devices;
    provider->links = links;
    provider->instanceMI = (CMPIInstanceMI){provider, &instanceTable};
    provider->associationMI = (CMPIAssociationMI){provider, &associationTable};
    return provider;
}

void deletePlainProvider(struct PlainProvider* provider) {
    pthread_mutex_destroy(&provider->mutex);
    free(provider->devices);
    free(provider->ids);
    free(provider->host);
    free(provider);
}

CMPIInstanceMI* plainInstanceMI(struct PlainProvider* provider) { return &provider->instanceMI; }

CMPIAssociationMI* plainAssociationMI(struct PlainProvider* provider) {
    return &provider->associationMI;
}
