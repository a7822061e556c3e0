#include "platform/host/ComputerSystemMRA.h"

#include "platform/host/HostComputerSystemMRA.h"

#include <exception>

ComputerSystemMRA::~ComputerSystemMRA() = default;

ComputerSystemMRA* computerSystemMRAFactory(Logger& log) noexcept try {
    return new HostComputerSystemMRA(log);
} catch (const std::exception& error) {
    log.error("Cannot make the computer-system data source: %s", error.what());
    return nullptr;
}
