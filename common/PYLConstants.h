#pragma once

#include "pylcommon_export.h"

/// @file
/// The names that the providers share: classes, namespaces, organisations and directories.
namespace PYL {

/// The class of the host computer system, the central and scoping class of most profiles.
constexpr const char* ScopedCentralClassName = "PYL_ComputerSystem";
/// The class of the Fibre Channel HBA computer system.
constexpr const char* ScopedFCHBACentralClassName = "PYL_FCHBAComputerSystem";
/// The class of the host's PCI devices.
constexpr const char* PCIDeviceClassName = "PYL_PCIDevice";
/// The class of the server's own chassis, and of numbered blades'.
constexpr const char* ChassisClassName = "PYL_ComputerSystemChassis";

/// The method by which providers are asked to do their periodic work.
constexpr const char* WorkerMethodName = "PerformWork";

/// Where providers keep what must survive a restart. Ends with a slash.
constexpr const char* PersistentDataDir = "/etc/cim/";

/// The text that goes with RegisteredOrganization "Other" in the maker's own profiles.
constexpr const char* OrgNameKT = "KT WBEM TC";
/// The same for the profiles of a standards body, which need none.
constexpr const char* OrgNameNA = "";

/// The namespace of all the maker's classes.
constexpr const char* BaseServerNameSpace = "root/ktq";

/// The class of the registered profiles, in PRPNameSpace.
constexpr const char* PRPRegisteredClassName = "PYL_RegisteredProfile";

/// The namespace of registered profiles (DSP1033). One object for the whole process,
/// constant-initialised, so that static objects of other modules may use it.
extern PYL_EXPORT const char* const PRPNameSpace;

}  // namespace PYL
