#include "cimhost/server/ObjectManager.h"

#include <utility>

namespace cimhost {

ObjectManager::ObjectManager(const Repository& repository, Registrations registrations,
                             std::vector<std::filesystem::path> providerFolders, BrokerLog& log)
    : _broker(repository, log),
      _modules(_broker, std::move(registrations), std::move(providerFolders)),
      _operations(_broker, _modules),
      _handler(_operations, repository),
      _adapter(_handler) {
    _broker.setOperations(&_operations);
}

}  // namespace cimhost
