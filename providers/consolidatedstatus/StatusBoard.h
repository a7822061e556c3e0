#pragma once

#include "common/OpstatusUtils.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace consolidatedstatus {

/// The last status that a group's class posted.
struct PostedStatus {
    PYL::operationalStatus status = PYL::statusUnknown;
    std::chrono::system_clock::time_point when;
    std::uint64_t posts = 0;  ///< since the object manager started
};

/// What was posted, by class, and the worst of it. Safe from several threads.
class StatusBoard {
public:
    /// More classes than any server has providers: posts come from clients too, and memory is
    /// finite.
    static constexpr std::size_t mostClasses = 1000;

    /// Keeps the status. False, and nothing is kept, when the board is full of other classes.
    /// `isNew` tells whether the class posted for the first time.
    bool post(const std::string& className, PYL::operationalStatus status,
              std::chrono::system_clock::time_point when, bool& isNew);

    /// As if the class had never posted.
    void forget(const std::string& className);

    std::optional<PostedStatus> find(const std::string& className) const;

    /// The worst status, the time of the last post and the number of all posts; nullopt before the
    /// first.
    std::optional<PostedStatus> overall() const;

private:
    mutable std::mutex _mutex;
    std::map<std::string, PostedStatus> _posted;
};

}  // namespace consolidatedstatus
