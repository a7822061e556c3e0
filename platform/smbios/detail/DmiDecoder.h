#pragma once

#include "platform/smbios/DmiRecords.h"
#include "platform/smbios/SmbiosTable.h"

/// The decoders take a structure of their own type. The BIOS record draws on the whole table, the
/// records with a UUID on the SMBIOS version, which decides its byte order.
DmiBios decodeBios(const SmbiosTable& table, const SmbiosRecord& record);
DmiSystem decodeSystem(const SmbiosTable& table, const SmbiosRecord& record);
DmiBaseboard decodeBaseboard(const SmbiosRecord& record);
DmiChassis decodeChassis(const SmbiosRecord& record);
KTQServerSystemId decodeServerSystemId(const SmbiosRecord& record);
KTQEnclosure decodeEnclosure(const SmbiosTable& table, const SmbiosRecord& record);
KTQServerProfile decodeServerProfile(const SmbiosTable& table, const SmbiosRecord& record);

/// The maker's structures, or nullptr: the first one of its type that carries the maker's
/// signature.
const SmbiosRecord* findServerSystemIdRecord(const SmbiosTable& table) noexcept;
const SmbiosRecord* findEnclosureRecord(const SmbiosTable& table) noexcept;
const SmbiosRecord* findServerProfileRecord(const SmbiosTable& table) noexcept;
