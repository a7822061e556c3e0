#pragma once

#include "cimhost/indications/IndicationOutlet.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/server/ListenerConnection.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

namespace cimhost {

/// How indications are delivered, with the defaults of CIM_IndicationService.
struct DeliverySettings {
    DeliveryManner manner;
    std::size_t queueItems = 10'000;            ///< that wait for one destination at most
    std::size_t queueBytes = 16 * 1024 * 1024;  ///< of their messages
    std::chrono::milliseconds attemptTime{10'000};
};

/// What waits for one destination, and the thread that sends it, in order.
///
/// An indication that cannot be delivered is tried again after the interval, as often as the
/// settings say, and holds back those behind it. Once a listener has been failing for all that
/// time, those that are as old are tried once only. What finds no room is dropped; its sequence
/// number stays a gap by which the listener can tell. Troubles are logged with counts, a line in
/// ten seconds at most. The thread begins with the first indication.
class DeliveryQueue final : public IndicationQueue {
public:
    /// The log outlives the queue.
    DeliveryQueue(std::string name, const ListenerUrl& url, const DeliverySettings& settings,
                  BrokerLog& log);
    /// Ends at once, dropping what waits, and logs what became of the indications.
    ~DeliveryQueue() override;
    DeliveryQueue(const DeliveryQueue&) = delete;
    DeliveryQueue& operator=(const DeliveryQueue&) = delete;

    void put(const OutgoingIndication& indication) override;
    DeliveryCounts counts() const;

    /// Takes no more and waits for no interval any more: the first failure drops all that waits.
    void beginEnd() noexcept;
    /// After beginEnd: lets the thread send what waits until the deadline, and drops the rest.
    void finish(Clock::time_point deadline) noexcept;

private:
    struct Item {
        std::string message;
        Clock::time_point raised;
        unsigned failures = 0;
    };

    bool _hasRoom(std::size_t bytes) const noexcept;
    void _refuse(std::string_view reason) noexcept;
    void _drop(std::string_view reason) noexcept;
    void _push(std::string message);
    void _work() noexcept;
    void _send(std::unique_lock<std::mutex>& lock) noexcept;
    void _pop() noexcept;
    void _fail(std::unique_lock<std::mutex>& lock, const std::string& problem) noexcept;
    bool _isGivenUp(const Item& item) const;
    void _logTrouble(std::string_view problem) noexcept;
    void _logEnd() noexcept;

    const std::string _name;
    const std::string _url;
    const std::string _host;  ///< this one
    const std::string _context;
    const DeliverySettings& _settings;
    BrokerLog& _log;
    ListenerConnection _connection;

    std::mutex _order;  ///< held while an indication is numbered and takes its place
    std::int64_t _nextNumber = 0;

    mutable std::mutex _mutex;  ///< guards all below
    std::condition_variable _changed;
    std::deque<Item> _items;
    std::size_t _bytes = 0;
    DeliveryCounts _counts;  ///< but for `waiting`
    std::optional<Clock::time_point> _failingSince;
    Clock::time_point _nextLog{};
    bool _isEnding = false;
    bool _isDone = true;  ///< no thread runs
    std::thread _thread;
};

}  // namespace cimhost
