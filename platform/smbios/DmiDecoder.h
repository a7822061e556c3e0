#pragma once

#include "platform/smbios/DmiRecords.h"
#include "platform/smbios/SmbiosTable.h"

/// The decoders take a structure of their own type. The BIOS record draws on the whole table, the
/// system record on the SMBIOS version, which decides the byte order of its UUID.
DmiBios decodeBios(SmbiosTable const& table, SmbiosRecord const& record);
DmiSystem decodeSystem(SmbiosTable const& table, SmbiosRecord const& record);
DmiBaseboard decodeBaseboard(SmbiosRecord const& record);
DmiChassis decodeChassis(SmbiosRecord const& record);
KTQServerSystemId decodeServerSystemId(SmbiosRecord const& record);

/// The maker's structure with the server system identifier, or nullptr: the first one of its type
/// that carries the maker's signature.
SmbiosRecord const* findServerSystemIdRecord(SmbiosTable const& table) noexcept;
