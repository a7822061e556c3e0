#pragma once

#include "cimhost/indications/IndicationOutlet.h"
#include "cimhost/server/events/EventFeed.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace cimhost {

/// Sends the indications for `console:` to those who look at a feed, as events `alert`, and all
/// others by another outlet. One counts as sent once it is published, and as dropped when nobody
/// looks: then it is not even written. Safe from several threads.
class ConsoleOutlet final : public IndicationOutlet {
public:
    /// Without a feed the console is a place that there is no way to. Both outlive this.
    ConsoleOutlet(IndicationOutlet& others, EventFeed* feed) noexcept
        : _others(others), _feed(feed) {}

    std::shared_ptr<IndicationQueue> open(const std::string& name, const ListenerUrl& url) override;
    DeliveryManner manner() const override { return _others.manner(); }
    std::vector<DeliveryCounts> counts() const override;

private:
    class Queue;

    IndicationOutlet& _others;
    EventFeed* _feed;
    mutable std::mutex _mutex;
    std::vector<std::weak_ptr<const Queue>> _opened;
};

}  // namespace cimhost
