#include "cimhost/server/ObjectManager.h"

#include "cimhost/operations/UpCalls.h"

#include <utility>

namespace cimhost {
namespace {

constexpr std::chrono::milliseconds deliveryGrace{500};

Registrations withSubscriptions(Registrations registrations, const Repository& repository) {
    SubscriptionModule::registerIn(registrations, repository);
    return registrations;
}

}  // namespace

ObjectManager::ObjectManager(const Repository& repository, Registrations registrations,
                             std::vector<std::filesystem::path> providerFolders, BrokerLog& log,
                             const IndicationSettings& indications)
    : _broker(repository, log, fillUpCalls),
      _delivery(indications.delivery, log),
      _routes(repository, log),
      _modules(_broker, withSubscriptions(std::move(registrations), repository),
               std::move(providerFolders)),
      _operations(_broker, _modules),
      _subscriptions(_broker, _modules, _routes, _delivery),
      _handler(_operations, repository),
      _adapter(_handler) {
    _broker.setOperations(&_operations);
    _broker.setIndicationSink(&_routes);
    _subscriptionModule.serve(_broker, _subscriptions);
    _modules.addStatic(std::string(SubscriptionModule::moduleName),
                       _subscriptionModule.factories());
    _subscriptions.restore(indications.stateFile);
}

bool ObjectManager::shutDown(std::chrono::milliseconds patience) {
    if (!_subscriptions.stop(patience) || !_modules.shutDown(patience)) return false;
    _delivery.stop(deliveryGrace);
    return true;
}

}  // namespace cimhost
