// The catalogue: what the family of providers conforms to.

#include "common/ImplementationClassNames.h"
#include "common/PYLConstants.h"
#include "common/ProfileDB.h"
#include "common/detail/TableViews.h"

#include <algorithm>
#include <iterator>

namespace PYL {

namespace {

constexpr int none[] = {0};

}  // namespace

/// Whom a profile is registered by: a value of CIM_RegisteredProfile.RegisteredOrganization (CIM
/// schema 2.x), and the name that goes with "other".
struct ProfileOwner {
    int organization;
    std::string_view name = OrgNameNA;
};

/// What PRPDBRec is made from, as constants. What a row leaves out is empty.
struct ProfileRow {
    int id;
    ProfileOwner owner;
    std::string_view name;
    std::string_view version;
    const char* const* classNames = emptyString;
    const char* const* nameSpaces = emptyString;
    const char* const* profiles = emptyString;
    const int* references = none;
    const int* extends = none;
};

namespace {

constexpr ProfileOwner dmtf{.organization = 2};
constexpr ProfileOwner snia{.organization = 11};
constexpr ProfileOwner kt{.organization = 1, .name = OrgNameKT};

// Ids of referenced and extended profiles, ended by 0.
constexpr int one[] = {1, 0};
constexpr int two[] = {2, 0};
constexpr int three[] = {3, 0};
constexpr int four[] = {4, 0};
constexpr int five[] = {5, 0};
constexpr int six[] = {6, 0};
constexpr int seven[] = {7, 0};
constexpr int eight[] = {8, 0};
constexpr int eleven[] = {11, 0};

constexpr int bsRefs[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 0};
constexpr int hhrcRefs[] = {2, 15, 16, 1, 17, 18, 19, 20, 21, 0};
constexpr int fcRefs[] = {23, 0};
constexpr int ktBsRefs[] = {25, 0};
constexpr int ktBsExtend[] = {14, 0};
constexpr int carrowLiteRefs[] = {26, 0};
constexpr int mpLiteRefs[] = {26, 0};
constexpr int ktFCHBAExtends[] = {24, 0};
// "KT SAS HBA" has the same relations, and so the same tables.
constexpr int ktVARefs[] = {43, 0};
constexpr int ktVAExtends[] = {22, 0};
constexpr int ktSCSIExtends[] = {22, 0};
constexpr int ktServerProductRefs[] = {26, 35, 40, 0};
constexpr int ktCollectionRefs[] = {48, 0};

#define PYL_CLASSES(profile) .classNames = profile##ClassNames, .nameSpaces = profile##NameSpaces

// Names and versions are published to management clients: they change with what is implemented
// only.
// clang-format off
constexpr ProfileRow catalogue[] = {
    {.id = 1, .owner = dmtf, .name = "Software Inventory", .version = "1.0.0", PYL_CLASSES(dmtfSWInv)},
    {.id = 2, .owner = dmtf, .name = "Physical Asset", .version = "1.0.0"},
    {.id = 3, .owner = dmtf, .name = "Fan", .version = "1.0.0"},
    {.id = 4, .owner = dmtf, .name = "Power Supply", .version = "1.1.0"},
    {.id = 5, .owner = dmtf, .name = "System Memory", .version = "1.0.0"},
    {.id = 6, .owner = dmtf, .name = "CPU", .version = "1.0.0"},
    {.id = 7, .owner = dmtf, .name = "Profile Registration", .version = "1.0.0"},
    {.id = 8, .owner = dmtf, .name = "Record Log", .version = "1.0.0"},
    {.id = 9, .owner = dmtf, .name = "Ethernet Port", .version = "1.1.0", PYL_CLASSES(dmtfEthPort)},
    {.id = 10, .owner = dmtf, .name = "IP Interface", .version = "1.0.1", PYL_CLASSES(dmtfIPInterface)},
    {.id = 11, .owner = dmtf, .name = "Sensors", .version = "1.0.1"},
    {.id = 12, .owner = dmtf, .name = "OS Status", .version = "1.0.0", PYL_CLASSES(dmtfOS)},
    {.id = 13, .owner = dmtf, .name = "PCI Device", .version = "1.0.0", PYL_CLASSES(dmtfPCIDevice)},
    {.id = 14, .owner = dmtf, .name = "Base Server", .version = "1.0.0", .references = bsRefs},

    {.id = 15, .owner = snia, .name = "Block Services", .version = "1.3.0"},
    {.id = 16, .owner = snia, .name = "Disk Drive Lite", .version = "1.3.0"},
    {.id = 17, .owner = snia, .name = "Extent Composition", .version = "1.2.0"},
    {.id = 18, .owner = snia, .name = "Disk Sparing", .version = "1.3.0"},
    {.id = 19, .owner = snia, .name = "Generic Initiator Ports", .version = "1.3.0"},
    {.id = 20, .owner = snia, .name = "DA Target Ports", .version = "1.3.0"},
    {.id = 21, .owner = snia, .name = "Indication", .version = "1.3.0"},
    {.id = 22, .owner = snia, .name = "Host Hardware RAID Controller", .version = "1.1.0", .references = hhrcRefs},
    {.id = 23, .owner = snia, .name = "FC Initiator Port", .version = "1.3.0"},
    {.id = 24, .owner = snia, .name = "FC HBA", .version = "1.3.0", .references = fcRefs},

    {.id = 25, .owner = kt, .name = "KT CPU Consolidated Status", .version = "1.0.0", PYL_CLASSES(ktCPUConStat)},
    {.id = 26, .owner = kt, .name = "KT Base Server", .version = "3.2.0",
     PYL_CLASSES(ktCS), .references = ktBsRefs, .extends = ktBsExtend},
    {.id = 27, .owner = kt, .name = "KT Fan", .version = "1.3.0", PYL_CLASSES(ktFan), .extends = three},
    {.id = 28, .owner = kt, .name = "KT Power Supply", .version = "1.3.1", PYL_CLASSES(ktPowerSupply), .extends = four},
    {.id = 29, .owner = kt, .name = "KT Memory", .version = "1.0.0", PYL_CLASSES(ktMemory), .extends = five},
    {.id = 30, .owner = kt, .name = "KT CPU", .version = "1.1.0", PYL_CLASSES(ktCPU), .extends = six},
    {.id = 31, .owner = kt, .name = "KT Fan Physical Asset", .version = "1.1.0",
     PYL_CLASSES(ktPhysFan), .extends = two},
    {.id = 32, .owner = kt, .name = "KT CPU Physical Asset", .version = "1.0.0",
     PYL_CLASSES(ktPhysCPU), .extends = two},
    {.id = 33, .owner = kt, .name = "KT Memory Physical Asset", .version = "2.3.0",
     PYL_CLASSES(ktPhysMemory), .extends = two},
    {.id = 34, .owner = kt, .name = "KT Power Supply Physical Asset", .version = "1.0.2",
     PYL_CLASSES(ktPhysPowerSupply), .extends = two},
    {.id = 35, .owner = kt, .name = "KT Base Server Physical Asset", .version = "1.4.0",
     PYL_CLASSES(ktPhysCS), .extends = two},
    {.id = 36, .owner = kt, .name = "KT Sensors", .version = "1.2.0", PYL_CLASSES(ktSensor), .extends = eleven},
    {.id = 37, .owner = kt, .name = "KT Record Log", .version = "1.1.0", PYL_CLASSES(ktRecordLog), .extends = eight},
    {.id = 38, .owner = kt, .name = "KT Software Inventory", .version = "2.0.0", PYL_CLASSES(ktSWInv), .extends = one},
    // Registered in two versions, here and below. By name alone this one is found; the data
    // collection references the other.
    {.id = 39, .owner = kt, .name = "KT Profile Registration", .version = "2.0.0", .extends = seven},
    {.id = 40, .owner = kt, .name = "KT Carrow Lite", .version = "3.3.0",
     PYL_CLASSES(ktCarrowLite), .references = carrowLiteRefs},
    {.id = 41, .owner = kt, .name = "KT Management Processor Lite", .version = "2.3.0",
     PYL_CLASSES(ktMPLite), .references = mpLiteRefs},
    {.id = 42, .owner = kt, .name = "KT FC HBA", .version = "1.0.5", PYL_CLASSES(ktFCHBA), .extends = ktFCHBAExtends},
    {.id = 43, .owner = kt, .name = "KT Storage Enclosure", .version = "1.0.2", PYL_CLASSES(ktStorageEnc)},
    {.id = 44, .owner = kt, .name = "KT Vela Array", .version = "2.14.3",
     PYL_CLASSES(ktVA), .references = ktVARefs, .extends = ktVAExtends},
    {.id = 45, .owner = kt, .name = "KT SAS HBA", .version = "2.1.0",
     PYL_CLASSES(ktSAS), .references = ktVARefs, .extends = ktVAExtends},
    {.id = 46, .owner = kt, .name = "KT SCSI HBA", .version = "1.0.1", PYL_CLASSES(ktSCSI), .extends = ktSCSIExtends},
    {.id = 47, .owner = kt, .name = "KT Server Product", .version = "1.1.1", PYL_CLASSES(ktServerProduct),
     .references = ktServerProductRefs},
    {.id = 48, .owner = kt, .name = "KT Profile Registration", .version = "2.1.0", .extends = seven},
    {.id = 49, .owner = kt, .name = "KT Configuration Data Collection", .version = "3.0.0",
     PYL_CLASSES(ktCollection), .profiles = ktCollectionProfile, .references = ktCollectionRefs},
};
#undef PYL_CLASSES
// clang-format on

/// Whether the ids count up from 1: the record at position n has the id n + 1.
consteval bool idsCountUp() {
    int expected = 1;
    return std::ranges::all_of(catalogue, [&](const auto& row) { return row.id == expected++; });
}
static_assert(idsCountUp());

constexpr bool areIds(const int* table) {
    return std::ranges::all_of(entriesOf(table, 0), [](int wanted) {
        return std::ranges::any_of(catalogue, [=](const auto& row) { return row.id == wanted; });
    });
}

consteval bool relationsAreClosed() {
    for (const auto& row : catalogue) {
        if (!areIds(row.references) || !areIds(row.extends)) return false;
    }
    return true;
}
static_assert(relationsAreClosed());

}  // namespace

inline PRPDBRec::PRPDBRec(const ProfileRow& row) noexcept
    : _Id(row.id),
      _registeredOrganization(row.owner.organization),
      _otherRegisteredOrganization(row.owner.name),
      _registeredName(row.name),
      _registeredVersion(row.version),
      _referencedProfiles(entriesOf(row.references, 0)),
      _extendsProfiles(entriesOf(row.extends, 0)),
      _implementationCentralClassNames(namesOf(row.classNames)),
      _implementationNameSpaces(namesOf(row.nameSpaces)),
      _implementationProfiles(namesOf(row.profiles)) {}

void ProfileDB::initialize() {
    _records.reserve(_records.size() + std::size(catalogue));
    for (const auto& row : catalogue) make(PRPDBRec(row));
}

}  // namespace PYL
