#include "cimhost/server/events/ConsoleOutlet.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/server/events/AlertEvent.h"

#include <atomic>
#include <utility>

namespace cimhost {
/// Nothing waits here: that is the viewers' affair.
class ConsoleOutlet::Queue final : public IndicationQueue {
public:
    Queue(std::string name, EventFeed& feed) : _name(std::move(name)), _feed(feed) {}

    void put(const OutgoingIndication& outgoing) override {
        bool isSent = false;
        try {
            isSent = tell(_feed, outgoing);
        } catch (...) {
            ++_dropped;
            throw;
        }
        ++(isSent ? _sent : _dropped);
    }

    DeliveryCounts counts() const {
        DeliveryCounts counts;
        counts.name = _name;
        counts.sent = _sent;
        counts.dropped = _dropped;
        counts.raised = counts.sent + counts.dropped;
        return counts;
    }

private:
    const std::string _name;
    EventFeed& _feed;
    std::atomic<std::uint64_t> _sent = 0;
    std::atomic<std::uint64_t> _dropped = 0;
};

std::shared_ptr<IndicationQueue> ConsoleOutlet::open(const std::string& name,
                                                     const ListenerUrl& url) {
    if (!url.isConsole) return _others.open(name, url);
    if (!_feed) {
        throw CimError(CimCode::notSupported, "this server has no console to send indications to");
    }
    auto queue = std::make_shared<Queue>(name, *_feed);
    const std::lock_guard lock(_mutex);
    std::erase_if(_opened, [](const auto& each) { return each.expired(); });
    _opened.push_back(queue);
    return queue;
}

std::vector<DeliveryCounts> ConsoleOutlet::counts() const {
    std::vector<DeliveryCounts> counts = _others.counts();
    const std::lock_guard lock(_mutex);
    for (const auto& each : _opened) {
        if (const auto queue = each.lock()) counts.push_back(queue->counts());
    }
    return counts;
}

}  // namespace cimhost
