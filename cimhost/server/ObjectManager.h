#pragma once

#include "cimhost/broker/Broker.h"
#include "cimhost/broker/ModuleHost.h"
#include "cimhost/broker/Operations.h"
#include "cimhost/cimxml/Handler.h"
#include "cimhost/server/CimXmlAdapter.h"

#include <chrono>
#include <filesystem>
#include <vector>

namespace cimhost {

/// A repository, the modules that serve its classes, and the CIM-XML door to both, put together.
class ObjectManager {
public:
    /// The repository is complete; it and the log outlive this object.
    ObjectManager(const Repository& repository, Registrations registrations,
                  std::vector<std::filesystem::path> providerFolders, BrokerLog& log);
    ObjectManager(const ObjectManager&) = delete;
    ObjectManager& operator=(const ObjectManager&) = delete;

    HttpHandler& httpHandler() noexcept { return _adapter; }

    /// Cleans up and unloads every module once no request runs any more. False when a call into one
    /// did not end in time; this object must not be destroyed then.
    bool shutDown(std::chrono::milliseconds patience) { return _modules.shutDown(patience); }

private:
    Broker _broker;
    ModuleHost _modules;
    Operations _operations;
    CimXmlHandler _handler;
    CimXmlAdapter _adapter;
};

}  // namespace cimhost
