#include "platform/blade/BladeMRA.h"

#include <exception>

#include "platform/blade/HostBladeMRA.h"

BladeMRA::~BladeMRA() = default;

BladeMRA* BladeMRAFactory(Logger& log) noexcept try {
    return new HostBladeMRA(log);
} catch (std::exception const& error) {
    log.error("Cannot make the enclosure data source: %s", error.what());
    return nullptr;
}
