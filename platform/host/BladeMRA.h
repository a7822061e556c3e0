#pragma once

#include "platform/host/HostFacts.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <string>
#include <utility>

/// The enclosure of one server, as its data source read it.
///
/// Each getter with a status fills its argument and answers MRA_STATUS_SUCCESS, or leaves the
/// argument alone and answers MRA_STATUS_DATA_NOT_AVAILABLE. Before the first fill the server is no
/// blade and all data are absent. The getters may be called from several threads at once, but not
/// beside setFacts().
class PYL_EXPORT BladeMRADataObject {
public:
    /// Data objects of every kind are made with a logger; this one has nothing to log.
    explicit BladeMRADataObject(const Logger&) {}

    /// Whether the server is a blade in an enclosure.
    bool isBlade() const noexcept { return _facts.isBlade; }
    /// Whether the server is one of the SL line: it shares an enclosure's power and cooling, but
    /// its events concern that server alone.
    bool isSLServer() const noexcept { return _facts.isSLServer; }
    /// @{
    /// The fact of that name in HostFacts.
    MRAStatusEnum getEnclosureName(std::string& name) const {
        return giveFact(_facts.enclosureName, name);
    }
    MRAStatusEnum getRackName(std::string& name) const { return giveFact(_facts.rackName, name); }
    MRAStatusEnum getRackUUID(std::string& uuid) const { return giveFact(_facts.rackUuid, uuid); }
    /// @}

    /// For data sources: replaces everything that is known.
    void setFacts(HostFacts facts) { _facts = std::move(facts); }

private:
    HostFacts _facts;
};

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
