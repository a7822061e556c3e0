#pragma once

#include "cimhost/modules/CallGate.h"
#include "cimhost/modules/Module.h"
#include "cimhost/modules/Registration.h"

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

namespace cimhost {

class Manner;

// What a ModuleHost keeps of modules, providers and MIs, and whose lock guards it.

struct HostedModule {
    explicit HostedModule(std::string itsName) : name(std::move(itsName)) {}

    std::string name;
    std::optional<StaticModule> factories;  ///< of a part of this program
    std::mutex loading;                     ///< held while it is loaded
    std::unique_ptr<Module> code;           ///< null while it is not loaded
    std::string failure;                    ///< why it is not, or not anew; empty: none
    bool isReplaced = false;                ///< no further call comes to it
};

struct HostedProvider;

/// One MI and who is using it.
struct MiSlot {
    virtual ~MiSlot() = default;
    virtual CMPIStatus cleanUp(const CMPIContext* context, bool isTerminating) = 0;
    virtual ProviderType kind() const noexcept = 0;

    HostedProvider* provider = nullptr;
    CallGate gate;           ///< open while the MI may be called
    bool isBusy = false;     ///< being made or cleaned up
    bool isForever = false;  ///< the MI asked never to be unloaded
    std::string failure;     ///< why it was not made; empty: none
};

/// The MI is being made or cleaned up while this lives.
class BusyMark {
public:
    explicit BusyMark(MiSlot& slot) noexcept : _slot(slot) { _slot.isBusy = true; }
    ~BusyMark() { _slot.isBusy = false; }
    BusyMark(const BusyMark&) = delete;
    BusyMark& operator=(const BusyMark&) = delete;

private:
    MiSlot& _slot;
};

template <typename MI>
struct TypedMiSlot final : MiSlot {
    CMPIStatus cleanUp(const CMPIContext* context, bool isTerminating) override {
        if (!mi->ft->cleanup) return {CMPI_RC_OK, nullptr};
        return mi->ft->cleanup(mi, context, isTerminating ? 1 : 0);
    }
    ProviderType kind() const noexcept override { return MiKind<MI>::type; }

    MI* mi = nullptr;
};

struct HostedProvider {
    HostedProvider(const Registration& registration, HostedModule& home)
        : name(registration.provider), nameSpace(registration.nameSpace), module(home) {
        std::apply([this](auto&... slot) { ((slot.provider = this), ...); }, slots);
    }

    std::string name;
    std::string nameSpace;  ///< one it is registered for
    HostedModule& module;
    bool isReplaced = false;  ///< no further call comes to it
    unsigned holds = 0;       ///< how often a thread holds it, which makes or cleans up its MIs
    std::thread::id owner;    ///< that thread
    std::atomic<unsigned> leaks = 0;  ///< calls that left clones
    std::tuple<TypedMiSlot<CMPIInstanceMI>, TypedMiSlot<CMPIAssociationMI>,
               TypedMiSlot<CMPIMethodMI>, TypedMiSlot<CMPIIndicationMI>>
        slots;
};

/// What has become of a module.
struct ModuleState {
    bool isLoaded = false;
    /// Why it, or an MI of it, could not be made the last time it was tried.
    std::vector<std::string> failures{};
};

/// What calls go by: registrations, with the modules and providers that they name.
struct ModuleTable {
    /// The module of this name in the next table; `before`, which may be null, has it in the last.
    using ModuleForTable = std::function<std::shared_ptr<HostedModule>(
        const std::string& name, const std::shared_ptr<HostedModule>& before)>;

    /// Without any registration.
    ModuleTable() = default;

    /// By these registrations, or without any by those of before. A provider whose module stays is
    /// that of before.
    ModuleTable(const ModuleTable& before, const Manner& manner,
                std::optional<Registrations> renewed, const ModuleForTable& moduleFor);

    /// Null when it is registered no more.
    HostedProvider* find(const Manner& manner, const Registration& registration) const;

    /// Of the module with this name. With the host's lock held.
    ModuleState stateOf(const std::string& module) const;

    Registrations registrations;
    std::map<std::string, std::shared_ptr<HostedModule>> modules;
    std::map<std::string, std::shared_ptr<HostedProvider>> providers;
};

}  // namespace cimhost
