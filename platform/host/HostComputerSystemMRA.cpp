#include "platform/host/HostComputerSystemMRA.h"

#include "platform/host/detail/HostFacts.h"
#include "platform/smbios/SmBios.h"

#include <exception>
#include <utility>

HostComputerSystemMRA::HostComputerSystemMRA(const Logger& log, HostFiles files)
    : _log(log), _files(std::move(files)) {}

HostComputerSystemMRA::~HostComputerSystemMRA() = default;

MRAStatusEnum HostComputerSystemMRA::getFirstData(unsigned selector,
                                                  ComputerSystemMRADataObject& object) noexcept
    try {
    if (selector != systemData) {
        _log.error("No computer-system data has the selector %u", selector);
        return MRA_STATUS_FAILED;
    }
    return _fill(object);
} catch (const std::exception& error) {
    _log.error("Cannot read the computer-system data: %s", error.what());
    return MRA_STATUS_FAILED;
}

MRAStatusEnum HostComputerSystemMRA::_fill(ComputerSystemMRADataObject& object) const {
    SmBios smbios(_log);
    // A scan that fails has said so in the log; the host's own facts remain.
    static_cast<void>(smbios.scan());
    ComputerSystemFacts facts = mergeFacts(readFirmwareFacts(smbios), readHostFacts(_files));
    if (!hasFacts(facts)) {
        _log.error("Neither the firmware nor the host tells anything of the computer system");
        return MRA_STATUS_FAILED;
    }
    object.setFacts(std::move(facts));
    return MRA_STATUS_SUCCESS;
}
