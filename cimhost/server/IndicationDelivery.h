#pragma once

#include "cimhost/server/DeliveryQueue.h"

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace cimhost {

/// Delivers indications by CIM-XML over HTTP: a queue and a thread for each destination, so that
/// none waits for another. Safe from several threads.
class IndicationDelivery final : public IndicationOutlet {
public:
    /// The log outlives the delivery.
    IndicationDelivery(const DeliverySettings& settings, BrokerLog& log)
        : _settings(settings), _log(log) {}

    std::shared_ptr<IndicationQueue> open(const std::string& name, const ListenerUrl& url) override;
    DeliveryManner manner() const override { return _settings.manner; }
    std::vector<DeliveryCounts> counts() const override;

    /// Ends all queues: what waits is sent within `grace`, as long as its listener takes it, or
    /// dropped. Indications that come later are dropped.
    void stop(std::chrono::milliseconds grace);

private:
    std::vector<std::shared_ptr<DeliveryQueue>> _queues() const;

    DeliverySettings _settings;
    BrokerLog& _log;
    mutable std::mutex _mutex;
    std::vector<std::weak_ptr<DeliveryQueue>> _opened;
};

}  // namespace cimhost
