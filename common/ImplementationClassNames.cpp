#include "common/ImplementationClassNames.h"

#include "common/PYLConstants.h"

// A row is a class and its namespace; both tables of a pair are made from the same rows.
// clang-format off

#define PYL_CLASS(className, nameSpace) className,
#define PYL_NAMESPACE(className, nameSpace) nameSpace,
#define PYL_TABLES(profile)                                                                  \
    constinit const char* const profile##ClassNames[] = {PYL_##profile(PYL_CLASS) nullptr};  \
    constinit const char* const profile##NameSpaces[] = {PYL_##profile(PYL_NAMESPACE) nullptr};

namespace PYL {

constinit const char* const emptyString[] = {nullptr};
constinit const char* const ktCollectionProfile[] = {"KT Configuration Data Collection", nullptr};

#define PYL_dmtfEthPort(row) \
    row("PYL_EthernetPort", BaseServerNameSpace) \

PYL_TABLES(dmtfEthPort)

#define PYL_dmtfIPInterface(row) \
    row("PYL_IPProtocolEndpoint", BaseServerNameSpace) \

PYL_TABLES(dmtfIPInterface)

#define PYL_dmtfOS(row) \
    row("PYL_OperatingSystem", BaseServerNameSpace) \

PYL_TABLES(dmtfOS)

#define PYL_dmtfPCIDevice(row) \
    row("PYL_PCIDevice", BaseServerNameSpace) \

PYL_TABLES(dmtfPCIDevice)

// "Identiti" is how the provider of that class spells its name.
#define PYL_dmtfSWInv(row) \
    row("PYL_BladeEnclosureFW", BaseServerNameSpace) \
    row("PYL_EthernetPortControllerSoftwareIdentity", BaseServerNameSpace) \
    row("PYL_EthernetPortControllerFirmwareIdentity", BaseServerNameSpace) \
    row("PYL_FCHBAFirmwareIdentitiBIOS", BaseServerNameSpace) \
    row("PYL_FCHBAFirmwareIdentityFW", BaseServerNameSpace) \
    row("PYL_FCHBASoftwareIdentityDrv", BaseServerNameSpace) \
    row("PYL_MPFirmware", BaseServerNameSpace) \
    row("PYL_SASDiskDriveFirmware", BaseServerNameSpace) \
    row("PYL_SASFirmware", BaseServerNameSpace) \
    row("PYL_VADiskDriveFirmware", BaseServerNameSpace) \

PYL_TABLES(dmtfSWInv)

#define PYL_sniaArray(row) \
    row("PYL_VAArraySystem", BaseServerNameSpace) \
    row("PYL_SASArraySystem", BaseServerNameSpace) \

PYL_TABLES(sniaArray)

#define PYL_sniaHHRC(row) \
    row("PYL_VAPortController", BaseServerNameSpace) \
    row("PYL_SASPortController", BaseServerNameSpace) \

PYL_TABLES(sniaHHRC)

#define PYL_ktCarrowLite(row) \
    row("PYL_BladeEnclosureCS", BaseServerNameSpace) \

PYL_TABLES(ktCarrowLite)

#define PYL_ktCPU(row) \
    row("PYL_Processor", BaseServerNameSpace) \

PYL_TABLES(ktCPU)

#define PYL_ktCPUConStat(row) \
    row("PYL_ProcessorCollection", BaseServerNameSpace) \

PYL_TABLES(ktCPUConStat)

#define PYL_ktCS(row) \
    row("PYL_ComputerSystem", BaseServerNameSpace) \

PYL_TABLES(ktCS)

#define PYL_ktCollection(row) \
    row("PYL_PXDataCollection", BaseServerNameSpace) \

PYL_TABLES(ktCollection)

#define PYL_ktEthernetTeaming(row) \
    row("PYL_EthernetPort", BaseServerNameSpace) \

PYL_TABLES(ktEthernetTeaming)

#define PYL_ktFCHBA(row) \
    row("PYL_FCHBAComputerSystem", BaseServerNameSpace) \

PYL_TABLES(ktFCHBA)

#define PYL_ktFan(row) \
    row("PYL_Fan", BaseServerNameSpace) \

PYL_TABLES(ktFan)

#define PYL_ktMPLite(row) \
    row("PYL_ManagementProcessor", BaseServerNameSpace) \

PYL_TABLES(ktMPLite)

#define PYL_ktMemory(row) \
    row("PYL_Memory", BaseServerNameSpace) \

PYL_TABLES(ktMemory)

#define PYL_ktPhysCPU(row) \
    row("PYL_ProcessorChip", BaseServerNameSpace) \

PYL_TABLES(ktPhysCPU)

#define PYL_ktPhysCS(row) \
    row("PYL_ComputerSystemChassis", BaseServerNameSpace) \

PYL_TABLES(ktPhysCS)

#define PYL_ktPhysFan(row) \
    row("PYL_FanModule", BaseServerNameSpace) \

PYL_TABLES(ktPhysFan)

#define PYL_ktPhysMemory(row) \
    row("PYL_MemoryModule", BaseServerNameSpace) \

PYL_TABLES(ktPhysMemory)

#define PYL_ktPhysPowerSupply(row) \
    row("PYL_PowerSupplyModule", BaseServerNameSpace) \

PYL_TABLES(ktPhysPowerSupply)

#define PYL_ktPowerSupply(row) \
    row("PYL_PowerSupply", BaseServerNameSpace) \

PYL_TABLES(ktPowerSupply)

#define PYL_ktRecordLog(row) \
    row("PYL_IMLRecordLog", BaseServerNameSpace) \

PYL_TABLES(ktRecordLog)

#define PYL_ktVA(row) \
    row("PYL_VAArraySystem", BaseServerNameSpace) \

PYL_TABLES(ktVA)

#define PYL_ktSAS(row) \
    row("PYL_SASArraySystem", BaseServerNameSpace) \

PYL_TABLES(ktSAS)

#define PYL_ktSCSI(row) \
    row("PYL_SCSIHBAComputerSystem", BaseServerNameSpace) \

PYL_TABLES(ktSCSI)

#define PYL_ktSWInv(row) \
    row("PYL_PYLSoftwareIdentity", BaseServerNameSpace) \
    row("PYL_SystemFirmware", BaseServerNameSpace) \
    row("PYL_PowerControllerFirmware", BaseServerNameSpace) \
    row("PYL_SASEnclosureFirmware", BaseServerNameSpace) \
    row("PYL_VAEnclosureFirmware", BaseServerNameSpace) \
    row("PYL_VAFirmware", BaseServerNameSpace) \
    row("PYL_SPSFirmware", BaseServerNameSpace) \
    row("PYL_CPLDFirmware", BaseServerNameSpace) \
    row("PYL_VASoftwareIdentityDriver", BaseServerNameSpace) \
    row("PYL_SASSoftwareIdentityDriver", BaseServerNameSpace) \

PYL_TABLES(ktSWInv)

#define PYL_ktSensor(row) \
    row("PYL_NumericSensor", BaseServerNameSpace) \

PYL_TABLES(ktSensor)

#define PYL_ktServerProduct(row) \
    row("PYL_ServerProduct", BaseServerNameSpace) \
    row("PYL_ServerProductPhysicalComponent", BaseServerNameSpace) \

PYL_TABLES(ktServerProduct)

#define PYL_ktStorageEnc(row) \
    row("PYL_VAStorageEnclosure", BaseServerNameSpace) \
    row("PYL_SASStorageEnclosure", BaseServerNameSpace) \

PYL_TABLES(ktStorageEnc)

}  // namespace PYL
