#pragma once

#include "cimhost/indications/ListenerUrl.h"
#include "cimhost/operations/Operations.h"
#include "cimhost/repository/Instance.h"
#include "cimhost/repository/Schema.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// What became of the indications for one destination. `raised` is the sum of the others but
/// `retried`.
struct DeliveryCounts {
    std::string name;
    std::uint64_t raised = 0;
    std::uint64_t sent = 0;
    std::uint64_t dropped = 0;
    std::uint64_t waiting = 0;
    std::uint64_t retried = 0;  ///< attempts that followed one that failed
};

/// How indications are delivered, as CIM_IndicationService tells it.
struct DeliveryManner {
    std::uint16_t attempts = 3;  ///< how often delivery is tried again
    std::chrono::seconds interval{20};
};

/// One indication on its way to one subscriber. All of it lives during the call only.
struct OutgoingIndication {
    const Instance& indication;
    const Class* definition;  ///< its class, or nullptr where that is not known
    const PropertySelection& selection;
    std::string_view filterName;
    std::string_view nameSpace = {};  ///< where it was raised: of references that name none
};

/// The way to one destination. Safe from several threads.
class IndicationQueue {
public:
    /// Drops what still waits.
    virtual ~IndicationQueue() = default;

    /// Takes the indication for sending, or drops and counts it when there is no room. Never waits
    /// for the listener. Throws CimError failed for what CIM-XML has no form for.
    virtual void put(const OutgoingIndication& indication) = 0;
};

/// Sends indications to listeners. Safe from several threads.
class IndicationOutlet {
public:
    virtual ~IndicationOutlet() = default;

    /// A queue for the destination with this name. The outlet outlives it. Throws CimError
    /// notSupported for a place that it has no way to.
    virtual std::shared_ptr<IndicationQueue> open(const std::string& name,
                                                  const ListenerUrl& url) = 0;

    virtual DeliveryManner manner() const = 0;
    /// Of the queues that are open.
    virtual std::vector<DeliveryCounts> counts() const = 0;
};

}  // namespace cimhost
