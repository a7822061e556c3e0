#include "platform/smbios/detail/DmiDecoder.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

// The first version whose UUID has its first three fields in little-endian order (DSP0134,
// clause 7.2.1).
constexpr std::uint16_t littleEndianUuidVersion = 0x0206;

constexpr std::uint8_t firmwareType = 0xd8;
constexpr std::uint8_t serverSystemIdType = 0xd9;
constexpr std::uint8_t enclosureType = 0xda;
constexpr std::uint8_t serverProfileType = 0xdb;
constexpr std::size_t signatureOffset = 0x04;
constexpr std::string_view signature = "KTQ";

/// Firmware fills a field that it has no value for with no text at all or with blanks.
std::string text(const SmbiosRecord& record, std::size_t offset) {
    const std::string_view text = record.string(offset);
    if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) return {};
    return std::string(text);
}

using Uuid = std::array<std::uint8_t, 16>;

std::string uuidText(const Uuid& uuid) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string result;
    for (std::size_t index = 0; index < uuid.size(); ++index) {
        if (index == 4 || index == 6 || index == 8 || index == 10) result += '-';
        result += digits[uuid[index] >> 4];
        result += digits[uuid[index] & 0xf];
    }
    return result;
}

std::string decodeUuid(const SmbiosTable& table, const SmbiosRecord& record) {
    constexpr std::size_t offset = 0x08;  // in the system record and in the maker's own
    Uuid uuid{};
    if (record.formatted().size() < offset + uuid.size()) return {};
    std::ranges::copy(record.formatted().subspan(offset, uuid.size()), uuid.begin());
    // All bits set: not set yet; none set: the machine has none.
    if (std::ranges::all_of(uuid, [&](std::uint8_t byte) {
            return byte == uuid[0] && (byte == 0x00 || byte == 0xff);
        })) {
        return {};
    }
    if (table.entryPoint().version >= littleEndianUuidVersion) {
        std::reverse(uuid.begin(), uuid.begin() + 4);
        std::reverse(uuid.begin() + 4, uuid.begin() + 6);
        std::reverse(uuid.begin() + 6, uuid.begin() + 8);
    }
    return uuidText(uuid);
}

/// The maker's structure: the first one of its type that carries the maker's signature.
const SmbiosRecord* findSigned(const SmbiosTable& table, std::uint8_t type) noexcept {
    const auto found = std::ranges::find_if(table.records(), [type](const SmbiosRecord& record) {
        return record.type() == type && record.string(signatureOffset) == signature;
    });
    return found == table.records().end() ? nullptr : &*found;
}

}  // namespace

std::optional<DmiBios> decodeBios(const SmbiosTable& table) {
    const SmbiosRecord* const record = table.findType(0);
    if (!record) return std::nullopt;
    DmiBios bios{.vendor = text(*record, 0x04),
                 .version = text(*record, 0x05),
                 .releaseDate = text(*record, 0x08),
                 .characteristics = record->quadWord(0x0a).value_or(0)};
    if (const SmbiosRecord* const firmware = findSigned(table, firmwareType)) {
        // The upper characteristics bits are free for each maker of systems (DSP0134,
        // clause 7.1.1).
        bios.biosMarker = static_cast<std::uint16_t>(bios.characteristics >> 48);
        bios.newerGeneration = firmware->byte(0x05).value_or(0);
    }
    return bios;
}

std::optional<DmiSystem> decodeSystem(const SmbiosTable& table) {
    const SmbiosRecord* const record = table.findType(1);
    if (!record) return std::nullopt;
    return DmiSystem{.manufacturer = text(*record, 0x04),
                     .productName = text(*record, 0x05),
                     .version = text(*record, 0x06),
                     .serialNumber = text(*record, 0x07),
                     .uuid = decodeUuid(table, *record),
                     .wakeUpType = record->byte(0x18).value_or(0),
                     .skuNumber = text(*record, 0x19),
                     .family = text(*record, 0x1a)};
}

std::optional<DmiBaseboard> decodeBaseboard(const SmbiosTable& table) {
    const SmbiosRecord* const record = table.findType(2);
    if (!record) return std::nullopt;
    return DmiBaseboard{.manufacturer = text(*record, 0x04),
                        .product = text(*record, 0x05),
                        .version = text(*record, 0x06),
                        .serialNumber = text(*record, 0x07),
                        .assetTag = text(*record, 0x08)};
}

std::optional<DmiChassis> decodeChassis(const SmbiosTable& table) {
    const SmbiosRecord* const record = table.findType(3);
    if (!record) return std::nullopt;
    // The topmost bit of the type tells whether the chassis has a lock.
    return DmiChassis{.manufacturer = text(*record, 0x04),
                      .type = static_cast<std::uint8_t>(record->byte(0x05).value_or(0) & 0x7f),
                      .version = text(*record, 0x06),
                      .serialNumber = text(*record, 0x07),
                      .assetTag = text(*record, 0x08)};
}

std::optional<KTQServerSystemId> decodeServerSystemId(const SmbiosTable& table) {
    const SmbiosRecord* const record = findSigned(table, serverSystemIdType);
    if (!record) return std::nullopt;
    return KTQServerSystemId{.identifier = text(*record, 0x05)};
}

std::optional<KTQEnclosure> decodeEnclosure(const SmbiosTable& table) {
    constexpr unsigned bladeFlag = 0x01;
    constexpr unsigned slServerFlag = 0x02;
    const SmbiosRecord* const record = findSigned(table, enclosureType);
    if (!record) return std::nullopt;
    const unsigned flags = record->byte(0x05).value_or(0);
    return KTQEnclosure{.isBlade = (flags & bladeFlag) != 0,
                        .isSLServer = (flags & slServerFlag) != 0,
                        .enclosureName = text(*record, 0x06),
                        .rackName = text(*record, 0x07),
                        .rackUuid = decodeUuid(table, *record)};
}

std::optional<KTQServerProfile> decodeServerProfile(const SmbiosTable& table) {
    const SmbiosRecord* const record = findSigned(table, serverProfileType);
    if (!record) return std::nullopt;
    return KTQServerProfile{.virtualSerialNumber = text(*record, 0x05),
                            .virtualUuid = decodeUuid(table, *record),
                            .solutionName = text(*record, 0x06)};
}
