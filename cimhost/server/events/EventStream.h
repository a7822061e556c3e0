#pragma once

#include "cimhost/http/HttpHandler.h"
#include "cimhost/server/events/EventFeed.h"

#include <optional>
#include <string>

namespace cimhost {

/// What a stream says of itself before all else.
struct EventHello {
    std::optional<std::string> target;     ///< the server that is looked at, where it is another
    std::string destination = "console:";  ///< of indications that are to be events
    bool hasLogs = true;                   ///< events `request` and `log` come, too
};

/// A feed as text/event-stream, for any number of clients: the event `hello`, then those of the
/// feed, and `dropped` with their number before the first after some that found no room. What comes
/// within a twentieth of a second goes out together. A comment every 15 seconds keeps the
/// connection, and finds out that a client is gone. Called by several threads at once.
class EventStream final : public HttpHandler {
public:
    /// The feed outlives the stream.
    EventStream(EventFeed& feed, const EventHello& hello);

    /// The request is a GET, and its reply is kept open. Returns when that is to end, or the feed
    /// has ended.
    void handle(const HttpRequest& request, HttpReply& reply) override;

private:
    EventFeed& _feed;
    std::string _hello;
};

}  // namespace cimhost
