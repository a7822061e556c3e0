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
    std::string_view nameSpace = BaseServerNameSpace;
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
// Two levels more than there are classes. They belong to the table; since a level is read by the
// index of its class only, nobody meets them.
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

// Clients ask by these names; not each of them is that of a registered profile. Profile
// registration is collected from "root/interop", whatever the namespace of our own registered
// profiles.
constexpr CollectionRow table[] = {
    {.id = 105, .name = "KT Base Server",
     .classNames = BaseServerClassNames, .classTypes = BaseServerClassTypes, .classLevels = BaseServerClassLevels},
    {.id = 110, .name = "KT Memory",
     .classNames = MemoryClassNames, .classTypes = MemoryClassTypes, .classLevels = MemoryClassLevels},
    {.id = 106, .name = "KT CPU",
     .classNames = CPUClassNames, .classTypes = CPUClassTypes, .classLevels = CPUClassLevels},
    {.id = 108, .name = "KT CPU Physical Asset",
     .classNames = CPUPhysicalAssetClassNames, .classTypes = CPUPhysicalAssetClassTypes,
     .classLevels = CPUPhysicalAssetClassLevels},
    {.id = 111, .name = "KT Memory Physical Asset",
     .classNames = MemoryPhysicalClassNames, .classTypes = MemoryPhysicalClassTypes,
     .classLevels = MemoryPhysicalClassLevels},
    {.id = 114, .name = "KT Base Server Physical Asset",
     .classNames = BaseServerPhysicalAssetClassNames, .classTypes = BaseServerPhysicalAssetClassTypes,
     .classLevels = BaseServerPhysicalAssetClassLevels},
    {.id = 109, .name = "KT Record Log",
     .classNames = RecordLogClassNames, .classTypes = RecordLogClassTypes, .classLevels = RecordLogClassLevels},
    {.id = 127, .name = "KT Software Inventory and Update",
     .classNames = SoftwareInventoryClassNames, .classTypes = SoftwareInventoryClassTypes,
     .classLevels = SoftwareInventoryClassLevels},
    {.id = 100, .name = "KT Profile Registration", .nameSpace = "root/interop",
     .classNames = ProfileRegistrationClassNames, .classTypes = ProfileRegistrationClassTypes,
     .classLevels = ProfileRegistrationClassLevels},
    {.id = 125, .name = "KT Carrow Lite",
     .classNames = CarrowLiteClassNames, .classTypes = CarrowLiteClassTypes, .classLevels = CarrowLiteClassLevels},
    {.id = 101, .name = "KT Management Processor Lite",
     .classNames = MPLiteClassNames, .classTypes = MPLiteClassTypes, .classLevels = MPLiteClassLevels},
    {.id = 119, .name = "KT FC HBA",
     .classNames = FCHBAClassNames, .classTypes = FCHBAClassTypes, .classLevels = FCHBAClassLevels},
    {.id = 121, .name = "KT Vela Array",
     .classNames = VelaArrayClassNames, .classTypes = VelaArrayClassTypes, .classLevels = VelaArrayClassLevels},
    {.id = 117, .name = "KT Ethernet Teaming",
     .classNames = EthernetTeamingClassNames, .classTypes = EthernetTeamingClassTypes,
     .classLevels = EthernetTeamingClassLevels},
    {.id = 124, .name = "KT Location",
     .classNames = LocationClassNames, .classTypes = LocationClassTypes, .classLevels = LocationClassLevels},
    {.id = 113, .name = "KT Consolidated Status",
     .classNames = ConsolidatedStatusClassNames, .classTypes = ConsolidatedStatusClassTypes,
     .classLevels = ConsolidatedStatusClassLevels},
    {.id = 122, .name = "KT SAS HBA",
     .classNames = SASHBAClassNames, .classTypes = SASHBAClassTypes, .classLevels = SASHBAClassLevels},
    {.id = 199, .name = "KT PCI",
     .classNames = PCIClassNames, .classTypes = PCIClassTypes, .classLevels = PCIClassLevels},
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
