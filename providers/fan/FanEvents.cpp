#include "providers/fan/FanEvents.h"

#include <optional>
#include <set>

namespace fan {

namespace {

/// The event by which a status is told; none for those that are not.
std::optional<FanEventNumber> eventOf(PYL::operationalStatus status) {
    if (status == PYL::statusError) return fanFailed;
    if (status == PYL::statusDegraded) return fanDegraded;
    if (status == PYL::statusOK) return fanRepaired;
    return std::nullopt;
}

}  // namespace

std::vector<FanEvent> FanEvents::since(const std::vector<Fan>& fans) {
    std::vector<FanEvent> events;
    std::set<std::string> present;
    for (const auto& fan : fans) {
        present.insert(fan.id);
        const auto [known, isNew] = _known.try_emplace(fan.id, Known{fan, PYL::statusOK});
        if (isNew && !_isFirst) events.push_back({fanInserted, fan});
        known->second.fan = fan;
        const auto status = statusOf(fan);
        const auto event = eventOf(status);
        if (!event || status == known->second.told) continue;
        events.push_back({*event, fan});
        known->second.told = status;
    }
    std::erase_if(_known, [&](const auto& known) {
        if (present.contains(known.first)) return false;
        events.push_back({fanRemoved, known.second.fan});
        return true;
    });
    _isFirst = false;
    return events;
}

}  // namespace fan
