#pragma once

#include <cstdint>
#include <optional>
#include <span>

/// What an SMBIOS entry point says (DSP0134, clause 5.2), checked.
struct SmbiosEntryPoint {
    /// 0x0206 is version 2.6.
    std::uint16_t version;
    std::uint64_t tableAddress;  ///< in memory, or in a dump file
    /// Exact in a 32-bit entry point, the most that the table may take in a 64-bit one.
    std::uint32_t tableLength;
    /// Stated by a 32-bit entry point only.
    std::optional<std::uint16_t> structureCount;

    /// Reads the 32-bit form ("_SM_") or the 64-bit form ("_SM3_"). Throws SmbiosError when the
    /// bytes are neither, are cut short or fail a checksum.
    static SmbiosEntryPoint parse(std::span<const std::uint8_t> bytes);
};
