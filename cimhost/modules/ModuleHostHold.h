#pragma once

#include "cimhost/modules/ModuleHost.h"
#include "cimhost/repository/CimError.h"

#include <chrono>
#include <mutex>
#include <string>

namespace cimhost {

/// Keeps other threads from making or cleaning up the provider's MIs. Threads may hold a provider
/// more than once, since a factory may make up-calls.
class ModuleHost::Hold {
public:
    /// The lock, of the host's mutex, is held, and again on return. Throws CimError failed when the
    /// thread that holds the provider waits for this one, or holds it for too long;
    /// serverIsShuttingDown.
    Hold(ModuleHost& host, std::unique_lock<std::mutex>& lock, HostedProvider& provider)
        : _host(host), _lock(lock), _provider(provider) {
        const std::thread::id self = std::this_thread::get_id();
        const auto end = std::chrono::steady_clock::now() + host._longestWait;
        while (provider.holds != 0 && provider.owner != self) {
            _host._refuseWhenStopping();
            if (_host._waitsForMe(provider)) refuseWhileBusy(provider);
            if (std::chrono::steady_clock::now() >= end) _refuseLate();
            _host._awaited[self] = &provider;
            _host._released.wait_until(lock, end);
            _host._awaited.erase(self);
        }
        ++provider.holds;
        provider.owner = self;
    }
    ~Hold() {
        if (!_lock.owns_lock()) _lock.lock();
        if (--_provider.holds == 0) _host._released.notify_all();
    }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

    [[noreturn]] static void refuseWhileBusy(const HostedProvider& provider) {
        throw CimError(CimCode::failed,
                       "provider " + provider.name + " is called while it is made or cleaned up");
    }

private:
    [[noreturn]] void _refuseLate() const {
        const auto waited = std::chrono::duration_cast<std::chrono::seconds>(_host._longestWait);
        throw CimError(CimCode::failed, "provider " + _provider.name +
                                            ": its factory or cleanup has not returned for " +
                                            std::to_string(waited.count()) + " s");
    }

    ModuleHost& _host;
    std::unique_lock<std::mutex>& _lock;
    HostedProvider& _provider;
};

}  // namespace cimhost
