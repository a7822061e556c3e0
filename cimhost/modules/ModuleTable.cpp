#include "cimhost/modules/ModuleTable.h"

#include "cimhost/objects/Manner.h"

namespace cimhost {
namespace {

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

template <typename Entry>
std::shared_ptr<Entry> findIn(const std::map<std::string, std::shared_ptr<Entry>>& entries,
                              const std::string& name) {
    const auto found = entries.find(name);
    return found == entries.end() ? nullptr : found->second;
}

}  // namespace

ModuleTable::ModuleTable(const ModuleTable& before, const Manner& manner,
                         std::optional<Registrations> renewed, const ModuleForTable& moduleFor)
    : registrations(renewed ? registrationsFor(manner, *std::move(renewed))
                            : before.registrations.clone()) {
    for (const Registration& each : registrations.all()) {
        auto& module = modules[each.module];
        if (!module) module = moduleFor(each.module, findIn(before.modules, each.module));
    }
    for (const Registration& each : registrations.all()) {
        const std::string sharers = sharersOf(manner, each);
        auto& provider = providers[sharers];
        if (provider) continue;
        HostedModule& module = *modules.at(each.module);
        provider = findIn(before.providers, sharers);
        if (!provider || &provider->module != &module) {
            provider = std::make_shared<HostedProvider>(each, module);
        }
    }
}

HostedProvider* ModuleTable::find(const Manner& manner, const Registration& registration) const {
    // Asked for each call: the usual name is there already and needs no copy.
    const bool isShared = !manner.has(Habit::makesAnMiForEachClass);
    const auto found = isShared ? providers.find(registration.provider)
                                : providers.find(sharersOf(manner, registration));
    return found == providers.end() ? nullptr : found->second.get();
}

ModuleState ModuleTable::stateOf(const std::string& module) const {
    const auto hosted = findIn(modules, module);
    if (!hosted) return {};
    ModuleState state{hosted->code != nullptr};
    const auto note = [&state](const std::string& failure) {
        if (!failure.empty()) state.failures.push_back(failure);
    };
    note(hosted->failure);
    for (const auto& [name, provider] : providers) {
        if (&provider->module != hosted.get()) continue;
        std::apply([&note](const auto&... slot) { (note(slot.failure), ...); }, provider->slots);
    }
    return state;
}

}  // namespace cimhost
