#include "cimhost/objects/MannerTables.h"

#include "cimhost/objects/ArgsHandle.h"
#include "cimhost/objects/ArrayHandle.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/objects/ContextHandle.h"
#include "cimhost/objects/DateTimeHandle.h"
#include "cimhost/objects/EnumerationFilterHandle.h"
#include "cimhost/objects/EnumerationHandle.h"
#include "cimhost/objects/ErrorHandle.h"
#include "cimhost/objects/InstanceHandle.h"
#include "cimhost/objects/ObjectPathHandle.h"
#include "cimhost/objects/PropertyListHandle.h"
#include "cimhost/objects/ResultHandle.h"
#include "cimhost/objects/SelectCondHandle.h"
#include "cimhost/objects/SelectExpHandle.h"
#include "cimhost/objects/StringHandle.h"

#include <cstdlib>
#include <string>

namespace cimhost {

namespace {

const void*& tableOf(ObjectTables& tables, ObjectKind kind) noexcept {
    return tables.at(static_cast<std::size_t>(kind));
}

template <typename Table>
Table adapted(const Table& standard, const Manner& manner) noexcept {
    Table table = standard;
    adapt(table, manner);
    return table;
}

}  // namespace

// In the order of ObjectKind.
constinit const ObjectTables standardObjectTables = {
    &ObjectPathObject::table,  &InstanceObject::table,     &ArgsObject::table,
    &StringObject::table,      &ArrayObject::table,        &DateTimeObject::table,
    &EnumerationObject::table, &ContextObject::table,      &ResultObject::table,
    &ErrorObject::table,       &PropertyListObject::table, &EnumerationFilterObject::table,
    &SelectExpObject::table,   &SelectCondObject::table,   &SubCondObject::table,
    &PredicateObject::table,
};

MannerTables::MannerTables(const Manner& manner)
    : _manner(manner),
      _arguments(adapted(ArgsObject::table, manner)),
      _array(adapted(ArrayObject::table, manner)),
      _context(adapted(ContextObject::table, manner)),
      _dateTime(adapted(DateTimeObject::table, manner)),
      _enumeration(adapted(EnumerationObject::table, manner)),
      _instance(adapted(InstanceObject::table, manner)),
      _objectPath(adapted(ObjectPathObject::table, manner)),
      _result(adapted(ResultObject::table, manner)),
      _string(adapted(StringObject::table, manner)),
      _encapsulation(adapted(encapsulationTable, manner)) {
    adaptToArrays(_encapsulation, manner);
    adaptToArrays(_objectPath, _instance, _dateTime, _string, manner);
}

ObjectTables MannerTables::objects() const noexcept {
    ObjectTables tables = standardObjectTables;
    tableOf(tables, ObjectKind::arguments) = &_arguments;
    tableOf(tables, ObjectKind::array) = &_array;
    tableOf(tables, ObjectKind::context) = &_context;
    tableOf(tables, ObjectKind::dateTime) = &_dateTime;
    tableOf(tables, ObjectKind::enumeration) = &_enumeration;
    tableOf(tables, ObjectKind::instance) = &_instance;
    tableOf(tables, ObjectKind::objectPath) = &_objectPath;
    tableOf(tables, ObjectKind::result) = &_result;
    tableOf(tables, ObjectKind::string) = &_string;
    return tables;
}

void MannerTables::adapt(CMPIBrokerFT& table, CMPIBroker& handle) const noexcept {
    handle.eft = &_encapsulation;
    if (_manner.has(Habit::hasNoMemoryFunctions)) handle.mft = nullptr;
    if (_manner.has(Habit::namesAnOldVersion)) table.brokerVersion = 0;
    adaptIndications(table, _manner);
}

void endAs(const Broker& broker, Habit habit) noexcept {
    const std::string_view says = habitRows()[static_cast<std::size_t>(habit)].says;
    broker.log().write(BrokerLog::Level::error, "broker",
                       "manner " + broker.manner().name() + ": " + std::string(says));
    std::abort();
}

}  // namespace cimhost
