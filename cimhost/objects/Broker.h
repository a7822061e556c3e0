#pragma once

#include "cimhost/objects/BrokerTables.h"
#include "cimhost/objects/Manner.h"
#include "cimhost/objects/Objects.h"
#include "cimhost/repository/Repository.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string_view>

namespace cimhost {

class MemoryBlocks;
class CimOperations;
class PreparedContexts;
enum class ObjectKind : std::uint8_t;

/// Where log lines of cimhost and of providers (logMessage, trace) go. Safe from several threads.
class BrokerLog {
public:
    enum class Level { error, warning, information, debug };
    virtual ~BrokerLog() = default;
    virtual void write(Level level, std::string_view source, std::string_view message) noexcept = 0;
};

/// Where indications that providers raise go. Safe from several threads; may throw CimError.
class IndicationSink {
public:
    virtual ~IndicationSink() = default;
    virtual void deliver(const RequestContext& context, std::string_view nameSpace,
                         const Instance& indication) = 0;
};

/// Fills the up-call slots of a broker's table, from enumerateInstanceNames on.
using UpCallFiller = void (*)(CMPIBrokerFT& table);

/// The CMPI broker: the five tables that providers call, over one repository.
///
/// Lives as long as any module that got its handle. The tables may be called from any number of
/// threads that the broker serves or that attached themselves.
class Broker {
public:
    /// Repository and log must outlive the broker. At most 64 brokers live at a time.
    /// The up-calls come from the operations, which stand on this: see operations/UpCalls.h.
    /// Throws std::runtime_error when there are more.
    Broker(const Repository& repository, BrokerLog& log, UpCallFiller upCalls,
           const Manner& manner = {});
    ~Broker();
    Broker(const Broker&) = delete;
    Broker& operator=(const Broker&) = delete;

    const CMPIBroker* handle() const noexcept;
    /// The broker behind a handle of ours, or nullptr for a null or foreign handle.
    static const Broker* find(const CMPIBroker* handle) noexcept;

    const Repository& repository() const noexcept { return _repository; }
    BrokerLog& log() const noexcept { return _log; }
    const Manner& manner() const noexcept { return _manner; }

    /// The function table that objects of this kind get.
    const void* objectTable(ObjectKind kind) const noexcept {
        return _objectTables[static_cast<std::size_t>(kind)];
    }

    /// Up-calls are answered by these operations; until they are set each answers NOT_SUPPORTED.
    void setOperations(CimOperations* operations) noexcept { _operations = operations; }
    CimOperations* operations() const noexcept { return _operations; }

    /// deliverIndication hands over to this sink; without one it answers NOT_SUPPORTED. The sink is
    /// a capability that modules look at when they are loaded: set it before.
    void setIndicationSink(IndicationSink* sink) noexcept;
    IndicationSink* indicationSink() const noexcept { return _indicationSink; }

    /// From now on providers meet these tables, which stand in front of the broker's own: its own
    /// four, and those of objects that are made from here on. Before threads call it; for tests of
    /// what a provider does when calls fail.
    void interpose(const CMPIBroker& own, const ObjectTables& ofObjects) noexcept;
    const ObjectTables& objectTables() const noexcept { return _objectTables; }

    /// Logs, the first time, that a thread makes objects outside of any call without being
    /// attached.
    void warnOfStrayThread() const noexcept;

    /// True the first time that this library ends an object of this kind wrongly. The function's
    /// name must outlive the broker. Throws std::bad_alloc.
    bool isFirstWrongEnd(const void* library, std::string_view function, ObjectKind kind) const;

    /// What the tables keep beside the objects.
    MemoryBlocks& memoryBlocks() const noexcept;
    PreparedContexts& preparedContexts() const noexcept;

private:
    struct Tables;
    ObjectTables _objectTables = standardObjectTables;
    const Repository& _repository;
    BrokerLog& _log;
    const Manner _manner;
    std::atomic<CimOperations*> _operations = nullptr;
    std::atomic<IndicationSink*> _indicationSink = nullptr;
    std::unique_ptr<Tables> _tables;
};

}  // namespace cimhost
