#include "providers/consolidatedstatus/StatusBoard.h"

#include <algorithm>

namespace consolidatedstatus {

bool StatusBoard::post(const std::string& className, PYL::operationalStatus status,
                       std::chrono::system_clock::time_point when, bool& isNew) {
    const std::lock_guard lock(_mutex);
    isNew = !_posted.contains(className);
    if (isNew && _posted.size() >= mostClasses) return false;
    auto& posted = _posted[className];
    posted = {status, when, posted.posts + 1};
    return true;
}

void StatusBoard::forget(const std::string& className) {
    const std::lock_guard lock(_mutex);
    _posted.erase(className);
}

std::optional<PostedStatus> StatusBoard::find(const std::string& className) const {
    const std::lock_guard lock(_mutex);
    const auto posted = _posted.find(className);
    return posted == _posted.end() ? std::nullopt : std::optional(posted->second);
}

std::optional<PostedStatus> StatusBoard::overall() const {
    const std::lock_guard lock(_mutex);
    if (_posted.empty()) return std::nullopt;
    PostedStatus overall;
    for (const auto& [className, posted] : _posted) {
        overall.status = PYL::updateWorst(overall.status, posted.status);
        overall.when = std::max(overall.when, posted.when);
        overall.posts += posted.posts;
    }
    return overall;
}

}  // namespace consolidatedstatus
