#pragma once

#include "bench/library/PlainPath.h"
#include "cmpi/cmpift.h"

#include <stddef.h>

/* A provider of devices and of links to them, in plain C: what a request costs that is answered
   without the support library. The walks make the calls that the managed instance collection
   promises. */

#ifdef __cplusplus
extern "C" {
#endif

struct PlainProvider;

/* `devices` devices, the last `links` of which belong to the system. NULL when short of memory. */
struct PlainProvider* makePlainProvider(const CMPIBroker* broker, const char* host,
                                        const char* nameSpace, size_t devices, size_t links);
void deletePlainProvider(struct PlainProvider* provider);

/* Owned by the provider. */
CMPIInstanceMI* plainInstanceMI(struct PlainProvider* provider);
CMPIAssociationMI* plainAssociationMI(struct PlainProvider* provider);

#ifdef __cplusplus
}
#endif
