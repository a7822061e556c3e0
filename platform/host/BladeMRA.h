#pragma once

#include "platform/host/BladeMRADataObject.h"
#include "platform/host/MRAStatus.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

/// A source of enclosure data. A source belongs to one thread at a time.
class PYL_EXPORT BladeMRA {
public:
    BladeMRA() = default;
    BladeMRA(const BladeMRA&) = delete;
    BladeMRA& operator=(const BladeMRA&) = delete;
    virtual ~BladeMRA();

    /// Reads the enclosure data afresh and fills the object with them; a server that is no blade is
    /// data too. MRA_STATUS_FAILED, with the object as it was, when they cannot be read.
    virtual MRAStatusEnum getEnclosureData(BladeMRADataObject& object) noexcept = 0;
};

/// The data source of this host, or nullptr when memory is short. The caller owns and deletes it.
/// It keeps its own copy of the logger.
PYL_EXPORT BladeMRA* BladeMRAFactory(Logger& log) noexcept;
