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
    constexpr int family##ClassLevels[] = {PYL_##family##Classes(PYL_CLASS_LEVEL, PYL_CLASS_LEVELS) -1};

PYL_LEVELS(BaseServer)
PYL_LEVELS(Memory)
PYL_LEVELS(CPU)
PYL_LEVELS(CPUPhysicalAsset)
PYL_LEVELS(MemoryPhysical)
PYL_LEVELS(BaseServerPhysicalAsset)
// Two levels more than there are classes. They belong to the table; since a level is read by the
// index of its class only, nobody meets them.
constexpr int RecordLogClassLevels[] = {PYL_RecordLogClasses(PYL_CLASS_LEVEL, PYL_CLASS_LEVELS) 4, 4, -1};
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

#define PYL_CLASSES(family) \
    .classNames = family##ClassNames, .classTypes = family##ClassTypes, .classLevels = family##ClassLevels

// Clients ask by these names; not each of them is that of a registered profile. Profile
// registration is collected from "root/interop", whatever the namespace of our own registered
// profiles.
constexpr CollectionRow table[] = {
    {.id = 105, .name = "KT Base Server", PYL_CLASSES(BaseServer)},
    {.id = 110, .name = "KT Memory", PYL_CLASSES(Memory)},
    {.id = 106, .name = "KT CPU", PYL_CLASSES(CPU)},
    {.id = 108, .name = "KT CPU Physical Asset", PYL_CLASSES(CPUPhysicalAsset)},
    {.id = 111, .name = "KT Memory Physical Asset", PYL_CLASSES(MemoryPhysical)},
    {.id = 114, .name = "KT Base Server Physical Asset", PYL_CLASSES(BaseServerPhysicalAsset)},
    {.id = 109, .name = "KT Record Log", PYL_CLASSES(RecordLog)},
    {.id = 127, .name = "KT Software Inventory and Update", PYL_CLASSES(SoftwareInventory)},
    {.id = 100, .name = "KT Profile Registration", .nameSpace = "root/interop", PYL_CLASSES(ProfileRegistration)},
    {.id = 125, .name = "KT Carrow Lite", PYL_CLASSES(CarrowLite)},
    {.id = 101, .name = "KT Management Processor Lite", PYL_CLASSES(MPLite)},
    {.id = 119, .name = "KT FC HBA", PYL_CLASSES(FCHBA)},
    {.id = 121, .name = "KT Vela Array", PYL_CLASSES(VelaArray)},
    {.id = 117, .name = "KT Ethernet Teaming", PYL_CLASSES(EthernetTeaming)},
    {.id = 124, .name = "KT Location", PYL_CLASSES(Location)},
    {.id = 113, .name = "KT Consolidated Status", PYL_CLASSES(ConsolidatedStatus)},
    {.id = 122, .name = "KT SAS HBA", PYL_CLASSES(SASHBA)},
    {.id = 199, .name = "KT PCI", PYL_CLASSES(PCI)},
};
#undef PYL_CLASSES
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
