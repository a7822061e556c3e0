#include "platform/smbios/SmbiosEntryPoint.h"

#include "platform/smbios/SmbiosSource.h"
#include "platform/smbios/detail/LittleEndian.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string>
#include <string_view>

namespace {

using Bytes = std::span<const std::uint8_t>;

// The sizes of both forms (DSP0134, clauses 5.2.1 and 5.2.2). Version 2.1 of the standard gave the
// first as 0x1E by mistake, so machines that say so are taken at their word for the checksum.
constexpr std::size_t size32 = 0x1f;
constexpr std::size_t misprintedSize32 = 0x1e;
constexpr std::size_t size64 = 0x18;
constexpr std::size_t sizeLimit = 0x20;

bool hasAnchor(Bytes bytes, std::size_t offset, std::string_view anchor) {
    return offset <= bytes.size() && bytes.size() - offset >= anchor.size() &&
           std::equal(anchor.begin(), anchor.end(),
                      bytes.begin() + static_cast<std::ptrdiff_t>(offset));
}

void requireSum(Bytes bytes, const char* what) {
    if (static_cast<std::uint8_t>(std::accumulate(bytes.begin(), bytes.end(), 0U)) != 0) {
        throw SmbiosError(std::string("the checksum of the ") + what + " is wrong");
    }
}

/// The entry point without what follows it, its own length and checksum checked.
Bytes checked(Bytes bytes, std::size_t lengthOffset, std::size_t least, std::size_t needed) {
    if (bytes.size() < needed) throw SmbiosError("the entry point is cut short");
    const std::size_t length = bytes[lengthOffset];
    if (length < least || length > sizeLimit) {
        throw SmbiosError("the entry point gives its length as " + std::to_string(length));
    }
    if (length > bytes.size()) throw SmbiosError("the entry point is cut short");
    requireSum(bytes.first(length), "entry point");
    return bytes;
}

/// Some firmware writes the minor version in a notation of its own; others mean an older version.
std::uint16_t repairedVersion(std::uint16_t version) {
    switch (version) {
        case 0x021f:
        case 0x0221: return 0x0203;
        case 0x0233: return 0x0206;
        default: return version;
    }
}

std::uint16_t versionAt(Bytes bytes, std::size_t offset) {
    return static_cast<std::uint16_t>(bytes[offset] << 8 | bytes[offset + 1]);
}

SmbiosEntryPoint parse32(Bytes bytes) {
    const Bytes entry = checked(bytes, 0x05, misprintedSize32, size32);
    if (!hasAnchor(entry, 0x10, "_DMI_")) {
        throw SmbiosError("the entry point lacks its second anchor");
    }
    requireSum(entry.subspan(0x10, 0x0f), "entry point's second half");
    return {.version = repairedVersion(versionAt(entry, 0x06)),
            .tableAddress = *readLittleEndian<std::uint32_t>(entry, 0x18),
            .tableLength = *readLittleEndian<std::uint16_t>(entry, 0x16),
            .structureCount = readLittleEndian<std::uint16_t>(entry, 0x1c)};
}

SmbiosEntryPoint parse64(Bytes bytes) {
    const Bytes entry = checked(bytes, 0x06, size64, size64);
    return {.version = versionAt(entry, 0x07),
            .tableAddress = *readLittleEndian<std::uint64_t>(entry, 0x10),
            .tableLength = *readLittleEndian<std::uint32_t>(entry, 0x0c),
            .structureCount = std::nullopt};
}

}  // namespace

SmbiosEntryPoint SmbiosEntryPoint::parse(std::span<const std::uint8_t> bytes) {
    if (hasAnchor(bytes, 0, "_SM3_")) return parse64(bytes);
    if (hasAnchor(bytes, 0, "_SM_")) return parse32(bytes);
    throw SmbiosError("the entry point has no SMBIOS anchor");
}
