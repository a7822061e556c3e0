#pragma once

/// The classes of the data collection: each row is a class, its kind and its level; a pair is two
/// classes that have these in common, which stand one after the other. The tables of a family are
/// all made from its rows, so that entry i of each speaks of the same class. For the sources of
/// those tables alone.
// clang-format off

#define PYL_CLASS_NAME(className, kind, level) className,
#define PYL_CLASS_TYPE(className, kind, level) kind,
#define PYL_CLASS_LEVEL(className, kind, level) level,
#define PYL_CLASS_NAMES(first, second, kind, level) first, second,
#define PYL_CLASS_TYPES(first, second, kind, level) kind, kind,
#define PYL_CLASS_LEVELS(first, second, kind, level) level, level,

namespace PYL {

constexpr const char* instance = "Instance";
constexpr const char* association = "Association";

}  // namespace PYL

#define PYL_BaseServerClasses(row, pair) \
    pair("KT_ComputerSystem", "PYL_ComputerSystem", instance, 2) \
    row("PYL_OperatingSystem", instance, 2) \
    row("PYL_RunningOS", association, 0) \
    row("PYL_PYLInstalledSoftwareIdentity", association, 0) \
    row("PYL_SystemInstalledFirmwareIdentity", association, 0) \
    pair("KT_ProductParentChild", "PYL_ProductParentChild", association, 0) \
    pair("KT_AggregateProduct", "PYL_AggregateProduct", instance, 2) \
    pair("KT_ServerProduct", "PYL_ServerProduct", instance, 1) \
    row("PYL_InstalledOS", association, 0) \
    row("PYL_ServerProductPhysicalComponent", instance, 0) \

#define PYL_BaseServerPhysicalAssetClasses(row, pair) \
    pair("KT_ComputerSystemChassis", "PYL_ComputerSystemChassis", instance, 2) \
    pair("KT_ComputerSystemPackage", "PYL_ComputerSystemPackage", instance, 0) \

#define PYL_CarrowLiteClasses(row, pair) \
    pair("KT_BladeEnclosureElementFWIdentity", "PYL_BladeEnclosureElementFWIdentity", association, 2) \
    pair("KT_BladeEnclosureFW", "PYL_BladeEnclosureFW", instance, 2) \
    pair("KT_BladeEnclosureCS", "PYL_BladeEnclosureCS", instance, 2) \
    pair("KT_BladeEnclosureInstalledFWIdentity", "PYL_BladeEnclosureInstalledFWIdentity", association, 0) \
    pair("KT_CarrowComponent", "PYL_CarrowComponent", association, 0) \
    pair("KT_MemberOfBladeEnclosureCollection", "PYL_MemberOfBladeEnclosureCollection", association, 0) \
    pair("KT_BladeEnclosureCollection", "PYL_BladeEnclosureCollection", instance, 0) \
    pair("KT_BladeEnclosureGroupHostedCollection", "PYL_BladeEnclosureGroupHostedCollection", association, 0) \
    pair("KT_BladeCSElementLocation", "PYL_BladeCSElementLocation", association, 0) \
    pair("KT_BladeCSLocation", "PYL_BladeCSLocation", instance, 0) \

#define PYL_CPUClasses(row, pair) \
    pair("KT_AssociatedProcessorCacheMemory", "PYL_AssociatedProcessorCacheMemory", association, 0) \
    pair("KT_CacheMemory", "PYL_CacheMemory", instance, 0) \
    pair("KT_HardwareThread", "PYL_HardwareThread", instance, 0) \
    pair("KT_HWThreadComponent", "PYL_HWThreadComponent", association, 0) \
    pair("KT_Processor", "PYL_Processor", instance, 2) \
    pair("KT_ProcessorCapabilities", "PYL_ProcessorCapabilities", instance, 2) \
    pair("KT_ProcessorCore", "PYL_ProcessorCore", instance, 2) \
    pair("KT_ProcessorCoreComponent", "PYL_ProcessorCoreComponent", association, 0) \
    pair("KT_ProcessorElementCapabilities", "PYL_ProcessorElementCapabilities", association, 0) \
    pair("KT_SystemProcessor", "PYL_SystemProcessor", association, 0) \
    row("PYL_MemberOfProcessorCollection", association, 0) \

#define PYL_CPUPhysicalAssetClasses(row, pair) \
    pair("KT_ProcessorChip", "PYL_ProcessorChip", instance, 2) \
    pair("KT_RealizesProcessor", "PYL_RealizesProcessor", association, 0) \
    pair("KT_SystemPhysicalProcessor", "PYL_SystemPhysicalProcessor", association, 0) \

#define PYL_ConfigurationDataClasses(row, pair) \
    pair("KT_PXDataCollection", "PYL_PXDataCollection", instance, 2) \

#define PYL_ConsolidatedStatusClasses(row, pair) \
    pair("KT_ConsolidatedStatusView", "PYL_MPConsolidatedStatusView", instance, 0) \
    pair("KT_ScopedConsolidatedStatusView", "PYL_MPScopedConsolidatedStatusView", association, 0) \
    pair("KT_GroupSystemSpecificCollection", "PYL_ProcessorCollection", instance, 2) \
    pair("KT_GroupHostedCollection", "PYL_BladeEnclosureGroupHostedCollection", association, 0) \
    row("PYL_HostedProcessorCollection", association, 0) \

#define PYL_EthernetTeamingClasses(row, pair) \
    row("KT_EthernetControllerPhysicalPackageEthernetController", association, 0) \
    row("PYL_EthernetControllerPhysicalPackageEthernetController", association, 0) \
    row("KT_EthernetControllerPhysicalPackageEthernetControllerLocation", association, 0) \
    row("PYL_EthernetControllerPhysicalPackageEthernetControllerLocation", association, 0) \
    pair("KT_EthernetDevice", "PYL_EthernetDevice", association, 0) \
    pair("KT_EthernetElementFirmwareIdentity", "PYL_EthernetElementFirmwareIdentity", association, 0) \
    pair("KT_EthernetElementSoftwareIdentity", "PYL_EthernetElementSoftwareIdentity", association, 0) \
    pair("KT_EthernetLANEndpoint", "PYL_EthernetLANEndpoint", instance, 2) \
    pair("KT_EthernetLANEndpointStatisticalData", "PYL_EthernetLANEndpointStatisticalData", association, 0) \
    pair("KT_EthernetLANHostedAccessPoint", "PYL_EthernetLANHostedAccessPoint", association, 0) \
    pair("KT_EthernetMemberOfCollection", "PYL_EthernetMemberOfCollection", association, 0) \
    pair("KT_EthernetPort", "PYL_EthernetPort", instance, 2) \
    pair("KT_EthernetPortController", "PYL_EthernetPortController", instance, 0) \
    pair("KT_EthernetPortControllerEthernetPort", "PYL_EthernetPortControllerEthernetPort", instance, 0) \
    pair("KT_EthernetPortControllerFirmwareIdentity", "PYL_EthernetPortControllerFirmwareIdentity", instance, 0) \
    pair("KT_EthernetPortControllerPhysicalPackage", "PYL_EthernetPortControllerPhysicalPackage", instance, 0) \
    pair("KT_EthernetPortControllerSoftwareIdentity", "PYL_EthernetPortControllerSoftwareIdentity", instance, 0) \
    pair("KT_EthernetPortStatisticalData", "PYL_EthernetPortStatisticalData", association, 0) \
    pair("KT_EthernetPortToLANEndpoint", "PYL_EthernetPortToLANEndpoint", association, 0) \
    pair("KT_EthernetStatistics", "PYL_EthernetStatistics", instance, 0) \
    pair("KT_EthernetTeamMember", "PYL_EthernetTeamMember", association, 0) \
    pair("KT_EthernetTeamToLANEndpoint", "PYL_EthernetTeamToLANEndpoint", association, 0) \
    pair("KT_EthEventSettings", "PYL_EthEventSettings", instance, 0) \
    pair("KT_EthIPHostedAccessPoint", "PYL_EthIPHostedAccessPoint", association, 0) \
    pair("KT_HostedEthernetTeam", "PYL_HostedEthernetTeam", association, 0) \
    pair("KT_IPBindsToEthernetLANEndpoint", "PYL_IPBindsToEthernetLANEndpoint", association, 0) \
    pair("KT_IPProtocolEndpoint", "PYL_IPProtocolEndpoint", instance, 0) \
    pair("KT_RemoteAccessAvailableToIPEndpoint", "PYL_EthernetRemoteAccessAvailableToIPEndpoint", association, 0) \
    pair("KT_RemoteServiceAccessPoint", "PYL_EthernetRemoteServiceAccessPoint", instance, 0) \
    pair("KT_RemoteServiceHostedAccessPoint", "PYL_EthernetRemoteServiceHostedAccessPoint", association, 0) \
    pair("KT_EthernetGroupHostedCollection", "PYL_EthernetGroupHostedCollection", association, 0) \
    pair("KT_EthernetTeam", "PYL_EthernetTeam", instance, 0) \
    row("PYL_EthernetPortControllerPCIDevice", association, 0) \

#define PYL_FCHBAClasses(row, pair) \
    pair("KTFCHBA_ComputerSystem", "PYL_FCHBAComputerSystem", instance, 0) \
    pair("KTFCHBA_ComputerSystemFCPort", "PYL_FCHBAComputerSystemFCPort", association, 0) \
    pair("KTFCHBA_ComputerSystemLogicalPortGroup", "PYL_FCHBAComputerSystemLogicalPortGroup", association, 0) \
    pair("KTFCHBA_ComputerSystemPortController", "PYL_FCHBAComputerSystemPortController", association, 0) \
    row("KTFCHBA_ComputerSystemSCSIProtocolController", association, 0) \
    row("PYL_FCHBAComputerSystemSCSIProtocolController", association, 0) \
    pair("KTFCHBA_ComputerSystemSoftwareIdentityDrv", "PYL_FCHBAComputerSystemSoftwareIdentityDrv", association, 0) \
    pair("KTFCHBA_ConcreteIdentity", "PYL_FCHBAConcreteIdentity", association, 0) \
    pair("KTFCHBA_FCPort", "PYL_FCHBAFCPort", instance, 0) \
    pair("KTFCHBA_FCPortFCPortStatistics", "PYL_FCHBAFCPortFCPortStatistics", association, 0) \
    pair("KTFCHBA_FCPortGroupSystemSpecific", "PYL_FCHBAFCPortGroupSystemSpecific", association, 0) \
    pair("KTFCHBA_FCPortLogicalPortGroup", "PYL_FCHBAFCPortLogicalPortGroup", association, 0) \
    pair("KTFCHBA_FCPortSCSIProtocolEndpoint", "PYL_FCHBAFCPortSCSIProtocolEndpoint", association, 0) \
    pair("KTFCHBA_FCPortStatistics", "PYL_FCHBAFCPortStatistics", instance, 0) \
    pair("KTFCHBA_FirmwareIdentityBIOS", "PYL_FCHBAFirmwareIdentityBIOS", instance, 0) \
    pair("KTFCHBA_FirmwareIdentityFW", "PYL_FCHBAFirmwareIdentityFW", instance, 2) \
    pair("KTFCHBA_LogicalPortGroup", "PYL_FCHBALogicalPortGroup", instance, 0) \
    pair("KTFCHBA_PhysicalElementLocation", "PYL_FCHBAPhysicalElementLocation", association, 0) \
    pair("KTFCHBA_PhysicalPackage", "PYL_FCHBAPhysicalPackage", instance, 2) \
    pair("KTFCHBA_PhysicalPackagePortController", "PYL_FCHBAPhysicalPackagePortController", association, 0) \
    pair("KTFCHBA_PortController", "PYL_FCHBAPortController", instance, 0) \
    pair("KTFCHBA_PortControllerFCPort", "PYL_FCHBAPortControllerFCPort", association, 0) \
    pair("KTFCHBA_PortControllerFirmwareIdentityBIOS", "PYL_FCHBAPortControllerFirmwareIdentityBIOS", association, 2) \
    pair("KTFCHBA_PortControllerFirmwareIdentityFW", "PYL_FCHBAPortControllerFirmwareIdentityFW", association, 2) \
    pair("KTFCHBA_Product", "PYL_FCHBAProduct", instance, 1) \
    pair("KTFCHBA_ProductPhysicalComponent", "PYL_FCHBAProductPhysicalComponent", association, 0) \
    pair("KTFCHBA_SCSIProtocolController", "PYL_FCHBASCSIProtocolController", instance, 0) \
    pair("KTFCHBA_SCSIProtocolControllerFCPort", "PYL_FCHBASCSIProtocolControllerFCPort", association, 0) \
    pair("KTFCHBA_SCSIProtocolEndpoint", "PYL_FCHBASCSIProtocolEndpoint", instance, 0) \
    pair("KTFCHBA_SoftwareIdentityDrv", "PYL_FCHBASoftwareIdentityDrv", instance, 0) \
    pair("KTFCHBA_SoftwareIdentityDrvPortController", "PYL_FCHBASoftwareIdentityDrvPortController", association, 2) \
    pair("KTFCHBA_SystemPackaging", "PYL_FCHBASystemPackaging", association, 0) \
    pair("KTFCHBA_SystemServiceAccessPoint", "PYL_FCHBASystemServiceAccessPoint", association, 0) \
    pair("KTFCHBA_GroupHostedCollection", "PYL_FCHBAGroupHostedCollection", association, 0) \
    pair("KTFCHBA_GroupSystemSpecificCollection", "PYL_FCHBAGroupSystemSpecificCollection", instance, 0) \
    pair("KTFCHBA_Location", "PYL_FCHBALocation", instance, 0) \
    row("PYL_FCHBAPortControllerPCIDevice", instance, 0) \

#define PYL_LocalFileClasses(row, pair) \
    pair("KT_LocalFileSystem", "PYL_LocalFileSystem", instance, 0) \
    row("PYL_HostedLocalFileSystem", association, 0) \
    row("PYL_LocalFSResidesOnExtent", association, 0) \
    row("PYL_LocalLogicalDisk", instance, 0) \

#define PYL_LocationClasses(row, pair) \
    pair("KT_ElementLocation", "PYL_ProcessorElementLocation", association, 0) \
    row("PYL_MemoryBoardSlotElementLocation", association, 0) \
    row("PYL_MemoryModuleSlotElementLocation", association, 0) \
    row("PYL_PCISlotElementLocation", association, 2) \
    pair("KT_Location", "PYL_ProcessorLocation", instance, 0) \
    row("PYL_MemoryBoardSlotLocation", instance, 0) \
    row("PYL_MemoryModuleSlotLocation", instance, 0) \
    row("PYL_PCISlotLocation", instance, 2) \
    pair("KT_EthernetControllerLocation", "PYL_EthernetControllerLocation", instance, 0) \

#define PYL_MPLiteClasses(row, pair) \
    pair("KT_ManagementProcessor", "PYL_ManagementProcessor", instance, 2) \
    pair("KT_MPComponentCS", "PYL_MPComponentCS", association, 0) \
    pair("KT_MPElementFirmwareIdentity", "PYL_MPElementFirmwareIdentity", association, 2) \
    pair("KT_MPFirmware", "PYL_MPFirmware", instance, 2) \
    pair("KT_MPMemberOfCollection", "PYL_MPMemberOfCollection", association, 0) \
    row("PYL_MPInstalledFirmwareIdentity", association, 0) \
    pair("KT_MPCollection", "PYL_MPCollection", instance, 0) \
    pair("KT_MPHostedCollection", "PYL_MPHostedCollection", association, 0) \
    row("PYL_ManagementController", instance, 0) \
    row("PYL_MPControllerMP", association, 0) \
    row("PYL_MPControllerPCIDevice", instance, 0) \

#define PYL_MemoryClasses(row, pair) \
    pair("KT_Memory", "PYL_Memory", instance, 2) \
    pair("KT_SystemMemory", "PYL_SystemMemory", association, 2) \

#define PYL_MemoryPhysicalClasses(row, pair) \
    pair("KT_HostedMemoryCollection", "PYL_HostedMemoryCollection", association, 0) \
    pair("KT_MemoryCollection", "PYL_MemoryCollection", instance, 0) \
    pair("KT_HostedMemoryRedundancySet", "PYL_HostedMemoryRedundancySet", association, 0) \
    pair("KT_MemberOfMemoryCollection", "PYL_MemberOfMemoryCollection", association, 0) \
    pair("KT_MemberOfMemoryRedundancySet", "PYL_MemberOfMemoryRedundancySet", association, 0) \
    pair("KT_MemoryBoard", "PYL_MemoryBoard", instance, 2) \
    pair("KT_MemoryBoardInSlot", "PYL_MemoryBoardInSlot", association, 0) \
    pair("KT_MemoryBoardSlot", "PYL_MemoryBoardSlot", instance, 0) \
    pair("KT_MemoryModule", "PYL_MemoryModule", instance, 2) \
    pair("KT_MemoryModuleInSlot", "PYL_MemoryModuleInSlot", association, 0) \
    pair("KT_MemoryModuleSlot", "PYL_MemoryModuleSlot", instance, 2) \
    pair("KT_MemoryModuleSlotOnBoard", "PYL_MemoryModuleSlotOnBoard", association, 0) \
    pair("KT_MemoryRedundancySet", "PYL_MemoryRedundancySet", instance, 0) \
    pair("KT_RealizesMemoryModule", "PYL_RealizesMemoryModule", association, 0) \
    pair("KT_SystemMemoryBoard", "PYL_SystemMemoryBoard", association, 0) \
    pair("KT_SystemMemoryBoardSlot", "PYL_SystemMemoryBoardSlot", association, 0) \
    pair("KT_SystemMemoryModule", "PYL_SystemMemoryModule", association, 0) \
    pair("KT_SystemMemoryModuleSlot", "PYL_SystemMemoryModuleSlot", association, 0) \
    row("PYL_MemoryModuleOnBoard", instance, 0) \

#define PYL_PCIClasses(row, pair) \
    pair("KT_PCISlot", "PYL_PCISlot", instance, 2) \
    pair("KT_PCIDevice", "PYL_PCIDevice", instance, 2) \
    pair("KT_PCICard", "PYL_PCICard", instance, 2) \
    pair("KT_PCICardInSlot", "PYL_PCICardInSlot", association, 0) \
    pair("KT_RealizesPCIDevice", "PYL_RealizesPCIDevice", association, 0) \
    pair("KT_SystemPCIDevice", "PYL_SystemPCIDevice", association, 0) \
    pair("KT_SystemPCISlot", "PYL_SystemPCISlot", association, 0) \
    row("PYL_PCISlotLocation", instance, 0) \
    row("PYL_PCISlotElementLocation", association, 0) \

#define PYL_ProfileRegistrationClasses(row, pair) \
    pair("KT_RegisteredProfile", "PYL_RegisteredProfile", instance, 0) \
    pair("KT_ExtendsProfile", "PYL_ExtendsProfile", association, 0) \
    pair("KT_ReferencedProfile", "PYL_ReferencedProfile", association, 0) \

#define PYL_RecordLogClasses(row, pair) \
    row("PYL_ConfigLogEntry", instance, 4) \
    pair("KT_UseOfLog", "PYL_SELUseOfLog", association, 4) \
    row("PYL_ConfigUseOfLog", association, 0) \
    pair("KT_CommonRecordLog", "PYL_SELRecordLog", instance, 0) \
    row("PYL_ConfigRecordLog", instance, 4) \

#define PYL_SASHBAClasses(row, pair) \
    pair("KTSAS_ArrayController", "PYL_SASArrayController", instance, 0) \
    pair("KTSAS_ArraySystemArrayController", "PYL_SASArraySystemArrayController", association, 0) \
    pair("KTSAS_ArraySystemDAPort", "PYL_SASArraySystemDAPort", association, 0) \
    pair("KTSAS_ArraySystemDiskDrive", "PYL_SASArraySystemDiskDrive", association, 0) \
    pair("KTSAS_ArraySystemFirmware", "PYL_SASArraySystemFirmware", association, 0) \
    pair("KTSAS_ArraySystemLocation", "PYL_SASArraySystemLocation", instance, 0) \
    pair("KTSAS_ArraySystem", "PYL_SASArraySystem", instance, 0) \
    pair("KTSAS_ArraySystemPortController", "PYL_SASArraySystemPortController", association, 0) \
    pair("KTSAS_ArraySystemPrimordialPool", "PYL_SASArraySystemPrimordialPool", association, 0) \
    pair("KTSAS_ArraySystemPrimordialPoolNoRaid", "PYL_SASArraySystemPrimordialPoolNoRaid", association, 0) \
    pair("KTSAS_ArraySystemSCSIProtocolController", "PYL_SASArraySystemSCSIProtocolController", association, 0) \
    pair("KTSAS_ArraySystemStorageEnclosureProcessor", "PYL_SASArraySystemStorageEnclosureProcessor", association, 0) \
    pair("KTSAS_ArraySystemStorageExtent", "PYL_SASArraySystemStorageExtent", association, 0) \
    pair("KTSAS_ArraySystemStoragePool", "PYL_SASArraySystemStoragePool", association, 0) \
    pair("KTSAS_ArraySystemStorageVolume", "PYL_SASArraySystemStorageVolume", association, 0) \
    pair("KTSAS_ComputerSystemArraySystem", "PYL_SASComputerSystemArraySystem", association, 0) \
    pair("KTSAS_DAPort", "PYL_SASDAPort", instance, 2) \
    pair("KTSAS_DAPortSCSIProtocolEndpoint", "PYL_SASDAPortSCSIProtocolEndpoint", association, 0) \
    pair("KTSAS_DiskDriveDiskDriveFirmware", "PYL_SASDiskDriveDiskDriveFirmware", association, 0) \
    pair("KTSAS_DiskDriveFirmware", "PYL_SASDiskDriveFirmware", instance, 2) \
    pair("KTSAS_DiskDriveLocation", "PYL_SASDiskDriveLocation", instance, 0) \
    pair("KTSAS_DiskDrive", "PYL_SASDiskDrive", instance, 0) \
    pair("KTSAS_DiskPhysicalPackageDiskDriveLocation", "PYL_SASDiskPhysicalPackageDiskDriveLocation", association, 0) \
    pair("KTSAS_DiskPhysicalPackageDiskDrive", "PYL_SASDiskPhysicalPackageDiskDrive", association, 0) \
    pair("KTSAS_DiskPhysicalPackage", "PYL_SASDiskPhysicalPackage", instance, 2) \
    pair("KTSAS_DriveCageDiskPhysicalPackage", "PYL_SASDriveCageDiskPhysicalPackage", association, 0) \
    pair("KTSAS_DriveCage", "PYL_SASDriveCage", instance, 0) \
    pair("KTSAS_EnclosureFirmware", "PYL_SASEnclosureFirmware", instance, 0) \
    pair("KTSAS_FirmwareArraySystem", "PYL_SASFirmwareArraySystem", association, 0) \
    pair("KTSAS_Firmware", "PYL_SASFirmware", instance, 0) \
    pair("KTSAS_PhysicalPackageArraySystemLocation", "PYL_SASPhysicalPackageArraySystemLocation", association, 0) \
    pair("KTSAS_PhysicalPackageArraySystem", "PYL_SASPhysicalPackageArraySystem", association, 0) \
    pair("KTSAS_PhysicalPackage", "PYL_SASPhysicalPackage", instance, 0) \
    pair("KTSAS_PortController", "PYL_SASPortController", instance, 0) \
    pair("KTSAS_PrimordialPool", "PYL_SASPrimordialPool", instance, 0) \
    pair("KTSAS_PrimordialPoolNoRaid", "PYL_SASPrimordialPoolNoRaid", instance, 0) \
    row("KTSAS_PrimordialPoolNoRaidStorageCapabilities", association, 0) \
    row("PYL_SASPrimordialPoolNoRaidStorageCapabilities", association, 0) \
    pair("KTSAS_PrimordialPoolNoRaidStorageExtent", "PYL_SASPrimordialPoolNoRaidStorageExtent", association, 0) \
    pair("KTSAS_PrimordialPoolStorageCapabilities", "PYL_SASPrimordialPoolStorageCapabilities", association, 0) \
    pair("KTSAS_PrimordialPoolStorageExtent", "PYL_SASPrimordialPoolStorageExtent", association, 0) \
    pair("KTSAS_PrimordialPoolStoragePool", "PYL_SASPrimordialPoolStoragePool", association, 0) \
    pair("KTSAS_Product", "PYL_SASProduct", instance, 0) \
    pair("KTSAS_ProductPhysicalPackage", "PYL_SASProductPhysicalPackage", association, 0) \
    pair("KTSAS_SCSIProtocolController", "PYL_SASSCSIProtocolController", instance, 0) \
    pair("KTSAS_SCSIProtocolControllerStorageVolume", "PYL_SASSCSIProtocolControllerStorageVolume", instance, 0) \
    pair("KTSAS_SCSIProtocolEndpoint", "PYL_SASSCSIProtocolEndpoint", instance, 0) \
    row("KTSAS_SCSIProtocolEndpointSCSIProtocolController", association, 2) \
    row("PYL_SASSCSIProtocolEndpointSCSIProtocolController", association, 2) \
    pair("KTSAS_SpareExtentStorageRedundancySet", "PYL_SASSpareExtentStorageRedundancySet", association, 0) \
    pair("KTSAS_StorageCapabilities", "PYL_SASStorageCapabilities", instance, 0) \
    pair("KTSAS_StorageEnclosureDriveCage", "PYL_SASStorageEnclosureDriveCage", association, 0) \
    pair("KTSAS_StorageEnclosureEnclosureLocation", "PYL_SASStorageEnclosureEnclosureLocation", association, 0) \
    pair("KTSAS_StorageEnclosureLocation", "PYL_SASStorageEnclosureLocation", instance, 0) \
    pair("KTSAS_StorageEnclosure", "PYL_SASStorageEnclosure", instance, 0) \
    row("KTSAS_StorageEnclosureProcessorEnclosureFirmware", association, 0) \
    row("PYL_SASStorageEnclosureProcessorEnclosureFirmware", association, 0) \
    pair("KTSAS_StorageEnclosureProcessor", "PYL_SASStorageEnclosureProcessor", instance, 0) \
    row("KTSAS_StorageEnclosureStorageEnclosureProcessor", association, 0) \
    row("PYL_SASStorageEnclosureStorageEnclosureProcessor", association, 0) \
    pair("KTSAS_StorageExtent", "PYL_SASStorageExtent", instance, 0) \
    pair("KTSAS_StorageExtentStorageVolume", "PYL_SASStorageExtentStorageVolume", instance, 0) \
    pair("KTSAS_StorageGroupHostedCollection", "PYL_SASStorageGroupHostedCollection", association, 0) \
    pair("KTSAS_StoragePool", "PYL_SASStoragePool", instance, 0) \
    pair("KTSAS_StoragePoolStorageCapabilities", "PYL_SASStoragePoolStorageCapabilities", association, 0) \
    pair("KTSAS_StoragePoolStorageExtent", "PYL_SASStoragePoolStorageExtent", association, 0) \
    pair("KTSAS_StoragePoolStorageVolume", "PYL_SASStoragePoolStorageVolume", association, 0) \
    pair("KTSAS_StorageRedundancySet", "PYL_SASStorageRedundancySet", instance, 0) \
    pair("KTSAS_StorageRedundancySetStorageExtent", "PYL_SASStorageRedundancySetStorageExtent", association, 0) \
    pair("KTSAS_StorageSetting", "PYL_SASStorageSetting", instance, 0) \
    pair("KTSAS_StorageSpecificCollectionArraySystem", "PYL_SASStorageSpecificCollectionArraySystem", association, 0) \
    pair("KTSAS_StorageSpecificCollection", "PYL_SASStorageSpecificCollection", instance, 0) \
    pair("KTSAS_StorageVolume", "PYL_SASStorageVolume", instance, 0) \
    pair("KTSAS_StorageVolumeStorageSetting", "PYL_SASStorageVolumeStorageSetting", instance, 0) \

// The type of PYL_SCSIHBAComputerSystemDAPort has one "s" too few, and so is neither of the two:
// collectors that compare types exactly have always passed over this class, and still do.
#define PYL_SCSIHBAClasses(row, pair) \
    row("PYL_SCSIDAPort", instance, 0) \
    row("PYL_SCSIDAPortSCSIProtocolEndpoint", association, 0) \
    row("PYL_SCSIDASCSIProtocolEndpoint", instance, 0) \
    row("PYL_SCSIElementSoftwareIdentityDriver", instance, 2) \
    row("PYL_SCSIHBAComponentCS", association, 0) \
    row("PYL_SCSIHBAComputerSystemDAPort", "Asociation", 0) \
    row("PYL_SCSIHBAComputerSystemHBAFirmwareIdentity", instance, 0) \
    row("PYL_SCSIHBAComputerSystem", instance, 0) \
    row("PYL_SCSIHBAComputerSystemPortController", association, 0) \
    row("PYL_SCSIHBAComputerSystemSCSIProtocolController", association, 0) \
    row("PYL_SCSIHBAComputerSystemSCSIProtocolEndpoint", association, 0) \
    row("PYL_SCSIHBAFirmwareIdentity", instance, 0) \
    row("PYL_SCSIHBAGroupCollectionComputerSystem", association, 0) \
    row("PYL_SCSIHBAGroupCollectionHBAComputerSystem", association, 0) \
    row("PYL_SCSIHBAGroupCollection", instance, 2) \
    row("PYL_SCSIHBALocation", instance, 0) \
    row("PYL_SCSIHBAPhysicalPackageLocation", association, 0) \
    row("PYL_SCSIHBAPhysicalPackage", instance, 0) \
    row("PYL_SCSIHBAPhysicalPackagePortController", association, 0) \
    row("PYL_SCSIHBAPortController", instance, 0) \
    row("PYL_SCSIHBAProduct", instance, 0) \
    row("PYL_SCSIHBAProductPhysicalComponent", instance, 0) \
    row("PYL_SCSIHBASCSIProtocolController", instance, 0) \
    row("PYL_SCSIHBASCSIProtocolEndpoint", instance, 0) \
    row("PYL_SCSIHBASystemPackaging", association, 0) \
    row("PYL_SCSIInstalledSoftwareIdentityDriver", association, 0) \
    row("PYL_SCSISCSIProtocolEndpointSCSIProtocolController", association, 0) \
    row("PYL_SCSISoftwareIdentityDriver", instance, 2) \

#define PYL_VelaArrayClasses(row, pair) \
    pair("KTVA_ArrayController", "PYL_VAArrayController", instance, 2) \
    pair("KTVA_ArrayControllerPhysicalPackage", "PYL_VAArrayControllerPhysicalPackage", instance, 2) \
    row("KTVA_ArrayControllerPhysicalPackageArrayController", association, 0) \
    row("PYL_VAArrayControllerPhysicalPackageArrayController", association, 0) \
    row("KTVA_ArrayControllerPhysicalPackageArrayControllerLocation", association, 0) \
    row("PYL_VAArrayControllerPhysicalPackageArrayControllerLocation", association, 0) \
    pair("KTVA_ArraySystem", "PYL_VAArraySystem", instance, 0) \
    pair("KTVA_ArraySystemArrayController", "PYL_VAArraySystemArrayController", association, 0) \
    pair("KTVA_ArraySystemDAPort", "PYL_VAArraySystemDAPort", association, 0) \
    pair("KTVA_ArraySystemDiskDrive", "PYL_VAArraySystemDiskDrive", association, 0) \
    pair("KTVA_ArraySystemFirmware", "PYL_VAArraySystemFirmware", association, 0) \
    pair("KTVA_ArraySystemISASPort", "PYL_VAArraySystemISASPort", association, 0) \
    pair("KTVA_ArraySystemISASSCSIProtocolEndpoint", "PYL_VAArraySystemISASSCSIProtocolEndpoint", association, 0) \
    pair("KTVA_ArraySystemPortController", "PYL_VAArraySystemPortController", association, 0) \
    pair("KTVA_ArraySystemPrimordialPool", "PYL_VAArraySystemPrimordialPool", association, 0) \
    pair("KTVA_ArraySystemSCSIProtocolController", "PYL_VAArraySystemSCSIProtocolController", association, 0) \
    pair("KTVA_ArraySystemSCSIProtocolEndpoint", "PYL_VAArraySystemSCSIProtocolEndpoint", association, 0) \
    pair("KTVA_ArraySystemStorageEnclosureProcessor", "PYL_VAArraySystemStorageEnclosureProcessor", association, 0) \
    pair("KTVA_ArraySystemStorageExtent", "PYL_VAArraySystemStorageExtent", association, 0) \
    pair("KTVA_ArraySystemStoragePool", "PYL_VAArraySystemStoragePool", association, 0) \
    pair("KTVA_ArraySystemStorageVolume", "PYL_VAArraySystemStorageVolume", association, 0) \
    pair("KTVA_ArraySystemTSASPort", "PYL_VAArraySystemTSASPort", association, 0) \
    pair("KTVA_ArraySystemTSASSCSIProtocolEndpoint", "PYL_VAArraySystemTSASSCSIProtocolEndpoint", association, 0) \
    pair("KTVA_ComputerSystemArraySystem", "PYL_VAComputerSystemArraySystem", association, 0) \
    pair("KTVA_ComputerSystemPortController", "PYL_VAComputerSystemPortController", association, 0) \
    pair("KTVA_DAPort", "PYL_VADAPort", instance, 0) \
    pair("KTVA_DAPortSCSIProtocolEndpoint", "PYL_VADAPortSCSIProtocolEndpoint", association, 0) \
    pair("KTVA_DiskDrive", "PYL_VADiskDrive", instance, 2) \
    pair("KTVA_DiskDriveFirmware", "PYL_VADiskDriveFirmware", instance, 0) \
    pair("KTVA_DiskDriveMediaAccessStatData", "PYL_VADiskDriveMediaAccessStatData", association, 0) \
    pair("KTVA_DiskDriveStorageExtent", "PYL_VADiskDriveStorageExtent", association, 0) \
    pair("KTVA_DiskDriveTSASSCSIProtocolEndpoint", "PYL_VADiskDriveTSASSCSIProtocolEndpoint", association, 0) \
    pair("KTVA_DiskPhysicalPackage", "PYL_VADiskPhysicalPackage", instance, 2) \
    pair("KTVA_DiskPhysicalPackageDiskDrive", "PYL_VADiskPhysicalPackageDiskDrive", association, 0) \
    pair("KTVA_DiskPhysicalPackageDiskDriveLocation", "PYL_VADiskPhysicalPackageDiskDriveLocation", association, 0) \
    pair("KTVA_DriveCage", "PYL_VADriveCage", instance, 0) \
    pair("KTVA_DriveCageDiskPhysicalPackage", "PYL_VADriveCageDiskPhysicalPackage", association, 0) \
    pair("KTVA_DriveCageDriveCageLocation", "PYL_VADriveCageDriveCageLocation", association, 0) \
    pair("KTVA_ISASPort", "PYL_VAISASPort", instance, 0) \
    pair("KTVA_ISASPortISASSCSIProtocolEndpoint", "PYL_VAISASPortISASSCSIProtocolEndpoint", association, 0) \
    pair("KTVA_ISASSCSIProtocolEndpoint", "PYL_VAISASSCSIProtocolEndpoint", instance, 0) \
    pair("KTVA_MediaAccessStatData", "PYL_VAMediaAccessStatData", instance, 0) \
    pair("KTVA_PhysicalPackage", "PYL_VAPhysicalPackage", instance, 0) \
    row("KTVA_PhysicalPackageArrayControllerPhysicalPackage", association, 0) \
    row("PYL_VAPhysicalPackageArrayControllerPhysicalPackage", association, 0) \
    pair("KTVA_PhysicalPackageArraySystem", "PYL_VAPhysicalPackageArraySystem", association, 0) \
    pair("KTVA_PhysicalPackageArraySystemLocation", "PYL_VAPhysicalPackageArraySystemLocation", association, 0) \
    pair("KTVA_PhysicalPackagePortController", "PYL_VAPhysicalPackagePortController", association, 0) \
    pair("KTVA_PhysicalPackageStorageEnclosure", "PYL_VAPhysicalPackageStorageEnclosure", association, 0) \
    pair("KTVA_PortController", "PYL_VAPortController", instance, 0) \
    pair("KTVA_PortControllerISASPort", "PYL_VAPortControllerISASPort", association, 0) \
    pair("KTVA_PrimordialPool", "PYL_VAPrimordialPool", instance, 0) \
    pair("KTVA_PrimordialPoolStorageCapabilities", "PYL_VAPrimordialPoolStorageCapabilities", association, 0) \
    pair("KTVA_PrimordialPoolStoragePool", "PYL_VAPrimordialPoolStoragePool", association, 0) \
    pair("KTVA_Product", "PYL_VAProduct", instance, 1) \
    pair("KTVA_ProductPhysicalPackage", "PYL_VAProductPhysicalPackage", association, 0) \
    pair("KTVA_SCSIInitiatorTargetLogicalUnitPath", "PYL_VASCSIInitiatorTargetLogicalUnitPath", association, 0) \
    pair("KTVA_SCSIProtocolController", "PYL_VASCSIProtocolController", instance, 0) \
    pair("KTVA_SCSIProtocolControllerStorageVolume", "PYL_VASCSIProtocolControllerStorageVolume", association, 0) \
    pair("KTVA_SCSIProtocolEndpoint", "PYL_VASCSIProtocolEndpoint", instance, 0) \
    row("KTVA_SCSIProtocolEndpointSCSIProtocolController", association, 0) \
    row("PYL_VASCSIProtocolEndpointSCSIProtocolController", association, 0) \
    pair("KTVA_SpareExtentStorageExtent", "PYL_VASpareExtentStorageExtent", association, 0) \
    pair("KTVA_SpareExtentStorageRedundancySet", "PYL_VASpareExtentStorageRedundancySet", association, 0) \
    pair("KTVA_StorageCapabilities", "PYL_VAStorageCapabilities", instance, 0) \
    pair("KTVA_StorageEnclosure", "PYL_VAStorageEnclosure", instance, 0) \
    pair("KTVA_StorageEnclosureDriveCage", "PYL_VAStorageEnclosureDriveCage", association, 0) \
    pair("KTVA_StorageEnclosureEnclosureLocation", "PYL_VAStorageEnclosureEnclosureLocation", association, 0) \
    pair("KTVA_StorageEnclosureProcessor", "PYL_VAStorageEnclosureProcessor", instance, 0) \
    row("KTVA_StorageEnclosureStorageEnclosureProcessor", association, 0) \
    row("PYL_VAStorageEnclosureStorageEnclosureProcessor", association, 0) \
    pair("KTVA_StorageExtent", "PYL_VAStorageExtent", instance, 2) \
    pair("KTVA_StorageExtentStorageVolume", "PYL_VAStorageExtentStorageVolume", association, 0) \
    pair("KTVA_StoragePool", "PYL_VAStoragePool", instance, 0) \
    pair("KTVA_StoragePoolStorageCapabilities", "PYL_VAStoragePoolStorageCapabilities", association, 0) \
    pair("KTVA_StoragePoolStorageExtent", "PYL_VAStoragePoolStorageExtent", association, 0) \
    pair("KTVA_StoragePoolStorageVolume", "PYL_VAStoragePoolStorageVolume", association, 0) \
    pair("KTVA_StorageRedundancySet", "PYL_VAStorageRedundancySet", instance, 0) \
    pair("KTVA_StorageRedundancySetStorageExtent", "PYL_VAStorageRedundancySetStorageExtent", association, 0) \
    pair("KTVA_StorageSetting", "PYL_VAStorageSetting", instance, 0) \
    pair("KTVA_StorageSpecificCollectionArraySystem", "PYL_VAStorageSpecificCollectionArraySystem", association, 0) \
    pair("KTVA_StorageVolume", "PYL_VAStorageVolume", instance, 0) \
    pair("KTVA_StorageVolumeStorageSetting", "PYL_VAStorageVolumeStorageSetting", association, 0) \
    pair("KTVA_TSASPort", "PYL_VATSASPort", instance, 0) \
    pair("KTVA_TSASPortTSASSCSIProtocolEndpoint", "PYL_VATSASPortTSASSCSIProtocolEndpoint", association, 0) \
    pair("KTVA_TSASSCSIProtocolEndpoint", "PYL_VATSASSCSIProtocolEndpoint", instance, 0) \
    row("KTVA_StorageEnclosureProcessorEnclosureFirmware", instance, 2) \
    row("PYL_VAStorageEnclosureProcessorEnclosureFirmware", instance, 2) \
    pair("KTVA_FirmwareArraySystem", "PYL_VAFirmwareArraySystem", instance, 2) \
    pair("KTVA_DiskDriveDiskDriveFirmware", "PYL_VADiskDriveDiskDriveFirmware", instance, 2) \
    pair("KTVA_StorageGroupHostedCollection", "PYL_VAStorageGroupHostedCollection", instance, 0) \
    pair("KTVA_StorageSpecificCollection", "PYL_VAStorageSpecificCollection", instance, 2) \
    pair("KTVA_EnclosureFirmware", "PYL_VAEnclosureFirmware", instance, 2) \
    pair("KTVA_Firmware", "PYL_VAFirmware", instance, 2) \
    pair("KTVA_ArrayControllerLocation", "PYL_VAArrayControllerLocation", instance, 0) \
    pair("KTVA_ArraySystemLocation", "PYL_VAArraySystemLocation", instance, 0) \
    pair("KTVA_StorageEnclosureLocation", "PYL_VAStorageEnclosureLocation", instance, 0) \
    pair("KTVA_DiskDriveLocation", "PYL_VADiskDriveLocation", instance, 0) \
    pair("KTVA_DriveCageLocation", "PYL_VADriveCageLocation", instance, 0) \

#define PYL_SoftwareInventoryClasses(row, pair) \
    pair("KT_SoftwareInstallationServiceCapabilities", "PYL_SCInstallationServiceCapabilities", instance, 0) \
    pair("KT_SoftwareInstallationService", "PYL_SCInstallationService", instance, 0) \
    pair("KT_SoftwareIdentity", "PYL_PYLSoftwareIdentity", instance, 2) \
    row("PYL_SystemFirmware", instance, 2) \
    row("PYL_CPLDFirmware", instance, 2) \
    row("PYL_CPLDElementFirmwareIdentity", association, 0) \
    row("PYL_CPLDInstalledFirmwareIdentity", association, 0) \
    row("PYL_SystemElementFirmwareIdentity", instance, 0) \

