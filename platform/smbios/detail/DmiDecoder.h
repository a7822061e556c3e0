#pragma once

#include "platform/smbios/DmiRecords.h"
#include "platform/smbios/SmbiosTable.h"

#include <optional>

/// The records of a table: the first structure of each type, of the maker's own types the first one
/// that carries the maker's signature. Nothing when the table has none.
std::optional<DmiBios> decodeBios(const SmbiosTable& table);
std::optional<DmiSystem> decodeSystem(const SmbiosTable& table);
std::optional<DmiBaseboard> decodeBaseboard(const SmbiosTable& table);
std::optional<DmiChassis> decodeChassis(const SmbiosTable& table);
std::optional<KTQServerSystemId> decodeServerSystemId(const SmbiosTable& table);
std::optional<KTQEnclosure> decodeEnclosure(const SmbiosTable& table);
std::optional<KTQServerProfile> decodeServerProfile(const SmbiosTable& table);
