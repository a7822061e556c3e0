#pragma once

#include "platform/host/ComputerSystemMRADataObject.h"
#include "platform/host/MRAStatus.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

/// A source of computer-system data. A source belongs to one thread at a time.
class PYL_EXPORT ComputerSystemMRA {
public:
    /// The selector of the system's own data.
    static constexpr unsigned systemData = 1;

    ComputerSystemMRA() = default;
    ComputerSystemMRA(const ComputerSystemMRA&) = delete;
    ComputerSystemMRA& operator=(const ComputerSystemMRA&) = delete;
    virtual ~ComputerSystemMRA();

    /// Reads the selected data afresh and fills the object with them. The one selector is
    /// systemData. MRA_STATUS_FAILED for another, or when not a single fact can be read; the object
    /// then stays as it was. Facts that are missing are told by the getters of the object.
    virtual MRAStatusEnum getFirstData(unsigned selector,
                                       ComputerSystemMRADataObject& object) noexcept = 0;
};

/// The data source of this host, or nullptr when memory is short. The caller owns and deletes it.
/// It keeps its own copy of the logger.
PYL_EXPORT ComputerSystemMRA* computerSystemMRAFactory(Logger& log) noexcept;
