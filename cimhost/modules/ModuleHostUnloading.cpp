#include "cimhost/modules/ModuleHost.h"
#include "cimhost/modules/ModuleHostHold.h"
#include "cimhost/modules/ProviderStatus.h"
#include "cimhost/modules/RunningCall.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/repository/CimError.h"

#include <algorithm>
#include <list>

namespace cimhost {
namespace {

std::chrono::steady_clock::time_point endOf(std::chrono::milliseconds patience) {
    using Clock = std::chrono::steady_clock;
    const auto now = Clock::now();
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::time_point::max() - now);
    return patience < left ? now + patience : Clock::time_point::max();
}

// As wait_until, which counts from another clock where it may: no time overflows.
template <typename Condition>
bool waitUntil(std::condition_variable& changed, std::unique_lock<std::mutex>& lock,
               std::chrono::steady_clock::time_point end, Condition condition) {
    if (end != std::chrono::steady_clock::time_point::max()) {
        return changed.wait_until(lock, end, condition);
    }
    changed.wait(lock, condition);
    return true;
}

}  // namespace

CMPIStatus ModuleHost::_cleanUp(MiSlot& slot, bool isTerminating) noexcept {
    const std::string& name = slot.provider->name;
    const BusyMark busy(slot);
    CMPIStatus status{CMPI_RC_ERR_FAILED, nullptr};
    try {
        const CallScope scope;
        RequestContext request;
        request.nameSpace = slot.provider->nameSpace;
        const CMPIContext* const context = makeStartContext(_broker, request);
        status = callProvider(name, [&] {
            const RunningCall running({slot.provider->module.name, name, "cleanup", {}}, nullptr);
            return slot.cleanUp(context, isTerminating);
        });
        const bool stays = status.rc == CMPI_RC_DO_NOT_UNLOAD || status.rc == CMPI_RC_NEVER_UNLOAD;
        if (isTerminating || !stays) requireSuccess(status, name);
    } catch (const std::exception& error) {
        _broker.log().write(BrokerLog::Level::warning, name, error.what());
    }
    status.msg = nullptr;  // it ended with the scope
    return status;
}

// With the lock held.
void ModuleHost::_remove(MiSlot& slot) noexcept {
    slot.isForever = false;
    std::erase(_created, &slot);
}

std::vector<MiSlot*> ModuleHost::_slotsOf(const HostedModule& module) const {
    std::vector<MiSlot*> slots;
    std::copy_if(_created.rbegin(), _created.rend(), std::back_inserter(slots),
                 [&](const MiSlot* slot) { return &slot->provider->module == &module; });
    return slots;
}

bool ModuleHost::_closeIfIdle(const std::vector<MiSlot*>& slots) noexcept {
    const auto inUse = std::ranges::find_if(
        slots, [](MiSlot* slot) { return slot->isBusy || !slot->gate.closeIfIdle(); });
    if (inUse == slots.end()) return true;
    std::for_each(slots.begin(), inUse, [](MiSlot* slot) { slot->gate.open(); });
    return false;
}

// Where an MI is made for each class, one of each kind is cleaned up for all of the module.
bool ModuleHost::_isSpared(const MiSlot& slot, const std::vector<MiSlot*>& slots) const noexcept {
    if (!_broker.manner().has(Habit::makesAnMiForEachClass)) return false;
    const auto first = std::ranges::find_if(slots, [&slot](const MiSlot* other) {
        return &other->provider->module == &slot.provider->module && other->kind() == slot.kind();
    });
    return *first != &slot;
}

// False when the MI stays and can be called again.
bool ModuleHost::_agreesToLeave(MiSlot& slot) noexcept {
    if (!slot.isForever) {
        const CMPIrc answer = _cleanUp(slot, false).rc;
        const bool stays =
            answer == CMPI_RC_DO_NOT_UNLOAD || answer == CMPI_RC_NEVER_UNLOAD ||
            (answer != CMPI_RC_OK && _broker.manner().has(Habit::goesOnAfterRefusedUnload));
        if (!stays) return true;
        slot.isForever = answer == CMPI_RC_NEVER_UNLOAD;
    }
    slot.gate.open();
    return false;
}

UnloadOutcome ModuleHost::unload(const std::string& module) {
    std::unique_lock lock(_mutex);
    const ModuleTable& table = *_tables.back();
    const auto found = table.modules.find(module);
    if (found == table.modules.end() || !found->second->code || _isStopping) {
        return UnloadOutcome::notLoaded;
    }
    HostedModule& hosted = *found->second;
    const std::vector<MiSlot*> slots = _slotsOf(hosted);
    std::vector<MiSlot*> leaving;
    leaving.reserve(slots.size());
    if (_isHeld(&hosted) || !_closeIfIdle(slots)) return UnloadOutcome::busy;
    std::list<Hold> holds;
    for (const auto& [name, provider] : table.providers) {
        if (&provider->module == &hosted) holds.emplace_back(*this, lock, *provider);
    }
    lock.unlock();
    for (MiSlot* const slot : slots) {
        if (_isSpared(*slot, slots) || _agreesToLeave(*slot)) leaving.push_back(slot);
    }
    lock.lock();
    const bool isEmpty = leaving.size() == slots.size();
    const bool goesOn = !isEmpty && _broker.manner().has(Habit::goesOnAfterRefusedUnload);
    for (MiSlot* const slot : leaving) {
        if (goesOn) {
            slot->gate.open();
        } else {
            _remove(*slot);
        }
    }
    if (!isEmpty) return UnloadOutcome::kept;
    std::erase(_loaded, &hosted);
    const std::unique_ptr<Module> code = std::move(hosted.code);
    lock.unlock();  // what runs when a library is closed is the module's, too
    return UnloadOutcome::unloaded;
}

bool ModuleHost::releaseReplaced() {
    const std::lock_guard alone(_shutDown);
    std::vector<HostedModule*> modules;
    {
        const std::lock_guard lock(_mutex);
        if (_isStopping) return false;
        for (HostedModule* const each : _loaded) {
            const std::vector<MiSlot*> slots = _slotsOf(*each);
            const bool hasReplaced = std::ranges::any_of(
                slots, [](const MiSlot* slot) { return slot->provider->isReplaced; });
            if (each->isReplaced || hasReplaced) modules.push_back(each);
        }
    }
    bool isLeft = false;
    for (HostedModule* const each : modules) isLeft = !_releaseReplaced(*each) || isLeft;
    return isLeft;
}

// True when nothing of it is left.
bool ModuleHost::_releaseReplaced(HostedModule& module) {
    std::unique_lock lock(_mutex);
    const std::vector<MiSlot*> slots = _slotsOf(module);
    const auto now = std::chrono::steady_clock::now();
    bool isLeft = _isHeld(&module);
    for (MiSlot* const slot : slots) {
        if (!slot->provider->isReplaced) continue;
        if (slot->isBusy || !slot->gate.waitUntilIdle(now)) {
            isLeft = true;
            continue;
        }
        lock.unlock();  // no call reaches it any more
        if (!_isSpared(*slot, slots)) _cleanUp(*slot, true);
        lock.lock();
        _remove(*slot);
    }
    if (isLeft || !module.isReplaced) return !isLeft;
    std::erase(_loaded, &module);
    const std::unique_ptr<Module> code = std::move(module.code);
    lock.unlock();  // what runs when a library is closed is the module's, too
    return true;
}

bool ModuleHost::shutDown(std::chrono::milliseconds patience) {
    const auto end = endOf(patience);
    const std::lock_guard alone(_shutDown);
    std::unique_lock lock(_mutex);
    _isStopping = true;
    _released.notify_all();
    for (MiSlot* const slot : _created) slot->gate.close();
    const bool isMade = waitUntil(_released, lock, end, [this] { return !_isHeld(nullptr); });
    const std::vector<MiSlot*> created(_created.rbegin(), _created.rend());
    // The lock is not held while MIs are cleaned up: one may wait for its own thread, and that
    // thread may want the lock only to be refused.
    lock.unlock();
    const bool isIdle =
        std::ranges::all_of(created, [end](MiSlot* slot) { return slot->gate.waitUntilIdle(end); });
    for (MiSlot* const slot : created) {
        if (!slot->gate.waitUntilIdle(std::chrono::steady_clock::now())) continue;
        if (!_isSpared(*slot, created)) _cleanUp(*slot, true);
        const std::lock_guard removing(_mutex);
        _remove(*slot);
    }
    _closeUnused();
    return isMade && isIdle;
}

void ModuleHost::_closeUnused() {
    std::vector<std::unique_ptr<Module>> unused;
    {
        const std::lock_guard lock(_mutex);
        const std::vector<HostedModule*> loaded(_loaded.rbegin(), _loaded.rend());
        for (HostedModule* const module : loaded) {
            if (!_slotsOf(*module).empty() || _isHeld(module)) continue;
            std::erase(_loaded, module);
            unused.push_back(std::move(module->code));
        }
    }
    for (std::unique_ptr<Module>& code : unused) code.reset();
}

}  // namespace cimhost
