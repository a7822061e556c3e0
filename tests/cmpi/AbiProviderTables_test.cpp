// The handles of providers and their tables in CMPI 2.1 on 64-bit Linux, a member a line.

#include "tests/cmpi/AbiMembers.h"

namespace {

constexpr auto providerMembers = std::to_array<MemberRow>({
    PYL_MEMBER(CMPIInstanceMI, hdl, 0, 8),
    PYL_MEMBER(CMPIInstanceMI, ft, 8, 8),

    PYL_MEMBER(CMPIInstanceMIFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIInstanceMIFT, miVersion, 4, 4),
    PYL_MEMBER(CMPIInstanceMIFT, miName, 8, 8),
    PYL_MEMBER(CMPIInstanceMIFT, cleanup, 16, 8),
    PYL_MEMBER(CMPIInstanceMIFT, enumerateInstanceNames, 24, 8),
    PYL_MEMBER(CMPIInstanceMIFT, enumerateInstances, 32, 8),
    PYL_MEMBER(CMPIInstanceMIFT, getInstance, 40, 8),
    PYL_MEMBER(CMPIInstanceMIFT, createInstance, 48, 8),
    PYL_MEMBER(CMPIInstanceMIFT, modifyInstance, 56, 8),
    PYL_MEMBER(CMPIInstanceMIFT, deleteInstance, 64, 8),
    PYL_MEMBER(CMPIInstanceMIFT, execQuery, 72, 8),
    PYL_MEMBER(CMPIInstanceMIFT, enumerateInstancesFiltered, 80, 8),

    PYL_MEMBER(CMPIAssociationMI, hdl, 0, 8),
    PYL_MEMBER(CMPIAssociationMI, ft, 8, 8),

    PYL_MEMBER(CMPIAssociationMIFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIAssociationMIFT, miVersion, 4, 4),
    PYL_MEMBER(CMPIAssociationMIFT, miName, 8, 8),
    PYL_MEMBER(CMPIAssociationMIFT, cleanup, 16, 8),
    PYL_MEMBER(CMPIAssociationMIFT, associators, 24, 8),
    PYL_MEMBER(CMPIAssociationMIFT, associatorNames, 32, 8),
    PYL_MEMBER(CMPIAssociationMIFT, references, 40, 8),
    PYL_MEMBER(CMPIAssociationMIFT, referenceNames, 48, 8),
    PYL_MEMBER(CMPIAssociationMIFT, associatorsFiltered, 56, 8),
    PYL_MEMBER(CMPIAssociationMIFT, referencesFiltered, 64, 8),

    PYL_MEMBER(CMPIMethodMI, hdl, 0, 8),
    PYL_MEMBER(CMPIMethodMI, ft, 8, 8),

    PYL_MEMBER(CMPIMethodMIFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIMethodMIFT, miVersion, 4, 4),
    PYL_MEMBER(CMPIMethodMIFT, miName, 8, 8),
    PYL_MEMBER(CMPIMethodMIFT, cleanup, 16, 8),
    PYL_MEMBER(CMPIMethodMIFT, invokeMethod, 24, 8),

    PYL_MEMBER(CMPIPropertyMI, hdl, 0, 8),
    PYL_MEMBER(CMPIPropertyMI, ft, 8, 8),

    PYL_MEMBER(CMPIPropertyMIFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIPropertyMIFT, miVersion, 4, 4),
    PYL_MEMBER(CMPIPropertyMIFT, miName, 8, 8),
    PYL_MEMBER(CMPIPropertyMIFT, cleanup, 16, 8),
    PYL_MEMBER(CMPIPropertyMIFT, setProperty, 24, 8),
    PYL_MEMBER(CMPIPropertyMIFT, getProperty, 32, 8),
    PYL_MEMBER(CMPIPropertyMIFT, setPropertyWithOrigin, 40, 8),

    PYL_MEMBER(CMPIIndicationMI, hdl, 0, 8),
    PYL_MEMBER(CMPIIndicationMI, ft, 8, 8),

    PYL_MEMBER(CMPIIndicationMIFT, ftVersion, 0, 4),
    PYL_MEMBER(CMPIIndicationMIFT, miVersion, 4, 4),
    PYL_MEMBER(CMPIIndicationMIFT, miName, 8, 8),
    PYL_MEMBER(CMPIIndicationMIFT, cleanup, 16, 8),
    PYL_MEMBER(CMPIIndicationMIFT, authorizeFilter, 24, 8),
    PYL_MEMBER(CMPIIndicationMIFT, mustPoll, 32, 8),
    PYL_MEMBER(CMPIIndicationMIFT, activateFilter, 40, 8),
    PYL_MEMBER(CMPIIndicationMIFT, deActivateFilter, 48, 8),
    PYL_MEMBER(CMPIIndicationMIFT, enableIndications, 56, 8),
    PYL_MEMBER(CMPIIndicationMIFT, disableIndications, 64, 8),
    PYL_MEMBER(CMPIIndicationMIFT, authorizeFilterCollection, 72, 8),
    PYL_MEMBER(CMPIIndicationMIFT, activateFilterCollection, 80, 8),
    PYL_MEMBER(CMPIIndicationMIFT, deActivateFilterCollection, 88, 8),
});

TEST(AbiProviderTables, HaveEveryMemberAtItsPlaceAndOfItsWidth) { expectPlaces(providerMembers); }

}  // namespace
