#include "common/CollectionClassNames.h"

#include "common/detail/CollectionClassRows.h"

// clang-format off

#define PYL_TABLES(family) \
    constinit const char* const family##ClassNames[] = { \
        PYL_##family##Classes(PYL_CLASS_NAME, PYL_CLASS_NAMES) nullptr}; \
    constinit const char* const family##ClassTypes[] = { \
        PYL_##family##Classes(PYL_CLASS_TYPE, PYL_CLASS_TYPES) nullptr};

#define PYL_LEVELS(family) \
    constinit const int family##ClassLevels[] = {PYL_##family##Classes(PYL_CLASS_LEVEL, PYL_CLASS_LEVELS) -1};

namespace PYL {

PYL_TABLES(BaseServer)
PYL_TABLES(BaseServerPhysicalAsset)
PYL_TABLES(CarrowLite)
PYL_TABLES(CPU)
PYL_TABLES(CPUPhysicalAsset)
PYL_TABLES(ConfigurationData)
PYL_TABLES(ConsolidatedStatus)
PYL_TABLES(EthernetTeaming)
PYL_TABLES(FCHBA)
PYL_TABLES(LocalFile)
PYL_TABLES(Location)
PYL_TABLES(MPLite)
PYL_TABLES(Memory)
PYL_TABLES(MemoryPhysical)
PYL_TABLES(PCI)
PYL_TABLES(ProfileRegistration)
PYL_TABLES(RecordLog)
PYL_TABLES(SASHBA)
PYL_TABLES(SCSIHBA)
PYL_TABLES(VelaArray)
PYL_TABLES(SoftwareInventory)

PYL_LEVELS(ConfigurationData)
PYL_LEVELS(LocalFile)
PYL_LEVELS(SCSIHBA)

}  // namespace PYL

#undef PYL_LEVELS
#undef PYL_TABLES
