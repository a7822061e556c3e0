#pragma once

#include "platform/logger/Logger.h"
#include "platform/smbios/SmBios.h"
#include "pylcommon_export.h"

namespace PYL {

/// What PYLUtil::isAgentlessOnlyServer() asks of the running machine, asked of tables that were
/// scanned already: by the firmware's marker, else by the maker's name and the product's. Each
/// record that is looked for and missing is a warning in the log.
PYL_EXPORT bool isAgentlessOnly(const SmBios& firmware, Logger& log);

}  // namespace PYL
