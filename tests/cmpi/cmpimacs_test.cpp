#include "cmpi/cmpimacs.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using Words = std::vector<std::uintptr_t>;

// The arguments of each call that reached a fake slot, in order.
std::vector<Words> recordedCalls;

template <typename T>
std::uintptr_t toWord(T value) {
    if constexpr (std::is_null_pointer_v<T>) {
        return 0;
    } else if constexpr (std::is_pointer_v<T>) {
        return reinterpret_cast<std::uintptr_t>(value);
    } else {
        return static_cast<std::uintptr_t>(value);
    }
}

template <typename Table, typename Result, typename... Arguments>
auto makeRecorder(Result (*Table::*)(Arguments...)) {
    return +[](Arguments... arguments) -> Result {
        recordedCalls.push_back(Words{toWord(arguments)...});
        return Result();
    };
}

/// One object of each kind. A test fills the one slot that it expects to be called; the others stay
/// null, so that a macro which takes the wrong one ends the test.
struct Fakes {
    CMPIBrokerFT brokerTable{};
    CMPIBrokerEncFT encTable{};
    CMPIContextFT contextTable{};
    CMPIResultFT resultTable{};
    CMPIStringFT stringTable{};
    CMPIArrayFT arrayTable{};
    CMPIEnumerationFT enumerationTable{};
    CMPIInstanceFT instanceTable{};
    CMPIObjectPathFT pathTable{};
    CMPIArgsFT argsTable{};
    CMPIDateTimeFT dateTimeTable{};
    CMPISelectExpFT queryTable{};
    CMPISelectCondFT conditionTable{};
    CMPISubCondFT subConditionTable{};
    CMPIPredicateFT predicateTable{};
    CMPIErrorFT errorTable{};

    CMPIBroker brokerStruct{this, &brokerTable, &encTable, nullptr, nullptr};
    CMPIContext contextStruct{this, &contextTable};
    CMPIResult resultStruct{this, &resultTable};
    CMPIString stringStruct{this, &stringTable};
    CMPIArray arrayStruct{this, &arrayTable};
    CMPIEnumeration enumerationStruct{this, &enumerationTable};
    CMPIInstance instanceStruct{this, &instanceTable};
    CMPIObjectPath pathStruct{this, &pathTable};
    CMPIArgs argsStruct{this, &argsTable};
    CMPIDateTime dateTimeStruct{this, &dateTimeTable};
    CMPISelectExp queryStruct{this, &queryTable};
    CMPISelectCond conditionStruct{this, &conditionTable};
    CMPISubCond subConditionStruct{this, &subConditionTable};
    CMPIPredicate predicateStruct{this, &predicateTable};
    CMPIError errorStruct{this, &errorTable};
    CMPIStatus statusStruct{};
    CMPIValue valueStruct{};
    CMPIString* nameStruct = nullptr;
    const char* propertiesArray[2]{"Property", nullptr};
    const char* keysArray[2]{"Key", nullptr};

    const CMPIBroker* broker = &brokerStruct;
    const CMPIContext* context = &contextStruct;
    const CMPIResult* result = &resultStruct;
    CMPIString* string = &stringStruct;
    const CMPIArray* array = &arrayStruct;
    const CMPIEnumeration* enumeration = &enumerationStruct;
    const CMPIInstance* instance = &instanceStruct;
    const CMPIObjectPath* path = &pathStruct;
    CMPIArgs* args = &argsStruct;
    const CMPIDateTime* dateTime = &dateTimeStruct;
    const CMPISelectExp* query = &queryStruct;
    const CMPISelectCond* condition = &conditionStruct;
    const CMPISubCond* subCondition = &subConditionStruct;
    const CMPIPredicate* predicate = &predicateStruct;
    const CMPIError* error = &errorStruct;
    CMPIStatus* status = &statusStruct;
    const CMPIValue* value = &valueStruct;
    CMPIString** name = &nameStruct;
    const char** properties = propertiesArray;
    const char** keys = keysArray;

    // Texts are told apart by their addresses.
    const char* a = "a";
    const char* b = "b";
    const char* c = "c";
    const char* d = "d";
    const char* e = "e";
    const char* f = "f";
};

class CmpiMacros : public testing::Test, protected Fakes {};

template <typename Table, typename Slot>
void expectCall(Table& table, Slot slot, const auto& call, auto... arguments) {
    recordedCalls.clear();
    table = Table{};
    table.*slot = makeRecorder(slot);
    call();
    EXPECT_EQ(recordedCalls, std::vector<Words>{Words{toWord(arguments)...}});
}

// The call reaches this slot of this table with the arguments that follow, in that order.
#define PYL_EXPECT_CALL(table, slot, call, ...)                                        \
    do {                                                                               \
        SCOPED_TRACE(#call);                                                           \
        expectCall(                                                                    \
            table, &decltype(Fakes::table)::slot, [&] { (void)(call); }, __VA_ARGS__); \
    } while (0)

TEST_F(CmpiMacros, MakeObjects) {
    CMPIArray* projection = nullptr;
    PYL_EXPECT_CALL(encTable, newInstance, CMNewInstance(broker, path, status), broker, path,
                    status);
    PYL_EXPECT_CALL(encTable, newObjectPath, CMNewObjectPath(broker, a, b, status), broker, a, b,
                    status);
    PYL_EXPECT_CALL(encTable, newArgs, CMNewArgs(broker, status), broker, status);
    PYL_EXPECT_CALL(encTable, newString, CMNewString(broker, a, status), broker, a, status);
    PYL_EXPECT_CALL(encTable, newStringCP, CMNewStringCP(broker, a, CMPI_CPID_UTF16, status),
                    broker, a, CMPI_CPID_UTF16, status);
    PYL_EXPECT_CALL(encTable, newArray, CMNewArray(broker, 7, CMPI_uint16, status), broker, 7,
                    CMPI_uint16, status);
    PYL_EXPECT_CALL(encTable, newDateTime, CMNewDateTime(broker, status), broker, status);
    PYL_EXPECT_CALL(encTable, newDateTimeFromBinary, CMNewDateTimeFromBinary(broker, 5, 1, status),
                    broker, 5, 1, status);
    PYL_EXPECT_CALL(encTable, newDateTimeFromChars, CMNewDateTimeFromChars(broker, a, status),
                    broker, a, status);
    PYL_EXPECT_CALL(encTable, newSelectExp, CMNewSelectExp(broker, a, b, &projection, status),
                    broker, a, b, &projection, status);
    PYL_EXPECT_CALL(
        encTable, newCMPIError,
        CMNewCMPIError(broker, a, b, c, ErrorSevHigh, Timeout, CMPI_RC_ERR_FAILED, status), broker,
        a, b, c, ErrorSevHigh, Timeout, CMPI_RC_ERR_FAILED, status);
    PYL_EXPECT_CALL(encTable, newPropertyList, CMNewPropertyList(broker, properties, status),
                    broker, properties, status);
    PYL_EXPECT_CALL(encTable, newEnumerationFilter, CMNewEnumerationFilter(broker, a, b, status),
                    broker, a, b, status);
}

TEST_F(CmpiMacros, ReachServicesOfTheBroker) {
    CMPIMsgFileHandle file = &statusStruct;
    PYL_EXPECT_CALL(encTable, classPathIsA, CMClassPathIsA(broker, path, a, status), broker, path,
                    a, status);
    PYL_EXPECT_CALL(encTable, toString, CDToString(broker, instance, status), broker, instance,
                    status);
    PYL_EXPECT_CALL(encTable, isOfType, CDIsOfType(broker, instance, a, status), broker, instance,
                    a, status);
    PYL_EXPECT_CALL(encTable, getType, CDGetType(broker, instance, status), broker, instance,
                    status);
    PYL_EXPECT_CALL(encTable, logMessage, CMLogMessage(broker, CMPI_SEV_INFO, a, b, string), broker,
                    CMPI_SEV_INFO, a, b, string);
    PYL_EXPECT_CALL(encTable, trace, CMTraceMessage(broker, CMPI_LEV_VERBOSE, a, b, string), broker,
                    CMPI_LEV_VERBOSE, a, b, string);
    PYL_EXPECT_CALL(encTable, openMessageFile, CMOpenMessageFile(broker, a, &file), broker, a,
                    &file);
    PYL_EXPECT_CALL(encTable, closeMessageFile, CMCloseMessageFile(broker, file), broker, file);
}

TEST_F(CmpiMacros, CloneAndReleaseAnyObject) {
    PYL_EXPECT_CALL(pathTable, clone, CMClone(path, status), path, status);
    PYL_EXPECT_CALL(errorTable, clone, CMClone(error, status), error, status);
    PYL_EXPECT_CALL(stringTable, release, CMRelease(string), string);
    PYL_EXPECT_CALL(argsTable, release, CMRelease(args), args);
}

TEST_F(CmpiMacros, ReadAndFillContexts) {
    PYL_EXPECT_CALL(contextTable, getEntry, CMGetContextEntry(context, a, status), context, a,
                    status);
    PYL_EXPECT_CALL(contextTable, getEntryAt, CMGetContextEntryAt(context, 3, name, status),
                    context, 3, name, status);
    PYL_EXPECT_CALL(contextTable, getEntryCount, CMGetContextEntryCount(context, status), context,
                    status);
    PYL_EXPECT_CALL(contextTable, addEntry, CMAddContextEntry(context, a, value, CMPI_uint32),
                    context, a, value, CMPI_uint32);
}

TEST_F(CmpiMacros, PutResults) {
    PYL_EXPECT_CALL(resultTable, returnData, CMReturnData(result, value, CMPI_sint8), result, value,
                    CMPI_sint8);
    PYL_EXPECT_CALL(resultTable, returnInstance, CMReturnInstance(result, instance), result,
                    instance);
    PYL_EXPECT_CALL(resultTable, returnObjectPath, CMReturnObjectPath(result, path), result, path);
    PYL_EXPECT_CALL(resultTable, returnDone, CMReturnDone(result), result);
    PYL_EXPECT_CALL(resultTable, returnError, CMReturnError(result, error), result, error);
}

TEST_F(CmpiMacros, ReadStrings) {
    PYL_EXPECT_CALL(stringTable, getCharPtr, CMGetCharsPtr(string, status), string, status);
    PYL_EXPECT_CALL(stringTable, getCharPtr, CMGetCharPtr(string), string, nullptr);
    PYL_EXPECT_CALL(stringTable, newCharsCP, CMNewCharsCP(string, CMPI_CPID_USASCII, status),
                    string, CMPI_CPID_USASCII, status);
}

TEST_F(CmpiMacros, ReadAndFillArrays) {
    PYL_EXPECT_CALL(arrayTable, getSize, CMGetArrayCount(array, status), array, status);
    PYL_EXPECT_CALL(arrayTable, getSimpleType, CMGetArrayType(array, status), array, status);
    PYL_EXPECT_CALL(arrayTable, getElementAt, CMGetArrayElementAt(array, 3, status), array, 3,
                    status);
    PYL_EXPECT_CALL(arrayTable, setElementAt, CMSetArrayElementAt(array, 3, value, CMPI_real64),
                    array, 3, value, CMPI_real64);
}

TEST_F(CmpiMacros, WalkEnumerations) {
    PYL_EXPECT_CALL(enumerationTable, getNext, CMGetNext(enumeration, status), enumeration, status);
    PYL_EXPECT_CALL(enumerationTable, hasNext, CMHasNext(enumeration, status), enumeration, status);
    PYL_EXPECT_CALL(enumerationTable, toArray, CMToArray(enumeration, status), enumeration, status);
}

TEST_F(CmpiMacros, ReadAndFillInstances) {
    PYL_EXPECT_CALL(instanceTable, getProperty, CMGetProperty(instance, a, status), instance, a,
                    status);
    PYL_EXPECT_CALL(instanceTable, getPropertyAt, CMGetPropertyAt(instance, 3, name, status),
                    instance, 3, name, status);
    PYL_EXPECT_CALL(instanceTable, getPropertyCount, CMGetPropertyCount(instance, status), instance,
                    status);
    PYL_EXPECT_CALL(instanceTable, setProperty, CMSetProperty(instance, a, value, CMPI_string),
                    instance, a, value, CMPI_string);
    PYL_EXPECT_CALL(instanceTable, setPropertyWithOrigin,
                    CMSetPropertyWithOrigin(instance, a, value, CMPI_ref, b), instance, a, value,
                    CMPI_ref, b);
    PYL_EXPECT_CALL(instanceTable, setPropertyFilter,
                    CMSetPropertyFilter(instance, properties, keys), instance, properties, keys);
    PYL_EXPECT_CALL(instanceTable, getObjectPath, CMGetObjectPath(instance, status), instance,
                    status);
    PYL_EXPECT_CALL(instanceTable, setObjectPath, CMSetObjectPath(instance, path), instance, path);
}

TEST_F(CmpiMacros, ReadAndFillObjectPaths) {
    PYL_EXPECT_CALL(pathTable, setNameSpace, CMSetNameSpace(path, a), path, a);
    PYL_EXPECT_CALL(pathTable, getNameSpace, CMGetNameSpace(path, status), path, status);
    PYL_EXPECT_CALL(pathTable, setHostname, CMSetHostname(path, a), path, a);
    PYL_EXPECT_CALL(pathTable, getHostname, CMGetHostname(path, status), path, status);
    PYL_EXPECT_CALL(pathTable, setClassName, CMSetClassName(path, a), path, a);
    PYL_EXPECT_CALL(pathTable, getClassName, CMGetClassName(path, status), path, status);
    PYL_EXPECT_CALL(pathTable, addKey, CMAddKey(path, a, value, CMPI_string), path, a, value,
                    CMPI_string);
    PYL_EXPECT_CALL(pathTable, getKey, CMGetKey(path, a, status), path, a, status);
    PYL_EXPECT_CALL(pathTable, getKeyAt, CMGetKeyAt(path, 3, name, status), path, 3, name, status);
    PYL_EXPECT_CALL(pathTable, getKeyCount, CMGetKeyCount(path, status), path, status);
    PYL_EXPECT_CALL(pathTable, toString, CMObjectPathToString(path, status), path, status);
    PYL_EXPECT_CALL(pathTable, setNameSpaceFromObjectPath, CMSetNameSpaceFromObjectPath(path, path),
                    path, path);
    PYL_EXPECT_CALL(pathTable, setHostAndNameSpaceFromObjectPath,
                    CMSetHostAndNameSpaceFromObjectPath(path, path), path, path);
    PYL_EXPECT_CALL(pathTable, getClassQualifier, CMGetClassQualifier(path, a, status), path, a,
                    status);
    PYL_EXPECT_CALL(pathTable, getPropertyQualifier, CMGetPropertyQualifier(path, a, b, status),
                    path, a, b, status);
    PYL_EXPECT_CALL(pathTable, getMethodQualifier, CMGetMethodQualifier(path, a, b, status), path,
                    a, b, status);
    PYL_EXPECT_CALL(pathTable, getParameterQualifier,
                    CMGetParameterQualifier(path, a, b, c, status), path, a, b, c, status);
}

TEST_F(CmpiMacros, ReadAndFillArguments) {
    PYL_EXPECT_CALL(argsTable, addArg, CMAddArg(args, a, value, CMPI_uint8), args, a, value,
                    CMPI_uint8);
    PYL_EXPECT_CALL(argsTable, getArg, CMGetArg(args, a, status), args, a, status);
    PYL_EXPECT_CALL(argsTable, getArgAt, CMGetArgAt(args, 3, name, status), args, 3, name, status);
    PYL_EXPECT_CALL(argsTable, getArgCount, CMGetArgCount(args, status), args, status);
}

TEST_F(CmpiMacros, ReadDatetimes) {
    PYL_EXPECT_CALL(dateTimeTable, getBinaryFormat, CMGetBinaryFormat(dateTime, status), dateTime,
                    status);
    PYL_EXPECT_CALL(dateTimeTable, getStringFormat, CMGetStringFormat(dateTime, status), dateTime,
                    status);
    PYL_EXPECT_CALL(dateTimeTable, isInterval, CMIsInterval(dateTime, status), dateTime, status);
}

TEST_F(CmpiMacros, TakeQueriesApart) {
    CMPIAccessor* accessor = [](const char*, void*) { return CMPIData(); };
    void* parameter = &statusStruct;
    int form = 0;
    CMPIType type = CMPI_null;
    CMPIPredOp op = CMPI_PredOp_Equals;
    PYL_EXPECT_CALL(queryTable, getString, CMGetSelExpString(query, status), query, status);
    PYL_EXPECT_CALL(queryTable, evaluate, CMEvaluateSelExp(query, instance, status), query,
                    instance, status);
    PYL_EXPECT_CALL(queryTable, evaluateUsingAccessor,
                    CMEvaluateSelExpUsingAccessor(query, accessor, parameter, status), query,
                    accessor, parameter, status);
    PYL_EXPECT_CALL(queryTable, getDOC, CMGetDoc(query, status), query, status);
    PYL_EXPECT_CALL(queryTable, getCOD, CMGetCod(query, status), query, status);
    PYL_EXPECT_CALL(conditionTable, getCountAndType,
                    CMGetSubCondCountAndType(condition, &form, status), condition, &form, status);
    PYL_EXPECT_CALL(conditionTable, getSubCondAt, CMGetSubCondAt(condition, 3, status), condition,
                    3, status);
    PYL_EXPECT_CALL(subConditionTable, getCount, CMGetPredicateCount(subCondition, status),
                    subCondition, status);
    PYL_EXPECT_CALL(subConditionTable, getPredicateAt, CMGetPredicateAt(subCondition, 3, status),
                    subCondition, 3, status);
    PYL_EXPECT_CALL(subConditionTable, getPredicate, CMGetPredicate(subCondition, a, status),
                    subCondition, a, status);
    PYL_EXPECT_CALL(predicateTable, getData,
                    CMGetPredicateData(predicate, &type, &op, name, nullptr), predicate, &type, &op,
                    name, nullptr);
    PYL_EXPECT_CALL(predicateTable, evaluateUsingAccessor,
                    CMEvaluatePredicateUsingAccessor(predicate, accessor, parameter, status),
                    predicate, accessor, parameter, status);
}

TEST_F(CmpiMacros, AttachThreadsAndDeliverIndications) {
    PYL_EXPECT_CALL(brokerTable, prepareAttachThread, CBPrepareAttachThread(broker, context),
                    broker, context);
    PYL_EXPECT_CALL(brokerTable, attachThread, CBAttachThread(broker, context), broker, context);
    PYL_EXPECT_CALL(brokerTable, detachThread, CBDetachThread(broker, context), broker, context);
    PYL_EXPECT_CALL(brokerTable, deliverIndication,
                    CBDeliverIndication(broker, context, a, instance), broker, context, a,
                    instance);
}

TEST_F(CmpiMacros, CallTheBrokerForInstances) {
    PYL_EXPECT_CALL(brokerTable, enumerateInstanceNames,
                    CBEnumInstanceNames(broker, context, path, status), broker, context, path,
                    status);
    PYL_EXPECT_CALL(brokerTable, enumerateInstances,
                    CBEnumInstances(broker, context, path, properties, status), broker, context,
                    path, properties, status);
    PYL_EXPECT_CALL(brokerTable, enumerateInstancesFiltered,
                    CBEnumInstancesFiltered(broker, context, path, properties, a, b, status),
                    broker, context, path, properties, a, b, status);
    PYL_EXPECT_CALL(brokerTable, getInstance,
                    CBGetInstance(broker, context, path, properties, status), broker, context, path,
                    properties, status);
    PYL_EXPECT_CALL(brokerTable, createInstance,
                    CBCreateInstance(broker, context, path, instance, status), broker, context,
                    path, instance, status);
    PYL_EXPECT_CALL(brokerTable, modifyInstance,
                    CBModifyInstance(broker, context, path, instance, properties), broker, context,
                    path, instance, properties);
    PYL_EXPECT_CALL(brokerTable, deleteInstance, CBDeleteInstance(broker, context, path), broker,
                    context, path);
    PYL_EXPECT_CALL(brokerTable, execQuery, CBExecQuery(broker, context, path, a, b, status),
                    broker, context, path, a, b, status);
    PYL_EXPECT_CALL(brokerTable, setProperty,
                    CBSetProperty(broker, context, path, a, value, CMPI_char16), broker, context,
                    path, a, value, CMPI_char16);
    PYL_EXPECT_CALL(brokerTable, getProperty, CBGetProperty(broker, context, path, a, status),
                    broker, context, path, a, status);
    PYL_EXPECT_CALL(brokerTable, invokeMethod,
                    CBInvokeMethod(broker, context, path, a, args, args, status), broker, context,
                    path, a, args, args, status);
}

TEST_F(CmpiMacros, CallTheBrokerForAssociations) {
    PYL_EXPECT_CALL(brokerTable, associators,
                    CBAssociators(broker, context, path, a, b, c, d, properties, status), broker,
                    context, path, a, b, c, d, properties, status);
    PYL_EXPECT_CALL(brokerTable, associatorNames,
                    CBAssociatorNames(broker, context, path, a, b, c, d, status), broker, context,
                    path, a, b, c, d, status);
    PYL_EXPECT_CALL(brokerTable, references,
                    CBReferences(broker, context, path, a, b, properties, status), broker, context,
                    path, a, b, properties, status);
    PYL_EXPECT_CALL(brokerTable, referenceNames,
                    CBReferenceNames(broker, context, path, a, b, status), broker, context, path, a,
                    b, status);
    PYL_EXPECT_CALL(
        brokerTable, associatorsFiltered,
        CBAssociatorsFiltered(broker, context, path, a, b, c, d, properties, e, f, status), broker,
        context, path, a, b, c, d, properties, e, f, status);
    PYL_EXPECT_CALL(brokerTable, referencesFiltered,
                    CBReferencesFiltered(broker, context, path, a, b, properties, c, d, status),
                    broker, context, path, a, b, properties, c, d, status);
}

TEST_F(CmpiMacros, DescribeTheBroker) {
    brokerTable.brokerCapabilities = CMPI_MB_BasicWrite;
    brokerTable.brokerVersion = CMPIVersion210;
    brokerTable.brokerName = "fake";
    EXPECT_EQ(CBBrokerCapabilities(broker), 3u);
    EXPECT_EQ(CBBrokerVersion(broker), 210);
    EXPECT_STREQ(CBBrokerName(broker), "fake");
}

// Reads back what the format macros pass through the variable arguments.
std::string joinInserts(CMPICount count, std::va_list inserts) {
    std::string text;
    for (CMPICount i = 0; i < count; ++i) {
        switch (va_arg(inserts, int)) {
            case CMPI_sint32: text += std::to_string(va_arg(inserts, long)); break;
            case CMPI_uint32: text += std::to_string(va_arg(inserts, unsigned long)); break;
            case CMPI_sint64: text += std::to_string(va_arg(inserts, long long)); break;
            case CMPI_uint64: text += std::to_string(va_arg(inserts, unsigned long long)); break;
            case CMPI_real64: text += std::to_string(va_arg(inserts, double)); break;
            case CMPI_boolean: text += va_arg(inserts, int) ? "true" : "false"; break;
            case CMPI_chars: text += va_arg(inserts, char*); break;
            case CMPI_string: text += va_arg(inserts, CMPIString*) ? "string" : "null"; break;
            default: ADD_FAILURE() << "unexpected type code"; return text;
        }
        text += ' ';
    }
    return text;
}

std::string joinedInserts;

CMPIString* recordMessage(const CMPIBroker*, const char* id, const char*, CMPIStatus*,
                          CMPICount count, ...) {
    std::va_list inserts;
    va_start(inserts, count);
    joinedInserts = id + (' ' + joinInserts(count, inserts));
    va_end(inserts);
    return nullptr;
}

CMPIString* recordMessageOfFile(const CMPIBroker*, const char* id, CMPIMsgFileHandle file,
                                const char*, CMPIStatus*, CMPICount count, ...) {
    std::va_list inserts;
    va_start(inserts, count);
    joinedInserts = id + ((file ? " file " : " none ") + joinInserts(count, inserts));
    va_end(inserts);
    return nullptr;
}

TEST_F(CmpiMacros, PassInsertsOfEveryKindToMessages) {
    encTable.getMessage = recordMessage;
    CMGetMessage(broker, "M1", "$0", status, 8, CMFmtSint(-1), CMFmtUint(4294967295U),
                 CMFmtSint64(-2), CMFmtUint64(~0ULL), CMFmtReal(0.5), CMFmtBoolean(1),
                 CMFmtChars("text"), CMFmtString(string));
    EXPECT_EQ(joinedInserts, "M1 -1 4294967295 -2 18446744073709551615 0.500000 true text string ");
}

TEST_F(CmpiMacros, PassInsertsToMessagesOfAFile) {
    encTable.getMessage2 = recordMessageOfFile;
    CMGetMessage2(broker, "M2", &statusStruct, "$0", status, 1, CMFmtSint(7));
    EXPECT_EQ(joinedInserts, "M2 file 7 ");
    CMGetMessage2(broker, "M3", NULL, "", status, 0);
    EXPECT_EQ(joinedInserts, "M3 none ");
}

TEST_F(CmpiMacros, SetStatusesCompletely) {
    statusStruct = {CMPI_RC_OK, string};
    CMSetStatus(&statusStruct, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(statusStruct.rc, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(statusStruct.msg, nullptr);

    CMSetStatusWithString(status, CMPI_RC_ERROR, string);
    EXPECT_EQ(statusStruct.rc, CMPI_RC_ERROR);
    EXPECT_EQ(statusStruct.msg, string);

    PYL_EXPECT_CALL(
        encTable, newString, [&] { CMSetStatusWithChars(broker, status, CMPI_RC_ERR_FAILED, a); }(),
        broker, a, nullptr);
    EXPECT_EQ(statusStruct.rc, CMPI_RC_ERR_FAILED);
}

TEST_F(CmpiMacros, LeaveANullStatusAlone) {
    CMPIStatus* none = nullptr;
    CMSetStatus(none, CMPI_RC_ERR_FAILED);
    CMSetStatusWithString(none, CMPI_RC_ERR_FAILED, string);
    EXPECT_EQ(statusStruct.rc, CMPI_RC_OK);
}

TEST_F(CmpiMacros, ReturnStatusesFromAnyBranch) {
    const auto choose = [this](bool good) -> CMPIStatus {
        if (good) {
            CMReturn(CMPI_RC_OK);
        } else {
            CMReturnWithString(CMPI_RC_ERR_FAILED, string);
        }
    };
    EXPECT_EQ(choose(true).rc, CMPI_RC_OK);
    EXPECT_EQ(choose(true).msg, nullptr);
    EXPECT_EQ(choose(false).rc, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(choose(false).msg, string);
}

TEST_F(CmpiMacros, TellNullObjects) {
    const CMPIString* none = nullptr;
    EXPECT_TRUE(CMIsNullObject(none));
    EXPECT_FALSE(CMIsNullObject(string));
    stringStruct.hdl = nullptr;
    EXPECT_TRUE(CMIsNullObject(string));
}

TEST_F(CmpiMacros, TellStatesAndArraysByTheirBits) {
    const CMPIData key{CMPI_uint32, CMPI_keyValue, {}};
    EXPECT_TRUE(CMIsKeyValue(key));
    EXPECT_FALSE(CMIsNullValue(key));
    EXPECT_FALSE(CMIsArray(key));

    const CMPIData nullArray{CMPI_stringA, CMPI_nullValue | CMPI_notFound, {}};
    EXPECT_TRUE(CMIsNullValue(nullArray));
    EXPECT_FALSE(CMIsKeyValue(nullArray));
    EXPECT_TRUE(CMIsArray(nullArray));
}

}  // namespace
