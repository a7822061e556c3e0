#include "providers/baseserver/ServerInventory.h"

#include <set>

#include "providers/baseserver/ServerAssociations.h"
#include "providers/baseserver/ServerInstances.h"

namespace baseserver {

using PYL::CmpiManagedInstance;

ServerInventory::ServerInventory(Logger& log, InventorySources sources)
    : _log(log), _sources(std::move(sources)), _collection(log) {}

namespace {

void setVisible(std::vector<CmpiManagedInstance*> const& instances, bool visible) {
    for (auto* instance : instances) instance->setVisible(visible);
}

}  // namespace

bool ServerInventory::isDue(std::optional<Time> const& updated, Time now,
                            std::chrono::seconds freshness) {
    return !updated || now - *updated >= freshness;
}

void ServerInventory::refresh() {
    std::lock_guard const lock(_refreshing);
    auto const now = _sources.now();
    bool const factsDue = isDue(_factsUpdated, now, factsFreshness);
    bool const devicesDue = isDue(_devicesUpdated, now, devicesFreshness);
    update(factsDue, devicesDue, now);
}

void ServerInventory::refreshNow() {
    std::lock_guard const lock(_refreshing);
    update(true, true, _sources.now());
}

void ServerInventory::update(bool factsDue, bool devicesDue, Time now) {
    if (factsDue) {
        updateServer();
        _factsUpdated = now;
    }
    if (devicesDue) {
        updatePciFunctions();
        updatePciGroup();
        _devicesUpdated = now;
    }
    if (factsDue || devicesDue) _collection.cleanup();
}

/// Puts instances into the place of those reported so far. When it throws, these stay.
void ServerInventory::replace(Instances& reported,
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

void ServerInventory::updateServer() {
    auto facts = std::make_shared<ServerFacts const>(_sources.facts(_log));
    if (_facts && *_facts == *facts) return;
    std::vector<std::unique_ptr<CmpiManagedInstance>> instances;
    instances.push_back(std::make_unique<ComputerSystemInstance>(facts));
    instances.push_back(std::make_unique<ChassisInstance>(facts));
    instances.push_back(std::make_unique<ComputerSystemPackageAssociation>());
    replace(_server, std::move(instances));
    _facts = std::move(facts);
}

void ServerInventory::updatePciFunctions() {
    std::set<PciAddress> present;
    for (auto const& function : _sources.pciFunctions()) {
        present.insert(function.address);
        auto& reported = _functions[function.address];
        if (reported.function == function) continue;
        std::vector<std::unique_ptr<CmpiManagedInstance>> instances;
        instances.push_back(std::make_unique<PciDeviceInstance>(function));
        instances.push_back(std::make_unique<SystemPciDeviceAssociation>(function.address));
        auto known = std::make_optional(function);
        replace(reported.instances, std::move(instances));
        reported.function.swap(known);
    }
    std::erase_if(_functions, [&](auto const& reported) {
        if (present.contains(reported.first)) return false;
        setVisible(reported.second.instances, false);
        return true;
    });
}

PYL::operationalStatus ServerInventory::groupStatus() {
    std::lock_guard const lock(_refreshing);
    return _groupStatus.value_or(PYL::statusUnknown);
}

void ServerInventory::updatePciGroup() {
    auto worst = PYL::statusUnknown;
    for (auto const& [address, reported] : _functions)
        if (reported.function) worst = PYL::updateWorst(worst, statusOf(*reported.function));
    if (_groupStatus == worst) return;
    std::vector<std::unique_ptr<CmpiManagedInstance>> instances;
    instances.push_back(std::make_unique<PciDeviceGroupInstance>(worst));
    replace(_group, std::move(instances));
    _groupStatus = worst;
}

}  // namespace baseserver
