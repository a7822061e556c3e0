#pragma once

#include "cimhost/objects/BrokerTables.h"
#include "cimhost/objects/Manner.h"

namespace cimhost {

/// The function tables of a broker whose manner is not standard: copies of the standard ones, with
/// other functions for what its habits concern. Each `adapt` below exchanges slots of one table;
/// where several habits meet in a slot, its function asks the object's broker for them.
///
/// A habit by which the other host's process would die ends ours, after a line in the log that says
/// why (see `endAs`): a provider's author is to see it at their desk.
class MannerTables {
public:
    explicit MannerTables(const Manner& manner);
    MannerTables(const MannerTables&) = delete;
    MannerTables& operator=(const MannerTables&) = delete;

    /// The tables of objects; they live as long as this.
    ObjectTables objects() const noexcept;

    /// Exchanges what a broker's own tables have otherwise.
    void adapt(CMPIBrokerFT& table, CMPIBroker& handle) const noexcept;

private:
    Manner _manner;
    CMPIArgsFT _arguments;
    CMPIArrayFT _array;
    CMPIContextFT _context;
    CMPIDateTimeFT _dateTime;
    CMPIEnumerationFT _enumeration;
    CMPIInstanceFT _instance;
    CMPIObjectPathFT _objectPath;
    CMPIResultFT _result;
    CMPIStringFT _string;
    CMPIBrokerEncFT _encapsulation;
};

void adapt(CMPIArgsFT& table, const Manner& manner) noexcept;
void adapt(CMPIArrayFT& table, const Manner& manner) noexcept;
void adapt(CMPIContextFT& table, const Manner& manner) noexcept;
void adapt(CMPIDateTimeFT& table, const Manner& manner) noexcept;
void adapt(CMPIEnumerationFT& table, const Manner& manner) noexcept;
void adapt(CMPIInstanceFT& table, const Manner& manner) noexcept;
void adapt(CMPIObjectPathFT& table, const Manner& manner) noexcept;
void adapt(CMPIResultFT& table, const Manner& manner) noexcept;
void adapt(CMPIStringFT& table, const Manner& manner) noexcept;
void adapt(CMPIBrokerEncFT& table, const Manner& manner) noexcept;

/// What arrays that keep the pointers of their elements, or the array bit, need of other tables.
void adaptToArrays(CMPIBrokerEncFT& table, const Manner& manner) noexcept;
void adaptToArrays(CMPIObjectPathFT& path, CMPIInstanceFT& instance, CMPIDateTimeFT& dateTime,
                   CMPIStringFT& string, const Manner& manner) noexcept;

/// The slots of indications.
void adaptIndications(CMPIBrokerFT& table, const Manner& manner) noexcept;

class Broker;
struct ArrayObject;

/// Ends the process where an element of the array has been released, under a manner that keeps the
/// pointer alone.
void endOnDanglingArray(const ArrayObject& array) noexcept;

/// Ends the process when the value is an array that the other host cannot take over.
void endOnArrayWithNulls(const Broker& broker, const CMPIValue* value, CMPIType type) noexcept;

/// Ends the process as the host with this habit would, with a line that says what it was.
[[noreturn]] void endAs(const Broker& broker, Habit habit) noexcept;

/// What `throwsOfItsOwn` throws: no std::exception, and not for anybody to catch by its type.
struct HostException {};

}  // namespace cimhost
