#include "cimhost/server/events/EventStream.h"

#include "cimhost/server/ShownText.h"

namespace cimhost {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds gatherTime{50};
constexpr milliseconds lookTime{200};  ///< at whether the reply is to end
constexpr std::chrono::seconds commentTime{15};

std::string helloEvent(const EventHello& hello) {
    std::string text = R"(event: hello
data: {"program":"cimhost","version":")" CIMHOST_VERSION R"(","target":)";
    if (hello.target) {
        appendJson(text, *hello.target);
    } else {
        text += "null";
    }
    appendMember(text, "destination", hello.destination);
    return text.append(",\"logs\":").append(hello.hasLogs ? "true" : "false").append("}\n\n");
}

/// Writes pieces, in one flush as far as they fit.
class EventWriter {
public:
    explicit EventWriter(HttpReply& reply) noexcept : _reply(reply) {}

    void write(std::string_view text) {
        if (_held + text.size() > HttpReply::bufferBytes) flush();
        _reply.write(text);
        _held += text.size();
    }

    void flush() {
        if (_held == 0) return;
        _reply.flush();
        _held = 0;
        _nextComment = Clock::now() + commentTime;
    }

    Clock::time_point nextComment() const noexcept { return _nextComment; }

private:
    HttpReply& _reply;
    std::size_t _held = 0;
    Clock::time_point _nextComment{};
};

void writeBatch(const EventFeed::Batch& batch, EventWriter& writer) {
    if (batch.dropped != 0) {
        writer.write("event: dropped\ndata: {\"count\":" + std::to_string(batch.dropped) + "}\n\n");
    }
    for (const EventFeed::Event& event : batch.events) writer.write(*event);
}

}  // namespace

EventStream::EventStream(EventFeed& feed, const EventHello& hello)
    : _feed(feed), _hello(helloEvent(hello)) {}

void EventStream::handle(const HttpRequest&, HttpReply& reply) {
    reply.addHeader({"Content-Type", "text/event-stream"});
    reply.addHeader({"Cache-Control", "no-store"});
    EventFeed::Viewer viewer(_feed);
    EventWriter writer(reply);
    writer.write(_hello);
    writer.flush();
    for (bool goesOn = true; goesOn;) {
        goesOn = viewer.pause(Clock::now() + gatherTime) && !reply.isEnding();
        writeBatch(viewer.take(goesOn ? Clock::now() + lookTime : Clock::time_point()), writer);
        if (Clock::now() >= writer.nextComment()) writer.write(": \n\n");
        writer.flush();
    }
}

}  // namespace cimhost
