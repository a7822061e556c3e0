#pragma once

#include "platform/host/BladeMRA.h"
#include "pylcommon_export.h"

/// The enclosure of the host, from the maker's enclosure record in its SMBIOS table.
class PYL_EXPORT HostBladeMRA : public BladeMRA {
public:
    /// Reads SMBIOS from the process's source (SmBios::setSource()). Keeps its own copy of the
    /// logger.
    explicit HostBladeMRA(const Logger& log);
    ~HostBladeMRA() override;

    MRAStatusEnum getEnclosureData(BladeMRADataObject& object) noexcept override;

private:
    Logger _log;
};
