#include "platform/host/HostBladeMRA.h"

#include "platform/host/detail/FirmwareText.h"
#include "platform/smbios/SmBios.h"

#include <exception>

namespace {

BladeFacts factsOf(const KTQEnclosure* enclosure) {
    if (!enclosure) return {};
    return {.isBlade = enclosure->isBlade,
            .isSLServer = enclosure->isSLServer,
            .enclosureName = nonBlank(enclosure->enclosureName),
            .rackName = nonBlank(enclosure->rackName),
            .rackUUID = nonBlank(enclosure->rackUuid)};
}

}  // namespace

HostBladeMRA::HostBladeMRA(const Logger& log) : _log(log) {}

HostBladeMRA::~HostBladeMRA() = default;

MRAStatusEnum HostBladeMRA::getEnclosureData(BladeMRADataObject& object) noexcept try {
    SmBios smbios(_log);
    // A scan that fails has said so in the log. A table without the record is an answer: no blade.
    if (smbios.scan() != 0) return MRA_STATUS_FAILED;
    object.setFacts(factsOf(smbios.getKTQEnclosure()));
    return MRA_STATUS_SUCCESS;
} catch (const std::exception& error) {
    _log.error("Cannot read the enclosure data: %s", error.what());
    return MRA_STATUS_FAILED;
}
