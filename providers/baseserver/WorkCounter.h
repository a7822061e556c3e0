#pragma once

#include "common/DataStoreTxt.h"
#include "platform/logger/Logger.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

namespace baseserver {

/// Counts in a store, so that the count survives restarts of the object manager. Where there is no
/// store, and where it fails, it counts on in memory and says so in the log. Safe from several
/// threads.
class WorkCounter {
public:
    /// Opens the store with this name, "/etc/cim/<name>.txt".
    WorkCounter(const std::string& storeName, Logger& log);

    /// Adds one and gives the new count.
    std::uint64_t increment();

private:
    Logger _log;
    std::mutex _counting;
    std::unique_ptr<PYL::DataStore> _store;
    std::uint64_t _count = 0;
};

}  // namespace baseserver
