#include "cimhost/server/DeliveryQueue.h"

#include "cimhost/cimxml/ExportMessage.h"
#include "cimhost/operations/HostName.h"

#include <atomic>
#include <utility>

namespace cimhost {
namespace {

constexpr std::chrono::seconds logPause{10};
constexpr std::string_view logSource = "indications";

/// Unlike that of any other queue, in this process or an earlier one.
std::string makeContext(const std::string& name) {
    static std::atomic<unsigned> count = 0;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return "cimhost:" + name + ":" +
           std::to_string(std::chrono::duration_cast<std::chrono::microseconds>(now).count()) +
           ":" + std::to_string(++count);
}

}  // namespace

DeliveryQueue::DeliveryQueue(std::string name, const ListenerUrl& url,
                             const DeliverySettings& settings, BrokerLog& log)
    : _name(std::move(name)),
      _url("http://" + url.authority() + url.path),
      _host(hostName()),
      _context(makeContext(_name)),
      _settings(settings),
      _log(log),
      _connection(url, settings.attemptTime) {
    _counts.name = _name;
}

DeliveryQueue::~DeliveryQueue() {
    beginEnd();
    finish(Clock::now());
}

bool DeliveryQueue::_hasRoom(std::size_t bytes) const noexcept {
    return _items.size() < _settings.queueItems && _bytes + bytes <= _settings.queueBytes;
}

void DeliveryQueue::put(const OutgoingIndication& indication) {
    const std::lock_guard order(_order);
    const std::int64_t number = _nextNumber++;
    {
        const std::lock_guard lock(_mutex);
        if (_isEnding) return _refuse("the server is shutting down");
        if (!_hasRoom(1)) return _refuse("too many indications wait");
    }
    XmlBuffer message;
    try {
        writeExportMessage(message, indication, {_context, number, _host});
    } catch (...) {
        const std::lock_guard lock(_mutex);
        _refuse("an indication cannot be written");
        throw;
    }
    const std::lock_guard lock(_mutex);
    if (_isEnding) return _refuse("the server is shutting down");  // meanwhile
    if (!_hasRoom(message.size())) return _refuse("too many indications wait");
    try {
        _push(std::string(message.view()));
    } catch (...) {
        _refuse("an indication cannot be kept");
        throw;
    }
}

void DeliveryQueue::_push(std::string message) {
    if (!_thread.joinable()) {
        _thread = std::thread([this] { _work(); });
        _isDone = false;
    }
    const std::size_t size = message.size();
    _items.push_back({std::move(message), Clock::now()});
    _bytes += size;
    ++_counts.raised;
    _changed.notify_all();
}

/// Counted with what becomes of it, so that the counts add up at any moment.
void DeliveryQueue::_refuse(std::string_view reason) noexcept {
    ++_counts.raised;
    _drop(reason);
}

void DeliveryQueue::_drop(std::string_view reason) noexcept {
    ++_counts.dropped;
    _logTrouble(reason);
}

void DeliveryQueue::_logTrouble(std::string_view problem) noexcept {
    const Clock::time_point now = Clock::now();
    if (now < _nextLog) return;
    _nextLog = now + logPause;
    try {
        _log.write(BrokerLog::Level::warning, logSource,
                   "destination " + _name + " (" + _url + "): " + std::string(problem) + "; " +
                       std::to_string(_items.size()) + " indications wait, " +
                       std::to_string(_counts.dropped) + " were dropped so far");
    } catch (const std::bad_alloc&) {
        _log.write(BrokerLog::Level::warning, logSource, problem);
    }
}

DeliveryCounts DeliveryQueue::counts() const {
    const std::lock_guard lock(_mutex);
    DeliveryCounts counts = _counts;
    counts.waiting = _items.size();
    return counts;
}

void DeliveryQueue::_work() noexcept {
    std::unique_lock lock(_mutex);
    for (;;) {
        _changed.wait(lock, [this] { return _isEnding || !_items.empty(); });
        if (_items.empty()) break;
        _send(lock);
    }
    _isDone = true;
    _changed.notify_all();
}

void DeliveryQueue::_send(std::unique_lock<std::mutex>& lock) noexcept {
    // Only this thread takes items away, and those that come do not move it.
    const Item& item = _items.front();
    if (item.failures != 0) ++_counts.retried;
    lock.unlock();
    const std::optional<std::string> problem = _connection.post(item.message);
    lock.lock();
    if (problem) return _fail(lock, *problem);
    ++_counts.sent;
    _failingSince.reset();
    _pop();
}

void DeliveryQueue::_pop() noexcept {
    _bytes -= _items.front().message.size();
    _items.pop_front();
}

bool DeliveryQueue::_isGivenUp(const Item& item) const {
    if (item.failures > _settings.manner.attempts) return true;
    const Clock::time_point begin =
        Clock::now() - _settings.manner.attempts * _settings.manner.interval;
    return *_failingSince < begin && item.raised < begin;
}

void DeliveryQueue::_fail(std::unique_lock<std::mutex>& lock, const std::string& problem) noexcept {
    if (!_failingSince) _failingSince = Clock::now();
    Item& item = _items.front();
    ++item.failures;
    if (_isEnding) {
        _counts.dropped += _items.size();
        _items.clear();
        _bytes = 0;
    } else if (_isGivenUp(item)) {
        _pop();
        _drop(problem);
    } else {
        _logTrouble(problem);
        _changed.wait_for(lock, _settings.manner.interval, [this] { return _isEnding; });
    }
}

void DeliveryQueue::beginEnd() noexcept {
    const std::lock_guard lock(_mutex);
    _isEnding = true;
    _changed.notify_all();
}

void DeliveryQueue::finish(Clock::time_point deadline) noexcept {
    {
        std::unique_lock lock(_mutex);
        if (!_changed.wait_until(lock, deadline, [this] { return _isDone; })) _connection.abort();
    }
    if (!_thread.joinable()) return;
    _thread.join();
    _thread = {};
    _logEnd();
}

void DeliveryQueue::_logEnd() noexcept {
    try {
        const DeliveryCounts counts = this->counts();
        _log.write(BrokerLog::Level::information, logSource,
                   "destination " + _name + " (" + _url + "): " + std::to_string(counts.raised) +
                       " indications raised, " + std::to_string(counts.sent) + " sent, " +
                       std::to_string(counts.dropped) + " dropped; " +
                       std::to_string(counts.retried) + " retries");
    } catch (const std::bad_alloc&) {
        _log.write(BrokerLog::Level::warning, logSource, "a destination ended");
    }
}

}  // namespace cimhost
