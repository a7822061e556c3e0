#include "cimhost/server/IndicationDelivery.h"

namespace cimhost {

std::shared_ptr<IndicationQueue> IndicationDelivery::open(const std::string& name,
                                                          const ListenerUrl& url) {
    auto queue = std::make_shared<DeliveryQueue>(name, url, _settings, _log);
    const std::lock_guard lock(_mutex);
    std::erase_if(_opened, [](const auto& each) { return each.expired(); });
    _opened.push_back(queue);
    return queue;
}

std::vector<std::shared_ptr<DeliveryQueue>> IndicationDelivery::_queues() const {
    std::vector<std::shared_ptr<DeliveryQueue>> queues;
    const std::lock_guard lock(_mutex);
    for (const auto& each : _opened) {
        if (auto queue = each.lock()) queues.push_back(std::move(queue));
    }
    return queues;
}

std::vector<DeliveryCounts> IndicationDelivery::counts() const {
    std::vector<DeliveryCounts> counts;
    for (const auto& queue : _queues()) counts.push_back(queue->counts());
    return counts;
}

void IndicationDelivery::stop(std::chrono::milliseconds grace) {
    const auto queues = _queues();
    for (const auto& queue : queues) queue->beginEnd();
    const Clock::time_point deadline = Clock::now() + grace;
    for (const auto& queue : queues) queue->finish(deadline);
}

}  // namespace cimhost
