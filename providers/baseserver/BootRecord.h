#pragma once

#include "platform/host/HostFiles.h"
#include "platform/logger/Logger.h"

#include <string>

namespace baseserver {

/// Tells whether this boot of the operating system is one that was not seen before, by the kernel's
/// boot identifier and a store.
class BootRecord {
public:
    /// `storeName` as for makeDataStore(). `root` stands before the kernel's file, for tests.
    BootRecord(std::string storeName, Logger& log, std::string root = hostRoot());

    /// True once for each boot. False, with a line in the log, where the kernel does not name its
    /// boot or the store fails: better no event than one at each start of the object manager.
    bool isNew();

private:
    std::string _storeName;
    Logger _log;
    std::string _root;
};

}  // namespace baseserver
