#include "cimhost/modules/ModuleHost.h"

#include "cimhost/modules/ProviderStatus.h"
#include "cimhost/modules/RunningCall.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/repository/CimError.h"

#include <algorithm>
#include <list>
#include <optional>
#include <tuple>

namespace cimhost {

struct ModuleHost::Hosted {
    explicit Hosted(std::string itsName) : name(std::move(itsName)) {}

    std::string name;
    std::optional<StaticModule> factories;  ///< of a part of this program
    std::mutex loading;                     ///< held while it is loaded
    std::unique_ptr<Module> code;           ///< null while it is not loaded
    std::string failure;                    ///< why it is not, or not anew; empty: none
    bool isReplaced = false;                ///< no further call comes to it
};

/// One MI and who is using it.
struct ModuleHost::Slot {
    virtual ~Slot() = default;
    virtual CMPIStatus cleanUp(const CMPIContext* context, bool isTerminating) = 0;
    virtual ProviderType kind() const noexcept = 0;

    Provider* provider = nullptr;
    CallGate gate;           ///< open while the MI may be called
    bool isBusy = false;     ///< being made or cleaned up
    bool isForever = false;  ///< the MI asked never to be unloaded
    std::string failure;     ///< why it was not made; empty: none
};

template <typename MI>
struct ModuleHost::TypedSlot final : Slot {
    CMPIStatus cleanUp(const CMPIContext* context, bool isTerminating) override {
        if (!mi->ft->cleanup) return {CMPI_RC_OK, nullptr};
        return mi->ft->cleanup(mi, context, isTerminating ? 1 : 0);
    }
    ProviderType kind() const noexcept override { return MiKind<MI>::type; }

    MI* mi = nullptr;
};

struct ModuleHost::Provider {
    Provider(const Registration& registration, Hosted& home)
        : name(registration.provider), nameSpace(registration.nameSpace), module(home) {
        std::apply([this](auto&... slot) { ((slot.provider = this), ...); }, slots);
    }

    std::string name;
    std::string nameSpace;  ///< one it is registered for
    Hosted& module;
    bool isReplaced = false;  ///< no further call comes to it
    unsigned holds = 0;       ///< how often a thread holds it, which makes or cleans up its MIs
    std::thread::id owner;    ///< that thread
    std::atomic<unsigned> leaks = 0;  ///< calls that left clones
    std::tuple<TypedSlot<CMPIInstanceMI>, TypedSlot<CMPIAssociationMI>, TypedSlot<CMPIMethodMI>,
               TypedSlot<CMPIIndicationMI>>
        slots;
};

/// What calls go by.
struct ModuleHost::Table {
    Registrations registrations;
    std::map<std::string, std::shared_ptr<Hosted>> modules;
    std::map<std::string, std::shared_ptr<Provider>> providers;
};

/// Keeps other threads from making or cleaning up the provider's MIs. Threads may hold a provider
/// more than once, since a factory may make up-calls.
class ModuleHost::Hold {
public:
    /// The lock, of the host's mutex, is held, and again on return. Throws CimError failed when the
    /// thread that holds the provider waits for this one; serverIsShuttingDown.
    Hold(ModuleHost& host, std::unique_lock<std::mutex>& lock, Provider& provider)
        : _host(host), _lock(lock), _provider(provider) {
        const std::thread::id self = std::this_thread::get_id();
        while (provider.holds != 0 && provider.owner != self) {
            _host._refuseWhenStopping();
            if (_host._waitsForMe(provider)) refuseWhileBusy(provider);
            _host._awaited[self] = &provider;
            _host._released.wait(lock);
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

    [[noreturn]] static void refuseWhileBusy(const Provider& provider) {
        throw CimError(CimCode::failed,
                       "provider " + provider.name + " is called while it is made or cleaned up");
    }

private:
    ModuleHost& _host;
    std::unique_lock<std::mutex>& _lock;
    Provider& _provider;
};

namespace {

class Mark {
public:
    explicit Mark(bool& flag) noexcept : _flag(flag) { _flag = true; }
    ~Mark() { _flag = false; }
    Mark(const Mark&) = delete;
    Mark& operator=(const Mark&) = delete;

private:
    bool& _flag;
};

[[noreturn]] void refuseCreation(const std::string& provider, const std::string& kind,
                                 const CMPIStatus& status) {
    // Other codes would say something of the client's request that the factory cannot know.
    const CimCode code = status.rc == CMPI_RC_ERR_ACCESS_DENIED   ? CimCode::accessDenied
                         : status.rc == CMPI_RC_ERR_NOT_SUPPORTED ? CimCode::notSupported
                                                                  : CimCode::failed;
    std::string reason = messageOf(status);
    if (reason.empty()) reason = "CMPI return code " + std::to_string(static_cast<int>(status.rc));
    throw CimError(code, "provider " + provider + " made no " + kind + " MI: " + reason);
}

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

// A class belongs to the module that registered it first.
Registrations firstOfEachClass(const Registrations& all) {
    Registrations first;
    std::map<std::string, std::string, NameLess> modules;
    for (const Registration& each : all.all()) {
        const auto found = modules.emplace(each.nameSpace + ':' + each.className, each.module);
        if (found.first->second == each.module) first.add(each);
    }
    return first;
}

Registrations registrationsFor(const Manner& manner, Registrations all) {
    const bool takesFirst = manner.has(Habit::takesTheFirstRegistration);
    return takesFirst ? firstOfEachClass(all) : std::move(all);
}

// Who shares an MI of a kind: all classes of a provider, or each class alone.
std::string sharersOf(const Manner& manner, const Registration& registration) {
    if (!manner.has(Habit::makesAnMiForEachClass)) return registration.provider;
    return registration.provider + ' ' + registration.nameSpace + ':' + registration.className;
}

}  // namespace

ModuleHost::ModuleHost(const Broker& broker, Registrations registrations,
                       std::vector<std::filesystem::path> folders, ModuleSource source)
    : _broker(broker), _folders(std::move(folders)), _source(source) {
    auto table = _makeTable(registrationsFor(broker.manner(), std::move(registrations)));
    for (const Registration& each : table->registrations.all()) {
        auto& module = table->modules[each.module];
        if (!module) module = std::make_shared<Hosted>(each.module);
        auto& provider = table->providers[sharersOf(broker.manner(), each)];
        if (!provider) provider = std::make_shared<Provider>(each, *module);
    }
    _publish(std::move(table));
}

ModuleHost::~ModuleHost() { shutDown(); }

const Registrations& ModuleHost::registrations() const noexcept {
    return _table.load(std::memory_order_acquire)->registrations;
}

std::unique_ptr<ModuleHost::Table> ModuleHost::_makeTable(Registrations registrations) const {
    auto table = std::make_unique<Table>();
    table->registrations = std::move(registrations);
    return table;
}

void ModuleHost::addStatic(const std::string& module, StaticModule factories) {
    auto& hosted = _tables.back()->modules[module];
    if (!hosted) hosted = std::make_shared<Hosted>(module);
    hosted->factories = std::move(factories);
}

std::string cannotBeLoaded(const std::string& module) {
    return "module " + module + " cannot be loaded: ";
}

ModuleState ModuleHost::stateOf(const std::string& module) const {
    const Table& table = *_table.load(std::memory_order_acquire);
    ModuleState state;
    const auto found = table.modules.find(module);
    if (found == table.modules.end()) return state;
    const Hosted& hosted = *found->second;
    const std::lock_guard lock(_mutex);
    state.isLoaded = hosted.code != nullptr;
    if (!hosted.failure.empty()) state.failures.push_back(hosted.failure);
    for (const auto& [name, provider] : table.providers) {
        if (&provider->module != &hosted) continue;
        std::apply(
            [&state](const auto&... slot) {
                ((slot.failure.empty() ? void() : state.failures.push_back(slot.failure)), ...);
            },
            provider->slots);
    }
    return state;
}

ModuleHost::Provider& ModuleHost::_providerOf(const Registration& registration) const {
    const auto& providers = _table.load(std::memory_order_acquire)->providers;
    // Asked for each call: the usual name is there already and needs no copy.
    const bool isShared = !_broker.manner().has(Habit::makesAnMiForEachClass);
    const auto found = isShared ? providers.find(registration.provider)
                                : providers.find(sharersOf(_broker.manner(), registration));
    if (found != providers.end()) return *found->second;
    throw CimError(CimCode::failed, "provider " + registration.provider + " is registered no more");
}

template <typename MI>
MiUse<MI> ModuleHost::use(const Registration& registration) {
    for (;;) {
        Provider& provider = _providerOf(registration);
        auto& slot = std::get<TypedSlot<MI>>(provider.slots);
        // False only for a provider that has been replaced meanwhile.
        if (!slot.gate.enter() && !_start(provider, slot)) continue;
        return MiUse<MI>(slot.mi, slot.gate, provider.module.name, provider.name, provider.leaks);
    }
}

template MiUse<CMPIInstanceMI> ModuleHost::use(const Registration&);
template MiUse<CMPIAssociationMI> ModuleHost::use(const Registration&);
template MiUse<CMPIMethodMI> ModuleHost::use(const Registration&);
template MiUse<CMPIIndicationMI> ModuleHost::use(const Registration&);

void ModuleHost::_refuseWhenStopping() const {
    if (!_isStopping) return;
    throw CimError(CimCode::serverIsShuttingDown, "the server is shutting down");
}

// True when the thread that holds the provider waits, or waits for one that waits, for this thread.
bool ModuleHost::_waitsForMe(const Provider& provider) const noexcept {
    const std::thread::id self = std::this_thread::get_id();
    const Provider* held = &provider;
    while (held->holds != 0 && held->owner != self) {
        const auto found = _awaited.find(held->owner);
        if (found == _awaited.end()) return false;
        held = found->second;
    }
    return held->holds != 0;
}

// Whether MIs are being made or cleaned up, of this module or of any.
bool ModuleHost::_isHeld(const Hosted* module) const noexcept {
    return std::any_of(_tables.begin(), _tables.end(), [module](const auto& table) {
        return std::ranges::any_of(table->providers, [module](const auto& each) {
            const Provider& provider = *each.second;
            return provider.holds != 0 && (!module || &provider.module == module);
        });
    });
}

// On return the caller is inside the gate, unless the provider has been replaced.
template <typename MI>
bool ModuleHost::_start(Provider& provider, TypedSlot<MI>& slot) {
    _refuseWhenStopping();
    try {
        std::unique_lock lock(_mutex);
        const Hold hold(*this, lock, provider);
        if (provider.isReplaced) return false;
        if (!_isStopping && slot.gate.enter()) return true;  // another thread was faster
        if (!_isStopping) {
            if (slot.isBusy) Hold::refuseWhileBusy(provider);
            const Mark busy(slot.isBusy);
            lock.unlock();
            MI* const mi = _create<MI>(provider);
            lock.lock();
            slot.mi = mi;
            slot.failure.clear();
            _created.push_back(&slot);
        }
        // What was made meanwhile is cleaned up with the others.
        _refuseWhenStopping();
        if (provider.isReplaced) return false;
        slot.gate.open();
        slot.gate.enter();
        return true;
    } catch (const CimError& error) {
        if (error.code() != CimCode::serverIsShuttingDown) {
            _noteFailure(slot, error.what());
            _broker.log().write(BrokerLog::Level::error, provider.name, error.what());
        }
        throw;
    }
}

// Of a module that is not loaded it has been noted.
void ModuleHost::_noteFailure(Slot& slot, const std::string& text) noexcept try {
    const std::lock_guard lock(_mutex);
    if (slot.provider->module.code) slot.failure = text;
} catch (const std::bad_alloc&) {
    return;
}

template <typename MI>
MI* ModuleHost::_create(Provider& provider) {
    _load(provider.module);
    const std::string kind(MiKind<MI>::word);
    const MiFactory<MI> factory = provider.module.code->factory<MI>(provider.name);
    if (!factory) provider.module.code->refuseProvider(provider.module.name, provider.name, kind);
    const CallScope scope;
    RequestContext request;
    request.nameSpace = provider.nameSpace;
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIContext* const context = makeStartContext(_broker, request);
    MI* const mi = callProvider(provider.name, [&] {
        const RunningCall running({provider.module.name, provider.name, "factory", {}}, nullptr);
        return factory(_broker.handle(), context, provider.name.c_str(), &status);
    });
    if (!mi) refuseCreation(provider.name, kind, status);
    if (!mi->ft) {
        throw CimError(CimCode::failed,
                       "provider " + provider.name + " made an MI without a function table");
    }
    return mi;
}

void ModuleHost::_load(Hosted& module) {
    const std::lock_guard alone(module.loading);
    if (module.code) return;
    std::unique_ptr<Module> code;
    try {
        code = module.factories ? std::make_unique<Module>(*module.factories)
                                : Module::load(module.name, _folders, _source);
    } catch (const CimError& error) {
        const std::lock_guard lock(_mutex);
        module.failure = cannotBeLoaded(module.name) + error.what();
        throw CimError(error.code(), module.failure);
    }
    const std::lock_guard lock(_mutex);
    module.failure.clear();
    module.code = std::move(code);
    _loaded.push_back(&module);
}

CMPIStatus ModuleHost::_cleanUp(Slot& slot, bool isTerminating) noexcept {
    const std::string& name = slot.provider->name;
    const Mark busy(slot.isBusy);
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
void ModuleHost::_remove(Slot& slot) noexcept {
    slot.isForever = false;
    std::erase(_created, &slot);
}

std::vector<ModuleHost::Slot*> ModuleHost::_slotsOf(const Hosted& module) const {
    std::vector<Slot*> slots;
    std::copy_if(_created.rbegin(), _created.rend(), std::back_inserter(slots),
                 [&](const Slot* slot) { return &slot->provider->module == &module; });
    return slots;
}

bool ModuleHost::_closeIfIdle(const std::vector<Slot*>& slots) noexcept {
    const auto inUse = std::find_if(slots.begin(), slots.end(), [](Slot* slot) {
        return slot->isBusy || !slot->gate.closeIfIdle();
    });
    if (inUse == slots.end()) return true;
    std::for_each(slots.begin(), inUse, [](Slot* slot) { slot->gate.open(); });
    return false;
}

// Where an MI is made for each class, one of each kind is cleaned up for all of the module.
bool ModuleHost::_isSpared(const Slot& slot, const std::vector<Slot*>& slots) const noexcept {
    if (!_broker.manner().has(Habit::makesAnMiForEachClass)) return false;
    const auto first = std::find_if(slots.begin(), slots.end(), [&slot](const Slot* other) {
        return &other->provider->module == &slot.provider->module && other->kind() == slot.kind();
    });
    return *first != &slot;
}

// False when the MI stays and can be called again.
bool ModuleHost::_agreesToLeave(Slot& slot) noexcept {
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
    const Table& table = *_tables.back();
    const auto found = table.modules.find(module);
    if (found == table.modules.end() || !found->second->code || _isStopping) {
        return UnloadOutcome::notLoaded;
    }
    Hosted& hosted = *found->second;
    const std::vector<Slot*> slots = _slotsOf(hosted);
    std::vector<Slot*> leaving;
    leaving.reserve(slots.size());
    if (_isHeld(&hosted) || !_closeIfIdle(slots)) return UnloadOutcome::busy;
    std::list<Hold> holds;
    for (const auto& [name, provider] : table.providers) {
        if (&provider->module == &hosted) holds.emplace_back(*this, lock, *provider);
    }
    lock.unlock();
    for (Slot* const slot : slots) {
        if (_isSpared(*slot, slots) || _agreesToLeave(*slot)) leaving.push_back(slot);
    }
    lock.lock();
    const bool isEmpty = leaving.size() == slots.size();
    const bool goesOn = !isEmpty && _broker.manner().has(Habit::goesOnAfterRefusedUnload);
    for (Slot* const slot : leaving) {
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

std::shared_ptr<ModuleHost::Hosted> ModuleHost::_loadAnew(Hosted& before) {
    auto module = std::make_shared<Hosted>(before.name);
    try {
        module->code = Module::load(before.name, _folders, ModuleSource::copy);
        return module;
    } catch (const CimError& error) {
        const std::string text = std::string("the module stays as it was: ") + error.what();
        _broker.log().write(BrokerLog::Level::error, before.name, text);
        const std::lock_guard lock(_mutex);
        before.failure = text;
        return nullptr;
    }
}

void ModuleHost::renew(
    std::optional<Registrations> registrations, const std::set<std::string>& changed,
    const std::function<std::optional<StaticModule>(const std::string&)>& partOf) {
    const Table& old = *_tables.back();
    auto table =
        _makeTable(registrations ? registrationsFor(_broker.manner(), std::move(*registrations))
                                 : old.registrations.clone());
    for (const Registration& each : table->registrations.all()) {
        auto& module = table->modules[each.module];
        if (module) continue;
        const auto before = old.modules.find(each.module);
        if (before == old.modules.end()) {
            module = std::make_shared<Hosted>(each.module);
            module->factories = partOf(each.module);
            continue;
        }
        module = before->second;
        if (module->factories || !changed.contains(each.module)) continue;
        const bool isLoaded = [&] {
            const std::lock_guard lock(_mutex);
            if (!module->code) module->failure.clear();  // it was that of another file
            return module->code != nullptr;
        }();
        if (auto fresh = isLoaded ? _loadAnew(*module) : nullptr) module = std::move(fresh);
    }
    for (const Registration& each : table->registrations.all()) {
        const std::string sharers = sharersOf(_broker.manner(), each);
        auto& provider = table->providers[sharers];
        if (provider) continue;
        Hosted& module = *table->modules.at(each.module);
        const auto before = old.providers.find(sharers);
        const bool stays = before != old.providers.end() && &before->second->module == &module;
        provider = stays ? before->second : std::make_shared<Provider>(each, module);
    }
    _publish(std::move(table));
}

// What the table does not have any more gets no further call.
void ModuleHost::_publish(std::unique_ptr<Table> table) {
    const std::lock_guard lock(_mutex);
    // Lest an MI that is made find no room.
    _created.reserve(_created.size() + table->providers.size() * providerTypeCount);
    _loaded.reserve(_loaded.size() + table->modules.size());
    const Table* const old = _tables.empty() ? nullptr : _tables.back().get();
    _tables.push_back(std::move(table));
    const Table& next = *_tables.back();
    _table.store(&next, std::memory_order_release);
    if (!old) return;
    for (const auto& [name, module] : next.modules) {
        const bool isNew = std::find(_loaded.begin(), _loaded.end(), module.get()) == _loaded.end();
        if (module->code && isNew) _loaded.push_back(module.get());
    }
    for (const auto& [name, module] : old->modules) {
        const auto found = next.modules.find(name);
        module->isReplaced = found == next.modules.end() || found->second != module;
    }
    for (const auto& [name, provider] : old->providers) {
        const auto found = next.providers.find(name);
        provider->isReplaced = found == next.providers.end() || found->second != provider;
    }
    for (Slot* const slot : _created) {
        if (slot->provider->isReplaced) slot->gate.close();
    }
}

bool ModuleHost::releaseReplaced() {
    const std::lock_guard alone(_shutDown);
    std::vector<Hosted*> modules;
    {
        const std::lock_guard lock(_mutex);
        if (_isStopping) return false;
        for (Hosted* const each : _loaded) {
            const std::vector<Slot*> slots = _slotsOf(*each);
            const bool hasReplaced = std::ranges::any_of(
                slots, [](const Slot* slot) { return slot->provider->isReplaced; });
            if (each->isReplaced || hasReplaced) modules.push_back(each);
        }
    }
    bool isLeft = false;
    for (Hosted* const each : modules) isLeft = !_releaseReplaced(*each) || isLeft;
    return isLeft;
}

// True when nothing of it is left.
bool ModuleHost::_releaseReplaced(Hosted& module) {
    std::unique_lock lock(_mutex);
    const std::vector<Slot*> slots = _slotsOf(module);
    const auto now = std::chrono::steady_clock::now();
    bool isLeft = _isHeld(&module);
    for (Slot* const slot : slots) {
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
    for (Slot* const slot : _created) slot->gate.close();
    const bool isMade = waitUntil(_released, lock, end, [this] { return !_isHeld(nullptr); });
    const std::vector<Slot*> created(_created.rbegin(), _created.rend());
    // The lock is not held while MIs are cleaned up: one may wait for its own thread, and that
    // thread may want the lock only to be refused.
    lock.unlock();
    const bool isIdle = std::all_of(created.begin(), created.end(),
                                    [end](Slot* slot) { return slot->gate.waitUntilIdle(end); });
    for (Slot* const slot : created) {
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
        const std::vector<Hosted*> loaded(_loaded.rbegin(), _loaded.rend());
        for (Hosted* const module : loaded) {
            if (!_slotsOf(*module).empty() || _isHeld(module)) continue;
            std::erase(_loaded, module);
            unused.push_back(std::move(module->code));
        }
    }
    for (std::unique_ptr<Module>& code : unused) code.reset();
}

}  // namespace cimhost
