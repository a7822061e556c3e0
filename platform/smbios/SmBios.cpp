#include "platform/smbios/SmBios.h"

#include <algorithm>
#include <exception>
#include <mutex>
#include <optional>
#include <utility>

#include "platform/smbios/DmiDecoder.h"
#include "platform/smbios/SmbiosEntryPoint.h"

namespace {

// No firmware comes near this. A 64-bit entry point may state a table of 4 GiB all the same.
constexpr std::size_t tableLimit = 16 * 1024 * 1024;

/// The source of readers that are given none.
class ProcessSource {
public:
    void set(std::shared_ptr<SmbiosSource const> source) noexcept {
        std::lock_guard const lock(_mutex);
        // The former source dies with the argument, after the lock.
        std::swap(_source, source);
    }

    std::shared_ptr<SmbiosSource const> get() const {
        std::lock_guard const lock(_mutex);
        return _source ? _source : std::make_shared<SmbiosKernelTables>();
    }

private:
    mutable std::mutex _mutex;
    std::shared_ptr<SmbiosSource const> _source;
};

ProcessSource& processSource() noexcept {
    static ProcessSource source;
    return source;
}

template <typename Decoder>
auto decode(SmbiosRecord const* record, Decoder const& decoder)
    -> std::optional<decltype(decoder(*record))> {
    if (!record) return std::nullopt;
    return decoder(*record);
}

template <typename Record>
Record const* pointerTo(std::optional<Record> const& record) noexcept {
    return record ? &*record : nullptr;
}

}  // namespace

struct SmBios::Records {
    explicit Records(SmbiosTable scanned)
        : table(std::move(scanned)),
          bios(decode(table.findType(0), [this](auto& bytes) { return decodeBios(table, bytes); })),
          system(decode(table.findType(1),
                        [this](auto& bytes) { return decodeSystem(table, bytes); })),
          baseboard(decode(table.findType(2), decodeBaseboard)),
          chassis(decode(table.findType(3), decodeChassis)),
          serverSystemId(decode(findServerSystemIdRecord(table), decodeServerSystemId)),
          enclosure(decode(findEnclosureRecord(table),
                           [this](auto& bytes) { return decodeEnclosure(table, bytes); })),
          serverProfile(decode(findServerProfileRecord(table), [this](auto& bytes) {
              return decodeServerProfile(table, bytes);
          })) {}

    SmbiosTable table;
    std::optional<DmiBios> bios;
    std::optional<DmiSystem> system;
    std::optional<DmiBaseboard> baseboard;
    std::optional<DmiChassis> chassis;
    std::optional<KTQServerSystemId> serverSystemId;
    std::optional<KTQEnclosure> enclosure;
    std::optional<KTQServerProfile> serverProfile;
};

SmBios::SmBios(Logger const& log) : SmBios(log, processSource().get()) {}

SmBios::SmBios(Logger const& log, std::shared_ptr<SmbiosSource const> source)
    : _log(log), _source(std::move(source)) {}

SmBios::~SmBios() = default;

int SmBios::scan() noexcept {
    _records.reset();
    try {
        _records = _read();
        return 0;
    } catch (std::exception const& error) {
        _log.error("No SMBIOS data from %s: %s", _source->name(), error.what());
        return 1;
    }
}

std::unique_ptr<SmBios::Records const> SmBios::_read() const {
    SmbiosEntryPoint const entryPoint = SmbiosEntryPoint::parse(_source->entryPoint());
    SmbiosTable table(entryPoint,
                      _source->table(entryPoint.tableAddress,
                                     std::min<std::size_t>(entryPoint.tableLength, tableLimit)));
    std::size_t const count = table.records().size();
    if (entryPoint.structureCount && *entryPoint.structureCount != count) {
        _log.warn("The SMBIOS entry point of %s counts %u structures, its table holds %zu",
                  _source->name(), *entryPoint.structureCount, count);
    }
    return std::make_unique<Records const>(std::move(table));
}

DmiSystem const* SmBios::getDmiSystem() const noexcept {
    return _records ? pointerTo(_records->system) : nullptr;
}

DmiBios const* SmBios::getDmiBios() const noexcept {
    return _records ? pointerTo(_records->bios) : nullptr;
}

DmiBaseboard const* SmBios::getDmiBaseboard() const noexcept {
    return _records ? pointerTo(_records->baseboard) : nullptr;
}

DmiChassis const* SmBios::getDmiChassis() const noexcept {
    return _records ? pointerTo(_records->chassis) : nullptr;
}

KTQServerSystemId const* SmBios::getKTQServerSystemId() const noexcept {
    return _records ? pointerTo(_records->serverSystemId) : nullptr;
}

KTQEnclosure const* SmBios::getKTQEnclosure() const noexcept {
    return _records ? pointerTo(_records->enclosure) : nullptr;
}

KTQServerProfile const* SmBios::getKTQServerProfile() const noexcept {
    return _records ? pointerTo(_records->serverProfile) : nullptr;
}

SmbiosTable const* SmBios::table() const noexcept {
    return _records ? &_records->table : nullptr;
}

void SmBios::setSource(std::shared_ptr<SmbiosSource const> source) noexcept {
    processSource().set(std::move(source));
}
