#pragma once

#include "pylcommon_export.h"

/// @file
/// The classes through which the registered profiles are implemented, as every provider of the
/// family names them.
///
/// Tables come in pairs, one of classes and one of their namespaces, of the same length; entry i of
/// the one goes with entry i of the other. Each ends with a null pointer. They are constant,
/// initialised before any code runs, and good for as long as the library is loaded.
namespace PYL {

/// No entries at all: for a profile that names no class, namespace or profile.
extern PYL_EXPORT const char* const emptyString[];

/// The one profile under which the data collection is implemented too: itself.
extern PYL_EXPORT const char* const ktCollectionProfile[];

/// @{
/// Profiles of the DMTF.
extern PYL_EXPORT const char* const dmtfEthPortClassNames[];
extern PYL_EXPORT const char* const dmtfEthPortNameSpaces[];
extern PYL_EXPORT const char* const dmtfIPInterfaceClassNames[];
extern PYL_EXPORT const char* const dmtfIPInterfaceNameSpaces[];
extern PYL_EXPORT const char* const dmtfOSClassNames[];
extern PYL_EXPORT const char* const dmtfOSNameSpaces[];
extern PYL_EXPORT const char* const dmtfPCIDeviceClassNames[];
extern PYL_EXPORT const char* const dmtfPCIDeviceNameSpaces[];
extern PYL_EXPORT const char* const dmtfSWInvClassNames[];
extern PYL_EXPORT const char* const dmtfSWInvNameSpaces[];
/// @}

/// @{
/// Profiles of SNIA. The catalogue itself has no use for them.
extern PYL_EXPORT const char* const sniaArrayClassNames[];
extern PYL_EXPORT const char* const sniaArrayNameSpaces[];
extern PYL_EXPORT const char* const sniaHHRCClassNames[];
extern PYL_EXPORT const char* const sniaHHRCNameSpaces[];
/// @}

/// @{
/// The maker's own profiles.
extern PYL_EXPORT const char* const ktCarrowLiteClassNames[];
extern PYL_EXPORT const char* const ktCarrowLiteNameSpaces[];
extern PYL_EXPORT const char* const ktCPUClassNames[];
extern PYL_EXPORT const char* const ktCPUNameSpaces[];
extern PYL_EXPORT const char* const ktCPUConStatClassNames[];
extern PYL_EXPORT const char* const ktCPUConStatNameSpaces[];
extern PYL_EXPORT const char* const ktCSClassNames[];
extern PYL_EXPORT const char* const ktCSNameSpaces[];
extern PYL_EXPORT const char* const ktCollectionClassNames[];
extern PYL_EXPORT const char* const ktCollectionNameSpaces[];
extern PYL_EXPORT const char* const ktEthernetTeamingClassNames[];
extern PYL_EXPORT const char* const ktEthernetTeamingNameSpaces[];
extern PYL_EXPORT const char* const ktFCHBAClassNames[];
extern PYL_EXPORT const char* const ktFCHBANameSpaces[];
extern PYL_EXPORT const char* const ktFanClassNames[];
extern PYL_EXPORT const char* const ktFanNameSpaces[];
extern PYL_EXPORT const char* const ktMPLiteClassNames[];
extern PYL_EXPORT const char* const ktMPLiteNameSpaces[];
extern PYL_EXPORT const char* const ktMemoryClassNames[];
extern PYL_EXPORT const char* const ktMemoryNameSpaces[];
extern PYL_EXPORT const char* const ktPhysCPUClassNames[];
extern PYL_EXPORT const char* const ktPhysCPUNameSpaces[];
extern PYL_EXPORT const char* const ktPhysCSClassNames[];
extern PYL_EXPORT const char* const ktPhysCSNameSpaces[];
extern PYL_EXPORT const char* const ktPhysFanClassNames[];
extern PYL_EXPORT const char* const ktPhysFanNameSpaces[];
extern PYL_EXPORT const char* const ktPhysMemoryClassNames[];
extern PYL_EXPORT const char* const ktPhysMemoryNameSpaces[];
extern PYL_EXPORT const char* const ktPhysPowerSupplyClassNames[];
extern PYL_EXPORT const char* const ktPhysPowerSupplyNameSpaces[];
extern PYL_EXPORT const char* const ktPowerSupplyClassNames[];
extern PYL_EXPORT const char* const ktPowerSupplyNameSpaces[];
extern PYL_EXPORT const char* const ktRecordLogClassNames[];
extern PYL_EXPORT const char* const ktRecordLogNameSpaces[];
extern PYL_EXPORT const char* const ktVAClassNames[];
extern PYL_EXPORT const char* const ktVANameSpaces[];
extern PYL_EXPORT const char* const ktSASClassNames[];
extern PYL_EXPORT const char* const ktSASNameSpaces[];
extern PYL_EXPORT const char* const ktSCSIClassNames[];
extern PYL_EXPORT const char* const ktSCSINameSpaces[];
extern PYL_EXPORT const char* const ktSWInvClassNames[];
extern PYL_EXPORT const char* const ktSWInvNameSpaces[];
extern PYL_EXPORT const char* const ktSensorClassNames[];
extern PYL_EXPORT const char* const ktSensorNameSpaces[];
extern PYL_EXPORT const char* const ktServerProductClassNames[];
extern PYL_EXPORT const char* const ktServerProductNameSpaces[];
extern PYL_EXPORT const char* const ktStorageEncClassNames[];
extern PYL_EXPORT const char* const ktStorageEncNameSpaces[];
/// @}

}  // namespace PYL
