#include "platform/host/detail/HostFacts.h"

#include "platform/host/detail/FirmwareText.h"
#include "platform/host/detail/OsRelease.h"

#include <array>
#include <utility>

namespace {

using Text = std::optional<std::string> ComputerSystemFacts::*;

/// Where the kernel repeats what it read from the firmware.
struct KernelFile {
    Text fact;
    const char* path;
};

constexpr auto kernelFiles = std::to_array<KernelFile>({
    {&ComputerSystemFacts::manufacturer, "/sys/class/dmi/id/sys_vendor"},
    {&ComputerSystemFacts::productName, "/sys/class/dmi/id/product_name"},
    {&ComputerSystemFacts::productId, "/sys/class/dmi/id/product_sku"},
    {&ComputerSystemFacts::serialNumber, "/sys/class/dmi/id/product_serial"},
    {&ComputerSystemFacts::uuid, "/sys/class/dmi/id/product_uuid"},
    {&ComputerSystemFacts::biosVendor, "/sys/class/dmi/id/bios_vendor"},
    {&ComputerSystemFacts::biosVersion, "/sys/class/dmi/id/bios_version"},
    {&ComputerSystemFacts::biosReleaseDate, "/sys/class/dmi/id/bios_date"},
});

constexpr auto texts = std::to_array<Text>({
    &ComputerSystemFacts::manufacturer,
    &ComputerSystemFacts::productName,
    &ComputerSystemFacts::productId,
    &ComputerSystemFacts::serialNumber,
    &ComputerSystemFacts::uuid,
    &ComputerSystemFacts::virtualSerialNumber,
    &ComputerSystemFacts::virtualUuid,
    &ComputerSystemFacts::solutionName,
    &ComputerSystemFacts::biosVendor,
    &ComputerSystemFacts::biosVersion,
    &ComputerSystemFacts::biosReleaseDate,
    &ComputerSystemFacts::osName,
    &ComputerSystemFacts::osVersion,
});

}  // namespace

ComputerSystemFacts readHostFacts(const HostFiles& files) {
    ComputerSystemFacts facts;
    for (const KernelFile& file : kernelFiles) facts.*file.fact = files.line(file.path);
    if (files.line("/proc/sys/kernel/ostype") == "Linux") facts.osType = OSlinux;
    auto release = files.text("/etc/os-release");
    if (!release) release = files.text("/usr/lib/os-release");
    if (release) {
        facts.osName = osReleaseValue(*release, "NAME");
        facts.osVersion = osReleaseValue(*release, "VERSION_ID");
    }
    return facts;
}

ComputerSystemFacts readFirmwareFacts(const SmBios& smbios) {
    ComputerSystemFacts facts;
    if (const DmiSystem* const system = smbios.getDmiSystem()) {
        facts.manufacturer = nonBlank(system->manufacturer);
        facts.productName = nonBlank(system->productName);
        facts.productId = nonBlank(system->skuNumber);
        facts.serialNumber = nonBlank(system->serialNumber);
        facts.uuid = nonBlank(system->uuid);
    }
    if (const DmiBios* const bios = smbios.getDmiBios()) {
        facts.biosVendor = nonBlank(bios->vendor);
        facts.biosVersion = nonBlank(bios->version);
        facts.biosReleaseDate = nonBlank(bios->releaseDate);
    }
    if (const KTQServerProfile* const profile = smbios.getKTQServerProfile()) {
        facts.virtualSerialNumber = nonBlank(profile->virtualSerialNumber);
        facts.virtualUuid = nonBlank(profile->virtualUuid);
        facts.solutionName = nonBlank(profile->solutionName);
    }
    return facts;
}

ComputerSystemFacts mergeFacts(ComputerSystemFacts first, ComputerSystemFacts second) {
    for (const Text text : texts) {
        if (!(first.*text)) first.*text = std::move(second.*text);
    }
    if (!first.osType) first.osType = second.osType;
    return first;
}

bool hasFacts(const ComputerSystemFacts& facts) noexcept {
    for (const Text text : texts) {
        if (facts.*text) return true;
    }
    return facts.osType.has_value();
}
