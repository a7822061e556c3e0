#pragma once

#include "platform/host/MRAStatus.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <optional>
#include <string>

/// What is known of the enclosure that a server stands in; nullopt where the firmware does not
/// tell.
struct BladeFacts {
    bool isBlade = false;
    bool isSLServer = false;
    std::optional<std::string> enclosureName;
    std::optional<std::string> rackName;
    std::optional<std::string> rackUUID;
};

/// The enclosure of one server, as its data source read it.
///
/// Each getter with a status fills its argument and answers MRA_STATUS_SUCCESS, or leaves the
/// argument alone and answers MRA_STATUS_DATA_NOT_AVAILABLE. Before the first fill the server is no
/// blade and all data are absent. The getters may be called from several threads at once, but not
/// beside setFacts().
class PYL_EXPORT BladeMRADataObject {
public:
    /// Data objects of every kind are made with a logger; this one has nothing to log.
    explicit BladeMRADataObject(const Logger& log);

    /// Whether the server is a blade in an enclosure.
    bool isBlade() const noexcept { return _facts.isBlade; }
    /// Whether the server is one of the SL line: it shares an enclosure's power and cooling, but
    /// its events concern that server alone.
    bool isSLServer() const noexcept { return _facts.isSLServer; }
    MRAStatusEnum getEnclosureName(std::string& name) const;
    MRAStatusEnum getRackName(std::string& name) const;
    /// In the usual text form, lower case.
    MRAStatusEnum getRackUUID(std::string& uuid) const;

    /// For data sources: replaces everything that is known.
    void setFacts(BladeFacts facts);

private:
    BladeFacts _facts;
};
