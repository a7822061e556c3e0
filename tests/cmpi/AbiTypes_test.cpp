// The types of CMPI 2.1 on 64-bit Linux: sizes, the members of values, and where tables grew.

#include "tests/cmpi/AbiMembers.h"

#include <bit>
#include <cstring>
#include <type_traits>

namespace {

struct SizeRow {
    std::string_view type;
    std::size_t actual;
    std::size_t expected;
};

// clang-format off
#define PYL_SIZE(type, size) {#type, sizeof(type), size}
// clang-format on

constexpr auto sizes = std::to_array<SizeRow>({
    PYL_SIZE(CMPIBoolean, 1),
    PYL_SIZE(CMPIChar16, 2),
    PYL_SIZE(CMPIUint8, 1),
    PYL_SIZE(CMPIUint16, 2),
    PYL_SIZE(CMPIUint32, 4),
    PYL_SIZE(CMPIUint64, 8),
    PYL_SIZE(CMPISint8, 1),
    PYL_SIZE(CMPISint16, 2),
    PYL_SIZE(CMPISint32, 4),
    PYL_SIZE(CMPISint64, 8),
    PYL_SIZE(CMPIReal32, 4),
    PYL_SIZE(CMPIReal64, 8),
    PYL_SIZE(CMPICount, 4),
    PYL_SIZE(CMPIFlags, 4),
    PYL_SIZE(CMPIVersion, 4),
    PYL_SIZE(CMPIType, 2),
    PYL_SIZE(CMPIValueState, 2),
    PYL_SIZE(CMPIMsgFileHandle, 8),
    PYL_SIZE(CMPIThreadFunc, 8),
    PYL_SIZE(CMPIThreadOnceFunc, 8),
    PYL_SIZE(CMPIThreadKeyCleanupFunc, 8),
    PYL_SIZE(CMPIrc, 4),
    PYL_SIZE(CMPIPredOp, 4),
    PYL_SIZE(CMPISeverity, 4),
    PYL_SIZE(CMPILevel, 4),
    PYL_SIZE(CMPISelectCondType, 4),
    PYL_SIZE(CMPIErrorType, 4),
    PYL_SIZE(CMPIErrorSeverity, 4),
    PYL_SIZE(CMPIErrorProbableCause, 4),
    PYL_SIZE(CMPIErrorSrcFormat, 4),
    PYL_SIZE(CMPICodepageID, 4),
    PYL_SIZE(CMPIValuePtr, 16),
    PYL_SIZE(CMPIValue, 16),
    PYL_SIZE(CMPIData, 24),
    PYL_SIZE(CMPIStatus, 16),
    PYL_SIZE(CMPIBroker, 40),
    PYL_SIZE(CMPIBrokerFT, 184),
    PYL_SIZE(CMPIBrokerEncFT, 192),
    PYL_SIZE(CMPIBrokerExtFT, 200),
    PYL_SIZE(CMPIBrokerMemFT, 128),
    PYL_SIZE(CMPIContext, 16),
    PYL_SIZE(CMPIContextFT, 56),
    PYL_SIZE(CMPIResult, 16),
    PYL_SIZE(CMPIResultFT, 64),
    PYL_SIZE(CMPIString, 16),
    PYL_SIZE(CMPIStringFT, 40),
    PYL_SIZE(CMPIArray, 16),
    PYL_SIZE(CMPIArrayFT, 56),
    PYL_SIZE(CMPIEnumeration, 16),
    PYL_SIZE(CMPIEnumerationFT, 48),
    PYL_SIZE(CMPIInstance, 16),
    PYL_SIZE(CMPIInstanceFT, 88),
    PYL_SIZE(CMPIObjectPath, 16),
    PYL_SIZE(CMPIObjectPathFT, 160),
    PYL_SIZE(CMPIArgs, 16),
    PYL_SIZE(CMPIArgsFT, 56),
    PYL_SIZE(CMPIDateTime, 16),
    PYL_SIZE(CMPIDateTimeFT, 48),
    PYL_SIZE(CMPISelectExp, 16),
    PYL_SIZE(CMPISelectExpFT, 64),
    PYL_SIZE(CMPISelectCond, 16),
    PYL_SIZE(CMPISelectCondFT, 40),
    PYL_SIZE(CMPISubCond, 16),
    PYL_SIZE(CMPISubCondFT, 48),
    PYL_SIZE(CMPIPredicate, 16),
    PYL_SIZE(CMPIPredicateFT, 40),
    PYL_SIZE(CMPIError, 16),
    PYL_SIZE(CMPIErrorFT, 216),
    PYL_SIZE(CMPIPropertyList, 16),
    PYL_SIZE(CMPIPropertyListFT, 40),
    PYL_SIZE(CMPIEnumerationFilter, 16),
    PYL_SIZE(CMPIEnumerationFilterFT, 32),
    PYL_SIZE(CMPIInstanceMI, 16),
    PYL_SIZE(CMPIInstanceMIFT, 88),
    PYL_SIZE(CMPIAssociationMI, 16),
    PYL_SIZE(CMPIAssociationMIFT, 72),
    PYL_SIZE(CMPIMethodMI, 16),
    PYL_SIZE(CMPIMethodMIFT, 32),
    PYL_SIZE(CMPIPropertyMI, 16),
    PYL_SIZE(CMPIPropertyMIFT, 48),
    PYL_SIZE(CMPIIndicationMI, 16),
    PYL_SIZE(CMPIIndicationMIFT, 96),
});

constexpr auto valueMembers = std::to_array<MemberRow>({
    PYL_MEMBER(CMPIValuePtr, ptr, 0, 8),   PYL_MEMBER(CMPIValuePtr, length, 8, 4),

    PYL_MEMBER(CMPIValue, boolean, 0, 1),  PYL_MEMBER(CMPIValue, char16, 0, 2),
    PYL_MEMBER(CMPIValue, uint8, 0, 1),    PYL_MEMBER(CMPIValue, uint16, 0, 2),
    PYL_MEMBER(CMPIValue, uint32, 0, 4),   PYL_MEMBER(CMPIValue, uint64, 0, 8),
    PYL_MEMBER(CMPIValue, sint8, 0, 1),    PYL_MEMBER(CMPIValue, sint16, 0, 2),
    PYL_MEMBER(CMPIValue, sint32, 0, 4),   PYL_MEMBER(CMPIValue, sint64, 0, 8),
    PYL_MEMBER(CMPIValue, real32, 0, 4),   PYL_MEMBER(CMPIValue, real64, 0, 8),
    PYL_MEMBER(CMPIValue, inst, 0, 8),     PYL_MEMBER(CMPIValue, ref, 0, 8),
    PYL_MEMBER(CMPIValue, args, 0, 8),     PYL_MEMBER(CMPIValue, filter, 0, 8),
    PYL_MEMBER(CMPIValue, Enum, 0, 8),     PYL_MEMBER(CMPIValue, array, 0, 8),
    PYL_MEMBER(CMPIValue, string, 0, 8),   PYL_MEMBER(CMPIValue, chars, 0, 8),
    PYL_MEMBER(CMPIValue, dateTime, 0, 8), PYL_MEMBER(CMPIValue, dataPtr, 0, 16),
    PYL_MEMBER(CMPIValue, Byte, 0, 1),     PYL_MEMBER(CMPIValue, Short, 0, 2),
    PYL_MEMBER(CMPIValue, Int, 0, 4),      PYL_MEMBER(CMPIValue, Long, 0, 8),
    PYL_MEMBER(CMPIValue, Float, 0, 4),    PYL_MEMBER(CMPIValue, Double, 0, 8),

    PYL_MEMBER(CMPIData, type, 0, 2),      PYL_MEMBER(CMPIData, state, 2, 2),
    PYL_MEMBER(CMPIData, value, 8, 16),

    PYL_MEMBER(CMPIStatus, rc, 0, 4),      PYL_MEMBER(CMPIStatus, msg, 8, 8),
});

// Where a table ended before its next level is where that level's first member now stands.
constexpr auto firstMembersOfLevel210 = std::to_array<MemberRow>({
    PYL_MEMBER(CMPIBrokerFT, enumerateInstancesFiltered, 160, 8),
    PYL_MEMBER(CMPIBrokerEncFT, newPropertyList, 168, 8),
    PYL_MEMBER(CMPIBrokerExtFT, destroyMutex2, 168, 8),
    PYL_MEMBER(CMPIBrokerMemFT, freeChars, 120, 8),
    PYL_MEMBER(CMPIStringFT, newCharsCP, 32, 8),
    PYL_MEMBER(CMPIInstanceMIFT, enumerateInstancesFiltered, 80, 8),
    PYL_MEMBER(CMPIAssociationMIFT, associatorsFiltered, 56, 8),
    PYL_MEMBER(CMPIIndicationMIFT, authorizeFilterCollection, 72, 8),
});

constexpr auto firstMembersOfLevel200 = std::to_array<MemberRow>({
    PYL_MEMBER(CMPIBroker, mft, 32, 8),
    PYL_MEMBER(CMPIBrokerEncFT, newCMPIError, 136, 8),
    PYL_MEMBER(CMPIResultFT, returnError, 56, 8),
    PYL_MEMBER(CMPIInstanceFT, setPropertyWithOrigin, 80, 8),
    PYL_MEMBER(CMPIPropertyMIFT, setPropertyWithOrigin, 40, 8),
});

template <typename... T>
constexpr bool areTrivial = ((std::is_trivial_v<T> && std::is_trivially_copyable_v<T> &&
                              std::is_standard_layout_v<T>)&&...);

// By value they cross the boundary as C passes them only while they are trivial.
static_assert(areTrivial<CMPIValuePtr, CMPIValue, CMPIData, CMPIStatus>);
static_assert(
    areTrivial<CMPIBroker, CMPIContext, CMPIResult, CMPIString, CMPIArray, CMPIEnumeration,
               CMPIInstance, CMPIObjectPath, CMPIArgs, CMPIDateTime, CMPISelectExp, CMPISelectCond,
               CMPISubCond, CMPIPredicate, CMPIError, CMPIPropertyList, CMPIEnumerationFilter>);
static_assert(
    areTrivial<CMPIInstanceMI, CMPIAssociationMI, CMPIMethodMI, CMPIPropertyMI, CMPIIndicationMI>);

template <typename... T>
constexpr bool areFixedToInt = (std::is_same_v<std::underlying_type_t<T>, int> && ...);

static_assert(
    areFixedToInt<CMPIrc, CMPIPredOp, CMPISelectCondType, CMPISeverity, CMPILevel, CMPICodepageID,
                  CMPIErrorType, CMPIErrorSeverity, CMPIErrorSrcFormat, CMPIErrorProbableCause>);

static_assert(std::is_same_v<CMPIThreadFunc, void* (*)(void*)>);
static_assert(std::is_same_v<CMPIThreadOnceFunc, void (*)()>);
static_assert(std::is_same_v<CMPIThreadKeyCleanupFunc, void (*)(void*)>);
static_assert(std::is_same_v<CMPIAccessor, CMPIData(const char*, void*)>);
static_assert(std::is_same_v<CMPIGcStat, void>);

// Wide enough for the brokers with 8-byte keys, and unsigned like all of them.
static_assert(sizeof(CMPI_THREAD_KEY_TYPE) == 8 && std::is_unsigned_v<CMPI_THREAD_KEY_TYPE>);

TEST(AbiTypes, HaveTheirSizes) {
    for (const SizeRow& row : sizes) EXPECT_EQ(row.actual, row.expected) << row.type;
}

TEST(AbiTypes, HaveEveryMemberOfAValueAtItsPlaceAndOfItsWidth) { expectPlaces(valueMembers); }

TEST(AbiTypes, EndedTablesWhereTheNextLevelBegins) {
    expectPlaces(firstMembersOfLevel200);
    expectPlaces(firstMembersOfLevel210);
}

// What a broker with 4-byte keys does to a key that was zeroed before.
TEST(AbiTypes, ANarrowThreadKeyLandsInTheFirstHalfOfAWideOne) {
    constexpr unsigned int narrow = 0x89ABCDEF;
    constexpr unsigned int shift = std::endian::native == std::endian::little ? 0 : 32;
    CMPI_THREAD_KEY_TYPE key = 0;
    std::memcpy(&key, &narrow, sizeof narrow);
    EXPECT_EQ(key, CMPI_THREAD_KEY_TYPE{narrow} << shift);
}

}  // namespace
