#pragma once

#include "pylcommon_export.h"

/// The classes through which the registered profiles are implemented, as every provider of the
/// family names them.
///
/// Tables come in pairs, one of classes and one of their namespaces, of the same length; entry i of
/// the one goes with entry i of the other. Each ends with a null pointer. They are constant,
/// initialised before any code runs, and good for as long as the library is loaded.
namespace PYL {

/// No entries at all: for a profile that names no class, namespace or profile.
extern PYL_EXPORT char const* const emptyString[];

/// The one profile under which the data collection is implemented too: itself.
extern PYL_EXPORT char const* const ktCollectionProfile[];

// Profiles of the DMTF.
extern PYL_EXPORT char const* const dmtfEthPortClassNames[];
extern PYL_EXPORT char const* const dmtfEthPortNameSpaces[];
extern PYL_EXPORT char const* const dmtfIPInterfaceClassNames[];
extern PYL_EXPORT char const* const dmtfIPInterfaceNameSpaces[];
extern PYL_EXPORT char const* const dmtfOSClassNames[];
extern PYL_EXPORT char const* const dmtfOSNameSpaces[];
extern PYL_EXPORT char const* const dmtfPCIDeviceClassNames[];
extern PYL_EXPORT char const* const dmtfPCIDeviceNameSpaces[];
extern PYL_EXPORT char const* const dmtfSWInvClassNames[];
extern PYL_EXPORT char const* const dmtfSWInvNameSpaces[];

// Profiles of SNIA. The catalogue itself has no use for them.
extern PYL_EXPORT char const* const sniaArrayClassNames[];
extern PYL_EXPORT char const* const sniaArrayNameSpaces[];
extern PYL_EXPORT char const* const sniaHHRCClassNames[];
extern PYL_EXPORT char const* const sniaHHRCNameSpaces[];

// The maker's own profiles.
extern PYL_EXPORT char const* const ktCarrowLiteClassNames[];
extern PYL_EXPORT char const* const ktCarrowLiteNameSpaces[];
extern PYL_EXPORT char const* const ktCPUClassNames[];
extern PYL_EXPORT char const* const ktCPUNameSpaces[];
extern PYL_EXPORT char const* const ktCPUConStatClassNames[];
extern PYL_EXPORT char const* const ktCPUConStatNameSpaces[];
extern PYL_EXPORT char const* const ktCSClassNames[];
extern PYL_EXPORT char const* const ktCSNameSpaces[];
extern PYL_EXPORT char const* const ktCollectionClassNames[];
extern PYL_EXPORT char const* const ktCollectionNameSpaces[];
extern PYL_EXPORT char const* const ktEthernetTeamingClassNames[];
extern PYL_EXPORT char const* const ktEthernetTeamingNameSpaces[];
extern PYL_EXPORT char const* const ktFCHBAClassNames[];
extern PYL_EXPORT char const* const ktFCHBANameSpaces[];
extern PYL_EXPORT char const* const ktFanClassNames[];
extern PYL_EXPORT char const* const ktFanNameSpaces[];
extern PYL_EXPORT char const* const ktMPLiteClassNames[];
extern PYL_EXPORT char const* const ktMPLiteNameSpaces[];
extern PYL_EXPORT char const* const ktMemoryClassNames[];
extern PYL_EXPORT char const* const ktMemoryNameSpaces[];
extern PYL_EXPORT char const* const ktPhysCPUClassNames[];
extern PYL_EXPORT char const* const ktPhysCPUNameSpaces[];
extern PYL_EXPORT char const* const ktPhysCSClassNames[];
extern PYL_EXPORT char const* const ktPhysCSNameSpaces[];
extern PYL_EXPORT char const* const ktPhysFanClassNames[];
extern PYL_EXPORT char const* const ktPhysFanNameSpaces[];
extern PYL_EXPORT char const* const ktPhysMemoryClassNames[];
extern PYL_EXPORT char const* const ktPhysMemoryNameSpaces[];
extern PYL_EXPORT char const* const ktPhysPowerSupplyClassNames[];
extern PYL_EXPORT char const* const ktPhysPowerSupplyNameSpaces[];
extern PYL_EXPORT char const* const ktPowerSupplyClassNames[];
extern PYL_EXPORT char const* const ktPowerSupplyNameSpaces[];
extern PYL_EXPORT char const* const ktRecordLogClassNames[];
extern PYL_EXPORT char const* const ktRecordLogNameSpaces[];
extern PYL_EXPORT char const* const ktVAClassNames[];
extern PYL_EXPORT char const* const ktVANameSpaces[];
extern PYL_EXPORT char const* const ktSASClassNames[];
extern PYL_EXPORT char const* const ktSASNameSpaces[];
extern PYL_EXPORT char const* const ktSCSIClassNames[];
extern PYL_EXPORT char const* const ktSCSINameSpaces[];
extern PYL_EXPORT char const* const ktSWInvClassNames[];
extern PYL_EXPORT char const* const ktSWInvNameSpaces[];
extern PYL_EXPORT char const* const ktSensorClassNames[];
extern PYL_EXPORT char const* const ktSensorNameSpaces[];
extern PYL_EXPORT char const* const ktServerProductClassNames[];
extern PYL_EXPORT char const* const ktServerProductNameSpaces[];
extern PYL_EXPORT char const* const ktStorageEncClassNames[];
extern PYL_EXPORT char const* const ktStorageEncNameSpaces[];

}  // namespace PYL
