#include "platform/smbios/SmBios.h"

#include "platform/smbios/SmbiosEntryPoint.h"
#include "platform/smbios/detail/DmiDecoder.h"

#include <algorithm>
#include <exception>
#include <mutex>
#include <optional>
#include <utility>

namespace {

// No firmware comes near this. A 64-bit entry point may state a table of 4 GiB all the same.
constexpr std::size_t tableLimit = 16 * 1024 * 1024;

std::mutex sourceMutex;
// Of readers that are given none; guarded by sourceMutex. Null is the kernel's tables.
std::shared_ptr<const SmbiosSource> processSource;

std::shared_ptr<const SmbiosSource> currentSource() {
    const std::lock_guard lock(sourceMutex);
    return processSource ? processSource : std::make_shared<SmbiosKernelTables>();
}

template <typename Record>
const Record* pointerTo(const std::optional<Record>& record) noexcept {
    return record ? &*record : nullptr;
}

}  // namespace

struct SmBios::Records {
    explicit Records(SmbiosTable scanned) : table(std::move(scanned)) {}

    SmbiosTable table;
    std::optional<DmiBios> bios = decodeBios(table);
    std::optional<DmiSystem> system = decodeSystem(table);
    std::optional<DmiBaseboard> baseboard = decodeBaseboard(table);
    std::optional<DmiChassis> chassis = decodeChassis(table);
    std::optional<KTQServerSystemId> serverSystemId = decodeServerSystemId(table);
    std::optional<KTQEnclosure> enclosure = decodeEnclosure(table);
    std::optional<KTQServerProfile> serverProfile = decodeServerProfile(table);
};

SmBios::SmBios(const Logger& log) : SmBios(log, currentSource()) {}

SmBios::SmBios(const Logger& log, std::shared_ptr<const SmbiosSource> source)
    : _log(log), _source(std::move(source)) {}

SmBios::~SmBios() = default;

int SmBios::scan() noexcept {
    _records.reset();
    try {
        _records = _read();
        return 0;
    } catch (const std::exception& error) {
        _log.error("No SMBIOS data from %s: %s", _source->name(), error.what());
        return 1;
    }
}

std::unique_ptr<const SmBios::Records> SmBios::_read() const {
    const SmbiosEntryPoint entryPoint = SmbiosEntryPoint::parse(_source->entryPoint());
    SmbiosTable table(entryPoint,
                      _source->table(entryPoint.tableAddress,
                                     std::min<std::size_t>(entryPoint.tableLength, tableLimit)));
    const std::size_t count = table.records().size();
    if (entryPoint.structureCount && *entryPoint.structureCount != count) {
        _log.warn("The SMBIOS entry point of %s counts %u structures, its table holds %zu",
                  _source->name(), *entryPoint.structureCount, count);
    }
    return std::make_unique<const Records>(std::move(table));
}

const DmiSystem* SmBios::getDmiSystem() const noexcept {
    return _records ? pointerTo(_records->system) : nullptr;
}

const DmiBios* SmBios::getDmiBios() const noexcept {
    return _records ? pointerTo(_records->bios) : nullptr;
}

const DmiBaseboard* SmBios::getDmiBaseboard() const noexcept {
    return _records ? pointerTo(_records->baseboard) : nullptr;
}

const DmiChassis* SmBios::getDmiChassis() const noexcept {
    return _records ? pointerTo(_records->chassis) : nullptr;
}

const KTQServerSystemId* SmBios::getKTQServerSystemId() const noexcept {
    return _records ? pointerTo(_records->serverSystemId) : nullptr;
}

const KTQEnclosure* SmBios::getKTQEnclosure() const noexcept {
    return _records ? pointerTo(_records->enclosure) : nullptr;
}

const KTQServerProfile* SmBios::getKTQServerProfile() const noexcept {
    return _records ? pointerTo(_records->serverProfile) : nullptr;
}

const SmbiosTable* SmBios::table() const noexcept { return _records ? &_records->table : nullptr; }

void SmBios::setSource(std::shared_ptr<const SmbiosSource> source) noexcept {
    const std::lock_guard lock(sourceMutex);
    // The former source dies with the argument, after the lock.
    std::swap(processSource, source);
}
