#pragma once

#include "cimhost/http/AccessLog.h"
#include "cimhost/server/events/EventFeed.h"

#include <cstdint>
#include <string>
#include <vector>

namespace cimhost {

/// A request, as far as the access log does not know it.
struct RequestEvent {
    std::uint64_t number = 0;  ///< the log's (LoggedRequest.h)
    std::string className;     ///< asked for; empty where that is not known
    std::vector<std::string> providers;
};

/// Publishes the event `request` of one that ends now; it is lost when there is no memory for it.
void tell(EventFeed& feed, const RequestEvent& event, const AccessRecord& record) noexcept;

}  // namespace cimhost
