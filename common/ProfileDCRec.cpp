// What the data collection gathers: a row a profile, and the levels of its classes.

#include "common/CollectionClassNames.h"
#include "common/PYLConstants.h"
#include "common/ProfileDC.h"
#include "common/detail/CollectionClassRows.h"
#include "common/detail/TableViews.h"

#include <iterator>

namespace PYL {

/// What PRPDCRec is made from, as constants.
struct CollectionRow {
    int id;
    std::string_view name;
    std::string_view nameSpace;
    const char* const* classNames;
    const char* const* classTypes;
    const int* classLevels;
};

namespace {

// clang-format off
#define PYL_LEVELS(family) \
    constexpr int family##ClassLevels[] = {PYL_##family##Classes(PYL_CLASS_LEVEL) -1};

PYL_LEVELS(BaseServer)
PYL_LEVELS(Memory)
PYL_LEVELS(CPU)
PYL_LEVELS(CPUPhysicalAsset)
PYL_LEVELS(MemoryPhysical)
PYL_LEVELS(BaseServerPhysicalAsset)
// Two levels more than there are classes. They belong to the table; since a level is read by the index
// of its class only, nobody meets them.
constexpr int RecordLogClassLevels[] = {PYL_RecordLogClasses(PYL_CLASS_LEVEL) 4, 4, -1};
PYL_LEVELS(SoftwareInventory)
PYL_LEVELS(ProfileRegistration)
PYL_LEVELS(CarrowLite)
PYL_LEVELS(MPLite)
PYL_LEVELS(FCHBA)
PYL_LEVELS(VelaArray)
PYL_LEVELS(EthernetTeaming)
PYL_LEVELS(Location)
PYL_LEVELS(ConsolidatedStatus)
PYL_LEVELS(SASHBA)
PYL_LEVELS(PCI)

// Clients ask by these names; not each of them is that of a registered profile. Profile registration is
// collected from "root/interop", whatever the namespace of our own registered profiles.
constexpr CollectionRow table[] = {
    // id, profile, namespace, classes, their types, their levels
    {105, "KT Base Server", BaseServerNameSpace, BaseServerClassNames, BaseServerClassTypes, BaseServerClassLevels},
    {110, "KT Memory", BaseServerNameSpace, MemoryClassNames, MemoryClassTypes, MemoryClassLevels},
    {106, "KT CPU", BaseServerNameSpace, CPUClassNames, CPUClassTypes, CPUClassLevels},
    {108, "KT CPU Physical Asset", BaseServerNameSpace, CPUPhysicalAssetClassNames, CPUPhysicalAssetClassTypes, CPUPhysicalAssetClassLevels},
    {111, "KT Memory Physical Asset", BaseServerNameSpace, MemoryPhysicalClassNames, MemoryPhysicalClassTypes, MemoryPhysicalClassLevels},
    {114, "KT Base Server Physical Asset", BaseServerNameSpace, BaseServerPhysicalAssetClassNames, BaseServerPhysicalAssetClassTypes, BaseServerPhysicalAssetClassLevels},
    {109, "KT Record Log", BaseServerNameSpace, RecordLogClassNames, RecordLogClassTypes, RecordLogClassLevels},
    {127, "KT Software Inventory and Update", BaseServerNameSpace, SoftwareInventoryClassNames, SoftwareInventoryClassTypes, SoftwareInventoryClassLevels},
    {100, "KT Profile Registration", "root/interop", ProfileRegistrationClassNames, ProfileRegistrationClassTypes, ProfileRegistrationClassLevels},
    {125, "KT Carrow Lite", BaseServerNameSpace, CarrowLiteClassNames, CarrowLiteClassTypes, CarrowLiteClassLevels},
    {101, "KT Management Processor Lite", BaseServerNameSpace, MPLiteClassNames, MPLiteClassTypes, MPLiteClassLevels},
    {119, "KT FC HBA", BaseServerNameSpace, FCHBAClassNames, FCHBAClassTypes, FCHBAClassLevels},
    {121, "KT Vela Array", BaseServerNameSpace, VelaArrayClassNames, VelaArrayClassTypes, VelaArrayClassLevels},
    {117, "KT Ethernet Teaming", BaseServerNameSpace, EthernetTeamingClassNames, EthernetTeamingClassTypes, EthernetTeamingClassLevels},
    {124, "KT Location", BaseServerNameSpace, LocationClassNames, LocationClassTypes, LocationClassLevels},
    {113, "KT Consolidated Status", BaseServerNameSpace, ConsolidatedStatusClassNames, ConsolidatedStatusClassTypes, ConsolidatedStatusClassLevels},
    {122, "KT SAS HBA", BaseServerNameSpace, SASHBAClassNames, SASHBAClassTypes, SASHBAClassLevels},
    {199, "KT PCI", BaseServerNameSpace, PCIClassNames, PCIClassTypes, PCIClassLevels},
};
// clang-format on

}  // namespace

inline PRPDCRec::PRPDCRec(const CollectionRow& row) noexcept
    : _Id(row.id),
      _registeredName(row.name),
      _CollectionNameSpaces(row.nameSpace),
      _CollectionClassNames(namesOf(row.classNames)),
      _CollectionClassTypes(namesOf(row.classTypes)),
      _CollectionClassLevels(entriesOf(row.classLevels, -1)) {}

void ProfileDC::initialize() {
    _records.reserve(_records.size() + std::size(table));
    for (const auto& row : table) make(PRPDCRec(row));
}

}  // namespace PYL
