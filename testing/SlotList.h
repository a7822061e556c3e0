#pragma once

#include "cmpi/cmpift.h"

/// The slots of every table by name, but for the data members and the two variadic functions.
namespace cimtest {

template <typename Table>
struct TableOf {};

template <auto member>
struct MemberOf {};

// Macros because only the preprocessor can make a text of a name; PYL_EACH takes up to 64 names.
#define PYL_EACH(table, member, ...)                       \
    visit(MemberOf<&table::member>{}, #table "." #member); \
    __VA_OPT__(PYL_AGAIN PYL_PARENTHESES(table, __VA_ARGS__))
#define PYL_AGAIN() PYL_EACH
#define PYL_PARENTHESES ()
#define PYL_EXPAND(...) PYL_EXPAND16(PYL_EXPAND16(PYL_EXPAND16(PYL_EXPAND16(__VA_ARGS__))))
#define PYL_EXPAND16(...) PYL_EXPAND4(PYL_EXPAND4(PYL_EXPAND4(PYL_EXPAND4(__VA_ARGS__))))
#define PYL_EXPAND4(...) PYL_EXPAND1(PYL_EXPAND1(PYL_EXPAND1(PYL_EXPAND1(__VA_ARGS__))))
#define PYL_EXPAND1(...) __VA_ARGS__
#define PYL_SLOTS(table, ...)                      \
    template <typename Visit>                      \
    void visitSlots(TableOf<table>, Visit visit) { \
        PYL_EXPAND(PYL_EACH(table, __VA_ARGS__))   \
    }

// clang-format off

PYL_SLOTS(CMPIBrokerFT, prepareAttachThread, attachThread, detachThread, deliverIndication, enumerateInstanceNames,
    getInstance, createInstance, modifyInstance, deleteInstance, execQuery, enumerateInstances, associators,
    associatorNames, references, referenceNames, invokeMethod, setProperty, getProperty, enumerateInstancesFiltered,
    associatorsFiltered, referencesFiltered)

PYL_SLOTS(CMPIBrokerEncFT, newInstance, newObjectPath, newArgs, newString, newArray, newDateTime,
    newDateTimeFromBinary, newDateTimeFromChars, newSelectExp, classPathIsA, toString, isOfType, getType,
    logMessage, trace, newCMPIError, openMessageFile, closeMessageFile, newPropertyList, newStringCP,
    newEnumerationFilter)

PYL_SLOTS(CMPIBrokerExtFT, resolveFileName, newThread, joinThread, exitThread, cancelThread, threadSleep,
    threadOnce, createThreadKey, destroyThreadKey, getThreadSpecific, setThreadSpecific, newMutex, destroyMutex,
    lockMutex, unlockMutex, newCondition, destroyCondition, condWait, timedCondWait, signalCondition, destroyMutex2,
    lockMutex2, unlockMutex2, destroyCondition2)

PYL_SLOTS(CMPIBrokerMemFT, mark, release, cmpiMalloc, cmpiCalloc, cmpiRealloc, cmpiStrDup, cmpiFree, freeInstance,
    freeObjectPath, freeArgs, freeString, freeArray, freeDateTime, freeSelectExp, freeChars)

PYL_SLOTS(CMPIContextFT, release, clone, getEntry, getEntryAt, getEntryCount, addEntry)

PYL_SLOTS(CMPIResultFT, release, clone, returnData, returnInstance, returnObjectPath, returnDone, returnError)

PYL_SLOTS(CMPIStringFT, release, clone, getCharPtr, newCharsCP)

PYL_SLOTS(CMPIArrayFT, release, clone, getSize, getSimpleType, getElementAt, setElementAt)

PYL_SLOTS(CMPIEnumerationFT, release, clone, getNext, hasNext, toArray)

PYL_SLOTS(CMPIInstanceFT, release, clone, getProperty, getPropertyAt, getPropertyCount, setProperty, getObjectPath,
    setPropertyFilter, setObjectPath, setPropertyWithOrigin)

PYL_SLOTS(CMPIObjectPathFT, release, clone, setNameSpace, getNameSpace, setHostname, getHostname, setClassName,
    getClassName, addKey, getKey, getKeyAt, getKeyCount, setNameSpaceFromObjectPath,
    setHostAndNameSpaceFromObjectPath, getClassQualifier, getPropertyQualifier, getMethodQualifier,
    getParameterQualifier, toString)

PYL_SLOTS(CMPIArgsFT, release, clone, addArg, getArg, getArgAt, getArgCount)

PYL_SLOTS(CMPIDateTimeFT, release, clone, getBinaryFormat, getStringFormat, isInterval)

PYL_SLOTS(CMPISelectExpFT, release, clone, evaluate, getString, getDOC, getCOD, evaluateUsingAccessor)

PYL_SLOTS(CMPISelectCondFT, release, clone, getCountAndType, getSubCondAt)

PYL_SLOTS(CMPISubCondFT, release, clone, getCount, getPredicateAt, getPredicate)

PYL_SLOTS(CMPIPredicateFT, release, clone, getData, evaluateUsingAccessor)

PYL_SLOTS(CMPIErrorFT, release, clone, getErrorType, getOtherErrorType, getOwningEntity, getMessageID, getMessage,
    getPerceivedSeverity, getProbableCause, getProbableCauseDescription, getRecommendedActions, getErrorSource,
    getErrorSourceFormat, getOtherErrorSourceFormat, getCIMStatusCode, getCIMStatusCodeDescription,
    getMessageArguments, setErrorType, setOtherErrorType, setProbableCauseDescription, setRecommendedActions,
    setErrorSource, setErrorSourceFormat, setOtherErrorSourceFormat, setCIMStatusCodeDescription,
    setMessageArguments)

PYL_SLOTS(CMPIPropertyListFT, release, clone, isPropertyInList, getProperties)

PYL_SLOTS(CMPIEnumerationFilterFT, release, clone, match)

// clang-format on

#undef PYL_SLOTS

template <typename... Tables>
void visitEach(auto visit) {
    (visit(TableOf<Tables>{}), ...);
}

/// Calls `visit(TableOf<...>)` for every table.
void visitTables(auto visit) {
    visitEach<CMPIBrokerFT, CMPIBrokerEncFT, CMPIBrokerExtFT, CMPIBrokerMemFT, CMPIContextFT,
              CMPIResultFT, CMPIStringFT, CMPIArrayFT, CMPIEnumerationFT, CMPIInstanceFT,
              CMPIObjectPathFT, CMPIArgsFT, CMPIDateTimeFT, CMPISelectExpFT, CMPISelectCondFT,
              CMPISubCondFT, CMPIPredicateFT, CMPIErrorFT, CMPIPropertyListFT,
              CMPIEnumerationFilterFT>(visit);
}

}  // namespace cimtest
