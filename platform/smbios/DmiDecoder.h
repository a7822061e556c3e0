#pragma once

#include "platform/smbios/DmiRecords.h"
#include "platform/smbios/SmbiosTable.h"

/// The decoders take a structure of their own type. The BIOS record draws on the whole table, the
/// records with a UUID on the SMBIOS version, which decides its byte order.
DmiBios decodeBios(SmbiosTable const& table, SmbiosRecord const& record);
DmiSystem decodeSystem(SmbiosTable const& table, SmbiosRecord const& record);
DmiBaseboard decodeBaseboard(SmbiosRecord const& record);
DmiChassis decodeChassis(SmbiosRecord const& record);
KTQServerSystemId decodeServerSystemId(SmbiosRecord const& record);
KTQEnclosure decodeEnclosure(SmbiosTable const& table, SmbiosRecord const& record);
KTQServerProfile decodeServerProfile(SmbiosTable const& table, SmbiosRecord const& record);

/// The maker's structures, or nullptr: the first one of its type that carries the maker's
/// signature.
SmbiosRecord const* findServerSystemIdRecord(SmbiosTable const& table) noexcept;
SmbiosRecord const* findEnclosureRecord(SmbiosTable const& table) noexcept;
SmbiosRecord const* findServerProfileRecord(SmbiosTable const& table) noexcept;
