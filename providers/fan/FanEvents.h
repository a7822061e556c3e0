#pragma once

#include "common/OpstatusUtils.h"
#include "providers/fan/FanSensors.h"

#include <map>
#include <string>
#include <vector>

namespace fan {

/// Events of the definitions of PYL_FanIndication.
enum FanEventNumber : int {
    fanRemoved = 1,
    fanInserted = 2,
    fanFailed = 3,
    fanRepaired = 4,
    fanDegraded = 9,
    fanHeartBeat = 100,
};

struct FanEvent {
    FanEventNumber number;
    Fan fan;

    bool operator==(const FanEvent&) const = default;
};

/// Compares what is with what was. One thread at a time.
class FanEvents {
public:
    /// What has happened since the last call. The first one tells of fans that are failed or
    /// degraded already, and calls none inserted. A fan that is unknown for a while, or stops,
    /// comes back without an event: only what was failed or degraded is repaired.
    std::vector<FanEvent> since(const std::vector<Fan>& fans);

private:
    struct Known {
        Fan fan;
        PYL::operationalStatus told = PYL::statusOK;  ///< OK, degraded or error, as last told
    };

    std::map<std::string, Known> _known;
    bool _isFirst = true;
};

}  // namespace fan
