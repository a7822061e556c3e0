#pragma once

#include "platform/host/BladeMRA.h"
#include "platform/host/ComputerSystemMRA.h"
#include "pylcommon_export.h"

/// The data of this host, for both data libraries. Each read scans the SMBIOS tables of the
/// process's source (SmBios::setSource()) once.
class PYL_EXPORT HostSource : public ComputerSystemMRA, public BladeMRA {
public:
    /// Keeps its own copy of the logger.
    explicit HostSource(const Logger& log, HostFiles files = HostFiles());
    ~HostSource() override;

    MRAStatusEnum getFirstData(unsigned selector,
                               ComputerSystemMRADataObject& object) noexcept override;
    MRAStatusEnum getEnclosureData(BladeMRADataObject& object) noexcept override;

private:
    Logger _log;
    HostFiles _files;
};
