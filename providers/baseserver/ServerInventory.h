#pragma once

#include "common/CmpiManagedInstanceCollection.h"
#include "common/OpstatusUtils.h"
#include "platform/logger/Logger.h"
#include "providers/baseserver/PciBus.h"
#include "providers/baseserver/PciNames.h"
#include "providers/baseserver/ServerFacts.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace baseserver {

/// Where the inventory gets its data; replaced in tests.
struct InventorySources {
    std::function<ServerFacts(Logger&)> facts = readServerFacts;
    std::function<std::vector<PciFunction>()> pciFunctions = [] { return readPciFunctions(); };
    std::function<std::chrono::steady_clock::time_point()> now = std::chrono::steady_clock::now;
    std::function<std::map<PciId, std::string>(const std::set<PciId>&)> pciNames =
        [](const auto& wanted) { return findPciNames(wanted); };
};

/// Keeps a collection of managed instances in step with the hardware.
///
/// What vanished is hidden, so that it stops being reported at once; what changed is hidden when
/// its successor is in; then the hidden instances are purged. Safe from several threads. A refresh
/// that throws leaves what was reported before, and the next one reads again.
class ServerInventory {
public:
    /// Data younger than this are not read again: what the firmware says changes with a restart
    /// only, devices come and go.
    static constexpr std::chrono::seconds factsFreshness{60};
    static constexpr std::chrono::seconds devicesFreshness{2};

    /// The collection outlives the inventory, and nobody else adds to it.
    ServerInventory(PYL::CmpiManagedInstanceCollection& collection, Logger& log,
                    InventorySources sources = {});

    /// Reads the hardware again unless the data are fresh.
    void refresh();

    /// Reads the hardware again, however fresh the data are.
    void refreshNow();

    /// The worst state of the PCI devices at the last refresh.
    PYL::operationalStatus groupStatus();

private:
    using Instances = std::vector<PYL::CmpiManagedInstance*>;

    struct ReportedFunction {
        std::optional<PciFunction> function;  // none until its instances are in
        Instances instances;  // the device and its link to the system, owned by the collection
    };

    using Time = std::chrono::steady_clock::time_point;

    void _update(bool factsDue, bool devicesDue, Time now);
    void _updateServer();
    void _updatePciFunctions();
    std::map<PciId, std::string> _namesOfNew(const std::vector<PciFunction>& functions);
    void _updatePciGroup();
    void _replace(Instances& reported,
                  std::vector<std::unique_ptr<PYL::CmpiManagedInstance>> instances);

    Logger _log;
    InventorySources _sources;
    PYL::CmpiManagedInstanceCollection& _collection;

    std::mutex _refreshing;
    std::optional<Time> _factsUpdated;
    std::optional<Time> _devicesUpdated;
    std::shared_ptr<const ServerFacts> _facts;
    Instances _server;
    std::map<PciAddress, ReportedFunction> _functions;
    std::optional<PYL::operationalStatus> _groupStatus;
    Instances _group;
};

}  // namespace baseserver
