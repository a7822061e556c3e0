#include "platform/host/HostFacts.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

/// Where the kernel repeats what it read from the firmware.
struct KernelFile {
    std::optional<std::string> HostFacts::*fact;
    const char* path;
};

constexpr auto kernelFiles = std::to_array<KernelFile>({
    {&HostFacts::manufacturer, "/sys/class/dmi/id/sys_vendor"},
    {&HostFacts::productName, "/sys/class/dmi/id/product_name"},
    {&HostFacts::productId, "/sys/class/dmi/id/product_sku"},
    {&HostFacts::serialNumber, "/sys/class/dmi/id/product_serial"},
    {&HostFacts::uuid, "/sys/class/dmi/id/product_uuid"},
    {&HostFacts::biosVendor, "/sys/class/dmi/id/bios_vendor"},
    {&HostFacts::biosVersion, "/sys/class/dmi/id/bios_version"},
    {&HostFacts::biosReleaseDate, "/sys/class/dmi/id/bios_date"},
});

constexpr std::string_view blanks = " \t\r";

/// A value as a shell reads it: 'all as it stands', "with \" escapes" or bare.
std::string unquoted(std::string_view value) {
    const char quote = value.empty() || (value[0] != '"' && value[0] != '\'') ? '\0' : value[0];
    if (quote) value.remove_prefix(1);
    std::string result;
    for (std::size_t at = 0; at < value.size() && !(quote && value[at] == quote); ++at) {
        if (value[at] == '\\' && quote != '\'' && at + 1 < value.size()) ++at;
        result += value[at];
    }
    return result;
}

/// The value of a variable in the text of an os-release file (os-release(5)); nothing when it is
/// not set or all blanks. Of several settings the last one counts.
std::optional<std::string> osReleaseValue(std::string_view text, std::string_view name) {
    std::string value;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        if (!line.starts_with(name) || !line.substr(name.size()).starts_with('=')) continue;
        const std::size_t end = line.find_last_not_of(blanks) + 1;
        value = unquoted(line.substr(0, end).substr(name.size() + 1));
    }
    if (value.find_first_not_of(blanks) == std::string::npos) return std::nullopt;
    return value;
}

std::optional<std::string> known(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional(text);
}

}  // namespace

HostFacts readFirmwareFacts(const SmBios& firmware) {
    HostFacts facts;
    if (const DmiSystem* const system = firmware.getDmiSystem()) {
        facts.manufacturer = known(system->manufacturer);
        facts.productName = known(system->productName);
        facts.productId = known(system->skuNumber);
        facts.serialNumber = known(system->serialNumber);
        facts.uuid = known(system->uuid);
    }
    if (const KTQServerSystemId* const id = firmware.getKTQServerSystemId()) {
        facts.serverSystemId = known(id->identifier);
    }
    if (const KTQServerProfile* const profile = firmware.getKTQServerProfile()) {
        facts.virtualSerialNumber = known(profile->virtualSerialNumber);
        facts.virtualUuid = known(profile->virtualUuid);
        facts.solutionName = known(profile->solutionName);
    }
    if (const DmiBios* const bios = firmware.getDmiBios()) {
        facts.biosVendor = known(bios->vendor);
        facts.biosVersion = known(bios->version);
        facts.biosReleaseDate = known(bios->releaseDate);
    }
    if (const DmiChassis* const chassis = firmware.getDmiChassis()) {
        facts.chassisManufacturer = known(chassis->manufacturer);
        facts.chassisSerialNumber = known(chassis->serialNumber);
        facts.chassisAssetTag = known(chassis->assetTag);
        facts.chassisType = chassis->type;
    }
    if (const KTQEnclosure* const enclosure = firmware.getKTQEnclosure()) {
        facts.isBlade = enclosure->isBlade;
        facts.isSLServer = enclosure->isSLServer;
        facts.enclosureName = known(enclosure->enclosureName);
        facts.rackName = known(enclosure->rackName);
        facts.rackUuid = known(enclosure->rackUuid);
    }
    return facts;
}

HostFacts readHostFacts(const SmBios& firmware, const HostFiles& files) {
    HostFacts facts = readFirmwareFacts(firmware);
    for (const auto& [fact, path] : kernelFiles) {
        if (!(facts.*fact)) facts.*fact = files.line(path);
    }
    if (files.line("/proc/sys/kernel/ostype") == "Linux") facts.osType = OSlinux;
    auto release = files.text("/etc/os-release");
    if (!release) release = files.text("/usr/lib/os-release");
    if (release) {
        facts.osName = osReleaseValue(*release, "NAME");
        facts.osVersion = osReleaseValue(*release, "VERSION_ID");
    }
    return facts;
}
