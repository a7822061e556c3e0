#include "bench/library/PlainPath.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

const char* plainChars(const CMPIString* string, CMPIStatus* status) {
    const char* const text = string != NULL ? string->ft->getCharPtr(string, status) : NULL;
    return text != NULL ? text : "";
}

void plainAddKey(const CMPIBroker* broker, CMPIObjectPath* path, const char* name, const char* text,
                 CMPIStatus* status) {
    CMPIValue value;
    if (status->rc != CMPI_RC_OK) return;
    value.string = broker->eft->newString(broker, text, status);
    if (status->rc == CMPI_RC_OK) *status = path->ft->addKey(path, name, &value, CMPI_string);
}

void plainSetText(const CMPIBroker* broker, CMPIInstance* instance, const char* name,
                  const char* text, CMPIStatus* status) {
    CMPIValue value;
    if (status->rc != CMPI_RC_OK) return;
    value.string = broker->eft->newString(broker, text, status);
    if (status->rc == CMPI_RC_OK) {
        *status = instance->ft->setProperty(instance, name, &value, CMPI_string);
    }
}

static void setValue(CMPIInstance* instance, const char* name, CMPIValue value, CMPIType type,
                     CMPIStatus* status) {
    if (status->rc == CMPI_RC_OK) *status = instance->ft->setProperty(instance, name, &value, type);
}

CMPIObjectPath* plainDevicePath(const CMPIBroker* broker, const struct PlainDevice* device,
                                CMPIStatus* status) {
    CMPIObjectPath* const path =
        broker->eft->newObjectPath(broker, device->nameSpace, device->className, status);
    if (status->rc != CMPI_RC_OK) return NULL;
    *status = path->ft->setHostname(path, device->host);
    plainAddKey(broker, path, "SystemCreationClassName", benchSystemClass, status);
    plainAddKey(broker, path, "SystemName", device->host, status);
    plainAddKey(broker, path, "CreationClassName", device->className, status);
    plainAddKey(broker, path, "DeviceID", device->deviceId, status);
    return status->rc == CMPI_RC_OK ? path : NULL;
}

CMPIInstance* plainDeviceInstance(const CMPIBroker* broker, const struct PlainDevice* device,
                                  CMPIStatus* status) {
    CMPIInstance* instance;
    CMPIObjectPath* const path = plainDevicePath(broker, device, status);
    if (status->rc != CMPI_RC_OK) return NULL;
    instance = broker->eft->newInstance(broker, path, status);
    if (status->rc != CMPI_RC_OK) return NULL;
    plainSetText(broker, instance, "ElementName", device->deviceId, status);
    plainSetText(broker, instance, "Caption", "a device for measuring", status);
    setValue(instance, "HealthState", (CMPIValue){.uint16 = 5}, CMPI_uint16, status);
    setValue(instance, "EnabledState", (CMPIValue){.uint16 = 2}, CMPI_uint16, status);
    setValue(instance, "Slot", (CMPIValue){.uint32 = device->slot}, CMPI_uint32, status);
    setValue(instance, "IsLocked", (CMPIValue){.boolean = 1}, CMPI_boolean, status);
    return status->rc == CMPI_RC_OK ? instance : NULL;
}

static int sameKeys(const CMPIObjectPath* left, const CMPIObjectPath* right, CMPIStatus* status) {
    const CMPICount count = left->ft->getKeyCount(left, status);
    CMPICount i;
    if (status->rc != CMPI_RC_OK || count != right->ft->getKeyCount(right, status)) return 0;
    for (i = 0; i < count && status->rc == CMPI_RC_OK; ++i) {
        CMPIString* name = NULL;
        const CMPIData ours = left->ft->getKeyAt(left, i, &name, status);
        const CMPIData theirs = right->ft->getKey(right, plainChars(name, status), status);
        if (status->rc == CMPI_RC_ERR_NO_SUCH_PROPERTY) {
            status->rc = CMPI_RC_OK;
            return 0;
        }
        if (ours.type != CMPI_string || theirs.type != CMPI_string) return 0;
        if (strcmp(plainChars(ours.value.string, status),
                   plainChars(theirs.value.string, status)) != 0) {
            return 0;
        }
    }
    return status->rc == CMPI_RC_OK;
}

typedef CMPIString* (*TextGetter)(const CMPIObjectPath*, CMPIStatus*);

static int sameText(const CMPIObjectPath* left, const CMPIObjectPath* right, TextGetter leftGetter,
                    TextGetter rightGetter, CMPIStatus* status) {
    const char* const ours = plainChars(leftGetter(left, status), status);
    const char* const theirs = plainChars(rightGetter(right, status), status);
    return status->rc == CMPI_RC_OK && strcasecmp(ours, theirs) == 0;
}

int plainSamePath(const CMPIObjectPath* left, const CMPIObjectPath* right, CMPIStatus* status) {
    return sameKeys(left, right, status) &&
           sameText(left, right, left->ft->getClassName, right->ft->getClassName, status) &&
           sameText(left, right, left->ft->getNameSpace, right->ft->getNameSpace, status) &&
           sameText(left, right, left->ft->getHostname, right->ft->getHostname, status);
}

static char* append(char* to, const char* end, const char* text) {
    const size_t length = strlen(text);
    if ((size_t)(end - to) < length) return to;
    memcpy(to, text, length);
    return to + length;
}

/* Nobody's name or key may break a line of a log: control bytes go out as \xNNNN. */
static char* appendEscaped(char* to, const char* end, const char* text, char quote) {
    for (; *text != '\0' && end - to > 6; ++text) {
        const unsigned char byte = (unsigned char)*text;
        if (byte < 0x20 || byte == 0x7F) {
            to += snprintf(to, 7, "\\x%04X", byte);
        } else {
            if (quote != '\0' && (*text == quote || *text == '\\')) *to++ = '\\';
            *to++ = *text;
        }
    }
    return to;
}

char* plainPathText(const CMPIObjectPath* path, CMPIStatus* status) {
    char text[1024];
    const char* const end = text + sizeof text - 1;
    const CMPICount count = path->ft->getKeyCount(path, status);
    char* to = text;
    CMPICount i;
    to = append(to, end, "//");
    to = appendEscaped(to, end, plainChars(path->ft->getHostname(path, status), status), '\0');
    to = append(to, end, "/");
    to = appendEscaped(to, end, plainChars(path->ft->getNameSpace(path, status), status), '\0');
    to = append(to, end, ":");
    to = appendEscaped(to, end, plainChars(path->ft->getClassName(path, status), status), '\0');
    for (i = 0; i < count && status->rc == CMPI_RC_OK; ++i) {
        CMPIString* name = NULL;
        const CMPIData key = path->ft->getKeyAt(path, i, &name, status);
        to = append(to, end, i == 0 ? "." : ",");
        to = appendEscaped(to, end, plainChars(name, status), '\0');
        to = append(to, end, "=\"");
        to = appendEscaped(to, end, plainChars(key.value.string, status), '"');
        to = append(to, end, "\"");
    }
    *to = '\0';
    return status->rc == CMPI_RC_OK ? strdup(text) : NULL;
}
