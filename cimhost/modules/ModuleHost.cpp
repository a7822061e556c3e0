#include "cimhost/modules/ModuleHost.h"

#include "cimhost/modules/ModuleHostHold.h"
#include "cimhost/modules/ProviderStatus.h"
#include "cimhost/modules/RunningCall.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/repository/CimError.h"

#include <algorithm>
#include <optional>

namespace cimhost {

namespace {

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

}  // namespace

ModuleHost::ModuleHost(const Broker& broker, Registrations registrations,
                       std::vector<std::filesystem::path> folders, ModuleSource source)
    : _broker(broker), _folders(std::move(folders)), _source(source) {
    _tables.push_back(std::make_unique<ModuleTable>());
    renew(std::move(registrations), {}, [](const std::string&) { return std::nullopt; });
}

ModuleHost::~ModuleHost() { shutDown(); }

const Registrations& ModuleHost::registrations() const noexcept {
    return _table.load(std::memory_order_acquire)->registrations;
}

void ModuleHost::addStatic(const std::string& module, StaticModule factories) {
    auto& hosted = _tables.back()->modules[module];
    if (!hosted) hosted = std::make_shared<HostedModule>(module);
    hosted->factories = std::move(factories);
}

std::string cannotBeLoaded(const std::string& module) {
    return "module " + module + " cannot be loaded: ";
}

ModuleState ModuleHost::stateOf(const std::string& module) const {
    const ModuleTable& table = *_table.load(std::memory_order_acquire);
    const std::lock_guard lock(_mutex);
    return table.stateOf(module);
}

HostedProvider& ModuleHost::_providerOf(const Registration& registration) const {
    const ModuleTable& table = *_table.load(std::memory_order_acquire);
    if (auto* const found = table.find(_broker.manner(), registration)) return *found;
    throw CimError(CimCode::failed, "provider " + registration.provider + " is registered no more");
}

template <typename MI>
MiUse<MI> ModuleHost::use(const Registration& registration) {
    for (;;) {
        HostedProvider& provider = _providerOf(registration);
        auto& slot = std::get<TypedMiSlot<MI>>(provider.slots);
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
bool ModuleHost::_waitsForMe(const HostedProvider& provider) const noexcept {
    const std::thread::id self = std::this_thread::get_id();
    const HostedProvider* held = &provider;
    while (held->holds != 0 && held->owner != self) {
        const auto found = _awaited.find(held->owner);
        if (found == _awaited.end()) return false;
        held = found->second;
    }
    return held->holds != 0;
}

// Whether MIs are being made or cleaned up, of this module or of any.
bool ModuleHost::_isHeld(const HostedModule* module) const noexcept {
    return std::ranges::any_of(_tables, [module](const auto& table) {
        return std::ranges::any_of(table->providers, [module](const auto& each) {
            const HostedProvider& provider = *each.second;
            return provider.holds != 0 && (!module || &provider.module == module);
        });
    });
}

// On return the caller is inside the gate, unless the provider has been replaced.
template <typename MI>
bool ModuleHost::_start(HostedProvider& provider, TypedMiSlot<MI>& slot) {
    _refuseWhenStopping();
    try {
        std::unique_lock lock(_mutex);
        const Hold hold(*this, lock, provider);
        if (provider.isReplaced) return false;
        if (!_isStopping && slot.gate.enter()) return true;  // another thread was faster
        if (!_isStopping) {
            if (slot.isBusy) Hold::refuseWhileBusy(provider);
            const BusyMark busy(slot);
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
void ModuleHost::_noteFailure(MiSlot& slot, const std::string& text) noexcept try {
    const std::lock_guard lock(_mutex);
    if (slot.provider->module.code) slot.failure = text;
} catch (const std::bad_alloc&) {
    return;
}

template <typename MI>
MI* ModuleHost::_create(HostedProvider& provider) {
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

void ModuleHost::_load(HostedModule& module) {
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

std::shared_ptr<HostedModule> ModuleHost::_loadAnew(HostedModule& before) {
    {
        const std::lock_guard lock(_mutex);
        if (!before.code) {
            before.failure.clear();  // it was that of another file
            return nullptr;
        }
    }
    auto module = std::make_shared<HostedModule>(before.name);
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
    const auto renewed = [&](const std::string& name, const std::shared_ptr<HostedModule>& before) {
        if (!before) {
            auto module = std::make_shared<HostedModule>(name);
            module->factories = partOf(name);
            return module;
        }
        const bool isStale = !before->factories && changed.contains(name);
        auto fresh = isStale ? _loadAnew(*before) : nullptr;
        return fresh ? fresh : before;
    };
    _publish(std::make_unique<ModuleTable>(*_tables.back(), _broker.manner(),
                                           std::move(registrations), renewed));
}

// What the table does not have any more gets no further call.
void ModuleHost::_publish(std::unique_ptr<ModuleTable> table) {
    const std::lock_guard lock(_mutex);
    // Lest an MI that is made find no room.
    _created.reserve(_created.size() + table->providers.size() * providerTypeCount);
    _loaded.reserve(_loaded.size() + table->modules.size());
    const ModuleTable& old = *_tables.back();
    const ModuleTable& next = *table;
    _tables.push_back(std::move(table));
    _table.store(&next, std::memory_order_release);
    for (const auto& [name, module] : next.modules) {
        const bool isNew = std::ranges::find(_loaded, module.get()) == _loaded.end();
        if (module->code && isNew) _loaded.push_back(module.get());
    }
    for (const auto& [name, module] : old.modules) {
        const auto found = next.modules.find(name);
        module->isReplaced = found == next.modules.end() || found->second != module;
    }
    for (const auto& [name, provider] : old.providers) {
        const auto found = next.providers.find(name);
        provider->isReplaced = found == next.providers.end() || found->second != provider;
    }
    for (MiSlot* const slot : _created) {
        if (slot->provider->isReplaced) slot->gate.close();
    }
}

}  // namespace cimhost
