#include "cimhost/server/events/RequestEvent.h"

#include "cimhost/cimxml/HeaderMatch.h"
#include "cimhost/http/Timestamp.h"
#include "cimhost/server/ShownText.h"

#include <exception>

namespace cimhost {
namespace {

void appendNumber(std::string& data, std::string_view name, const std::string& number) {
    data.append(",\"").append(name).append("\":").append(number);
}

std::string arrayOf(const std::vector<std::string>& names) {
    std::string array = "[";
    for (const std::string& name : names) {
        if (array.size() > 1) array += ',';
        appendJson(array, name);
    }
    return array += ']';
}

}  // namespace

void tell(EventFeed& feed, const RequestEvent& event, const AccessRecord& record) noexcept try {
    std::string data = "{\"number\":" + std::to_string(event.number);
    appendMember(data, "time", formatTimestamp(std::chrono::system_clock::now()));
    appendMember(data, "peer", record.peer);
    appendMember(data, "user", record.user);
    appendMember(data, "operation", record.operation);
    appendMember(data, "object", percentDecode(record.object));
    appendMember(data, "className", event.className);
    appendNumber(data, "providers", arrayOf(event.providers));
    appendNumber(data, "status", std::to_string(record.status));
    appendMember(data, "outcome", record.outcome);
    appendNumber(data, "bytes", std::to_string(record.bytes));
    appendNumber(data, "micros", std::to_string(record.duration.count()));
    feed.publish("request", data += '}');
} catch (const std::exception&) {
    // Out of memory: as promised.
}

}  // namespace cimhost
