// The handles of data objects and their tables in CMPI 2.1 on 64-bit Linux, a member a line.

#include "tests/cmpi/AbiMembers.h"

namespace {

constexpr auto objectMembers = std::to_array<MemberRow>({
    PYL_MEMBER(CMPIContext, hdl, 0, 8),
    PYL_MEMBER(CMPIContext, ft, 8, 8),

    PYL_MEMBER(CMPIContextFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIContextFT, release, 8, 8),
    PYL_MEMBER(CMPIContextFT, clone, 16, 8),
    PYL_MEMBER(CMPIContextFT, getEntry, 24, 8),
    PYL_MEMBER(CMPIContextFT, getEntryAt, 32, 8),
    PYL_MEMBER(CMPIContextFT, getEntryCount, 40, 8),
    PYL_MEMBER(CMPIContextFT, addEntry, 48, 8),

    PYL_MEMBER(CMPIResult, hdl, 0, 8),
    PYL_MEMBER(CMPIResult, ft, 8, 8),

    PYL_MEMBER(CMPIResultFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIResultFT, release, 8, 8),
    PYL_MEMBER(CMPIResultFT, clone, 16, 8),
    PYL_MEMBER(CMPIResultFT, returnData, 24, 8),
    PYL_MEMBER(CMPIResultFT, returnInstance, 32, 8),
    PYL_MEMBER(CMPIResultFT, returnObjectPath, 40, 8),
    PYL_MEMBER(CMPIResultFT, returnDone, 48, 8),
    PYL_MEMBER(CMPIResultFT, returnError, 56, 8),

    PYL_MEMBER(CMPIString, hdl, 0, 8),
    PYL_MEMBER(CMPIString, ft, 8, 8),

    PYL_MEMBER(CMPIStringFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIStringFT, release, 8, 8),
    PYL_MEMBER(CMPIStringFT, clone, 16, 8),
    PYL_MEMBER(CMPIStringFT, getCharPtr, 24, 8),
    PYL_MEMBER(CMPIStringFT, newCharsCP, 32, 8),

    PYL_MEMBER(CMPIArray, hdl, 0, 8),
    PYL_MEMBER(CMPIArray, ft, 8, 8),

    PYL_MEMBER(CMPIArrayFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIArrayFT, release, 8, 8),
    PYL_MEMBER(CMPIArrayFT, clone, 16, 8),
    PYL_MEMBER(CMPIArrayFT, getSize, 24, 8),
    PYL_MEMBER(CMPIArrayFT, getSimpleType, 32, 8),
    PYL_MEMBER(CMPIArrayFT, getElementAt, 40, 8),
    PYL_MEMBER(CMPIArrayFT, setElementAt, 48, 8),

    PYL_MEMBER(CMPIEnumeration, hdl, 0, 8),
    PYL_MEMBER(CMPIEnumeration, ft, 8, 8),

    PYL_MEMBER(CMPIEnumerationFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIEnumerationFT, release, 8, 8),
    PYL_MEMBER(CMPIEnumerationFT, clone, 16, 8),
    PYL_MEMBER(CMPIEnumerationFT, getNext, 24, 8),
    PYL_MEMBER(CMPIEnumerationFT, hasNext, 32, 8),
    PYL_MEMBER(CMPIEnumerationFT, toArray, 40, 8),

    PYL_MEMBER(CMPIInstance, hdl, 0, 8),
    PYL_MEMBER(CMPIInstance, ft, 8, 8),

    PYL_MEMBER(CMPIInstanceFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIInstanceFT, release, 8, 8),
    PYL_MEMBER(CMPIInstanceFT, clone, 16, 8),
    PYL_MEMBER(CMPIInstanceFT, getProperty, 24, 8),
    PYL_MEMBER(CMPIInstanceFT, getPropertyAt, 32, 8),
    PYL_MEMBER(CMPIInstanceFT, getPropertyCount, 40, 8),
    PYL_MEMBER(CMPIInstanceFT, setProperty, 48, 8),
    PYL_MEMBER(CMPIInstanceFT, getObjectPath, 56, 8),
    PYL_MEMBER(CMPIInstanceFT, setPropertyFilter, 64, 8),
    PYL_MEMBER(CMPIInstanceFT, setObjectPath, 72, 8),
    PYL_MEMBER(CMPIInstanceFT, setPropertyWithOrigin, 80, 8),

    PYL_MEMBER(CMPIObjectPath, hdl, 0, 8),
    PYL_MEMBER(CMPIObjectPath, ft, 8, 8),

    PYL_MEMBER(CMPIObjectPathFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIObjectPathFT, release, 8, 8),
    PYL_MEMBER(CMPIObjectPathFT, clone, 16, 8),
    PYL_MEMBER(CMPIObjectPathFT, setNameSpace, 24, 8),
    PYL_MEMBER(CMPIObjectPathFT, getNameSpace, 32, 8),
    PYL_MEMBER(CMPIObjectPathFT, setHostname, 40, 8),
    PYL_MEMBER(CMPIObjectPathFT, getHostname, 48, 8),
    PYL_MEMBER(CMPIObjectPathFT, setClassName, 56, 8),
    PYL_MEMBER(CMPIObjectPathFT, getClassName, 64, 8),
    PYL_MEMBER(CMPIObjectPathFT, addKey, 72, 8),
    PYL_MEMBER(CMPIObjectPathFT, getKey, 80, 8),
    PYL_MEMBER(CMPIObjectPathFT, getKeyAt, 88, 8),
    PYL_MEMBER(CMPIObjectPathFT, getKeyCount, 96, 8),
    PYL_MEMBER(CMPIObjectPathFT, setNameSpaceFromObjectPath, 104, 8),
    PYL_MEMBER(CMPIObjectPathFT, setHostAndNameSpaceFromObjectPath, 112, 8),
    PYL_MEMBER(CMPIObjectPathFT, getClassQualifier, 120, 8),
    PYL_MEMBER(CMPIObjectPathFT, getPropertyQualifier, 128, 8),
    PYL_MEMBER(CMPIObjectPathFT, getMethodQualifier, 136, 8),
    PYL_MEMBER(CMPIObjectPathFT, getParameterQualifier, 144, 8),
    PYL_MEMBER(CMPIObjectPathFT, toString, 152, 8),

    PYL_MEMBER(CMPIArgs, hdl, 0, 8),
    PYL_MEMBER(CMPIArgs, ft, 8, 8),

    PYL_MEMBER(CMPIArgsFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIArgsFT, release, 8, 8),
    PYL_MEMBER(CMPIArgsFT, clone, 16, 8),
    PYL_MEMBER(CMPIArgsFT, addArg, 24, 8),
    PYL_MEMBER(CMPIArgsFT, getArg, 32, 8),
    PYL_MEMBER(CMPIArgsFT, getArgAt, 40, 8),
    PYL_MEMBER(CMPIArgsFT, getArgCount, 48, 8),

    PYL_MEMBER(CMPIDateTime, hdl, 0, 8),
    PYL_MEMBER(CMPIDateTime, ft, 8, 8),

    PYL_MEMBER(CMPIDateTimeFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIDateTimeFT, release, 8, 8),
    PYL_MEMBER(CMPIDateTimeFT, clone, 16, 8),
    PYL_MEMBER(CMPIDateTimeFT, getBinaryFormat, 24, 8),
    PYL_MEMBER(CMPIDateTimeFT, getStringFormat, 32, 8),
    PYL_MEMBER(CMPIDateTimeFT, isInterval, 40, 8),

    PYL_MEMBER(CMPISelectExp, hdl, 0, 8),
    PYL_MEMBER(CMPISelectExp, ft, 8, 8),

    PYL_MEMBER(CMPISelectExpFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPISelectExpFT, release, 8, 8),
    PYL_MEMBER(CMPISelectExpFT, clone, 16, 8),
    PYL_MEMBER(CMPISelectExpFT, evaluate, 24, 8),
    PYL_MEMBER(CMPISelectExpFT, getString, 32, 8),
    PYL_MEMBER(CMPISelectExpFT, getDOC, 40, 8),
    PYL_MEMBER(CMPISelectExpFT, getCOD, 48, 8),
    PYL_MEMBER(CMPISelectExpFT, evaluateUsingAccessor, 56, 8),

    PYL_MEMBER(CMPISelectCond, hdl, 0, 8),
    PYL_MEMBER(CMPISelectCond, ft, 8, 8),

    PYL_MEMBER(CMPISelectCondFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPISelectCondFT, release, 8, 8),
    PYL_MEMBER(CMPISelectCondFT, clone, 16, 8),
    PYL_MEMBER(CMPISelectCondFT, getCountAndType, 24, 8),
    PYL_MEMBER(CMPISelectCondFT, getSubCondAt, 32, 8),

    PYL_MEMBER(CMPISubCond, hdl, 0, 8),
    PYL_MEMBER(CMPISubCond, ft, 8, 8),

    PYL_MEMBER(CMPISubCondFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPISubCondFT, release, 8, 8),
    PYL_MEMBER(CMPISubCondFT, clone, 16, 8),
    PYL_MEMBER(CMPISubCondFT, getCount, 24, 8),
    PYL_MEMBER(CMPISubCondFT, getPredicateAt, 32, 8),
    PYL_MEMBER(CMPISubCondFT, getPredicate, 40, 8),

    PYL_MEMBER(CMPIPredicate, hdl, 0, 8),
    PYL_MEMBER(CMPIPredicate, ft, 8, 8),

    PYL_MEMBER(CMPIPredicateFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIPredicateFT, release, 8, 8),
    PYL_MEMBER(CMPIPredicateFT, clone, 16, 8),
    PYL_MEMBER(CMPIPredicateFT, getData, 24, 8),
    PYL_MEMBER(CMPIPredicateFT, evaluateUsingAccessor, 32, 8),

    PYL_MEMBER(CMPIError, hdl, 0, 8),
    PYL_MEMBER(CMPIError, ft, 8, 8),

    PYL_MEMBER(CMPIErrorFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIErrorFT, release, 8, 8),
    PYL_MEMBER(CMPIErrorFT, clone, 16, 8),
    PYL_MEMBER(CMPIErrorFT, getErrorType, 24, 8),
    PYL_MEMBER(CMPIErrorFT, getOtherErrorType, 32, 8),
    PYL_MEMBER(CMPIErrorFT, getOwningEntity, 40, 8),
    PYL_MEMBER(CMPIErrorFT, getMessageID, 48, 8),
    PYL_MEMBER(CMPIErrorFT, getMessage, 56, 8),
    PYL_MEMBER(CMPIErrorFT, getPerceivedSeverity, 64, 8),
    PYL_MEMBER(CMPIErrorFT, getProbableCause, 72, 8),
    PYL_MEMBER(CMPIErrorFT, getProbableCauseDescription, 80, 8),
    PYL_MEMBER(CMPIErrorFT, getRecommendedActions, 88, 8),
    PYL_MEMBER(CMPIErrorFT, getErrorSource, 96, 8),
    PYL_MEMBER(CMPIErrorFT, getErrorSourceFormat, 104, 8),
    PYL_MEMBER(CMPIErrorFT, getOtherErrorSourceFormat, 112, 8),
    PYL_MEMBER(CMPIErrorFT, getCIMStatusCode, 120, 8),
    PYL_MEMBER(CMPIErrorFT, getCIMStatusCodeDescription, 128, 8),
    PYL_MEMBER(CMPIErrorFT, getMessageArguments, 136, 8),
    PYL_MEMBER(CMPIErrorFT, setErrorType, 144, 8),
    PYL_MEMBER(CMPIErrorFT, setOtherErrorType, 152, 8),
    PYL_MEMBER(CMPIErrorFT, setProbableCauseDescription, 160, 8),
    PYL_MEMBER(CMPIErrorFT, setRecommendedActions, 168, 8),
    PYL_MEMBER(CMPIErrorFT, setErrorSource, 176, 8),
    PYL_MEMBER(CMPIErrorFT, setErrorSourceFormat, 184, 8),
    PYL_MEMBER(CMPIErrorFT, setOtherErrorSourceFormat, 192, 8),
    PYL_MEMBER(CMPIErrorFT, setCIMStatusCodeDescription, 200, 8),
    PYL_MEMBER(CMPIErrorFT, setMessageArguments, 208, 8),

    PYL_MEMBER(CMPIPropertyList, hdl, 0, 8),
    PYL_MEMBER(CMPIPropertyList, ft, 8, 8),

    PYL_MEMBER(CMPIPropertyListFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIPropertyListFT, release, 8, 8),
    PYL_MEMBER(CMPIPropertyListFT, clone, 16, 8),
    PYL_MEMBER(CMPIPropertyListFT, isPropertyInList, 24, 8),
    PYL_MEMBER(CMPIPropertyListFT, getProperties, 32, 8),

    PYL_MEMBER(CMPIEnumerationFilter, hdl, 0, 8),
    PYL_MEMBER(CMPIEnumerationFilter, ft, 8, 8),

    PYL_MEMBER(CMPIEnumerationFilterFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIEnumerationFilterFT, release, 8, 8),
    PYL_MEMBER(CMPIEnumerationFilterFT, clone, 16, 8),
    PYL_MEMBER(CMPIEnumerationFilterFT, match, 24, 8),
});

TEST(AbiObjectTables, HaveEveryMemberAtItsPlaceAndOfItsWidth) { expectPlaces(objectMembers); }

}  // namespace
