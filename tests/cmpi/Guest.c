/* A provider as the field writes them: to the level of 2.0, in words that are C89 as well as C++98,
   with the headers' short names. dialects_test.py compiles it, with macros that choose how it
   includes and at which level. */

#ifdef GUEST_LONG_NAMES
#include "cmpi/cmpidt.h"
#include "cmpi/cmpift.h"
#include "cmpi/cmpimacs.h"
#include "cmpi/cmpios.h"
#include "cmpi/cmpipl.h"
#else
#include <cmpidt.h>
#include <cmpift.h>
#include <cmpimacs.h>
#include <cmpios.h>
#include <cmpipl.h>
#endif

#if CMPI_VERSION < 100 || !defined(CMPI_VER_100)
#error "every level contains 1.0"
#endif
#if defined(CMPI_VER_200) != (CMPI_VERSION >= 200) || defined(CMPI_VER_210) != (CMPI_VERSION >= 210)
#error "a level is named when it is reached"
#endif

/* Providers that are older than 1.0 were carried over so. */
#ifdef CMPI_VER_100
#define GuestSetInstance GuestModifyInstance
#endif

static const CMPIBroker* guestBroker;
static CMPI_MUTEX_TYPE guestMutex;

static CMPIStatus GuestCleanup(CMPIInstanceMI* mi, const CMPIContext* context,
                               CMPIBoolean terminating) {
    (void)mi;
    (void)context;
    (void)terminating;
    guestBroker->xft->destroyMutex(guestMutex);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus GuestEnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context,
                                         const CMPIResult* result, const CMPIObjectPath* path) {
    CMPIStatus status = {CMPI_RC_OK, NULL};
    CMPIUint64 number = 7;
    CMPIString* nameSpace = CMGetNameSpace(path, &status);
    CMPIObjectPath* made =
        CMNewObjectPath(guestBroker, CMGetCharPtr(nameSpace), "PYL_Guest", &status);
    (void)mi;
    (void)context;
    if (CMIsNullObject(made)) CMReturnWithChars(guestBroker, CMPI_RC_ERR_FAILED, "no path");
    CMAddKey(made, "Number", &number, CMPI_uint64);
    CMAddKey(made, "Text", CMObjectPathToString(path, &status), CMPI_string);
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
    CMReturnWithString(
        CMPI_RC_ERR_NOT_SUPPORTED,
        CMGetMessage(guestBroker, "G1", "$0 of $1", NULL, 2, CMFmtSint64(-1), CMFmtChars("guest")));
}

static CMPIStatus GuestGetInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char** properties) {
    CMPIInstance* made = CMNewInstance(guestBroker, path, NULL);
    CMPIData key = CMGetKey(path, "Number", NULL);
    (void)mi;
    (void)context;
    (void)properties;
    if (CMIsNullValue(key)) CMReturn(CMPI_RC_ERR_NOT_FOUND);
    CMSetProperty(made, "Number", &key.value, key.type);
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

static CMPIStatus GuestSetInstance(CMPIInstanceMI* mi, const CMPIContext* context,
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

#ifdef CMPI_VER_210
static CMPIStatus GuestEnumInstancesFiltered(CMPIInstanceMI* mi, const CMPIContext* context,
                                             const CMPIResult* result, const CMPIObjectPath* path,
                                             const char** properties, const char* language,
                                             const char* filter, CMPIStatus* last) {
    (void)language;
    (void)filter;
    (void)last;
    return GuestEnumInstances(mi, context, result, path, properties);
}
#endif

CMInstanceMIStub(Guest, Guest, guestBroker, guestMutex = brkr->xft->newMutex(0))
#ifndef CMPI_VER_210
    static CMPIStatus GuestIndicationCleanup(CMPIIndicationMI* mi, const CMPIContext* context,
                                             CMPIBoolean terminating) {
    (void)mi;
    (void)context;
    (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus GuestAuthorizeFilter(CMPIIndicationMI* mi, const CMPIContext* context,
                                       const CMPISelectExp* filter, const char* className,
                                       const CMPIObjectPath* path, const char* owner) {
    (void)mi;
    (void)context;
    (void)filter;
    (void)className;
    (void)path;
    (void)owner;
    CMReturn(CMPI_RC_OK);
}

/* 2.0 had no result here, 2.1 has one, and so have providers that are older than both. */
static CMPIStatus GuestMustPoll(CMPIIndicationMI* mi, const CMPIContext* context,
#ifdef GUEST_POLLS_WITH_A_RESULT
                                const CMPIResult* result,
#endif
                                const CMPISelectExp* filter, const char* className,
                                const CMPIObjectPath* path) {
    (void)mi;
    (void)context;
#ifdef GUEST_POLLS_WITH_A_RESULT
    (void)result;
#endif
    (void)filter;
    (void)className;
    (void)path;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus GuestActivateFilter(CMPIIndicationMI* mi, const CMPIContext* context,
                                      const CMPISelectExp* filter, const char* className,
                                      const CMPIObjectPath* path, CMPIBoolean first) {
    (void)mi;
    (void)context;
    (void)filter;
    (void)className;
    (void)path;
    (void)first;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus GuestDeActivateFilter(CMPIIndicationMI* mi, const CMPIContext* context,
                                        const CMPISelectExp* filter, const char* className,
                                        const CMPIObjectPath* path, CMPIBoolean last) {
    return GuestActivateFilter(mi, context, filter, className, path, last);
}

static CMPIStatus GuestEnableIndications(CMPIIndicationMI* mi, const CMPIContext* context) {
    (void)mi;
    (void)context;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus GuestDisableIndications(CMPIIndicationMI* mi, const CMPIContext* context) {
    return GuestEnableIndications(mi, context);
}

CMIndicationMIStub(Guest, Guest, guestBroker, CMNoHook)
#endif
