#pragma once

#include "pylcommon_export.h"

/// The names that the providers share: classes, namespaces, organisations and directories.
namespace PYL {

/// The class of the host computer system, the central and scoping class of most profiles.
constexpr char const* ScopedCentralClassName = "PYL_ComputerSystem";
/// The class of the Fibre Channel HBA computer system.
constexpr char const* ScopedFCHBACentralClassName = "PYL_FCHBAComputerSystem";
constexpr char const* PCIDeviceClassName = "PYL_PCIDevice";
constexpr char const* ChassisClassName = "PYL_ComputerSystemChassis";

/// The method by which providers are asked to do their periodic work.
constexpr char const* WorkerMethodName = "PerformWork";

/// Where providers keep what must survive a restart. Ends with a slash.
constexpr char const* PersistentDataDir = "/etc/cim/";

/// The text that goes with RegisteredOrganization "Other" in the maker's own profiles.
constexpr char const* OrgNameKT = "KT WBEM TC";
/// The same for the profiles of a standards body, which need none.
constexpr char const* OrgNameNA = "";

/// The namespace of all the maker's classes.
constexpr char const* BaseServerNameSpace = "root/ktq";

constexpr char const* PRPRegisteredClassName = "PYL_RegisteredProfile";

/// The namespace of registered profiles (DSP1033). One object for the whole process, constant-initialised,
/// so that static objects of other modules may use it.
extern PYL_EXPORT char const* const PRPNameSpace;

}  // namespace PYL
