// The facts about the server's kind that PYLUtil reads from SMBIOS.

#include "common/ServerGeneration.h"

#include "common/PYLUtil.h"
#include "platform/smbios/SmBios.h"

#include <memory>
#include <string>
#include <string_view>

namespace PYL {

namespace {

constexpr std::uint16_t waveJMarker = 0x4000;

// ASCII only: the firmware's texts are ASCII (DSP0134, 6.1.3) and the locale must not matter.
std::string upperCase(std::string text) {
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return text;
}

/// The maker writes a generation's letter somewhere after the family's name, not always next to it.
bool namesWaveJ(const std::string& productName) {
    constexpr std::string_view family = "WAVE";
    const auto name = upperCase(productName);
    const auto at = name.find(family);
    return at != std::string::npos && name.find('J', at + family.size()) != std::string::npos;
}

bool isMadeByKT(const std::string& manufacturer) {
    const auto name = upperCase(manufacturer);
    return name == "KT" || name == "KTE";
}

const DmiSystem* systemOf(const SmBios& smbios, Logger& log) {
    const auto* system = smbios.getDmiSystem();
    if (!system) log.warn("Could not find SMBios DMISystem Element");
    return system;
}

const DmiBios* biosOf(const SmBios& smbios, Logger& log) {
    const auto* bios = smbios.getDmiBios();
    if (!bios) log.warn("Could not find SMBios DMIBios Element");
    return bios;
}

bool scanned(SmBios& smbios, Logger& log) {
    if (smbios.scan() == 0) return true;
    log.warn("Could not find SMBios, ensure root permission");
    return false;
}

}  // namespace

bool isAgentlessOnly(const SmBios& firmware, Logger& log) {
    const auto* bios = biosOf(firmware, log);
    if (bios && bios->newerGeneration != 0) return true;
    const auto* system = systemOf(firmware, log);
    return system && isMadeByKT(system->manufacturer) &&
           upperCase(system->productName).find("WAVEK") != std::string::npos;
}

constinit std::atomic<const std::string*> PYLUtil::_serverSystemId{nullptr};
constinit std::atomic<std::uint8_t> PYLUtil::smBios_scanned{0};
constinit std::atomic<std::uint8_t> PYLUtil::isWaveKorNewer{0};

std::string PYLUtil::getServerSystemId(Logger& log) {
    if (const auto* known = _serverSystemId.load(std::memory_order_acquire)) {
        log.info("serverSystemIdstring already set. Skipped SmBios Scan.");
        return *known;
    }
    log.info("serverSystemIdString is empty.  Scanning from SmBios....");
    SmBios smbios(log);
    if (smbios.scan() != 0) return {};
    const auto* record = smbios.getKTQServerSystemId();
    // An empty identifier is as good as none: it would be looked for again.
    if (!record || record->identifier.empty()) return {};

    auto identifier = std::make_unique<const std::string>(record->identifier);
    const std::string* expected = nullptr;
    if (_serverSystemId.compare_exchange_strong(expected, identifier.get(),
                                                std::memory_order_acq_rel)) {
        return *identifier.release();
    }
    return *expected;
}

bool PYLUtil::isWaveJServer(Logger& log) {
    SmBios smbios(log);
    if (!scanned(smbios, log)) return false;
    const auto* system = systemOf(smbios, log);
    if (system && namesWaveJ(system->productName)) return true;
    const auto* bios = biosOf(smbios, log);
    return bios && bios->biosMarker == waveJMarker;
}

bool PYLUtil::isAgentlessOnlyServer(Logger& log) {
    if (smBios_scanned.load(std::memory_order_acquire) == 1) {
        return isWaveKorNewer.load(std::memory_order_relaxed) != 0;
    }

    SmBios smbios(log);
    if (!scanned(smbios, log)) return false;
    const bool answer = isAgentlessOnly(smbios, log);
    // The flag comes last: a caller that sees it set must see the answer too.
    isWaveKorNewer.store(answer ? 1 : 0, std::memory_order_relaxed);
    smBios_scanned.store(1, std::memory_order_release);
    return answer;
}

}  // namespace PYL
