#include "cimhost/objects/Broker.h"

#include "cimhost/objects/AttachedThreads.h"
#include "cimhost/objects/MannerTables.h"
#include "cimhost/objects/MemoryBlocks.h"

#include <array>
#include <atomic>
#include <mutex>
#include <set>
#include <stdexcept>
#include <tuple>

namespace cimhost {

namespace {

constexpr unsigned int capabilities =
    CMPI_MB_InstanceManipulation | CMPI_MB_AssociationTraversal | CMPI_MB_BasicQualifierSupport |
    CMPI_MB_OSEncapsulationSupport | CMPI_MB_Supports_MemEnhancements |
    CMPI_MB_Supports_Extended_Error | CMPI_MB_Logging | CMPI_MB_Tracing |
    CMPI_MB_PropertyFiltering | CMPI_MB_CodepageConversion |
    // Query objects alone: what execQuery can do is up to the providers.
    (CMPI_MB_QueryNormalization & ~CMPI_MB_QueryExecution);

// The brokers alive, by which a foreign handle is told. Looking one up takes no lock; nearly always
// it is the first.
std::array<std::atomic<const Broker*>, 64> liveBrokers{};

void enlist(const Broker* broker) {
    for (auto& place : liveBrokers) {
        const Broker* none = nullptr;
        if (place.compare_exchange_strong(none, broker)) return;
    }
    throw std::runtime_error("more than 64 brokers at a time");
}

void strikeOff(const Broker* broker) noexcept {
    for (auto& place : liveBrokers) {
        const Broker* expected = broker;
        if (place.compare_exchange_strong(expected, nullptr)) return;
    }
}

}  // namespace

struct Broker::Tables {
    std::unique_ptr<MannerTables> mannerTables;  ///< null where the manner is standard
    std::atomic<bool> hasWarned = false;
    std::mutex wrongEndsMutex;
    std::set<std::tuple<const void*, std::string_view, ObjectKind>> wrongEnds;
    MemoryBlocks memoryBlocks;
    PreparedContexts preparedContexts;
    CMPIBrokerFT brokerTable{};
    CMPIBroker handle{};
};

Broker::Broker(const Repository& repository, BrokerLog& log, UpCallFiller upCalls,
               const Manner& manner)
    : _repository(repository), _log(log), _manner(manner), _tables(std::make_unique<Tables>()) {
    CMPIBrokerFT& table = _tables->brokerTable;
    table.brokerCapabilities = capabilities;
    table.brokerVersion = CMPICurrentVersion;
    table.brokerName = "cimhost";
    fillThreadsAndIndications(table);
    upCalls(table);
    _tables->handle = {this, &table, &encapsulationTable, &systemTable, &memoryTable};
    if (!manner.isStandard()) {
        _tables->mannerTables = std::make_unique<MannerTables>(manner);
        _objectTables = _tables->mannerTables->objects();
        _tables->mannerTables->adapt(_tables->brokerTable, _tables->handle);
    }
    enlist(this);
}

Broker::~Broker() { strikeOff(this); }

const CMPIBroker* Broker::handle() const noexcept { return &_tables->handle; }

const Broker* Broker::find(const CMPIBroker* handle) noexcept {
    if (!handle || !handle->hdl) return nullptr;
    for (const auto& place : liveBrokers) {
        const Broker* const broker = place.load(std::memory_order_acquire);
        if (broker == handle->hdl) return broker;
    }
    return nullptr;
}

void Broker::setIndicationSink(IndicationSink* sink) noexcept {
    constexpr unsigned int ownBit = CMPI_MB_Indications & ~CMPI_MB_BasicRead;
    _indicationSink = sink;
    unsigned int& bits = _tables->brokerTable.brokerCapabilities;
    bits = sink ? bits | ownBit : bits & ~ownBit;
}

void Broker::interpose(const CMPIBroker& own, const ObjectTables& ofObjects) noexcept {
    _tables->handle = own;
    _objectTables = ofObjects;
}

void Broker::warnOfStrayThread() const noexcept {
    if (_tables->hasWarned.exchange(true)) return;
    log().write(BrokerLog::Level::warning, "broker",
                "objects were made on a thread that is not attached; they live until it ends");
}

bool Broker::isFirstWrongEnd(const void* library, std::string_view function,
                             ObjectKind kind) const {
    const std::lock_guard lock(_tables->wrongEndsMutex);
    return _tables->wrongEnds.emplace(library, function, kind).second;
}

MemoryBlocks& Broker::memoryBlocks() const noexcept { return _tables->memoryBlocks; }

PreparedContexts& Broker::preparedContexts() const noexcept { return _tables->preparedContexts; }

}  // namespace cimhost
