#pragma once

#include "pylcommon_export.h"

/// @file
/// The classes of each family of providers, as the data collection takes them.
///
/// A family has two tables: the names of its classes, and for each whether it is an "Instance" or
/// an "Association" class. Entry i of the one goes with entry i of the other. Each ends with a null
/// pointer. They are constant, initialised before any code runs, and good for as long as the
/// library is loaded.
namespace PYL {

/// @{
/// The names of one family's classes, or their types.
extern PYL_EXPORT const char* const BaseServerClassNames[];
extern PYL_EXPORT const char* const BaseServerClassTypes[];
extern PYL_EXPORT const char* const BaseServerPhysicalAssetClassNames[];
extern PYL_EXPORT const char* const BaseServerPhysicalAssetClassTypes[];
extern PYL_EXPORT const char* const CarrowLiteClassNames[];
extern PYL_EXPORT const char* const CarrowLiteClassTypes[];
extern PYL_EXPORT const char* const CPUClassNames[];
extern PYL_EXPORT const char* const CPUClassTypes[];
extern PYL_EXPORT const char* const CPUPhysicalAssetClassNames[];
extern PYL_EXPORT const char* const CPUPhysicalAssetClassTypes[];
extern PYL_EXPORT const char* const ConfigurationDataClassNames[];
extern PYL_EXPORT const char* const ConfigurationDataClassTypes[];
extern PYL_EXPORT const char* const ConsolidatedStatusClassNames[];
extern PYL_EXPORT const char* const ConsolidatedStatusClassTypes[];
extern PYL_EXPORT const char* const EthernetTeamingClassNames[];
extern PYL_EXPORT const char* const EthernetTeamingClassTypes[];
extern PYL_EXPORT const char* const FCHBAClassNames[];
extern PYL_EXPORT const char* const FCHBAClassTypes[];
extern PYL_EXPORT const char* const LocalFileClassNames[];
extern PYL_EXPORT const char* const LocalFileClassTypes[];
extern PYL_EXPORT const char* const LocationClassNames[];
extern PYL_EXPORT const char* const LocationClassTypes[];
extern PYL_EXPORT const char* const MPLiteClassNames[];
extern PYL_EXPORT const char* const MPLiteClassTypes[];
extern PYL_EXPORT const char* const MemoryClassNames[];
extern PYL_EXPORT const char* const MemoryClassTypes[];
extern PYL_EXPORT const char* const MemoryPhysicalClassNames[];
extern PYL_EXPORT const char* const MemoryPhysicalClassTypes[];
extern PYL_EXPORT const char* const PCIClassNames[];
extern PYL_EXPORT const char* const PCIClassTypes[];
extern PYL_EXPORT const char* const ProfileRegistrationClassNames[];
extern PYL_EXPORT const char* const ProfileRegistrationClassTypes[];
extern PYL_EXPORT const char* const RecordLogClassNames[];
extern PYL_EXPORT const char* const RecordLogClassTypes[];
extern PYL_EXPORT const char* const SASHBAClassNames[];
extern PYL_EXPORT const char* const SASHBAClassTypes[];
extern PYL_EXPORT const char* const SCSIHBAClassNames[];
extern PYL_EXPORT const char* const SCSIHBAClassTypes[];
extern PYL_EXPORT const char* const VelaArrayClassNames[];
extern PYL_EXPORT const char* const VelaArrayClassTypes[];
extern PYL_EXPORT const char* const SoftwareInventoryClassNames[];
extern PYL_EXPORT const char* const SoftwareInventoryClassTypes[];
/// @}

/// @{
/// At which level each class of a family is collected, ended by -1, for the families that the data
/// collection itself does not gather. Those of the others are its own.
extern PYL_EXPORT const int ConfigurationDataClassLevels[];
extern PYL_EXPORT const int LocalFileClassLevels[];
extern PYL_EXPORT const int SCSIHBAClassLevels[];
/// @}

}  // namespace PYL
