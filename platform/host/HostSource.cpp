#include "platform/host/HostSource.h"

#include <exception>
#include <utility>

ComputerSystemMRA::~ComputerSystemMRA() = default;

BladeMRA::~BladeMRA() = default;

HostSource::HostSource(const Logger& log, HostFiles files) : _log(log), _files(std::move(files)) {}

HostSource::~HostSource() = default;

MRAStatusEnum HostSource::getFirstData(unsigned selector,
                                       ComputerSystemMRADataObject& object) noexcept try {
    if (selector != systemData) {
        _log.error("No computer-system data has the selector %u", selector);
        return MRA_STATUS_FAILED;
    }
    SmBios firmware(_log);
    // A scan that fails has said so in the log; the host's own facts remain.
    static_cast<void>(firmware.scan());
    HostFacts facts = readHostFacts(firmware, _files);
    if (facts == HostFacts()) {
        _log.error("Neither the firmware nor the host tells anything of the computer system");
        return MRA_STATUS_FAILED;
    }
    object.setFacts(std::move(facts));
    return MRA_STATUS_SUCCESS;
} catch (const std::exception& error) {
    _log.error("Cannot read the computer-system data: %s", error.what());
    return MRA_STATUS_FAILED;
}

MRAStatusEnum HostSource::getEnclosureData(BladeMRADataObject& object) noexcept try {
    SmBios firmware(_log);
    // A scan that fails has said so in the log. A table without the record is an answer: no blade.
    if (firmware.scan() != 0) return MRA_STATUS_FAILED;
    object.setFacts(readFirmwareFacts(firmware));
    return MRA_STATUS_SUCCESS;
} catch (const std::exception& error) {
    _log.error("Cannot read the enclosure data: %s", error.what());
    return MRA_STATUS_FAILED;
}

ComputerSystemMRA* computerSystemMRAFactory(Logger& log) noexcept try {
    return new HostSource(log);
} catch (const std::exception& error) {
    log.error("Cannot make the computer-system data source: %s", error.what());
    return nullptr;
}

BladeMRA* BladeMRAFactory(Logger& log) noexcept try {
    return new HostSource(log);
} catch (const std::exception& error) {
    log.error("Cannot make the enclosure data source: %s", error.what());
    return nullptr;
}
