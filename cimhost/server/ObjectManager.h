#pragma once

#include "cimhost/cimxml/Handler.h"
#include "cimhost/indications/IndicationRoutes.h"
#include "cimhost/indications/Subscriptions.h"
#include "cimhost/modules/ModuleHost.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/operations/Operations.h"
#include "cimhost/server/CimXmlAdapter.h"
#include "cimhost/server/IndicationDelivery.h"
#include "cimhost/server/ModuleCatalogue.h"
#include "cimhost/server/events/ConsoleOutlet.h"
#include "cimhost/server/isolation/IsolatedModules.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace cimhost {

struct IndicationSettings {
    DeliverySettings delivery;
    std::optional<std::filesystem::path> stateFile;  ///< none: subscriptions end with the server
};

/// How an object manager has ended.
enum class Shutdown {
    orderly,
    withLosses,  ///< a module's process did not clean up
    incomplete,  ///< a call into a module did not end in time: it must not be destroyed
};

/// A repository, the modules that serve its classes, the subscriptions to their indications, and
/// the CIM-XML door to all of it, put together.
class ObjectManager {
public:
    /// The repository is complete; it, the log and the feed outlive this object. Subscriptions that
    /// are kept take effect. Throws as Subscriptions::restore.
    ObjectManager(const Repository& repository, Registrations registrations,
                  std::vector<std::filesystem::path> providerFolders, BrokerLog& log,
                  const IndicationSettings& indications = {}, const Manner& manner = {},
                  std::optional<IsolationSettings> isolation = {},
                  ResultPolicy results = ResultPolicy::warn,
                  ModuleSource modules = ModuleSource::file, EventFeed* feed = nullptr);
    ObjectManager(const ObjectManager&) = delete;
    ObjectManager& operator=(const ObjectManager&) = delete;

    HttpHandler& httpHandler() noexcept { return _adapter; }

    /// Those of now. A reference stays good when they are renewed.
    const Registrations& registrations() const noexcept { return _modules.registrations(); }

    /// The names of all modules that are registered.
    std::set<std::string> modules() const;

    /// Takes changed modules into service, and with registrations, once the repository has been
    /// replaced, those too. What runs ends as it began; subscriptions stay. Call releaseReplaced
    /// until it answers false then. Both for one thread, which does not shut this down meanwhile.
    void renew(std::optional<Registrations> registrations, const std::set<std::string>& changed);
    bool releaseReplaced();

    /// Ends what runs in processes of modules, by killing these. True when that ends requests.
    bool killBusyModules();

    /// Turns indications off, cleans up and unloads every module once no request runs any more, and
    /// gives what waits for listeners half a second.
    Shutdown shutDown(std::chrono::milliseconds patience);

private:
    // Modules may raise indications until they are unloaded: what takes them lives longer.
    Broker _broker;
    IndicationDelivery _delivery;
    ConsoleOutlet _outlet;
    IndicationRoutes _routes;
    std::optional<IsolatedModules> _isolated;
    ModuleHost _modules;
    Operations _operations;
    std::optional<ModuleCatalogue> _catalogue;
    Subscriptions _subscriptions;
    CimXmlHandler _handler;
    CimXmlAdapter _adapter;
};

}  // namespace cimhost
