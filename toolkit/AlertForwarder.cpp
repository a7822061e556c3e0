#include "toolkit/AlertForwarder.h"

#include "platform/ipmi/Bmc.h"
#include "toolkit/FailureText.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace PYL {

namespace {

constexpr std::chrono::milliseconds endTime{500};

}  // namespace

/// Ends what the thread asks of the controller.
class AlertForwarder::Interruption {
public:
    Interruption() : _descriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
        if (_descriptor < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
    }
    ~Interruption() { ::close(_descriptor); }
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    int descriptor() const noexcept { return _descriptor; }
    void come() const noexcept { ::eventfd_write(_descriptor, 1); }

private:
    int _descriptor;
};

AlertForwarder::AlertForwarder(const Logger& log) : _log(log) {}

AlertForwarder::~AlertForwarder() {
    std::unique_lock lock(_mutex);
    if (!_thread.joinable()) return;
    _changed.wait_for(lock, endTime, [this] { return _waiting.empty() && !_isForwarding; });
    _isEnding = true;
    if (!_waiting.empty()) {
        _log.warn("%zu alerts are not forwarded to the enclosure: the provider ends",
                  _waiting.size());
        _waiting.clear();
    }
    _interruption->come();
    _changed.notify_all();
    lock.unlock();
    _thread.join();
}

void AlertForwarder::forward(std::unique_ptr<KTAlertIndication> alert) noexcept {
    const std::lock_guard lock(_mutex);
    if (_waiting.size() >= mostWaiting) return _drop("too many wait for the controller");
    try {
        _take(std::move(alert));
    } catch (...) {
        _drop(failureText());
    }
}

void AlertForwarder::_take(std::unique_ptr<KTAlertIndication> alert) {
    if (!_interruption) _interruption = std::make_unique<Interruption>();
    if (!_thread.joinable()) {
        _thread = std::thread(
            [this, interruption = _interruption->descriptor()] { _work(interruption); });
    }
    _waiting.push_back(std::move(alert));
    _changed.notify_all();
}

/// A line at the first, the second, the fourth, ...: a storm of alerts is none of lines.
void AlertForwarder::_drop(std::string_view reason) noexcept {
    ++_dropped;
    if ((_dropped & (_dropped - 1)) == 0) {
        _log.warn("an alert is not forwarded to the enclosure: %s; %llu were dropped so far",
                  reason, _dropped);
    }
}

void AlertForwarder::_work(int interruption) noexcept {
    const BmcInterruption interruptible(interruption);
    std::unique_lock lock(_mutex);
    for (;;) {
        _changed.wait(lock, [this] { return _isEnding || !_waiting.empty(); });
        if (_isEnding) return;
        auto alert = std::move(_waiting.front());
        _waiting.pop_front();
        _isForwarding = true;
        lock.unlock();
        alert->mp_event_gen();
        alert.reset();
        lock.lock();
        _isForwarding = false;
        _changed.notify_all();
    }
}

void AlertForwarder::waitUntilIdle() {
    std::unique_lock lock(_mutex);
    _changed.wait(lock, [this] { return _waiting.empty() && !_isForwarding; });
}

}  // namespace PYL
