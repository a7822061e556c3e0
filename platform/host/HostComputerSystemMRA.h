#pragma once

#include "platform/host/ComputerSystemMRA.h"
#include "platform/host/HostFiles.h"
#include "pylcommon_export.h"

/// The data of the host: the SMBIOS table first, and for what it does not tell (or when this
/// process may not read it) the kernel and os-release.
class PYL_EXPORT HostComputerSystemMRA : public ComputerSystemMRA {
public:
    /// Reads SMBIOS from the process's source (SmBios::setSource()). Keeps its own copy of the
    /// logger.
    explicit HostComputerSystemMRA(const Logger& log, HostFiles files = HostFiles());
    ~HostComputerSystemMRA() override;

    MRAStatusEnum getFirstData(unsigned selector,
                               ComputerSystemMRADataObject& object) noexcept override;

private:
    MRAStatusEnum _fill(ComputerSystemMRADataObject& object) const;

    Logger _log;
    HostFiles _files;
};
