/** The CMPI C interface, second of three headers: the function tables.
 *
 * A broker (the object manager) and a provider's MIs meet in structs of function pointers. Tables
 * only ever grew at the end; what 2.0 or 2.1 added is marked. Before using a marked slot look at
 * the level that the other side stored: brokerVersion for CMPIBrokerFT and for `mft`, the table's
 * own ftVersion everywhere else. Beyond that level there is no null pointer but foreign memory.
 *
 * **Who owns what**
 * - Objects that a call made or returned, up-calls included, belong to the broker: they are good
 *   until the MI function returns, and nobody needs to dispose of them. What is to live longer is
 *   cloned.
 * - A clone belongs to whoever made it and ends with `release` of its own table; nothing else is
 *   ever released. A container takes its contents along.
 * - What a CMPIBrokerEncFT function made may be given back early with the function of
 *   CMPIBrokerMemFT that names its kind; neither clones nor results of up-calls may.
 * - Parts of an object, and the text of a string, are borrowed from it.
 * - Blocks from cmpiMalloc and its siblings go back with cmpiFree, text from newCharsCP with
 *   freeChars.
 * - Arguments of an MI function are borrowed for the time of the call.
 * - MI structs and their tables are the provider's, and stay valid until cleanup.
 *
 * **How a call fails**
 * - A CMPIStatus result tells by itself. Everything else writes to the argument `status`, which
 *   may be NULL, and returns NULL, zero or a CMPIData without meaning: look at the code first.
 * - No slot is NULL. What is not offered answers CMPI_RC_ERR_NOT_SUPPORTED.
 * - No C++ exception may cross.
 *
 * **Arguments that recur**
 * - `properties` holds names and ends with NULL. A NULL list stands for all properties, an empty
 *   one for none.
 * - `value` NULL stands for a NULL value of type `type`. A C string is copied before the call
 *   returns; an object may not be, so leave it unchanged until the MI function ends.
 * - `filterLanguage` and `filter`: if either is NULL, nothing is filtered.
 * - Association calls: a NULL class or role matches all.
 * - `index` counts from zero; `name` beside it receives the item's name and may be NULL.
 *
 * MI functions run on threads that the broker knows, several at once. Any other thread attaches
 * itself before its first call: see prepareAttachThread. */
#pragma once

/* C89 and C++98 lack line comments, 64-bit integers or variadic macros: a system header may use
 * them, and #include_next, without a word from -Wpedantic. */
#if defined(PYL_SYSTEM_CMPI) || (defined(__cplusplus) && __cplusplus < 201103L) || \
    (!defined(__cplusplus) && (!defined(__STDC_VERSION__) || __STDC_VERSION__ < 199901L))
#pragma GCC system_header
#endif

#ifdef PYL_SYSTEM_CMPI

#include_next <cmpi/cmpift.h>

#else

#include "cmpidt.h"

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

struct timespec;  // <time.h> does not have it in the oldest dialects

/// The broker, the first argument of most functions. It outlives every MI that was given it.
struct _CMPIBroker {
    const void* hdl;
    const CMPIBrokerFT* bft;
    const CMPIBrokerEncFT* eft;
    const CMPIBrokerExtFT* xft;
    const CMPIBrokerMemFT* mft;  ///< since 2.0; NULL where the capability is missing
};

/// Threads, indications, and up-calls: operations on whatever the broker can reach. Enumerations
/// yield instances, or object paths where the name says so. `context` is that of the MI call in
/// progress or of an attached thread.
struct _CMPIBrokerFT {
    /// CMPI_MB_... bits.
    unsigned int brokerCapabilities;
    /// The level of this table.
    CMPIVersion brokerVersion;
    /// For logs, never for decisions.
    const char* brokerName;

    /// On a thread of the broker: a context for one thread to be started, or NULL.
    CMPIContext* (*prepareAttachThread)(const CMPIBroker* broker, const CMPIContext* context);
    /// On the new thread, before any other call; its calls then use this context.
    CMPIStatus (*attachThread)(const CMPIBroker* broker, const CMPIContext* context);
    /// On the same thread, at its end. The context is not to be touched afterwards.
    CMPIStatus (*detachThread)(const CMPIBroker* broker, const CMPIContext* context);

    /// Hands an indication over for delivery; having no subscriber is a success.
    CMPIStatus (*deliverIndication)(const CMPIBroker* broker, const CMPIContext* context,
                                    const char* nameSpace, const CMPIInstance* indication);

    /// Paths of the instances of a class and of its subclasses.
    CMPIEnumeration* (*enumerateInstanceNames)(const CMPIBroker* broker, const CMPIContext* context,
                                               const CMPIObjectPath* path, CMPIStatus* status);
    /// One instance.
    CMPIInstance* (*getInstance)(const CMPIBroker* broker, const CMPIContext* context,
                                 const CMPIObjectPath* path, const char** properties,
                                 CMPIStatus* status);
    /// Creates an instance and returns the path that it got.
    CMPIObjectPath* (*createInstance)(const CMPIBroker* broker, const CMPIContext* context,
                                      const CMPIObjectPath* path, const CMPIInstance* instance,
                                      CMPIStatus* status);
    /// Changes the listed properties of an instance.
    CMPIStatus (*modifyInstance)(const CMPIBroker* broker, const CMPIContext* context,
                                 const CMPIObjectPath* path, const CMPIInstance* instance,
                                 const char** properties);
    /// Deletes an instance.
    CMPIStatus (*deleteInstance)(const CMPIBroker* broker, const CMPIContext* context,
                                 const CMPIObjectPath* path);
    /// Instances that a query selects.
    CMPIEnumeration* (*execQuery)(const CMPIBroker* broker, const CMPIContext* context,
                                  const CMPIObjectPath* path, const char* query,
                                  const char* language, CMPIStatus* status);
    /// Instances of a class and of its subclasses; heeds the flags in the context.
    CMPIEnumeration* (*enumerateInstances)(const CMPIBroker* broker, const CMPIContext* context,
                                           const CMPIObjectPath* path, const char** properties,
                                           CMPIStatus* status);

    /// Instances at the other end of associations.
    CMPIEnumeration* (*associators)(const CMPIBroker* broker, const CMPIContext* context,
                                    const CMPIObjectPath* path, const char* associationClass,
                                    const char* resultClass, const char* role,
                                    const char* resultRole, const char** properties,
                                    CMPIStatus* status);
    /// Their paths.
    CMPIEnumeration* (*associatorNames)(const CMPIBroker* broker, const CMPIContext* context,
                                        const CMPIObjectPath* path, const char* associationClass,
                                        const char* resultClass, const char* role,
                                        const char* resultRole, CMPIStatus* status);
    /// The associations themselves.
    CMPIEnumeration* (*references)(const CMPIBroker* broker, const CMPIContext* context,
                                   const CMPIObjectPath* path, const char* associationClass,
                                   const char* role, const char** properties, CMPIStatus* status);
    /// Their paths.
    CMPIEnumeration* (*referenceNames)(const CMPIBroker* broker, const CMPIContext* context,
                                       const CMPIObjectPath* path, const char* associationClass,
                                       const char* role, CMPIStatus* status);

    /// Calls an extrinsic method: returns its result and fills `outputs`, empty at first.
    CMPIData (*invokeMethod)(const CMPIBroker* broker, const CMPIContext* context,
                             const CMPIObjectPath* path, const char* method, const CMPIArgs* inputs,
                             CMPIArgs* outputs, CMPIStatus* status);
    /// Writes one property; modifyInstance replaces it since 2.1.
    CMPIStatus (*setProperty)(const CMPIBroker* broker, const CMPIContext* context,
                              const CMPIObjectPath* path, const char* name, const CMPIValue* value,
                              CMPIType type);
    /// Reads one property; getInstance replaces it since 2.1.
    CMPIData (*getProperty)(const CMPIBroker* broker, const CMPIContext* context,
                            const CMPIObjectPath* path, const char* name, CMPIStatus* status);

    /// Since 2.1: the same as their namesakes, over the instances that a filter lets pass.
    CMPIEnumeration* (*enumerateInstancesFiltered)(const CMPIBroker* broker,
                                                   const CMPIContext* context,
                                                   const CMPIObjectPath* path,
                                                   const char** properties,
                                                   const char* filterLanguage, const char* filter,
                                                   CMPIStatus* status);
    CMPIEnumeration* (*associatorsFiltered)(const CMPIBroker* broker, const CMPIContext* context,
                                            const CMPIObjectPath* path,
                                            const char* associationClass, const char* resultClass,
                                            const char* role, const char* resultRole,
                                            const char** properties, const char* filterLanguage,
                                            const char* filter, CMPIStatus* status);
    CMPIEnumeration* (*referencesFiltered)(const CMPIBroker* broker, const CMPIContext* context,
                                           const CMPIObjectPath* path, const char* associationClass,
                                           const char* role, const char** properties,
                                           const char* filterLanguage, const char* filter,
                                           CMPIStatus* status);
};

/// Makers of data objects, and services that need no object.
struct _CMPIBrokerEncFT {
    CMPIVersion ftVersion;

    /// An instance with this path, which has a namespace and a class.
    CMPIInstance* (*newInstance)(const CMPIBroker* broker, const CMPIObjectPath* path,
                                 CMPIStatus* status);
    /// A path without host and keys.
    CMPIObjectPath* (*newObjectPath)(const CMPIBroker* broker, const char* nameSpace,
                                     const char* className, CMPIStatus* status);
    /// A container without arguments.
    CMPIArgs* (*newArgs)(const CMPIBroker* broker, CMPIStatus* status);
    /// A string with a copy of this UTF-8 text.
    CMPIString* (*newString)(const CMPIBroker* broker, const char* text, CMPIStatus* status);
    /// An array of NULL elements; the type comes without CMPI_ARRAY.
    CMPIArray* (*newArray)(const CMPIBroker* broker, CMPICount count, CMPIType elementType,
                           CMPIStatus* status);
    /// The present time.
    CMPIDateTime* (*newDateTime)(const CMPIBroker* broker, CMPIStatus* status);
    /// From microseconds: the length of an interval, or the time since 1970 began, UTC.
    CMPIDateTime* (*newDateTimeFromBinary)(const CMPIBroker* broker, CMPIUint64 microseconds,
                                           CMPIBoolean interval, CMPIStatus* status);
    /// From the 25 characters of a CIM datetime.
    CMPIDateTime* (*newDateTimeFromChars)(const CMPIBroker* broker, const char* text,
                                          CMPIStatus* status);
    /// A compiled query. `projection`, if not NULL, receives the selected names or NULL.
    CMPISelectExp* (*newSelectExp)(const CMPIBroker* broker, const char* query,
                                   const char* language, CMPIArray** projection,
                                   CMPIStatus* status);

    /// Whether the class of this path is, or descends from, the named one.
    CMPIBoolean (*classPathIsA)(const CMPIBroker* broker, const CMPIObjectPath* path,
                                const char* className, CMPIStatus* status);
    /// Text for a reader, in a form of the broker's choice; `object` is any data object.
    CMPIString* (*toString)(const CMPIBroker* broker, const void* object, CMPIStatus* status);
    /// Whether a data object is of a type, given as "CMPIInstance" and the like.
    CMPIBoolean (*isOfType)(const CMPIBroker* broker, const void* object, const char* typeName,
                            CMPIStatus* status);
    /// The name of a data object's type, in the same form.
    CMPIString* (*getType)(const CMPIBroker* broker, const void* object, CMPIStatus* status);

    /// A translated text with `count` inserts: pairs of a type code and a value,
    /// as the CMFmt macros make them. Superseded by getMessage2.
    CMPIString* (*getMessage)(const CMPIBroker* broker, const char* messageId,
                              const char* defaultText, CMPIStatus* status, CMPICount count, ...);
    /// Writes to the log; `string` counts only where `text` is NULL.
    CMPIStatus (*logMessage)(const CMPIBroker* broker, CMPISeverity severity, const char* id,
                             const char* text, const CMPIString* string);
    /// Writes to the trace, in the same manner.
    CMPIStatus (*trace)(const CMPIBroker* broker, CMPILevel level, const char* component,
                        const char* text, const CMPIString* string);

    /// Since 2.0: an extended error with its obligatory attributes.
    CMPIError* (*newCMPIError)(const CMPIBroker* broker, const char* owningEntity,
                               const char* messageId, const char* text, CMPIErrorSeverity severity,
                               CMPIErrorProbableCause probableCause, CMPIrc cimStatus,
                               CMPIStatus* status);
    /// Since 2.0: message catalogues. Without a translation the file is NULL, which all accept.
    CMPIStatus (*openMessageFile)(const CMPIBroker* broker, const char* fileName,
                                  CMPIMsgFileHandle* file);
    CMPIStatus (*closeMessageFile)(const CMPIBroker* broker, CMPIMsgFileHandle file);
    CMPIString* (*getMessage2)(const CMPIBroker* broker, const char* messageId,
                               CMPIMsgFileHandle file, const char* defaultText, CMPIStatus* status,
                               CMPICount count, ...);

    /// Since 2.1.
    CMPIPropertyList* (*newPropertyList)(const CMPIBroker* broker, const char** properties,
                                         CMPIStatus* status);
    /// Since 2.1: from text in another character set.
    CMPIString* (*newStringCP)(const CMPIBroker* broker, const char* text, CMPICodepageID codepage,
                               CMPIStatus* status);
    /// Since 2.1.
    CMPIEnumerationFilter* (*newEnumerationFilter)(const CMPIBroker* broker,
                                                   const char* filterLanguage, const char* filter,
                                                   CMPIStatus* status);
};

/// The operating system as the broker wraps it. An int result is zero or an errno number; a handle
/// that is NULL is a failure without a reason. Standard C++ has all of this in a safer form.
struct _CMPIBrokerExtFT {
    CMPIVersion ftVersion;

    /// The file name of a library, libFoo.so for Foo; the caller's in 2.0, the broker's in 2.1.
    char* (*resolveFileName)(const char* name);

    /// Threads. A new one is not attached to the broker; exitThread does not return.
    CMPI_THREAD_TYPE (*newThread)(CMPIThreadFunc start, void* parameter, int detached);
    int (*joinThread)(CMPI_THREAD_TYPE thread, CMPI_THREAD_RETURN* value);
    int (*exitThread)(CMPI_THREAD_RETURN value);
    int (*cancelThread)(CMPI_THREAD_TYPE thread);
    int (*threadSleep)(CMPIUint32 milliseconds);
    /// Calls the function once for each flag, which starts as zero.
    int (*threadOnce)(int* flag, CMPIThreadOnceFunc function);

    /// Values of a thread. Set the key to zero first: see CMPI_THREAD_KEY_TYPE.
    int (*createThreadKey)(CMPI_THREAD_KEY_TYPE* key, CMPIThreadKeyCleanupFunc cleanup);
    int (*destroyThreadKey)(CMPI_THREAD_KEY_TYPE key);
    void* (*getThreadSpecific)(CMPI_THREAD_KEY_TYPE key);
    int (*setThreadSpecific)(CMPI_THREAD_KEY_TYPE key, void* value);

    /// Mutexes, recursive for certain since 2.1 only. The option is zero.
    CMPI_MUTEX_TYPE (*newMutex)(int option);
    void (*destroyMutex)(CMPI_MUTEX_TYPE mutex);
    void (*lockMutex)(CMPI_MUTEX_TYPE mutex);
    void (*unlockMutex)(CMPI_MUTEX_TYPE mutex);

    /// Conditions. The option is zero, the limit an absolute time as for pthread_cond_timedwait.
    CMPI_COND_TYPE (*newCondition)(int option);
    void (*destroyCondition)(CMPI_COND_TYPE condition);
    int (*condWait)(CMPI_COND_TYPE condition, CMPI_MUTEX_TYPE mutex);
    int (*timedCondWait)(CMPI_COND_TYPE condition, CMPI_MUTEX_TYPE mutex, struct timespec* limit);
    int (*signalCondition)(CMPI_COND_TYPE condition);

    /// Since 2.1: the same as their namesakes, with a result.
    int (*destroyMutex2)(CMPI_MUTEX_TYPE mutex);
    int (*lockMutex2)(CMPI_MUTEX_TYPE mutex);
    int (*unlockMutex2)(CMPI_MUTEX_TYPE mutex);
    int (*destroyCondition2)(CMPI_COND_TYPE condition);
};

/// Memory (2.0).
struct _CMPIBrokerMemFT {
    CMPIVersion ftVersion;

    /// A bracket round work that makes many objects: release ends all that were made since the
    /// mark, clones excepted. Brackets nest.
    CMPIGcStat* (*mark)(const CMPIBroker* broker, CMPIStatus* status);
    CMPIStatus (*release)(const CMPIBroker* broker, const CMPIGcStat* mark);

    /// As in <stdlib.h>. The broker frees what is left after cleanup.
    void* (*cmpiMalloc)(const CMPIBroker* broker, size_t size);
    void* (*cmpiCalloc)(const CMPIBroker* broker, size_t count, size_t size);
    void* (*cmpiRealloc)(const CMPIBroker* broker, void* block, size_t size);
    char* (*cmpiStrDup)(const CMPIBroker* broker, const char* text);
    void (*cmpiFree)(const CMPIBroker* broker, void* block);

    /// The early end of an object that a CMPIBrokerEncFT function made.
    void (*freeInstance)(const CMPIBroker* broker, CMPIInstance* instance);
    void (*freeObjectPath)(const CMPIBroker* broker, CMPIObjectPath* path);
    void (*freeArgs)(const CMPIBroker* broker, CMPIArgs* arguments);
    void (*freeString)(const CMPIBroker* broker, CMPIString* string);
    void (*freeArray)(const CMPIBroker* broker, CMPIArray* array);
    void (*freeDateTime)(const CMPIBroker* broker, CMPIDateTime* dateTime);
    void (*freeSelectExp)(const CMPIBroker* broker, CMPISelectExp* query);

    /// Since 2.1: the end of a text from newCharsCP.
    void (*freeChars)(const CMPIBroker* broker, char* text);
};

// Tables of data objects. Each begins with its level, the end of a clone, and the making of one:
// an independent copy that the caller releases.

/// Facts about a request, by the names that cmpidt.h lists.
struct _CMPIContextFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIContext* context);
    CMPIContext* (*clone)(const CMPIContext* context, CMPIStatus* status);

    /// CMPI_RC_ERR_NO_SUCH_PROPERTY where there is none.
    CMPIData (*getEntry)(const CMPIContext* context, const char* name, CMPIStatus* status);
    CMPIData (*getEntryAt)(const CMPIContext* context, CMPICount index, CMPIString** name,
                           CMPIStatus* status);
    CMPICount (*getEntryCount)(const CMPIContext* context, CMPIStatus* status);
    /// Adds or replaces, for instance the flags of an up-call to come.
    CMPIStatus (*addEntry)(const CMPIContext* context, const char* name, const CMPIValue* value,
                           CMPIType type);
};

/// The sink of an MI function.
struct _CMPIResultFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIResult* result);
    CMPIResult* (*clone)(const CMPIResult* result, CMPIStatus* status);

    /// A value that is neither instance nor path: the result of a method, a property.
    CMPIStatus (*returnData)(const CMPIResult* result, const CMPIValue* value, CMPIType type);
    CMPIStatus (*returnInstance)(const CMPIResult* result, const CMPIInstance* instance);
    CMPIStatus (*returnObjectPath)(const CMPIResult* result, const CMPIObjectPath* path);
    /// Nothing follows.
    CMPIStatus (*returnDone)(const CMPIResult* result);
    /// Since 2.0: adds to a failure; the first error's status is the code that the MI returns.
    CMPIStatus (*returnError)(const CMPIResult* result, const CMPIError* error);
};

/// Text.
struct _CMPIStringFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIString* string);
    CMPIString* (*clone)(const CMPIString* string, CMPIStatus* status);

    /// The text in UTF-8; it lives as long as the string.
    const char* (*getCharPtr)(const CMPIString* string, CMPIStatus* status);
    /// Since 2.1: a copy in another character set, for freeChars.
    char* (*newCharsCP)(const CMPIString* string, CMPICodepageID codepage, CMPIStatus* status);
};

/// Elements all have one type, and an array keeps its length.
struct _CMPIArrayFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIArray* array);
    CMPIArray* (*clone)(const CMPIArray* array, CMPIStatus* status);

    CMPICount (*getSize)(const CMPIArray* array, CMPIStatus* status);
    /// The type of the elements, without CMPI_ARRAY.
    CMPIType (*getSimpleType)(const CMPIArray* array, CMPIStatus* status);
    /// An index out of range is CMPI_RC_ERR_NO_SUCH_PROPERTY.
    CMPIData (*getElementAt)(const CMPIArray* array, CMPICount index, CMPIStatus* status);
    /// Another type than the array's is CMPI_RC_ERR_TYPE_MISMATCH.
    CMPIStatus (*setElementAt)(const CMPIArray* array, CMPICount index, const CMPIValue* value,
                               CMPIType type);
};

/// A sequence, read from front to back.
struct _CMPIEnumerationFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIEnumeration* enumeration);
    CMPIEnumeration* (*clone)(const CMPIEnumeration* enumeration, CMPIStatus* status);

    /// Beyond the end 2.1 answers CMPI_RC_NO_MORE_ELEMENTS; portable code asks hasNext first.
    CMPIData (*getNext)(const CMPIEnumeration* enumeration, CMPIStatus* status);
    CMPIBoolean (*hasNext)(const CMPIEnumeration* enumeration, CMPIStatus* status);
    /// The contents as an array, owned by the broker.
    CMPIArray* (*toArray)(const CMPIEnumeration* enumeration, CMPIStatus* status);
};

/// Whether key properties and the keys of the path follow each other is up to the broker: set both.
struct _CMPIInstanceFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIInstance* instance);
    CMPIInstance* (*clone)(const CMPIInstance* instance, CMPIStatus* status);

    /// CMPI_RC_ERR_NO_SUCH_PROPERTY where there is none.
    CMPIData (*getProperty)(const CMPIInstance* instance, const char* name, CMPIStatus* status);
    CMPIData (*getPropertyAt)(const CMPIInstance* instance, CMPICount index, CMPIString** name,
                              CMPIStatus* status);
    CMPICount (*getPropertyCount)(const CMPIInstance* instance, CMPIStatus* status);
    CMPIStatus (*setProperty)(const CMPIInstance* instance, const char* name,
                              const CMPIValue* value, CMPIType type);
    /// The path, owned by the broker.
    CMPIObjectPath* (*getObjectPath)(const CMPIInstance* instance, CMPIStatus* status);
    /// Makes the broker drop properties that are not listed; `keys` has no effect.
    CMPIStatus (*setPropertyFilter)(const CMPIInstance* instance, const char** properties,
                                    const char** keys);
    CMPIStatus (*setObjectPath)(const CMPIInstance* instance, const CMPIObjectPath* path);
    /// Since 2.0: records the class that introduced the property as well.
    CMPIStatus (*setPropertyWithOrigin)(const CMPIInstance* instance, const char* name,
                                        const CMPIValue* value, CMPIType type, const char* origin);
};

/// A path without keys names a class.
struct _CMPIObjectPathFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIObjectPath* path);
    CMPIObjectPath* (*clone)(const CMPIObjectPath* path, CMPIStatus* status);

    CMPIStatus (*setNameSpace)(const CMPIObjectPath* path, const char* nameSpace);
    CMPIString* (*getNameSpace)(const CMPIObjectPath* path, CMPIStatus* status);
    CMPIStatus (*setHostname)(const CMPIObjectPath* path, const char* host);
    CMPIString* (*getHostname)(const CMPIObjectPath* path, CMPIStatus* status);
    CMPIStatus (*setClassName)(const CMPIObjectPath* path, const char* className);
    CMPIString* (*getClassName)(const CMPIObjectPath* path, CMPIStatus* status);

    /// Adds or replaces; a key is never NULL.
    CMPIStatus (*addKey)(const CMPIObjectPath* path, const char* name, const CMPIValue* value,
                         CMPIType type);
    /// The state has CMPI_keyValue, the type may be the general one of a key.
    /// CMPI_RC_ERR_NO_SUCH_PROPERTY where there is none.
    CMPIData (*getKey)(const CMPIObjectPath* path, const char* name, CMPIStatus* status);
    CMPIData (*getKeyAt)(const CMPIObjectPath* path, CMPICount index, CMPIString** name,
                         CMPIStatus* status);
    CMPICount (*getKeyCount)(const CMPIObjectPath* path, CMPIStatus* status);

    /// Take namespace and class, the second the host too, from another path.
    CMPIStatus (*setNameSpaceFromObjectPath)(const CMPIObjectPath* path,
                                             const CMPIObjectPath* source);
    CMPIStatus (*setHostAndNameSpaceFromObjectPath)(const CMPIObjectPath* path,
                                                    const CMPIObjectPath* source);

    /// Qualifiers, where the broker has CMPI_MB_BasicQualifierSupport.
    CMPIData (*getClassQualifier)(const CMPIObjectPath* path, const char* qualifier,
                                  CMPIStatus* status);
    CMPIData (*getPropertyQualifier)(const CMPIObjectPath* path, const char* property,
                                     const char* qualifier, CMPIStatus* status);
    CMPIData (*getMethodQualifier)(const CMPIObjectPath* path, const char* method,
                                   const char* qualifier, CMPIStatus* status);
    CMPIData (*getParameterQualifier)(const CMPIObjectPath* path, const char* method,
                                      const char* parameter, const char* qualifier,
                                      CMPIStatus* status);

    /// Text for a reader, in a form of the broker's choice.
    CMPIString* (*toString)(const CMPIObjectPath* path, CMPIStatus* status);
};

/// Arguments by the names of the method's parameters.
struct _CMPIArgsFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIArgs* args);
    CMPIArgs* (*clone)(const CMPIArgs* args, CMPIStatus* status);

    /// Adds or replaces.
    CMPIStatus (*addArg)(const CMPIArgs* args, const char* name, const CMPIValue* value,
                         CMPIType type);
    /// CMPI_RC_ERR_NO_SUCH_PROPERTY where there is none.
    CMPIData (*getArg)(const CMPIArgs* args, const char* name, CMPIStatus* status);
    CMPIData (*getArgAt)(const CMPIArgs* args, CMPICount index, CMPIString** name,
                         CMPIStatus* status);
    CMPICount (*getArgCount)(const CMPIArgs* args, CMPIStatus* status);
};

/// A point in time or a length of it.
struct _CMPIDateTimeFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIDateTime* dateTime);
    CMPIDateTime* (*clone)(const CMPIDateTime* dateTime, CMPIStatus* status);

    /// Microseconds: the length of an interval, or the time since 1970 began, UTC.
    CMPIUint64 (*getBinaryFormat)(const CMPIDateTime* dateTime, CMPIStatus* status);
    /// The 25 characters of a CIM datetime.
    CMPIString* (*getStringFormat)(const CMPIDateTime* dateTime, CMPIStatus* status);
    CMPIBoolean (*isInterval)(const CMPIDateTime* dateTime, CMPIStatus* status);
};

/// A compiled query.
struct _CMPISelectExpFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPISelectExp* query);
    CMPISelectExp* (*clone)(const CMPISelectExp* query, CMPIStatus* status);

    /// Whether an instance satisfies the query.
    CMPIBoolean (*evaluate)(const CMPISelectExp* query, const CMPIInstance* instance,
                            CMPIStatus* status);
    /// The query's text.
    CMPIString* (*getString)(const CMPISelectExp* query, CMPIStatus* status);
    /// The condition as an OR of ANDs.
    CMPISelectCond* (*getDOC)(const CMPISelectExp* query, CMPIStatus* status);
    /// The condition as an AND of ORs.
    CMPISelectCond* (*getCOD)(const CMPISelectExp* query, CMPIStatus* status);
    /// The same as evaluate, with values from a callback.
    CMPIBoolean (*evaluateUsingAccessor)(const CMPISelectExp* query, CMPIAccessor* accessor,
                                         void* parameter, CMPIStatus* status);
};

/// A normal form of a condition.
struct _CMPISelectCondFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPISelectCond* condition);
    CMPISelectCond* (*clone)(const CMPISelectCond* condition, CMPIStatus* status);

    /// How many members; `form`, if not NULL, receives a CMPISelectCondType.
    CMPICount (*getCountAndType)(const CMPISelectCond* condition, int* form, CMPIStatus* status);
    CMPISubCond* (*getSubCondAt)(const CMPISelectCond* condition, CMPICount index,
                                 CMPIStatus* status);
};

/// Predicates that belong together.
struct _CMPISubCondFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPISubCond* condition);
    CMPISubCond* (*clone)(const CMPISubCond* condition, CMPIStatus* status);

    /// How many predicates.
    CMPICount (*getCount)(const CMPISubCond* condition, CMPIStatus* status);
    CMPIPredicate* (*getPredicateAt)(const CMPISubCond* condition, CMPICount index,
                                     CMPIStatus* status);
    /// The predicate with this left side.
    CMPIPredicate* (*getPredicate)(const CMPISubCond* condition, const char* left,
                                   CMPIStatus* status);
};

/// One comparison of a condition.
struct _CMPIPredicateFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIPredicate* predicate);
    CMPIPredicate* (*clone)(const CMPIPredicate* predicate, CMPIStatus* status);

    /// The parts of the comparison; each destination may be NULL.
    CMPIStatus (*getData)(const CMPIPredicate* predicate, CMPIType* type, CMPIPredOp* op,
                          CMPIString** left, CMPIString** right);
    /// Whether the comparison holds, with values from a callback.
    CMPIBoolean (*evaluateUsingAccessor)(const CMPIPredicate* predicate, CMPIAccessor* accessor,
                                         void* parameter, CMPIStatus* status);
};

/// CIM_Error (2.0). An attribute that was never set reads as NULL, which is no failure.
struct _CMPIErrorFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIError* error);
    CMPIError* (*clone)(const CMPIError* error, CMPIStatus* status);

    /// Attributes by their names in the class; arrays hold strings.
    CMPIErrorType (*getErrorType)(const CMPIError* error, CMPIStatus* status);
    CMPIString* (*getOtherErrorType)(const CMPIError* error, CMPIStatus* status);
    CMPIString* (*getOwningEntity)(const CMPIError* error, CMPIStatus* status);
    CMPIString* (*getMessageID)(const CMPIError* error, CMPIStatus* status);
    CMPIString* (*getMessage)(const CMPIError* error, CMPIStatus* status);
    CMPIErrorSeverity (*getPerceivedSeverity)(const CMPIError* error, CMPIStatus* status);
    CMPIErrorProbableCause (*getProbableCause)(const CMPIError* error, CMPIStatus* status);
    CMPIString* (*getProbableCauseDescription)(const CMPIError* error, CMPIStatus* status);
    CMPIArray* (*getRecommendedActions)(const CMPIError* error, CMPIStatus* status);
    CMPIString* (*getErrorSource)(const CMPIError* error, CMPIStatus* status);
    CMPIErrorSrcFormat (*getErrorSourceFormat)(const CMPIError* error, CMPIStatus* status);
    CMPIString* (*getOtherErrorSourceFormat)(const CMPIError* error, CMPIStatus* status);
    CMPIrc (*getCIMStatusCode)(const CMPIError* error, CMPIStatus* status);
    CMPIString* (*getCIMStatusCodeDescription)(const CMPIError* error, CMPIStatus* status);
    CMPIArray* (*getMessageArguments)(const CMPIError* error, CMPIStatus* status);

    /// Attributes that newCMPIError did not ask for; NULL clears one.
    CMPIStatus (*setErrorType)(const CMPIError* error, CMPIErrorType type);
    CMPIStatus (*setOtherErrorType)(const CMPIError* error, const char* text);
    CMPIStatus (*setProbableCauseDescription)(const CMPIError* error, const char* text);
    CMPIStatus (*setRecommendedActions)(const CMPIError* error, const CMPIArray* texts);
    CMPIStatus (*setErrorSource)(const CMPIError* error, const char* text);
    CMPIStatus (*setErrorSourceFormat)(const CMPIError* error, CMPIErrorSrcFormat format);
    CMPIStatus (*setOtherErrorSourceFormat)(const CMPIError* error, const char* text);
    CMPIStatus (*setCIMStatusCodeDescription)(const CMPIError* error, const char* text);
    CMPIStatus (*setMessageArguments)(const CMPIError* error, const CMPIArray* texts);
};

/// Property names that can be searched (2.1).
struct _CMPIPropertyListFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIPropertyList* list);
    CMPIPropertyList* (*clone)(const CMPIPropertyList* list, CMPIStatus* status);

    /// Whether the list has this name.
    CMPIBoolean (*isPropertyInList)(const CMPIPropertyList* list, const char* name,
                                    CMPIStatus* status);
    /// The names, ended by NULL and borrowed; order and case may have changed.
    const char** (*getProperties)(const CMPIPropertyList* list, CMPIStatus* status);
};

/// A filter that needs no broker (2.1).
struct _CMPIEnumerationFilterFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIEnumerationFilter* filter);
    CMPIEnumerationFilter* (*clone)(const CMPIEnumerationFilter* filter, CMPIStatus* status);

    /// Whether the filter lets an instance pass.
    CMPIBoolean (*match)(const CMPIEnumerationFilter* filter, const CMPIInstance* instance,
                         CMPIStatus* status);
};

// Tables of MIs, filled in by the provider. Each begins with the level to which it is filled, the
// provider's own version and display name, and cleanup, which the broker calls once before it
// unloads the library and while no other function of the MI runs. With `terminating` set the MI
// must end. Otherwise it may stay, by returning CMPI_RC_DO_NOT_UNLOAD or CMPI_RC_NEVER_UNLOAD.
// After any other code it is gone: no thread and no callback of it may still run.
//
// Functions that produce something put each item into `result` and end with returnDone; finding
// nothing is a success. The broker may ask for classes that the MI does not serve.
//
// The broker finds an MI by a factory with C linkage, <provider>_Create_InstanceMI and its like
// (cmpimacs.h), or by _Generic_Create_InstanceMI, which is given the provider's name as well.

/// Instances.
struct _CMPIInstanceMIFT {
    CMPIVersion ftVersion;
    int miVersion;
    const char* miName;
    CMPIStatus (*cleanup)(CMPIInstanceMI* mi, const CMPIContext* context, CMPIBoolean terminating);

    /// The path of every instance of a class.
    CMPIStatus (*enumerateInstanceNames)(CMPIInstanceMI* mi, const CMPIContext* context,
                                         const CMPIResult* result, const CMPIObjectPath* path);
    /// Every instance of a class, with the listed properties.
    CMPIStatus (*enumerateInstances)(CMPIInstanceMI* mi, const CMPIContext* context,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const char** properties);
    /// One instance, or CMPI_RC_ERR_NOT_FOUND.
    CMPIStatus (*getInstance)(CMPIInstanceMI* mi, const CMPIContext* context,
                              const CMPIResult* result, const CMPIObjectPath* path,
                              const char** properties);
    /// Creates an instance from its key properties and produces its path.
    CMPIStatus (*createInstance)(CMPIInstanceMI* mi, const CMPIContext* context,
                                 const CMPIResult* result, const CMPIObjectPath* path,
                                 const CMPIInstance* instance);
    /// Changes the listed properties; produces nothing.
    CMPIStatus (*modifyInstance)(CMPIInstanceMI* mi, const CMPIContext* context,
                                 const CMPIResult* result, const CMPIObjectPath* path,
                                 const CMPIInstance* instance, const char** properties);
    /// Produces nothing.
    CMPIStatus (*deleteInstance)(CMPIInstanceMI* mi, const CMPIContext* context,
                                 const CMPIResult* result, const CMPIObjectPath* path);
    /// The instances that a query selects.
    CMPIStatus (*execQuery)(CMPIInstanceMI* mi, const CMPIContext* context,
                            const CMPIResult* result, const CMPIObjectPath* path, const char* query,
                            const char* language);
    /// Since 2.1. What brokers pass last is in dispute, a status or a flag: leave it alone.
    CMPIStatus (*enumerateInstancesFiltered)(CMPIInstanceMI* mi, const CMPIContext* context,
                                             const CMPIResult* result, const CMPIObjectPath* path,
                                             const char** properties, const char* filterLanguage,
                                             const char* filter, CMPIStatus* last);
};

/// Associations: `path` is the instance at one end.
struct _CMPIAssociationMIFT {
    CMPIVersion ftVersion;
    int miVersion;
    const char* miName;
    CMPIStatus (*cleanup)(CMPIAssociationMI* mi, const CMPIContext* context,
                          CMPIBoolean terminating);

    /// Instances at the other end.
    CMPIStatus (*associators)(CMPIAssociationMI* mi, const CMPIContext* context,
                              const CMPIResult* result, const CMPIObjectPath* path,
                              const char* associationClass, const char* resultClass,
                              const char* role, const char* resultRole, const char** properties);
    /// Their paths.
    CMPIStatus (*associatorNames)(CMPIAssociationMI* mi, const CMPIContext* context,
                                  const CMPIResult* result, const CMPIObjectPath* path,
                                  const char* associationClass, const char* resultClass,
                                  const char* role, const char* resultRole);
    /// The associations themselves.
    CMPIStatus (*references)(CMPIAssociationMI* mi, const CMPIContext* context,
                             const CMPIResult* result, const CMPIObjectPath* path,
                             const char* associationClass, const char* role,
                             const char** properties);
    /// Their paths.
    CMPIStatus (*referenceNames)(CMPIAssociationMI* mi, const CMPIContext* context,
                                 const CMPIResult* result, const CMPIObjectPath* path,
                                 const char* associationClass, const char* role);

    /// Since 2.1: the same over a filter.
    CMPIStatus (*associatorsFiltered)(CMPIAssociationMI* mi, const CMPIContext* context,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const char* associationClass, const char* resultClass,
                                      const char* role, const char* resultRole,
                                      const char** properties, const char* filterLanguage,
                                      const char* filter, CMPIBoolean continueOnError);
    CMPIStatus (*referencesFiltered)(CMPIAssociationMI* mi, const CMPIContext* context,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const char* associationClass, const char* role,
                                     const char** properties, const char* filterLanguage,
                                     const char* filter, CMPIBoolean continueOnError);
};

/// Extrinsic methods.
struct _CMPIMethodMIFT {
    CMPIVersion ftVersion;
    int miVersion;
    const char* miName;
    CMPIStatus (*cleanup)(CMPIMethodMI* mi, const CMPIContext* context, CMPIBoolean terminating);

    /// Produces the result and fills `outputs`. A method that nobody serves is best answered with
    /// CMPI_RC_ERR_METHOD_NOT_AVAILABLE.
    CMPIStatus (*invokeMethod)(CMPIMethodMI* mi, const CMPIContext* context,
                               const CMPIResult* result, const CMPIObjectPath* path,
                               const char* method, const CMPIArgs* inputs, CMPIArgs* outputs);
};

/// Single properties; obsolete, brokers get by with getInstance and modifyInstance.
struct _CMPIPropertyMIFT {
    CMPIVersion ftVersion;
    int miVersion;
    const char* miName;
    CMPIStatus (*cleanup)(CMPIPropertyMI* mi, const CMPIContext* context, CMPIBoolean terminating);

    /// Writes a property; produces nothing.
    CMPIStatus (*setProperty)(CMPIPropertyMI* mi, const CMPIContext* context,
                              const CMPIResult* result, const CMPIObjectPath* path,
                              const char* name, CMPIData value);
    /// Produces a property's value.
    CMPIStatus (*getProperty)(CMPIPropertyMI* mi, const CMPIContext* context,
                              const CMPIResult* result, const CMPIObjectPath* path,
                              const char* name);
    /// Since 2.0: with the class that introduced the property, or NULL.
    CMPIStatus (*setPropertyWithOrigin)(CMPIPropertyMI* mi, const CMPIContext* context,
                                        const CMPIResult* result, CMPIObjectPath* path,
                                        const char* name, CMPIData value, const char* origin);
};

/// Indications. The path of a filter is a class, or for a process indication only a namespace. Who
/// keeps an argument beyond the call clones it.
struct _CMPIIndicationMIFT {
    CMPIVersion ftVersion;
    int miVersion;
    const char* miName;
    CMPIStatus (*cleanup)(CMPIIndicationMI* mi, const CMPIContext* context,
                          CMPIBoolean terminating);

    /// Whether a filter can be served; comes before its first activation. `owner` is obsolete.
    CMPIStatus (*authorizeFilter)(CMPIIndicationMI* mi, const CMPIContext* context,
                                  const CMPISelectExp* filter, const char* className,
                                  const CMPIObjectPath* path, const char* owner);
    /// Obsolete. 2.0 passes no `result`: touch no argument, answer CMPI_RC_ERR_NOT_SUPPORTED.
    CMPIStatus (*mustPoll)(CMPIIndicationMI* mi, const CMPIContext* context,
                           const CMPIResult* result, const CMPISelectExp* filter,
                           const char* className, const CMPIObjectPath* path);
    /// Subscriptions come and go: start to watch with the first, stop with the last.
    CMPIStatus (*activateFilter)(CMPIIndicationMI* mi, const CMPIContext* context,
                                 const CMPISelectExp* filter, const char* className,
                                 const CMPIObjectPath* path, CMPIBoolean firstActivation);
    CMPIStatus (*deActivateFilter)(CMPIIndicationMI* mi, const CMPIContext* context,
                                   const CMPISelectExp* filter, const char* className,
                                   const CMPIObjectPath* path, CMPIBoolean lastActivation);

    /// The broker accepts indications, or no longer does.
    CMPIStatus (*enableIndications)(CMPIIndicationMI* mi, const CMPIContext* context);
    CMPIStatus (*disableIndications)(CMPIIndicationMI* mi, const CMPIContext* context);

    /// Since 2.1: the same for a collection of filters.
    CMPIStatus (*authorizeFilterCollection)(CMPIIndicationMI* mi, const CMPIContext* context,
                                            const CMPIInstance* collection);
    CMPIStatus (*activateFilterCollection)(CMPIIndicationMI* mi, const CMPIContext* context,
                                           const CMPIInstance* collection,
                                           CMPIBoolean firstActivation);
    CMPIStatus (*deActivateFilterCollection)(CMPIIndicationMI* mi, const CMPIContext* context,
                                             const CMPIInstance* collection,
                                             CMPIBoolean lastActivation);
};

#ifdef __cplusplus
}
#endif

#endif
