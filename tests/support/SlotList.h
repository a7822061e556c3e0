#pragma once

#include "cmpi/cmpift.h"

/// The slots of every table by name, but for the data members and the two variadic functions.
namespace testsupport {

template <typename Table>
struct TableOf {};

template <auto member>
struct MemberOf {};

// A macro because only the preprocessor can make a text of a name.
#define PYL_SLOT(table, member) visit(MemberOf<&table::member>{}, #table "." #member)

template <typename Visit>
void visitSlots(TableOf<CMPIBrokerFT>, Visit visit) {
    PYL_SLOT(CMPIBrokerFT, prepareAttachThread);
    PYL_SLOT(CMPIBrokerFT, attachThread);
    PYL_SLOT(CMPIBrokerFT, detachThread);
    PYL_SLOT(CMPIBrokerFT, deliverIndication);
    PYL_SLOT(CMPIBrokerFT, enumerateInstanceNames);
    PYL_SLOT(CMPIBrokerFT, getInstance);
    PYL_SLOT(CMPIBrokerFT, createInstance);
    PYL_SLOT(CMPIBrokerFT, modifyInstance);
    PYL_SLOT(CMPIBrokerFT, deleteInstance);
    PYL_SLOT(CMPIBrokerFT, execQuery);
    PYL_SLOT(CMPIBrokerFT, enumerateInstances);
    PYL_SLOT(CMPIBrokerFT, associators);
    PYL_SLOT(CMPIBrokerFT, associatorNames);
    PYL_SLOT(CMPIBrokerFT, references);
    PYL_SLOT(CMPIBrokerFT, referenceNames);
    PYL_SLOT(CMPIBrokerFT, invokeMethod);
    PYL_SLOT(CMPIBrokerFT, setProperty);
    PYL_SLOT(CMPIBrokerFT, getProperty);
    PYL_SLOT(CMPIBrokerFT, enumerateInstancesFiltered);
    PYL_SLOT(CMPIBrokerFT, associatorsFiltered);
    PYL_SLOT(CMPIBrokerFT, referencesFiltered);
}

template <typename Visit>
void visitSlots(TableOf<CMPIBrokerEncFT>, Visit visit) {
    PYL_SLOT(CMPIBrokerEncFT, newInstance);
    PYL_SLOT(CMPIBrokerEncFT, newObjectPath);
    PYL_SLOT(CMPIBrokerEncFT, newArgs);
    PYL_SLOT(CMPIBrokerEncFT, newString);
    PYL_SLOT(CMPIBrokerEncFT, newArray);
    PYL_SLOT(CMPIBrokerEncFT, newDateTime);
    PYL_SLOT(CMPIBrokerEncFT, newDateTimeFromBinary);
    PYL_SLOT(CMPIBrokerEncFT, newDateTimeFromChars);
    PYL_SLOT(CMPIBrokerEncFT, newSelectExp);
    PYL_SLOT(CMPIBrokerEncFT, classPathIsA);
    PYL_SLOT(CMPIBrokerEncFT, toString);
    PYL_SLOT(CMPIBrokerEncFT, isOfType);
    PYL_SLOT(CMPIBrokerEncFT, getType);
    PYL_SLOT(CMPIBrokerEncFT, logMessage);
    PYL_SLOT(CMPIBrokerEncFT, trace);
    PYL_SLOT(CMPIBrokerEncFT, newCMPIError);
    PYL_SLOT(CMPIBrokerEncFT, openMessageFile);
    PYL_SLOT(CMPIBrokerEncFT, closeMessageFile);
    PYL_SLOT(CMPIBrokerEncFT, newPropertyList);
    PYL_SLOT(CMPIBrokerEncFT, newStringCP);
    PYL_SLOT(CMPIBrokerEncFT, newEnumerationFilter);
}

template <typename Visit>
void visitSlots(TableOf<CMPIBrokerExtFT>, Visit visit) {
    PYL_SLOT(CMPIBrokerExtFT, resolveFileName);
    PYL_SLOT(CMPIBrokerExtFT, newThread);
    PYL_SLOT(CMPIBrokerExtFT, joinThread);
    PYL_SLOT(CMPIBrokerExtFT, exitThread);
    PYL_SLOT(CMPIBrokerExtFT, cancelThread);
    PYL_SLOT(CMPIBrokerExtFT, threadSleep);
    PYL_SLOT(CMPIBrokerExtFT, threadOnce);
    PYL_SLOT(CMPIBrokerExtFT, createThreadKey);
    PYL_SLOT(CMPIBrokerExtFT, destroyThreadKey);
    PYL_SLOT(CMPIBrokerExtFT, getThreadSpecific);
    PYL_SLOT(CMPIBrokerExtFT, setThreadSpecific);
    PYL_SLOT(CMPIBrokerExtFT, newMutex);
    PYL_SLOT(CMPIBrokerExtFT, destroyMutex);
    PYL_SLOT(CMPIBrokerExtFT, lockMutex);
    PYL_SLOT(CMPIBrokerExtFT, unlockMutex);
    PYL_SLOT(CMPIBrokerExtFT, newCondition);
    PYL_SLOT(CMPIBrokerExtFT, destroyCondition);
    PYL_SLOT(CMPIBrokerExtFT, condWait);
    PYL_SLOT(CMPIBrokerExtFT, timedCondWait);
    PYL_SLOT(CMPIBrokerExtFT, signalCondition);
    PYL_SLOT(CMPIBrokerExtFT, destroyMutex2);
    PYL_SLOT(CMPIBrokerExtFT, lockMutex2);
    PYL_SLOT(CMPIBrokerExtFT, unlockMutex2);
    PYL_SLOT(CMPIBrokerExtFT, destroyCondition2);
}

template <typename Visit>
void visitSlots(TableOf<CMPIBrokerMemFT>, Visit visit) {
    PYL_SLOT(CMPIBrokerMemFT, mark);
    PYL_SLOT(CMPIBrokerMemFT, release);
    PYL_SLOT(CMPIBrokerMemFT, cmpiMalloc);
    PYL_SLOT(CMPIBrokerMemFT, cmpiCalloc);
    PYL_SLOT(CMPIBrokerMemFT, cmpiRealloc);
    PYL_SLOT(CMPIBrokerMemFT, cmpiStrDup);
    PYL_SLOT(CMPIBrokerMemFT, cmpiFree);
    PYL_SLOT(CMPIBrokerMemFT, freeInstance);
    PYL_SLOT(CMPIBrokerMemFT, freeObjectPath);
    PYL_SLOT(CMPIBrokerMemFT, freeArgs);
    PYL_SLOT(CMPIBrokerMemFT, freeString);
    PYL_SLOT(CMPIBrokerMemFT, freeArray);
    PYL_SLOT(CMPIBrokerMemFT, freeDateTime);
    PYL_SLOT(CMPIBrokerMemFT, freeSelectExp);
    PYL_SLOT(CMPIBrokerMemFT, freeChars);
}

template <typename Visit>
void visitSlots(TableOf<CMPIContextFT>, Visit visit) {
    PYL_SLOT(CMPIContextFT, release);
    PYL_SLOT(CMPIContextFT, clone);
    PYL_SLOT(CMPIContextFT, getEntry);
    PYL_SLOT(CMPIContextFT, getEntryAt);
    PYL_SLOT(CMPIContextFT, getEntryCount);
    PYL_SLOT(CMPIContextFT, addEntry);
}

template <typename Visit>
void visitSlots(TableOf<CMPIResultFT>, Visit visit) {
    PYL_SLOT(CMPIResultFT, release);
    PYL_SLOT(CMPIResultFT, clone);
    PYL_SLOT(CMPIResultFT, returnData);
    PYL_SLOT(CMPIResultFT, returnInstance);
    PYL_SLOT(CMPIResultFT, returnObjectPath);
    PYL_SLOT(CMPIResultFT, returnDone);
    PYL_SLOT(CMPIResultFT, returnError);
}

template <typename Visit>
void visitSlots(TableOf<CMPIStringFT>, Visit visit) {
    PYL_SLOT(CMPIStringFT, release);
    PYL_SLOT(CMPIStringFT, clone);
    PYL_SLOT(CMPIStringFT, getCharPtr);
    PYL_SLOT(CMPIStringFT, newCharsCP);
}

template <typename Visit>
void visitSlots(TableOf<CMPIArrayFT>, Visit visit) {
    PYL_SLOT(CMPIArrayFT, release);
    PYL_SLOT(CMPIArrayFT, clone);
    PYL_SLOT(CMPIArrayFT, getSize);
    PYL_SLOT(CMPIArrayFT, getSimpleType);
    PYL_SLOT(CMPIArrayFT, getElementAt);
    PYL_SLOT(CMPIArrayFT, setElementAt);
}

template <typename Visit>
void visitSlots(TableOf<CMPIEnumerationFT>, Visit visit) {
    PYL_SLOT(CMPIEnumerationFT, release);
    PYL_SLOT(CMPIEnumerationFT, clone);
    PYL_SLOT(CMPIEnumerationFT, getNext);
    PYL_SLOT(CMPIEnumerationFT, hasNext);
    PYL_SLOT(CMPIEnumerationFT, toArray);
}

template <typename Visit>
void visitSlots(TableOf<CMPIInstanceFT>, Visit visit) {
    PYL_SLOT(CMPIInstanceFT, release);
    PYL_SLOT(CMPIInstanceFT, clone);
    PYL_SLOT(CMPIInstanceFT, getProperty);
    PYL_SLOT(CMPIInstanceFT, getPropertyAt);
    PYL_SLOT(CMPIInstanceFT, getPropertyCount);
    PYL_SLOT(CMPIInstanceFT, setProperty);
    PYL_SLOT(CMPIInstanceFT, getObjectPath);
    PYL_SLOT(CMPIInstanceFT, setPropertyFilter);
    PYL_SLOT(CMPIInstanceFT, setObjectPath);
    PYL_SLOT(CMPIInstanceFT, setPropertyWithOrigin);
}

template <typename Visit>
void visitSlots(TableOf<CMPIObjectPathFT>, Visit visit) {
    PYL_SLOT(CMPIObjectPathFT, release);
    PYL_SLOT(CMPIObjectPathFT, clone);
    PYL_SLOT(CMPIObjectPathFT, setNameSpace);
    PYL_SLOT(CMPIObjectPathFT, getNameSpace);
    PYL_SLOT(CMPIObjectPathFT, setHostname);
    PYL_SLOT(CMPIObjectPathFT, getHostname);
    PYL_SLOT(CMPIObjectPathFT, setClassName);
    PYL_SLOT(CMPIObjectPathFT, getClassName);
    PYL_SLOT(CMPIObjectPathFT, addKey);
    PYL_SLOT(CMPIObjectPathFT, getKey);
    PYL_SLOT(CMPIObjectPathFT, getKeyAt);
    PYL_SLOT(CMPIObjectPathFT, getKeyCount);
    PYL_SLOT(CMPIObjectPathFT, setNameSpaceFromObjectPath);
    PYL_SLOT(CMPIObjectPathFT, setHostAndNameSpaceFromObjectPath);
    PYL_SLOT(CMPIObjectPathFT, getClassQualifier);
    PYL_SLOT(CMPIObjectPathFT, getPropertyQualifier);
    PYL_SLOT(CMPIObjectPathFT, getMethodQualifier);
    PYL_SLOT(CMPIObjectPathFT, getParameterQualifier);
    PYL_SLOT(CMPIObjectPathFT, toString);
}

template <typename Visit>
void visitSlots(TableOf<CMPIArgsFT>, Visit visit) {
    PYL_SLOT(CMPIArgsFT, release);
    PYL_SLOT(CMPIArgsFT, clone);
    PYL_SLOT(CMPIArgsFT, addArg);
    PYL_SLOT(CMPIArgsFT, getArg);
    PYL_SLOT(CMPIArgsFT, getArgAt);
    PYL_SLOT(CMPIArgsFT, getArgCount);
}

template <typename Visit>
void visitSlots(TableOf<CMPIDateTimeFT>, Visit visit) {
    PYL_SLOT(CMPIDateTimeFT, release);
    PYL_SLOT(CMPIDateTimeFT, clone);
    PYL_SLOT(CMPIDateTimeFT, getBinaryFormat);
    PYL_SLOT(CMPIDateTimeFT, getStringFormat);
    PYL_SLOT(CMPIDateTimeFT, isInterval);
}

template <typename Visit>
void visitSlots(TableOf<CMPISelectExpFT>, Visit visit) {
    PYL_SLOT(CMPISelectExpFT, release);
    PYL_SLOT(CMPISelectExpFT, clone);
    PYL_SLOT(CMPISelectExpFT, evaluate);
    PYL_SLOT(CMPISelectExpFT, getString);
    PYL_SLOT(CMPISelectExpFT, getDOC);
    PYL_SLOT(CMPISelectExpFT, getCOD);
    PYL_SLOT(CMPISelectExpFT, evaluateUsingAccessor);
}

template <typename Visit>
void visitSlots(TableOf<CMPISelectCondFT>, Visit visit) {
    PYL_SLOT(CMPISelectCondFT, release);
    PYL_SLOT(CMPISelectCondFT, clone);
    PYL_SLOT(CMPISelectCondFT, getCountAndType);
    PYL_SLOT(CMPISelectCondFT, getSubCondAt);
}

template <typename Visit>
void visitSlots(TableOf<CMPISubCondFT>, Visit visit) {
    PYL_SLOT(CMPISubCondFT, release);
    PYL_SLOT(CMPISubCondFT, clone);
    PYL_SLOT(CMPISubCondFT, getCount);
    PYL_SLOT(CMPISubCondFT, getPredicateAt);
    PYL_SLOT(CMPISubCondFT, getPredicate);
}

template <typename Visit>
void visitSlots(TableOf<CMPIPredicateFT>, Visit visit) {
    PYL_SLOT(CMPIPredicateFT, release);
    PYL_SLOT(CMPIPredicateFT, clone);
    PYL_SLOT(CMPIPredicateFT, getData);
    PYL_SLOT(CMPIPredicateFT, evaluateUsingAccessor);
}

template <typename Visit>
void visitSlots(TableOf<CMPIErrorFT>, Visit visit) {
    PYL_SLOT(CMPIErrorFT, release);
    PYL_SLOT(CMPIErrorFT, clone);
    PYL_SLOT(CMPIErrorFT, getErrorType);
    PYL_SLOT(CMPIErrorFT, getOtherErrorType);
    PYL_SLOT(CMPIErrorFT, getOwningEntity);
    PYL_SLOT(CMPIErrorFT, getMessageID);
    PYL_SLOT(CMPIErrorFT, getMessage);
    PYL_SLOT(CMPIErrorFT, getPerceivedSeverity);
    PYL_SLOT(CMPIErrorFT, getProbableCause);
    PYL_SLOT(CMPIErrorFT, getProbableCauseDescription);
    PYL_SLOT(CMPIErrorFT, getRecommendedActions);
    PYL_SLOT(CMPIErrorFT, getErrorSource);
    PYL_SLOT(CMPIErrorFT, getErrorSourceFormat);
    PYL_SLOT(CMPIErrorFT, getOtherErrorSourceFormat);
    PYL_SLOT(CMPIErrorFT, getCIMStatusCode);
    PYL_SLOT(CMPIErrorFT, getCIMStatusCodeDescription);
    PYL_SLOT(CMPIErrorFT, getMessageArguments);
    PYL_SLOT(CMPIErrorFT, setErrorType);
    PYL_SLOT(CMPIErrorFT, setOtherErrorType);
    PYL_SLOT(CMPIErrorFT, setProbableCauseDescription);
    PYL_SLOT(CMPIErrorFT, setRecommendedActions);
    PYL_SLOT(CMPIErrorFT, setErrorSource);
    PYL_SLOT(CMPIErrorFT, setErrorSourceFormat);
    PYL_SLOT(CMPIErrorFT, setOtherErrorSourceFormat);
    PYL_SLOT(CMPIErrorFT, setCIMStatusCodeDescription);
    PYL_SLOT(CMPIErrorFT, setMessageArguments);
}

template <typename Visit>
void visitSlots(TableOf<CMPIPropertyListFT>, Visit visit) {
    PYL_SLOT(CMPIPropertyListFT, release);
    PYL_SLOT(CMPIPropertyListFT, clone);
    PYL_SLOT(CMPIPropertyListFT, isPropertyInList);
    PYL_SLOT(CMPIPropertyListFT, getProperties);
}

template <typename Visit>
void visitSlots(TableOf<CMPIEnumerationFilterFT>, Visit visit) {
    PYL_SLOT(CMPIEnumerationFilterFT, release);
    PYL_SLOT(CMPIEnumerationFilterFT, clone);
    PYL_SLOT(CMPIEnumerationFilterFT, match);
}

#undef PYL_SLOT

/// Calls `visit(TableOf<...>)` for every table.
template <typename Visit>
void visitTables(Visit visit) {
    visit(TableOf<CMPIBrokerFT>{});
    visit(TableOf<CMPIBrokerEncFT>{});
    visit(TableOf<CMPIBrokerExtFT>{});
    visit(TableOf<CMPIBrokerMemFT>{});
    visit(TableOf<CMPIContextFT>{});
    visit(TableOf<CMPIResultFT>{});
    visit(TableOf<CMPIStringFT>{});
    visit(TableOf<CMPIArrayFT>{});
    visit(TableOf<CMPIEnumerationFT>{});
    visit(TableOf<CMPIInstanceFT>{});
    visit(TableOf<CMPIObjectPathFT>{});
    visit(TableOf<CMPIArgsFT>{});
    visit(TableOf<CMPIDateTimeFT>{});
    visit(TableOf<CMPISelectExpFT>{});
    visit(TableOf<CMPISelectCondFT>{});
    visit(TableOf<CMPISubCondFT>{});
    visit(TableOf<CMPIPredicateFT>{});
    visit(TableOf<CMPIErrorFT>{});
    visit(TableOf<CMPIPropertyListFT>{});
    visit(TableOf<CMPIEnumerationFilterFT>{});
}

}  // namespace testsupport
