#pragma once

#include "pylcommon_export.h"

/// The classes of each family of providers, as the data collection takes them.
///
/// A family has two tables: the names of its classes, and for each whether it is an "Instance" or
/// an "Association" class. Entry i of the one goes with entry i of the other. Each ends with a null
/// pointer. They are constant, initialised before any code runs, and good for as long as the
/// library is loaded.
namespace PYL {

extern PYL_EXPORT char const* const BaseServerClassNames[];
extern PYL_EXPORT char const* const BaseServerClassTypes[];
extern PYL_EXPORT char const* const BaseServerPhysicalAssetClassNames[];
extern PYL_EXPORT char const* const BaseServerPhysicalAssetClassTypes[];
extern PYL_EXPORT char const* const CarrowLiteClassNames[];
extern PYL_EXPORT char const* const CarrowLiteClassTypes[];
extern PYL_EXPORT char const* const CPUClassNames[];
extern PYL_EXPORT char const* const CPUClassTypes[];
extern PYL_EXPORT char const* const CPUPhysicalAssetClassNames[];
extern PYL_EXPORT char const* const CPUPhysicalAssetClassTypes[];
extern PYL_EXPORT char const* const ConfigurationDataClassNames[];
extern PYL_EXPORT char const* const ConfigurationDataClassTypes[];
extern PYL_EXPORT char const* const ConsolidatedStatusClassNames[];
extern PYL_EXPORT char const* const ConsolidatedStatusClassTypes[];
extern PYL_EXPORT char const* const EthernetTeamingClassNames[];
extern PYL_EXPORT char const* const EthernetTeamingClassTypes[];
extern PYL_EXPORT char const* const FCHBAClassNames[];
extern PYL_EXPORT char const* const FCHBAClassTypes[];
extern PYL_EXPORT char const* const LocalFileClassNames[];
extern PYL_EXPORT char const* const LocalFileClassTypes[];
extern PYL_EXPORT char const* const LocationClassNames[];
extern PYL_EXPORT char const* const LocationClassTypes[];
extern PYL_EXPORT char const* const MPLiteClassNames[];
extern PYL_EXPORT char const* const MPLiteClassTypes[];
extern PYL_EXPORT char const* const MemoryClassNames[];
extern PYL_EXPORT char const* const MemoryClassTypes[];
extern PYL_EXPORT char const* const MemoryPhysicalClassNames[];
extern PYL_EXPORT char const* const MemoryPhysicalClassTypes[];
extern PYL_EXPORT char const* const PCIClassNames[];
extern PYL_EXPORT char const* const PCIClassTypes[];
extern PYL_EXPORT char const* const ProfileRegistrationClassNames[];
extern PYL_EXPORT char const* const ProfileRegistrationClassTypes[];
extern PYL_EXPORT char const* const RecordLogClassNames[];
extern PYL_EXPORT char const* const RecordLogClassTypes[];
extern PYL_EXPORT char const* const SASHBAClassNames[];
extern PYL_EXPORT char const* const SASHBAClassTypes[];
extern PYL_EXPORT char const* const SCSIHBAClassNames[];
extern PYL_EXPORT char const* const SCSIHBAClassTypes[];
extern PYL_EXPORT char const* const VelaArrayClassNames[];
extern PYL_EXPORT char const* const VelaArrayClassTypes[];
extern PYL_EXPORT char const* const SoftwareInventoryClassNames[];
extern PYL_EXPORT char const* const SoftwareInventoryClassTypes[];

// At which level each class of a family is collected, ended by -1, for the families that the data
// collection itself does not gather. Those of the others are its own.
extern PYL_EXPORT int const ConfigurationDataClassLevels[];
extern PYL_EXPORT int const LocalFileClassLevels[];
extern PYL_EXPORT int const SCSIHBAClassLevels[];

}  // namespace PYL
