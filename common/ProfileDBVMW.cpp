// The catalogue: what the family of providers conforms to.

#include "common/ImplementationClassNames.h"
#include "common/PYLConstants.h"
#include "common/ProfileDB.h"
#include "common/detail/TableViews.h"

#include <algorithm>
#include <iterator>

namespace PYL {

/// What PRPDBRec is made from, as constants.
struct ProfileRow {
    int id;
    int organization;
    std::string_view otherOrganization;
    std::string_view name;
    std::string_view version;
    const char* const* classNames;
    const char* const* nameSpaces;
    const char* const* profiles;
    const int* references;
    const int* extends;
};

namespace {

// Values of CIM_RegisteredProfile.RegisteredOrganization (CIM schema 2.x).
constexpr int other = 1;
constexpr int dmtf = 2;
constexpr int snia = 11;

// Ids of referenced and extended profiles, ended by 0.
constexpr int none[] = {0};
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

// Names and versions are published to management clients: they change with what is implemented
// only.
// clang-format off
constexpr ProfileRow catalogue[] = {
    // id, organisation and its name, profile and its version, classes and their namespaces,
    // profiles, references, extends
    { 1, dmtf, OrgNameNA, "Software Inventory", "1.0.0", dmtfSWInvClassNames, dmtfSWInvNameSpaces, emptyString, none, none},
    { 2, dmtf, OrgNameNA, "Physical Asset", "1.0.0", emptyString, emptyString, emptyString, none, none},
    { 3, dmtf, OrgNameNA, "Fan", "1.0.0", emptyString, emptyString, emptyString, none, none},
    { 4, dmtf, OrgNameNA, "Power Supply", "1.1.0", emptyString, emptyString, emptyString, none, none},
    { 5, dmtf, OrgNameNA, "System Memory", "1.0.0", emptyString, emptyString, emptyString, none, none},
    { 6, dmtf, OrgNameNA, "CPU", "1.0.0", emptyString, emptyString, emptyString, none, none},
    { 7, dmtf, OrgNameNA, "Profile Registration", "1.0.0", emptyString, emptyString, emptyString, none, none},
    { 8, dmtf, OrgNameNA, "Record Log", "1.0.0", emptyString, emptyString, emptyString, none, none},
    { 9, dmtf, OrgNameNA, "Ethernet Port", "1.1.0", dmtfEthPortClassNames, dmtfEthPortNameSpaces, emptyString, none, none},
    {10, dmtf, OrgNameNA, "IP Interface", "1.0.1", dmtfIPInterfaceClassNames, dmtfIPInterfaceNameSpaces, emptyString, none, none},
    {11, dmtf, OrgNameNA, "Sensors", "1.0.1", emptyString, emptyString, emptyString, none, none},
    {12, dmtf, OrgNameNA, "OS Status", "1.0.0", dmtfOSClassNames, dmtfOSNameSpaces, emptyString, none, none},
    {13, dmtf, OrgNameNA, "PCI Device", "1.0.0", dmtfPCIDeviceClassNames, dmtfPCIDeviceNameSpaces, emptyString, none, none},
    {14, dmtf, OrgNameNA, "Base Server", "1.0.0", emptyString, emptyString, emptyString, bsRefs, none},
    {15, snia, OrgNameNA, "Block Services", "1.3.0", emptyString, emptyString, emptyString, none, none},
    {16, snia, OrgNameNA, "Disk Drive Lite", "1.3.0", emptyString, emptyString, emptyString, none, none},
    {17, snia, OrgNameNA, "Extent Composition", "1.2.0", emptyString, emptyString, emptyString, none, none},
    {18, snia, OrgNameNA, "Disk Sparing", "1.3.0", emptyString, emptyString, emptyString, none, none},
    {19, snia, OrgNameNA, "Generic Initiator Ports", "1.3.0", emptyString, emptyString, emptyString, none, none},
    {20, snia, OrgNameNA, "DA Target Ports", "1.3.0", emptyString, emptyString, emptyString, none, none},
    {21, snia, OrgNameNA, "Indication", "1.3.0", emptyString, emptyString, emptyString, none, none},
    {22, snia, OrgNameNA, "Host Hardware RAID Controller", "1.1.0", emptyString, emptyString, emptyString, hhrcRefs, none},
    {23, snia, OrgNameNA, "FC Initiator Port", "1.3.0", emptyString, emptyString, emptyString, none, none},
    {24, snia, OrgNameNA, "FC HBA", "1.3.0", emptyString, emptyString, emptyString, fcRefs, none},
    {25, other, OrgNameKT, "KT CPU Consolidated Status", "1.0.0", ktCPUConStatClassNames, ktCPUConStatNameSpaces, emptyString, none, none},
    {26, other, OrgNameKT, "KT Base Server", "3.2.0", ktCSClassNames, ktCSNameSpaces, emptyString, ktBsRefs, ktBsExtend},
    {27, other, OrgNameKT, "KT Fan", "1.3.0", ktFanClassNames, ktFanNameSpaces, emptyString, none, three},
    {28, other, OrgNameKT, "KT Power Supply", "1.3.1", ktPowerSupplyClassNames, ktPowerSupplyNameSpaces, emptyString, none, four},
    {29, other, OrgNameKT, "KT Memory", "1.0.0", ktMemoryClassNames, ktMemoryNameSpaces, emptyString, none, five},
    {30, other, OrgNameKT, "KT CPU", "1.1.0", ktCPUClassNames, ktCPUNameSpaces, emptyString, none, six},
    {31, other, OrgNameKT, "KT Fan Physical Asset", "1.1.0", ktPhysFanClassNames, ktPhysFanNameSpaces, emptyString, none, two},
    {32, other, OrgNameKT, "KT CPU Physical Asset", "1.0.0", ktPhysCPUClassNames, ktPhysCPUNameSpaces, emptyString, none, two},
    {33, other, OrgNameKT, "KT Memory Physical Asset", "2.3.0", ktPhysMemoryClassNames, ktPhysMemoryNameSpaces, emptyString, none, two},
    {34, other, OrgNameKT, "KT Power Supply Physical Asset", "1.0.2", ktPhysPowerSupplyClassNames, ktPhysPowerSupplyNameSpaces, emptyString, none, two},
    {35, other, OrgNameKT, "KT Base Server Physical Asset", "1.4.0", ktPhysCSClassNames, ktPhysCSNameSpaces, emptyString, none, two},
    {36, other, OrgNameKT, "KT Sensors", "1.2.0", ktSensorClassNames, ktSensorNameSpaces, emptyString, none, eleven},
    {37, other, OrgNameKT, "KT Record Log", "1.1.0", ktRecordLogClassNames, ktRecordLogNameSpaces, emptyString, none, eight},
    {38, other, OrgNameKT, "KT Software Inventory", "2.0.0", ktSWInvClassNames, ktSWInvNameSpaces, emptyString, none, one},
    // Registered in two versions, here and below. By name alone this one is found; the data
    // collection references the other.
    {39, other, OrgNameKT, "KT Profile Registration", "2.0.0", emptyString, emptyString, emptyString, none, seven},
    {40, other, OrgNameKT, "KT Carrow Lite", "3.3.0", ktCarrowLiteClassNames, ktCarrowLiteNameSpaces, emptyString, carrowLiteRefs, none},
    {41, other, OrgNameKT, "KT Management Processor Lite", "2.3.0", ktMPLiteClassNames, ktMPLiteNameSpaces, emptyString, mpLiteRefs, none},
    {42, other, OrgNameKT, "KT FC HBA", "1.0.5", ktFCHBAClassNames, ktFCHBANameSpaces, emptyString, none, ktFCHBAExtends},
    {43, other, OrgNameKT, "KT Storage Enclosure", "1.0.2", ktStorageEncClassNames, ktStorageEncNameSpaces, emptyString, none, none},
    {44, other, OrgNameKT, "KT Vela Array", "2.14.3", ktVAClassNames, ktVANameSpaces, emptyString, ktVARefs, ktVAExtends},
    {45, other, OrgNameKT, "KT SAS HBA", "2.1.0", ktSASClassNames, ktSASNameSpaces, emptyString, ktVARefs, ktVAExtends},
    {46, other, OrgNameKT, "KT SCSI HBA", "1.0.1", ktSCSIClassNames, ktSCSINameSpaces, emptyString, none, ktSCSIExtends},
    {47, other, OrgNameKT, "KT Server Product", "1.1.1", ktServerProductClassNames, ktServerProductNameSpaces, emptyString, ktServerProductRefs, none},
    {48, other, OrgNameKT, "KT Profile Registration", "2.1.0", emptyString, emptyString, emptyString, none, seven},
    {49, other, OrgNameKT, "KT Configuration Data Collection", "3.0.0", ktCollectionClassNames, ktCollectionNameSpaces, ktCollectionProfile, ktCollectionRefs, none},
};
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
      _registeredOrganization(row.organization),
      _otherRegisteredOrganization(row.otherOrganization),
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
