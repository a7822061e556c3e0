#include "providers/baseserver/BootRecord.h"

#include "common/DataStoreTxt.h"
#include "platform/host/HostFiles.h"

#include <memory>

namespace baseserver {

namespace {

constexpr const char* bootIdFile = "/proc/sys/kernel/random/boot_id";
constexpr const char* bootKey = "BootId";

}  // namespace

BootRecord::BootRecord(std::string storeName, Logger& log, std::string root)
    : _storeName(std::move(storeName)), _log(log), _root(std::move(root)) {}

bool BootRecord::isNew() {
    const auto boot = HostFiles(_root).line(bootIdFile);
    if (!boot) {
        _log.warn("the kernel does not name its boot in %s", bootIdFile);
        return false;
    }
    try {
        const std::unique_ptr<PYL::DataStore> store(PYL::makeDataStore(_storeName));
        if (store->fetchString(bootKey) == *boot) return false;
        // Boot identifiers have one length, so that the record is replaced cleanly.
        return store->storeString(bootKey, *boot);
    } catch (const PYL::DataStoreError& error) {
        _log.warn("a boot of the operating system is not told: no store %s: %s", _storeName,
                  error.message());
        return false;
    }
}

}  // namespace baseserver
