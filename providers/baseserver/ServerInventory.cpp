#include "providers/baseserver/ServerInventory.h"

#include "providers/baseserver/ServerAssociations.h"
#include "providers/baseserver/ServerInstances.h"
#include "toolkit/StatusProperties.h"

#include <set>

namespace baseserver {

using PYL::CmpiManagedInstance;

ServerInventory::ServerInventory(PYL::CmpiManagedInstanceCollection& collection, Logger& log,
                                 InventorySources sources)
    : _log(log), _sources(std::move(sources)), _collection(collection) {}

namespace {

void setVisible(const std::vector<CmpiManagedInstance*>& instances, bool visible) {
    for (auto* instance : instances) instance->setVisible(visible);
}

std::optional<PciId> idOf(const PciFunction& function) {
    if (!function.vendorId || !function.deviceId) return std::nullopt;
    return PciId(*function.vendorId, *function.deviceId);
}

std::optional<std::string> nameOf(const PciFunction& function,
                                  const std::map<PciId, std::string>& names) {
    const auto id = idOf(function);
    const auto name = id ? names.find(*id) : names.end();
    return name == names.end() ? std::nullopt : std::optional(name->second);
}

}  // namespace

void ServerInventory::refresh() {
    const std::lock_guard lock(_refreshing);
    const auto now = _sources.now();
    const auto isDue = [now](const std::optional<Time>& updated, std::chrono::seconds freshness) {
        return !updated || now - *updated >= freshness;
    };
    _update(isDue(_factsUpdated, factsFreshness), isDue(_devicesUpdated, devicesFreshness), now);
}

void ServerInventory::refreshNow() {
    const std::lock_guard lock(_refreshing);
    _update(true, true, _sources.now());
}

void ServerInventory::_update(bool factsDue, bool devicesDue, Time now) {
    if (factsDue) {
        _updateServer();
        _factsUpdated = now;
    }
    if (devicesDue) {
        _updatePciFunctions();
        _updatePciGroup();
        _devicesUpdated = now;
    }
    if (factsDue || devicesDue) _collection.cleanup();
}

/// Puts instances into the place of those reported so far. When it throws, these stay.
void ServerInventory::_replace(Instances& reported,
                               std::vector<std::unique_ptr<CmpiManagedInstance>> instances) {
    Instances added;
    added.reserve(instances.size());
    // Hidden until all are in: what a failure half-way leaves behind is purged unseen.
    for (auto& instance : instances) {
        instance->setVisible(false);
        _collection.createInstance(instance.get());
        added.push_back(instance.release());
    }
    setVisible(reported, false);
    setVisible(added, true);
    reported.swap(added);
}

void ServerInventory::_updateServer() {
    auto facts = std::make_shared<const ServerFacts>(_sources.facts(_log));
    if (_facts && *_facts == *facts) return;
    std::vector<std::unique_ptr<CmpiManagedInstance>> instances;
    instances.push_back(std::make_unique<ComputerSystemInstance>(facts));
    instances.push_back(std::make_unique<ChassisInstance>(facts));
    instances.push_back(computerSystemPackage());
    _replace(_server, std::move(instances));
    _facts = std::move(facts);
}

std::map<PciId, std::string> ServerInventory::_namesOfNew(
    const std::vector<PciFunction>& functions) {
    std::set<PciId> wanted;
    for (const auto& function : functions) {
        const auto reported = _functions.find(function.address);
        const bool isNew = reported == _functions.end() || reported->second.function != function;
        if (isNew && idOf(function)) wanted.insert(*idOf(function));
    }
    return _sources.pciNames(wanted);
}

void ServerInventory::_updatePciFunctions() {
    std::set<PciAddress> present;
    const auto functions = _sources.pciFunctions();
    const auto names = _namesOfNew(functions);
    for (const auto& function : functions) {
        present.insert(function.address);
        auto& reported = _functions[function.address];
        if (reported.function == function) continue;
        std::vector<std::unique_ptr<CmpiManagedInstance>> instances;
        instances.push_back(std::make_unique<PciDeviceInstance>(function, nameOf(function, names)));
        instances.push_back(systemPciDevice(function.address));
        auto known = std::make_optional(function);
        _replace(reported.instances, std::move(instances));
        reported.function.swap(known);
    }
    std::erase_if(_functions, [&](const auto& reported) {
        if (present.contains(reported.first)) return false;
        setVisible(reported.second.instances, false);
        return true;
    });
}

PYL::operationalStatus ServerInventory::groupStatus() {
    const std::lock_guard lock(_refreshing);
    return _groupStatus.value_or(PYL::statusUnknown);
}

void ServerInventory::_updatePciGroup() {
    const auto worst = PYL::worstStatus(_functions, [](const auto& function) {
        const auto& reported = function.second.function;
        return reported ? statusOf(*reported) : PYL::statusUnknown;
    });
    if (_groupStatus == worst) return;
    std::vector<std::unique_ptr<CmpiManagedInstance>> instances;
    instances.push_back(std::make_unique<PciDeviceGroupInstance>(worst));
    _replace(_group, std::move(instances));
    _groupStatus = worst;
}

}  // namespace baseserver
