/** The CMPI C interface, third of three headers: macros that spare a provider the tables.
 *
 * CM... macros work on data objects, CB... macros ask the broker for an operation, CD... macros
 * describe any data object. Each is one call of the slot that it names, so cmpift.h tells what it
 * does, who owns its result and from which level on it exists. An object, broker or `status`
 * argument may be evaluated more than once. `status` is a CMPIStatus* or NULL.
 *
 * The operating system and memory tables have no macros: call their slots. */
#pragma once

/* C89 and C++98 lack line comments, 64-bit integers or variadic macros: a system header may use
 * them, and #include_next, without a word from -Wpedantic. */
#if defined(PYL_SYSTEM_CMPI) || (defined(__cplusplus) && __cplusplus < 201103L) || \
    (!defined(__cplusplus) && (!defined(__STDC_VERSION__) || __STDC_VERSION__ < 199901L))
#pragma GCC system_header
#endif

#ifdef PYL_SYSTEM_CMPI

#include_next <cmpi/cmpimacs.h>

#else

#include "cmpidt.h"
#include "cmpift.h"

#include <stddef.h>

/// Marks a function that the broker looks up by name: C linkage, and visible outside its library
/// even where symbols are hidden by default.
#ifdef __cplusplus
#define CMPI_EXTERN_C extern "C" __attribute__((visibility("default")))
#else
#define CMPI_EXTERN_C extern __attribute__((visibility("default")))
#endif

// Statuses. The parameters are not called rc and msg: they would replace the members' names.

/// Set a status; nothing happens if it is NULL.
#define CMSetStatusWithString(status, code, string) \
    do {                                            \
        CMPIStatus* cmpiStatus_ = (status);         \
        if (cmpiStatus_ != NULL) {                  \
            cmpiStatus_->rc = (code);               \
            cmpiStatus_->msg = (string);            \
        }                                           \
    } while (0)
#define CMSetStatus(status, code) CMSetStatusWithString(status, code, NULL)
#define CMSetStatusWithChars(broker, status, code, text) \
    CMSetStatusWithString(status, code, CMNewString(broker, text, NULL))

/// Leave the current function with a status.
#define CMReturnWithString(code, string) \
    do {                                 \
        CMPIStatus cmpiResult_;          \
        cmpiResult_.rc = (code);         \
        cmpiResult_.msg = (string);      \
        return cmpiResult_;              \
    } while (0)
#define CMReturn(code) CMReturnWithString(code, NULL)
#define CMReturnWithChars(broker, code, text) \
    CMReturnWithString(code, CMNewString(broker, text, NULL))

// Questions about a handle or a CMPIData.

#define CMIsNullObject(object) ((object) == NULL || (object)->hdl == NULL)
#define CMIsNullValue(data) (((data).state & CMPI_nullValue) != 0)
#define CMIsKeyValue(data) (((data).state & CMPI_keyValue) != 0)
#define CMIsArray(data) (((data).type & CMPI_ARRAY) != 0)

// Every data object.

/// An independent copy, to be ended with CMRelease.
#define CMClone(object, status) ((object)->ft->clone((object), (status)))
/// Ends a clone, and nothing but a clone.
#define CMRelease(object) ((object)->ft->release((object)))

#define CDToString(broker, object, status) ((broker)->eft->toString((broker), (object), (status)))
#define CDIsOfType(broker, object, type, status) \
    ((broker)->eft->isOfType((broker), (object), (type), (status)))
#define CDGetType(broker, object, status) ((broker)->eft->getType((broker), (object), (status)))

// New data objects.

#define CMNewInstance(broker, path, status) ((broker)->eft->newInstance((broker), (path), (status)))
#define CMNewObjectPath(broker, nameSpace, className, status) \
    ((broker)->eft->newObjectPath((broker), (nameSpace), (className), (status)))
#define CMNewArgs(broker, status) ((broker)->eft->newArgs((broker), (status)))
#define CMNewString(broker, text, status) ((broker)->eft->newString((broker), (text), (status)))
#define CMNewStringCP(broker, text, codepage, status) \
    ((broker)->eft->newStringCP((broker), (text), (codepage), (status)))
#define CMNewArray(broker, count, type, status) \
    ((broker)->eft->newArray((broker), (count), (type), (status)))
#define CMNewDateTime(broker, status) ((broker)->eft->newDateTime((broker), (status)))
#define CMNewDateTimeFromBinary(broker, microseconds, interval, status) \
    ((broker)->eft->newDateTimeFromBinary((broker), (microseconds), (interval), (status)))
#define CMNewDateTimeFromChars(broker, text, status) \
    ((broker)->eft->newDateTimeFromChars((broker), (text), (status)))
#define CMNewSelectExp(broker, query, language, projection, status) \
    ((broker)->eft->newSelectExp((broker), (query), (language), (projection), (status)))
#define CMNewCMPIError(broker, owner, id, text, severity, cause, code, status)                 \
    ((broker)->eft->newCMPIError((broker), (owner), (id), (text), (severity), (cause), (code), \
                                 (status)))
#define CMNewPropertyList(broker, properties, status) \
    ((broker)->eft->newPropertyList((broker), (properties), (status)))
#define CMNewEnumerationFilter(broker, language, text, status) \
    ((broker)->eft->newEnumerationFilter((broker), (language), (text), (status)))

// Services.

#define CMClassPathIsA(broker, path, className, status) \
    ((broker)->eft->classPathIsA((broker), (path), (className), (status)))
#define CMLogMessage(broker, severity, id, text, string) \
    ((broker)->eft->logMessage((broker), (severity), (id), (text), (string)))
#define CMTraceMessage(broker, level, component, text, string) \
    ((broker)->eft->trace((broker), (level), (component), (text), (string)))

/// Translated texts; after the count follow that many inserts, each made by a CMFmt macro:
/// CMGetMessage2(broker, "DISK7", file, "$0 has failed", &status, 1, CMFmtChars(name)).
#define CMGetMessage(broker, id, text, status, ...) \
    ((broker)->eft->getMessage((broker), (id), (text), (status), __VA_ARGS__))
#define CMGetMessage2(broker, id, file, text, status, ...) \
    ((broker)->eft->getMessage2((broker), (id), (file), (text), (status), __VA_ARGS__))
#define CMOpenMessageFile(broker, fileName, file) \
    ((broker)->eft->openMessageFile((broker), (fileName), (file)))
#define CMCloseMessageFile(broker, file) ((broker)->eft->closeMessageFile((broker), (file)))

#define CMFmtSint(value) CMPI_sint32, ((long)(value))
#define CMFmtUint(value) CMPI_uint32, ((unsigned long)(value))
#define CMFmtSint64(value) CMPI_sint64, ((CMPISint64)(value))
#define CMFmtUint64(value) CMPI_uint64, ((CMPIUint64)(value))
#define CMFmtReal(value) CMPI_real64, ((double)(value))
#define CMFmtBoolean(value) CMPI_boolean, ((int)(value))
#define CMFmtChars(value) CMPI_chars, ((char*)(value))
#define CMFmtString(value) CMPI_string, ((CMPIString*)(value))

// Contexts.

#define CMGetContextEntry(context, name, status) \
    ((context)->ft->getEntry((context), (name), (status)))
#define CMGetContextEntryAt(context, index, name, status) \
    ((context)->ft->getEntryAt((context), (index), (name), (status)))
#define CMGetContextEntryCount(context, status) ((context)->ft->getEntryCount((context), (status)))
/// `value` is a CMPIValue*, here and below; for a string make a CMPIString, as the sender and the
/// receiver of CMPI_chars may disagree on what the pointer means.
#define CMAddContextEntry(context, name, value, type) \
    ((context)->ft->addEntry((context), (name), (const CMPIValue*)(value), (type)))

// Results.

#define CMReturnData(result, value, type) \
    ((result)->ft->returnData((result), (const CMPIValue*)(value), (type)))
#define CMReturnInstance(result, instance) ((result)->ft->returnInstance((result), (instance)))
#define CMReturnObjectPath(result, path) ((result)->ft->returnObjectPath((result), (path)))
#define CMReturnDone(result) ((result)->ft->returnDone((result)))
#define CMReturnError(result, error) ((result)->ft->returnError((result), (error)))

// Strings.

#define CMGetCharsPtr(string, status) ((string)->ft->getCharPtr((string), (status)))
#define CMGetCharPtr(string) CMGetCharsPtr(string, NULL)
#define CMNewCharsCP(string, codepage, status) \
    ((string)->ft->newCharsCP((string), (codepage), (status)))

// Arrays.

#define CMGetArrayCount(array, status) ((array)->ft->getSize((array), (status)))
#define CMGetArrayType(array, status) ((array)->ft->getSimpleType((array), (status)))
#define CMGetArrayElementAt(array, index, status) \
    ((array)->ft->getElementAt((array), (index), (status)))
#define CMSetArrayElementAt(array, index, value, type) \
    ((array)->ft->setElementAt((array), (index), (const CMPIValue*)(value), (type)))

// Enumerations.

#define CMGetNext(enumeration, status) ((enumeration)->ft->getNext((enumeration), (status)))
#define CMHasNext(enumeration, status) ((enumeration)->ft->hasNext((enumeration), (status)))
#define CMToArray(enumeration, status) ((enumeration)->ft->toArray((enumeration), (status)))

// Instances.

#define CMGetProperty(instance, name, status) \
    ((instance)->ft->getProperty((instance), (name), (status)))
#define CMGetPropertyAt(instance, index, name, status) \
    ((instance)->ft->getPropertyAt((instance), (index), (name), (status)))
#define CMGetPropertyCount(instance, status) \
    ((instance)->ft->getPropertyCount((instance), (status)))
#define CMSetProperty(instance, name, value, type) \
    ((instance)->ft->setProperty((instance), (name), (const CMPIValue*)(value), (type)))
#define CMSetPropertyWithOrigin(instance, name, value, type, origin)                              \
    ((instance)->ft->setPropertyWithOrigin((instance), (name), (const CMPIValue*)(value), (type), \
                                           (origin)))
#define CMSetPropertyFilter(instance, properties, keys) \
    ((instance)->ft->setPropertyFilter((instance), (properties), (keys)))
#define CMGetObjectPath(instance, status) ((instance)->ft->getObjectPath((instance), (status)))
#define CMSetObjectPath(instance, path) ((instance)->ft->setObjectPath((instance), (path)))

// Object paths.

#define CMSetNameSpace(path, nameSpace) ((path)->ft->setNameSpace((path), (nameSpace)))
#define CMGetNameSpace(path, status) ((path)->ft->getNameSpace((path), (status)))
#define CMSetHostname(path, host) ((path)->ft->setHostname((path), (host)))
#define CMGetHostname(path, status) ((path)->ft->getHostname((path), (status)))
#define CMSetClassName(path, className) ((path)->ft->setClassName((path), (className)))
#define CMGetClassName(path, status) ((path)->ft->getClassName((path), (status)))
#define CMAddKey(path, name, value, type) \
    ((path)->ft->addKey((path), (name), (const CMPIValue*)(value), (type)))
#define CMGetKey(path, name, status) ((path)->ft->getKey((path), (name), (status)))
#define CMGetKeyAt(path, index, name, status) \
    ((path)->ft->getKeyAt((path), (index), (name), (status)))
#define CMGetKeyCount(path, status) ((path)->ft->getKeyCount((path), (status)))
#define CMObjectPathToString(path, status) ((path)->ft->toString((path), (status)))
#define CMSetNameSpaceFromObjectPath(path, source) \
    ((path)->ft->setNameSpaceFromObjectPath((path), (source)))
#define CMSetHostAndNameSpaceFromObjectPath(path, source) \
    ((path)->ft->setHostAndNameSpaceFromObjectPath((path), (source)))
#define CMGetClassQualifier(path, qualifier, status) \
    ((path)->ft->getClassQualifier((path), (qualifier), (status)))
#define CMGetPropertyQualifier(path, property, qualifier, status) \
    ((path)->ft->getPropertyQualifier((path), (property), (qualifier), (status)))
#define CMGetMethodQualifier(path, method, qualifier, status) \
    ((path)->ft->getMethodQualifier((path), (method), (qualifier), (status)))
#define CMGetParameterQualifier(path, method, parameter, qualifier, status) \
    ((path)->ft->getParameterQualifier((path), (method), (parameter), (qualifier), (status)))

// Method arguments.

#define CMAddArg(args, name, value, type) \
    ((args)->ft->addArg((args), (name), (const CMPIValue*)(value), (type)))
#define CMGetArg(args, name, status) ((args)->ft->getArg((args), (name), (status)))
#define CMGetArgAt(args, index, name, status) \
    ((args)->ft->getArgAt((args), (index), (name), (status)))
#define CMGetArgCount(args, status) ((args)->ft->getArgCount((args), (status)))

// Datetimes.

#define CMGetBinaryFormat(dateTime, status) ((dateTime)->ft->getBinaryFormat((dateTime), (status)))
#define CMGetStringFormat(dateTime, status) ((dateTime)->ft->getStringFormat((dateTime), (status)))
#define CMIsInterval(dateTime, status) ((dateTime)->ft->isInterval((dateTime), (status)))

// Queries.

#define CMGetSelExpString(query, status) ((query)->ft->getString((query), (status)))
#define CMEvaluateSelExp(query, instance, status) \
    ((query)->ft->evaluate((query), (instance), (status)))
#define CMEvaluateSelExpUsingAccessor(query, accessor, parameter, status) \
    ((query)->ft->evaluateUsingAccessor((query), (accessor), (parameter), (status)))
#define CMGetDoc(query, status) ((query)->ft->getDOC((query), (status)))
#define CMGetCod(query, status) ((query)->ft->getCOD((query), (status)))
#define CMGetSubCondCountAndType(condition, form, status) \
    ((condition)->ft->getCountAndType((condition), (form), (status)))
#define CMGetSubCondAt(condition, index, status) \
    ((condition)->ft->getSubCondAt((condition), (index), (status)))
#define CMGetPredicateCount(condition, status) ((condition)->ft->getCount((condition), (status)))
#define CMGetPredicateAt(condition, index, status) \
    ((condition)->ft->getPredicateAt((condition), (index), (status)))
#define CMGetPredicate(condition, left, status) \
    ((condition)->ft->getPredicate((condition), (left), (status)))
#define CMGetPredicateData(predicate, type, op, left, right) \
    ((predicate)->ft->getData((predicate), (type), (op), (left), (right)))
#define CMEvaluatePredicateUsingAccessor(predicate, accessor, parameter, status) \
    ((predicate)->ft->evaluateUsingAccessor((predicate), (accessor), (parameter), (status)))

// The broker itself, its threads, indications and up-calls.

#define CBBrokerCapabilities(broker) ((broker)->bft->brokerCapabilities)
#define CBBrokerVersion(broker) ((broker)->bft->brokerVersion)
#define CBBrokerName(broker) ((broker)->bft->brokerName)

#define CBPrepareAttachThread(broker, context) \
    ((broker)->bft->prepareAttachThread((broker), (context)))
#define CBAttachThread(broker, context) ((broker)->bft->attachThread((broker), (context)))
#define CBDetachThread(broker, context) ((broker)->bft->detachThread((broker), (context)))
#define CBDeliverIndication(broker, context, nameSpace, indication) \
    ((broker)->bft->deliverIndication((broker), (context), (nameSpace), (indication)))

#define CBEnumInstanceNames(broker, context, path, status) \
    ((broker)->bft->enumerateInstanceNames((broker), (context), (path), (status)))
#define CBEnumInstances(broker, context, path, properties, status) \
    ((broker)->bft->enumerateInstances((broker), (context), (path), (properties), (status)))
#define CBGetInstance(broker, context, path, properties, status) \
    ((broker)->bft->getInstance((broker), (context), (path), (properties), (status)))
#define CBCreateInstance(broker, context, path, instance, status) \
    ((broker)->bft->createInstance((broker), (context), (path), (instance), (status)))
#define CBModifyInstance(broker, context, path, instance, properties) \
    ((broker)->bft->modifyInstance((broker), (context), (path), (instance), (properties)))
#define CBDeleteInstance(broker, context, path) \
    ((broker)->bft->deleteInstance((broker), (context), (path)))
#define CBExecQuery(broker, context, path, query, language, status) \
    ((broker)->bft->execQuery((broker), (context), (path), (query), (language), (status)))

#define CBAssociators(broker, context, path, associationClass, resultClass, role, resultRole,   \
                      properties, status)                                                       \
    ((broker)->bft->associators((broker), (context), (path), (associationClass), (resultClass), \
                                (role), (resultRole), (properties), (status)))
#define CBAssociatorNames(broker, context, path, associationClass, resultClass, role, resultRole, \
                          status)                                                                 \
    ((broker)->bft->associatorNames((broker), (context), (path), (associationClass),              \
                                    (resultClass), (role), (resultRole), (status)))
#define CBReferences(broker, context, path, associationClass, role, properties, status) \
    ((broker)->bft->references((broker), (context), (path), (associationClass), (role), \
                               (properties), (status)))
#define CBReferenceNames(broker, context, path, associationClass, role, status)             \
    ((broker)->bft->referenceNames((broker), (context), (path), (associationClass), (role), \
                                   (status)))

#define CBEnumInstancesFiltered(broker, context, path, properties, language, text, status) \
    ((broker)->bft->enumerateInstancesFiltered((broker), (context), (path), (properties),  \
                                               (language), (text), (status)))
#define CBAssociatorsFiltered(broker, context, path, associationClass, resultClass, role,  \
                              resultRole, properties, language, text, status)              \
    ((broker)->bft->associatorsFiltered((broker), (context), (path), (associationClass),   \
                                        (resultClass), (role), (resultRole), (properties), \
                                        (language), (text), (status)))
#define CBReferencesFiltered(broker, context, path, associationClass, role, properties, language, \
                             text, status)                                                        \
    ((broker)->bft->referencesFiltered((broker), (context), (path), (associationClass), (role),   \
                                       (properties), (language), (text), (status)))

#define CBInvokeMethod(broker, context, path, method, inputs, outputs, status)               \
    ((broker)->bft->invokeMethod((broker), (context), (path), (method), (inputs), (outputs), \
                                 (status)))
#define CBSetProperty(broker, context, path, name, value, type)                                 \
    ((broker)->bft->setProperty((broker), (context), (path), (name), (const CMPIValue*)(value), \
                                (type)))
#define CBGetProperty(broker, context, path, name, status) \
    ((broker)->bft->getProperty((broker), (context), (path), (name), (status)))

// MI factories. CMInstanceMIStub(Disk, Disk, broker, CMNoHook) defines Disk_Create_InstanceMI,
// which stores the broker in the variable `broker` and returns an MI made of functions that are
// declared before: DiskCleanup, DiskEnumInstanceNames and so on, in the order and with the
// signatures of the table. `hook` is a statement that the factory runs; it may use `brkr`, `ctx`
// and `rc`, the arguments of the factory. The tables are of level CMPI_VERSION: below 210 no
// function is asked for that 2.1 added.

#define CMNoHook (void)0

#ifdef CMPI_VER_200
#define PYL_CMPI_SINCE_200(function) function
#else
#define PYL_CMPI_SINCE_200(function) NULL
#endif
#ifdef CMPI_VER_210
#define PYL_CMPI_SINCE_210(function) function
#define PYL_CMPI_MUST_POLL(function) function
#else
#define PYL_CMPI_SINCE_210(function) NULL
/// Providers have it without the result, as 2.0 does, and with it.
typedef CMPIStatus (*PylMustPoll)(CMPIIndicationMI* mi, const CMPIContext* context,
                                  const CMPIResult* result, const CMPISelectExp* filter,
                                  const char* className, const CMPIObjectPath* path);
#define PYL_CMPI_MUST_POLL(function) ((PylMustPoll)(void (*)(void))(function))
#endif

#define CMInstanceMIStub(prefix, provider, broker, hook)       \
    static const CMPIInstanceMIFT provider##InstanceTable_ = { \
        CMPI_VERSION,                                          \
        CMPI_VERSION,                                          \
        "instance" #provider,                                  \
        prefix##Cleanup,                                       \
        prefix##EnumInstanceNames,                             \
        prefix##EnumInstances,                                 \
        prefix##GetInstance,                                   \
        prefix##CreateInstance,                                \
        prefix##ModifyInstance,                                \
        prefix##DeleteInstance,                                \
        prefix##ExecQuery,                                     \
        PYL_CMPI_SINCE_210(prefix##EnumInstancesFiltered)};    \
    PYL_CMPI_FACTORY(Instance, provider, broker, hook)

#define CMAssociationMIStub(prefix, provider, broker, hook)          \
    static const CMPIAssociationMIFT provider##AssociationTable_ = { \
        CMPI_VERSION,                                                \
        CMPI_VERSION,                                                \
        "association" #provider,                                     \
        prefix##AssociationCleanup,                                  \
        prefix##Associators,                                         \
        prefix##AssociatorNames,                                     \
        prefix##References,                                          \
        prefix##ReferenceNames,                                      \
        PYL_CMPI_SINCE_210(prefix##AssociatorsFiltered),             \
        PYL_CMPI_SINCE_210(prefix##ReferencesFiltered)};             \
    PYL_CMPI_FACTORY(Association, provider, broker, hook)

#define CMMethodMIStub(prefix, provider, broker, hook)                         \
    static const CMPIMethodMIFT provider##MethodTable_ = {                     \
        CMPI_VERSION, CMPI_VERSION, "method" #provider, prefix##MethodCleanup, \
        prefix##InvokeMethod};                                                 \
    PYL_CMPI_FACTORY(Method, provider, broker, hook)

#define CMPropertyMIStub(prefix, provider, broker, hook)       \
    static const CMPIPropertyMIFT provider##PropertyTable_ = { \
        CMPI_VERSION,                                          \
        CMPI_VERSION,                                          \
        "property" #provider,                                  \
        prefix##PropertyCleanup,                               \
        prefix##SetProperty,                                   \
        prefix##GetProperty,                                   \
        PYL_CMPI_SINCE_200(prefix##SetPropertyWithOrigin)};    \
    PYL_CMPI_FACTORY(Property, provider, broker, hook)

#define CMIndicationMIStub(prefix, provider, broker, hook)         \
    static const CMPIIndicationMIFT provider##IndicationTable_ = { \
        CMPI_VERSION,                                              \
        CMPI_VERSION,                                              \
        "indication" #provider,                                    \
        prefix##IndicationCleanup,                                 \
        prefix##AuthorizeFilter,                                   \
        PYL_CMPI_MUST_POLL(prefix##MustPoll),                      \
        prefix##ActivateFilter,                                    \
        prefix##DeActivateFilter,                                  \
        prefix##EnableIndications,                                 \
        prefix##DisableIndications,                                \
        PYL_CMPI_SINCE_210(prefix##AuthorizeFilterCollection),     \
        PYL_CMPI_SINCE_210(prefix##ActivateFilterCollection),      \
        PYL_CMPI_SINCE_210(prefix##DeActivateFilterCollection)};   \
    PYL_CMPI_FACTORY(Indication, provider, broker, hook)

/// The factory that the five stubs share; not for other use.
#define PYL_CMPI_FACTORY(kind, provider, broker, ...)                     \
    CMPI_EXTERN_C CMPI##kind##MI* provider##_Create_##kind##MI(           \
        const CMPIBroker* brkr, const CMPIContext* ctx, CMPIStatus* rc) { \
        static CMPI##kind##MI mi = {NULL, &provider##kind##Table_};       \
        (void)ctx;                                                        \
        broker = brkr;                                                    \
        CMSetStatus(rc, CMPI_RC_OK);                                      \
        __VA_ARGS__; /* the hook: expanded, it may hold commas */         \
        return &mi;                                                       \
    }

#endif
