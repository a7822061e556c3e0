/* Methods that use what they are given without looking at it first, as providers of the field do.
   Each answers with a text of what it met. */
#include <cmpidt.h>
#include <cmpift.h>
#include <cmpimacs.h>
#include <stdio.h>
#include <string.h>

static const CMPIBroker* broker;
static char text[1024];

static void append(const char* words) {
    strncat(text, words, sizeof text - strlen(text) - 1);
}

/* A path whose name space is filled in later. */
static void makePathWithoutNameSpace(const CMPIContext* context, const CMPIObjectPath* path) {
    CMPIObjectPath* made = CMNewObjectPath(broker, NULL, "TST_Thing", NULL);
    (void)context;
    append(CMGetCharPtr(CMGetNameSpace(made, NULL)));
    append("|");
    CMSetNameSpace(made, CMGetCharPtr(CMGetNameSpace(path, NULL)));
    append(CMGetCharPtr(CMObjectPathToString(made, NULL)));
}

static CMPIStatus GuestMethodCleanup(CMPIMethodMI* mi, const CMPIContext* context,
                                     CMPIBoolean terminating) {
    (void)mi;
    (void)context;
    (void)terminating;
    CMReturn(CMPI_RC_OK);
}

struct Row {
    const char* name;
    void (*run)(const CMPIContext*, const CMPIObjectPath*);
};

static const struct Row rows[] = {
    {"MakePathWithoutNameSpace", makePathWithoutNameSpace},
};

static CMPIStatus GuestInvokeMethod(CMPIMethodMI* mi, const CMPIContext* context,
                                    const CMPIResult* result, const CMPIObjectPath* path,
                                    const char* method, const CMPIArgs* in, CMPIArgs* out) {
    CMPIString* answer;
    size_t i;
    (void)mi;
    (void)in;
    (void)out;
    text[0] = '\0';
    for (i = 0; i < sizeof rows / sizeof *rows; ++i) {
        if (strcmp(rows[i].name, method) == 0) rows[i].run(context, path);
    }
    answer = CMNewString(broker, text, NULL);
    CMReturnData(result, &answer, CMPI_string);
    return CMReturnDone(result);
}

CMMethodMIStub(Guest, MethodGuest, broker, CMNoHook)
