#pragma once

#include "cmpi/cmpift.h"

/* Object paths of devices in plain C, as a careful provider author writes it: every status is
   looked at, texts go in as strings of the broker. */

#ifdef __cplusplus
extern "C" {
#endif

#define benchSystemClass "Bench_System"
#define benchDeviceClass "Bench_Device"
#define benchLinkClass "Bench_SystemDevice"

struct PlainDevice {
    const char* host;
    const char* nameSpace;
    const char* className;
    const char* deviceId;
    unsigned slot;
};

/* A new path with host and four keys, or NULL with the failure in the status. */
CMPIObjectPath* plainDevicePath(const CMPIBroker* broker, const struct PlainDevice* device,
                                CMPIStatus* status);

/* The same with the properties of a device. */
CMPIInstance* plainDeviceInstance(const CMPIBroker* broker, const struct PlainDevice* device,
                                  CMPIStatus* status);

/* 1 when host, namespace, class and all keys agree. Keys are texts. */
int plainSamePath(const CMPIObjectPath* left, const CMPIObjectPath* right, CMPIStatus* status);

/* The path as text, `//host/root/ns:Class.Key="value",...`; the caller frees it. */
char* plainPathText(const CMPIObjectPath* path, CMPIStatus* status);

/* The characters of a string; "" for none. */
const char* plainChars(const CMPIString* string, CMPIStatus* status);

/* Sets a property to a text. */
void plainSetText(const CMPIBroker* broker, CMPIInstance* instance, const char* name,
                  const char* text, CMPIStatus* status);

/* Adds a key that is a text. */
void plainAddKey(const CMPIBroker* broker, CMPIObjectPath* path, const char* name, const char* text,
                 CMPIStatus* status);

#ifdef __cplusplus
}
#endif
