#include "providers/baseserver/WorkCounter.h"

#include <cstdio>

namespace baseserver {

namespace {

constexpr const char* countKey = "WorkCount";

/// Twenty digits always: the store replaces values in place, and only one of the same length
/// cleanly.
std::string fixedWidth(std::uint64_t count) {
    char text[21];
    std::snprintf(text, sizeof text, "%020llu", static_cast<unsigned long long>(count));
    return text;
}

}  // namespace

WorkCounter::WorkCounter(const std::string& storeName, Logger& log) : _log(log) {
    try {
        _store.reset(PYL::makeDataStore(storeName));
        _count = _store->fetchUint64(countKey);
    } catch (const PYL::DataStoreError& error) {
        _log.warn("the work count does not survive a restart: no store %s: %s", storeName,
                  error.message());
    }
}

std::uint64_t WorkCounter::increment() {
    const std::lock_guard lock(_counting);
    ++_count;
    if (_store && !_store->storeString(countKey, fixedWidth(_count))) {
        _log.warn("the work count %llu could not be stored", _count);
    }
    return _count;
}

}  // namespace baseserver
