/* Methods that use what they are given without looking at it first, as providers of the field do.
   Each answers with a text of what it met. */
#include <cmpidt.h>
#include <cmpift.h>
#include <cmpimacs.h>
#include <stdio.h>
#include <string.h>

static const CMPIBroker* broker;
static char text[1024];

static void append(const char* words) { strncat(text, words, sizeof text - strlen(text) - 1); }

/* A path whose name space is filled in later. */
static void makePathWithoutNameSpace(const CMPIContext* context, const CMPIObjectPath* path) {
    CMPIObjectPath* made = CMNewObjectPath(broker, NULL, "TST_Thing", NULL);
    (void)context;
    append(CMGetCharPtr(CMGetNameSpace(made, NULL)));
    append("|");
    CMSetNameSpace(made, CMGetCharPtr(CMGetNameSpace(path, NULL)));
    append(CMGetCharPtr(CMObjectPathToString(made, NULL)));
}

/* Containers of arguments in an array, of which one is filled. */
static void keepArgumentsInAnArray(const CMPIContext* context, const CMPIObjectPath* path) {
    CMPIArray* array = CMNewArray(broker, 2, CMPI_args, NULL);
    CMPIArgs* args = CMNewArgs(broker, NULL);
    CMPIUint32 operation = 2;
    CMPIData back;
    (void)context;
    (void)path;
    CMAddArg(args, "Operation", &operation, CMPI_uint32);
    CMSetArrayElementAt(array, 0, &args, CMPI_args);
    back = CMGetArrayElementAt(array, 0, NULL);
    append(CMGetCharPtr(CDToString(broker, back.value.args, NULL)));
    append(CMIsNullValue(CMGetArrayElementAt(array, 1, NULL)) ? "null" : "not null");
}

static void keepAnEnumerationInAnArray(const CMPIContext* context, const CMPIObjectPath* path) {
    CMPIArray* array = CMNewArray(broker, 1, CMPI_enumeration, NULL);
    CMPIEnumeration* found = CBEnumInstanceNames(
        broker, context, CMNewObjectPath(broker, NULL, "TST_Thing", NULL), NULL);
    CMPIEnumeration* back;
    (void)path;
    CMSetArrayElementAt(array, 0, &found, CMPI_enumeration);
    back = CMGetArrayElementAt(array, 0, NULL).value.Enum;
    append(CMHasNext(back, NULL) ? "something" : "nothing");
}

/* Every type that an array can have, in a loop that takes each element as it was put. */
static void fillArraysOfAllTypes(const CMPIContext* context, const CMPIObjectPath* path) {
    static const CMPIType types[] = {CMPI_boolean,  CMPI_char16, CMPI_uint8,      CMPI_uint16,
                                     CMPI_uint32,   CMPI_uint64, CMPI_sint8,      CMPI_sint16,
                                     CMPI_sint32,   CMPI_sint64, CMPI_real32,     CMPI_real64,
                                     CMPI_string,   CMPI_chars,  CMPI_dateTime,   CMPI_ref,
                                     CMPI_instance, CMPI_args,   CMPI_enumeration};
    size_t i;
    for (i = 0; i < sizeof types / sizeof *types; ++i) {
        CMPIArray* array = CMNewArray(broker, 3, types[i], NULL);
        CMPIValue value;
        CMPIData back;
        memset(&value, 0, sizeof value);
        if (types[i] == CMPI_string) value.string = CMNewString(broker, "x", NULL);
        if (types[i] == CMPI_dateTime) value.dateTime = CMNewDateTime(broker, NULL);
        if (types[i] == CMPI_ref) value.ref = CMClone(path, NULL);
        if (types[i] == CMPI_instance) value.inst = CMNewInstance(broker, path, NULL);
        if (types[i] == CMPI_args) value.args = CMNewArgs(broker, NULL);
        if (types[i] == CMPI_enumeration) {
            value.Enum = CBEnumInstanceNames(
                broker, context, CMNewObjectPath(broker, NULL, "TST_Thing", NULL), NULL);
        }
        if (types[i] == CMPI_chars) {
            CMSetArrayElementAt(array, 1, "x", CMPI_chars);
        } else {
            CMSetArrayElementAt(array, 1, &value, types[i]);
        }
        back = CMGetArrayElementAt(array, 1, NULL);
        append(CMGetArrayCount(array, NULL) == 3 && !CMIsNullValue(back) ? "." : "-");
        if (types[i] == CMPI_ref) CMRelease(value.ref);
    }
}

/* The class has no key of that name. */
static void getAnInstanceByAForeignKey(const CMPIContext* context, const CMPIObjectPath* path) {
    CMPIObjectPath* made =
        CMNewObjectPath(broker, CMGetCharPtr(CMGetNameSpace(path, NULL)), "TST_Thing", NULL);
    CMPIInstance* found;
    CMAddKey(made, "Colour", "red", CMPI_chars);
    found = CBGetInstance(broker, context, made, NULL, NULL);
    append(CMGetCharPtr(CMGetProperty(found, "name", NULL).value.string));
}

/* What a call returned is the broker's. */
static void releaseWhatIsNotTheirs(const CMPIContext* context, const CMPIObjectPath* path) {
    int i;
    (void)context;
    for (i = 0; i < 3; ++i) CMRelease(CMGetNameSpace(path, NULL));
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
    {"KeepArgumentsInAnArray", keepArgumentsInAnArray},
    {"KeepAnEnumerationInAnArray", keepAnEnumerationInAnArray},
    {"FillArraysOfAllTypes", fillArraysOfAllTypes},
    {"GetAnInstanceByAForeignKey", getAnInstanceByAForeignKey},
    {"ReleaseWhatIsNotTheirs", releaseWhatIsNotTheirs},
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
