#include "cimhost/server/events/AlertEvent.h"

#include "cimhost/cimxml/ObjectWriter.h"
#include "cimhost/http/Timestamp.h"
#include "cimhost/operations/HostName.h"
#include "cimhost/server/ShownText.h"

#include <chrono>
#include <string>

namespace cimhost {

bool tell(EventFeed& feed, const OutgoingIndication& outgoing) {
    if (!feed.isWatched()) return false;
    XmlBuffer instance;
    const std::string host = hostName();
    // Every reference tells its namespace: who looks is in none.
    ObjectWriter(instance, host, {})
        .instance(outgoing.indication, outgoing.definition, outgoing.selection, false);
    std::string data = "{\"time\":";
    appendJson(data, formatTimestamp(std::chrono::system_clock::now()));
    appendMember(data, "filter", outgoing.filterName);
    appendMember(data, "instance", instance.view());
    return feed.publish("alert", data += '}');
}

}  // namespace cimhost
