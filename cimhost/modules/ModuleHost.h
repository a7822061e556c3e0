#pragma once

#include "cimhost/modules/CallGate.h"
#include "cimhost/modules/ModuleTable.h"
#include "cimhost/modules/Registration.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace cimhost {

class Broker;

/// An MI during one call: it is not cleaned up, nor its module unloaded, while this lives.
template <typename MI>
class MiUse {
public:
    /// The call has entered the gate already.
    MiUse(MI* mi, CallGate& gate, std::string_view module, std::string_view provider,
          std::atomic<unsigned>& leaks) noexcept
        : _mi(mi), _gate(&gate), _module(module), _provider(provider), _leaks(&leaks) {}
    MiUse(MiUse&& other) noexcept
        : _mi(other._mi),
          _gate(std::exchange(other._gate, nullptr)),
          _module(other._module),
          _provider(other._provider),
          _leaks(other._leaks) {}
    MiUse& operator=(MiUse&&) = delete;
    ~MiUse() {
        if (_gate) _gate->leave();
    }

    MI* get() const noexcept { return _mi; }

    /// The MI takes no more calls: its module has been replaced, or all are shutting down.
    bool isLeaving() const noexcept { return _gate->isClosed(); }

    std::string_view module() const noexcept { return _module; }
    std::string_view provider() const noexcept { return _provider; }

    /// The number of the provider's calls that left clones, with this one.
    unsigned countLeak() const noexcept { return ++*_leaks; }

private:
    MI* _mi;
    CallGate* _gate;
    std::string_view _module;
    std::string_view _provider;
    std::atomic<unsigned>* _leaks;
};

enum class UnloadOutcome {
    unloaded,   ///< every MI was cleaned up and the library closed
    notLoaded,  ///< there was nothing to unload
    busy,       ///< a call was in progress, or an MI is being made: nothing was done
    kept,       ///< an MI wants to stay; those that do not are cleaned up and made anew when needed
};

/// How the words begin in which a module is refused whose library is not there, or not in order.
std::string cannotBeLoaded(const std::string& module);

/// Loads the modules that registrations name and makes their MIs.
///
/// An MI is made when the first call needs it, once for each provider and type, so that a module
/// that cannot be loaded delays nobody and is tried again at the next call. Making and cleaning up
/// go one at a time for each provider, on the thread that asks, so that a factory that hangs keeps
/// its own provider alone; a factory may make up-calls. Safe from several threads, addStatic and
/// limitWaits excepted. The broker must outlive the host.
class ModuleHost {
public:
    /// How long a call waits for another thread that makes or cleans up what it needs.
    static constexpr std::chrono::minutes longestWait{1};

    /// `folders` are where modules are looked for, in this order.
    ModuleHost(const Broker& broker, Registrations registrations,
               std::vector<std::filesystem::path> folders,
               ModuleSource source = ModuleSource::file);

    /// Shuts down and waits for calls in progress, however long they take.
    ~ModuleHost();

    ModuleHost(const ModuleHost&) = delete;
    ModuleHost& operator=(const ModuleHost&) = delete;

    /// The module is part of this program and not looked for in the folders. Before its first use.
    void addStatic(const std::string& module, StaticModule factories);

    /// Calls wait no longer than this. Before its first use.
    void limitWaits(std::chrono::milliseconds longest) noexcept { _longestWait = longest; }

    /// Those of now. A reference stays good when they are renewed.
    const Registrations& registrations() const noexcept;

    /// Of the module with this name, as it is now.
    ModuleState stateOf(const std::string& module) const;

    /// From now on calls go by these registrations, or without any by those of before, and to
    /// modules that are loaded anew if they are among the changed and loaded already. Calls that
    /// run end in what they began in. A module that cannot be loaded is logged and stays as it was.
    /// `partOf` tells the factories of modules that are new. One renewal at a time.
    void renew(std::optional<Registrations> registrations, const std::set<std::string>& changed,
               const std::function<std::optional<StaticModule>(const std::string&)>& partOf);

    /// Cleans up, terminating, and unloads what was replaced and is not in use any more. True when
    /// something still is: ask again.
    bool releaseReplaced();

    /// The MI of the registered provider for a call, made when it is not there yet. MI is one of
    /// CMPIInstanceMI, CMPIAssociationMI, CMPIMethodMI, CMPIIndicationMI; the registration is one
    /// of this host's, now or before. Throws CimError: serverIsShuttingDown; failed when it is
    /// registered no more; and, with a line in the log each time, failed when the module cannot be
    /// loaded, has no such entry point, made no MI, when another thread makes it for too long, or
    /// when the MI is asked for while it is being made, on this thread or on one that waits for
    /// what this thread makes; accessDenied and notSupported as the factory says.
    template <typename MI>
    MiUse<MI> use(const Registration& registration);

    /// Asks the module's MIs to clean up, not terminating, and closes the library when all did. One
    /// that answers CMPI_RC_DO_NOT_UNLOAD will be asked again next time, one that answers
    /// CMPI_RC_NEVER_UNLOAD no more until shutDown. A later call makes the MIs anew. Calls that
    /// need an MI of the module made wait meanwhile: a cleanup must not wait for a thread that
    /// makes such up-calls.
    UnloadOutcome unload(const std::string& module);

    /// Refuses new calls, waits for those in progress and for MIs being made, cleans every MI up,
    /// terminating, and closes the libraries, both in reverse order. False when one of them did not
    /// end within `patience`; what it runs in stays as it is then, and another shutDown may follow.
    /// Not from within a call.
    bool shutDown(std::chrono::milliseconds patience = std::chrono::milliseconds::max());

private:
    class Hold;

    HostedProvider& _providerOf(const Registration& registration) const;
    std::shared_ptr<HostedModule> _loadAnew(HostedModule& before);
    void _publish(std::unique_ptr<ModuleTable> table);
    bool _releaseReplaced(HostedModule& module);
    template <typename MI>
    bool _start(HostedProvider& provider, TypedMiSlot<MI>& slot);
    template <typename MI>
    MI* _create(HostedProvider& provider);
    void _load(HostedModule& module);
    void _noteFailure(MiSlot& slot, const std::string& text) noexcept;
    bool _waitsForMe(const HostedProvider& provider) const noexcept;
    bool _isHeld(const HostedModule* module) const noexcept;
    void _remove(MiSlot& slot) noexcept;
    CMPIStatus _cleanUp(MiSlot& slot, bool isTerminating) noexcept;
    std::vector<MiSlot*> _slotsOf(const HostedModule& module) const;
    bool _closeIfIdle(const std::vector<MiSlot*>& slots) noexcept;
    bool _isSpared(const MiSlot& slot, const std::vector<MiSlot*>& slots) const noexcept;
    bool _agreesToLeave(MiSlot& slot) noexcept;
    void _refuseWhenStopping() const;
    void _closeUnused();

    const Broker& _broker;
    std::vector<std::filesystem::path> _folders;
    ModuleSource _source;
    std::chrono::milliseconds _longestWait = longestWait;

    // Read without a lock. All that ever were stay, for calls and others that refer to them: each
    // is small, and their libraries are closed.
    std::atomic<const ModuleTable*> _table = nullptr;
    std::vector<std::unique_ptr<ModuleTable>> _tables;

    // Guards what follows, who holds which provider, and what failed; never held while code of a
    // module runs.
    mutable std::mutex _mutex;
    std::condition_variable _released;
    std::map<std::thread::id, const HostedProvider*> _awaited;  // by the thread that waits for it
    std::vector<MiSlot*> _created;                              // in order of creation
    std::vector<HostedModule*> _loaded;                         // in order of loading
    std::atomic<bool> _isStopping = false;
    std::mutex _shutDown;  // one shutDown at a time
};

}  // namespace cimhost
