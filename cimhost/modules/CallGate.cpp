#include "cimhost/modules/CallGate.h"

namespace cimhost {

bool CallGate::enter() noexcept {
    std::uint64_t state = _state.load(std::memory_order_relaxed);
    while (!(state & closed)) {
        if (_state.compare_exchange_weak(state, state + 1, std::memory_order_acquire,
                                         std::memory_order_relaxed)) {
            return true;
        }
    }
    return false;
}

void CallGate::leave() noexcept {
    std::uint64_t state = _state.load(std::memory_order_relaxed);
    while (!(state & closed)) {
        if (_state.compare_exchange_weak(state, state - 1, std::memory_order_release,
                                         std::memory_order_relaxed)) {
            return;
        }
    }
    // Counted down under the lock, so that whoever waits cannot go on, and destroy the gate, before
    // this function has done with it.
    const std::lock_guard lock(_mutex);
    _state.fetch_sub(1, std::memory_order_release);
    _left.notify_all();
}

void CallGate::open() noexcept { _state.fetch_and(~closed, std::memory_order_release); }

void CallGate::close() noexcept { _state.fetch_or(closed, std::memory_order_acquire); }

bool CallGate::closeIfIdle() noexcept {
    std::uint64_t none = 0;
    return _state.compare_exchange_strong(none, closed, std::memory_order_acquire);
}

bool CallGate::waitUntilIdle(std::chrono::steady_clock::time_point end) {
    const auto isIdle = [this] { return _state.load(std::memory_order_acquire) == closed; };
    std::unique_lock lock(_mutex);
    if (end != std::chrono::steady_clock::time_point::max()) {
        return _left.wait_until(lock, end, isIdle);
    }
    _left.wait(lock, isIdle);
    return true;
}

}  // namespace cimhost
