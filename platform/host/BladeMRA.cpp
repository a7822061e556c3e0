#include "platform/host/BladeMRA.h"

#include "platform/host/HostBladeMRA.h"

#include <exception>

BladeMRA::~BladeMRA() = default;

BladeMRA* BladeMRAFactory(Logger& log) noexcept try {
    return new HostBladeMRA(log);
} catch (const std::exception& error) {
    log.error("Cannot make the enclosure data source: %s", error.what());
    return nullptr;
}
