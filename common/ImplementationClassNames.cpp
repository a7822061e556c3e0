#include "common/ImplementationClassNames.h"

#include "common/PYLConstants.h"

// All classes are in one namespace; both tables of a pair are made from the same classes.
// clang-format off

#define PYL_CLASS(className) className,
#define PYL_NAMESPACE(className) BaseServerNameSpace,
#define PYL_TABLES(profile)                                                                  \
    constinit const char* const profile##ClassNames[] = {PYL_##profile(PYL_CLASS) nullptr};  \
    constinit const char* const profile##NameSpaces[] = {PYL_##profile(PYL_NAMESPACE) nullptr};

// The tables of a profile that one class implements.
#define PYL_TABLES_OF(profile, className)                                          \
    constinit const char* const profile##ClassNames[] = {className, nullptr};      \
    constinit const char* const profile##NameSpaces[] = {BaseServerNameSpace, nullptr};

namespace PYL {

constinit const char* const emptyString[] = {nullptr};
constinit const char* const ktCollectionProfile[] = {"KT Configuration Data Collection", nullptr};

PYL_TABLES_OF(dmtfEthPort, "PYL_EthernetPort")
PYL_TABLES_OF(dmtfIPInterface, "PYL_IPProtocolEndpoint")
PYL_TABLES_OF(dmtfOS, "PYL_OperatingSystem")
PYL_TABLES_OF(dmtfPCIDevice, "PYL_PCIDevice")

// "Identiti" is how the provider of that class spells its name.
#define PYL_dmtfSWInv(row) \
    row("PYL_BladeEnclosureFW") row("PYL_EthernetPortControllerSoftwareIdentity") \
    row("PYL_EthernetPortControllerFirmwareIdentity") row("PYL_FCHBAFirmwareIdentitiBIOS") \
    row("PYL_FCHBAFirmwareIdentityFW") row("PYL_FCHBASoftwareIdentityDrv") row("PYL_MPFirmware") \
    row("PYL_SASDiskDriveFirmware") row("PYL_SASFirmware") row("PYL_VADiskDriveFirmware")
PYL_TABLES(dmtfSWInv)

#define PYL_sniaArray(row) row("PYL_VAArraySystem") row("PYL_SASArraySystem")
PYL_TABLES(sniaArray)

#define PYL_sniaHHRC(row) row("PYL_VAPortController") row("PYL_SASPortController")
PYL_TABLES(sniaHHRC)

PYL_TABLES_OF(ktCarrowLite, "PYL_BladeEnclosureCS")
PYL_TABLES_OF(ktCPU, "PYL_Processor")
PYL_TABLES_OF(ktCPUConStat, "PYL_ProcessorCollection")
PYL_TABLES_OF(ktCS, "PYL_ComputerSystem")
PYL_TABLES_OF(ktCollection, "PYL_PXDataCollection")
PYL_TABLES_OF(ktEthernetTeaming, "PYL_EthernetPort")
PYL_TABLES_OF(ktFCHBA, "PYL_FCHBAComputerSystem")
PYL_TABLES_OF(ktFan, "PYL_Fan")
PYL_TABLES_OF(ktMPLite, "PYL_ManagementProcessor")
PYL_TABLES_OF(ktMemory, "PYL_Memory")
PYL_TABLES_OF(ktPhysCPU, "PYL_ProcessorChip")
PYL_TABLES_OF(ktPhysCS, "PYL_ComputerSystemChassis")
PYL_TABLES_OF(ktPhysFan, "PYL_FanModule")
PYL_TABLES_OF(ktPhysMemory, "PYL_MemoryModule")
PYL_TABLES_OF(ktPhysPowerSupply, "PYL_PowerSupplyModule")
PYL_TABLES_OF(ktPowerSupply, "PYL_PowerSupply")
PYL_TABLES_OF(ktRecordLog, "PYL_IMLRecordLog")
PYL_TABLES_OF(ktVA, "PYL_VAArraySystem")
PYL_TABLES_OF(ktSAS, "PYL_SASArraySystem")
PYL_TABLES_OF(ktSCSI, "PYL_SCSIHBAComputerSystem")

#define PYL_ktSWInv(row) \
    row("PYL_PYLSoftwareIdentity") row("PYL_SystemFirmware") row("PYL_PowerControllerFirmware") \
    row("PYL_SASEnclosureFirmware") row("PYL_VAEnclosureFirmware") row("PYL_VAFirmware") row("PYL_SPSFirmware") \
    row("PYL_CPLDFirmware") row("PYL_VASoftwareIdentityDriver") row("PYL_SASSoftwareIdentityDriver")
PYL_TABLES(ktSWInv)

PYL_TABLES_OF(ktSensor, "PYL_NumericSensor")

#define PYL_ktServerProduct(row) row("PYL_ServerProduct") row("PYL_ServerProductPhysicalComponent")
PYL_TABLES(ktServerProduct)

#define PYL_ktStorageEnc(row) row("PYL_VAStorageEnclosure") row("PYL_SASStorageEnclosure")
PYL_TABLES(ktStorageEnc)

}  // namespace PYL
