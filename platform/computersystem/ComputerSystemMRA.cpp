#include "platform/computersystem/ComputerSystemMRA.h"

#include <exception>

#include "platform/computersystem/HostComputerSystemMRA.h"

ComputerSystemMRA::~ComputerSystemMRA() = default;

ComputerSystemMRA* computerSystemMRAFactory(Logger& log) noexcept try {
    return new HostComputerSystemMRA(log);
} catch (std::exception const& error) {
    log.error("Cannot make the computer-system data source: %s", error.what());
    return nullptr;
}
