#include "cimhost/server/ObjectManager.h"

#include "cimhost/operations/UpCalls.h"

#include <utility>

namespace cimhost {
namespace {

constexpr std::chrono::milliseconds deliveryGrace{500};
/// For all modules in processes of their own, a little less than what their common end may take.
constexpr std::chrono::milliseconds isolatedGrace{3'500};

}  // namespace

ObjectManager::ObjectManager(const Repository& repository, Registrations registrations,
                             std::vector<std::filesystem::path> providerFolders, BrokerLog& log,
                             const IndicationSettings& indications, const Manner& manner,
                             std::optional<IsolationSettings> isolation, ResultPolicy results,
                             ModuleSource modules, EventFeed* feed)
    : _broker(repository, log, fillUpCalls, manner),
      _delivery(indications.delivery, log),
      _outlet(_delivery, feed),
      _routes(repository, log),
      _modules(_broker, std::move(registrations), providerFolders, modules),
      _operations(_broker, _modules, results),
      _subscriptions(_broker, _modules, _routes, _outlet),
      _handler(_operations, repository),
      _adapter(_handler, feed) {
    _broker.setOperations(&_operations);
    _broker.setIndicationSink(&_routes);
    _operations.add(_subscriptions);
    if (isolation) {
        isolation->feed = feed;
        _isolated.emplace(_broker, std::move(*isolation));
        _isolated->standInFor(_modules);
        _operations.add(*_isolated);
    }
    _catalogue.emplace(repository, _modules, _isolated ? &*_isolated : nullptr,
                       std::move(providerFolders));
    _operations.add(*_catalogue);
    _subscriptions.restore(indications.stateFile);
}

std::set<std::string> ObjectManager::modules() const {
    std::set<std::string> names;
    for (const Registration& each : _modules.registrations().all()) names.insert(each.module);
    return names;
}

void ObjectManager::renew(std::optional<Registrations> registrations,
                          const std::set<std::string>& changed) {
    if (_isolated) {
        // They read the files themselves when they start.
        if (registrations) {
            _isolated->replaceAll();
        } else {
            _isolated->replace(changed);
        }
    }
    _modules.renew(std::move(registrations), changed,
                   [this](const std::string& name) -> std::optional<StaticModule> {
                       if (!_isolated) return std::nullopt;
                       return _isolated->standInFor(name);
                   });
    _subscriptions.renewActivations();
}

bool ObjectManager::releaseReplaced() {
    const bool isLeft = _modules.releaseReplaced();
    return (_isolated && _isolated->releaseReplaced()) || isLeft;
}

bool ObjectManager::killBusyModules() { return _isolated && _isolated->killBusy(); }

Shutdown ObjectManager::shutDown(std::chrono::milliseconds patience) {
    if (!_subscriptions.stop(patience) || !_modules.shutDown(patience)) return Shutdown::incomplete;
    const bool isOrderly = !_isolated || _isolated->stop(isolatedGrace);
    _delivery.stop(deliveryGrace);
    return isOrderly ? Shutdown::orderly : Shutdown::withLosses;
}

}  // namespace cimhost
