#pragma once

#include "platform/host/ComputerSystemMRADataObject.h"
#include "platform/host/HostFiles.h"
#include "platform/smbios/SmBios.h"

/// What the kernel's copies of the firmware's facts (/sys/class/dmi/id), the kernel itself and
/// os-release tell.
ComputerSystemFacts readHostFacts(const HostFiles& files);

/// What a scanned SMBIOS table tells; nothing when its scan failed.
ComputerSystemFacts readFirmwareFacts(const SmBios& smbios);

/// The facts of the first, and where it has none those of the second.
ComputerSystemFacts mergeFacts(ComputerSystemFacts first, ComputerSystemFacts second);

/// True when there is a fact at all.
bool hasFacts(const ComputerSystemFacts& facts) noexcept;
